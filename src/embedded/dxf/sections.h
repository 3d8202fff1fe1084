#pragma once
// The readers of the sections. Each starts after the section's 0/SECTION and
// 2/<name> tags and reads up to and including its 0/ENDSEC; `start` is the
// SECTION tag, named when ENDSEC is missing.

#include <string_view>

#include "embedded/dxf/context.h"

namespace sheafwork::embedded {

void ReadHeaderSection(Context& ctx, const Tag& start);
void ReadTablesSection(Context& ctx, const Tag& start);
void ReadBlocksSection(Context& ctx, const Tag& start);
void ReadEntitiesSection(Context& ctx, const Tag& start);
void ReadObjectsSection(Context& ctx, const Tag& start);
/// Sections the host has no use for (CLASSES, THUMBNAILIMAGE, unknown ones).
void SkipSection(Context& ctx, const Tag& start, std::string_view name);

/// After the last section: places the entities of the ENTITIES section into
/// their blocks, builds the layouts and page setups, fills what the file left
/// out and rebuilds the drawing's indexes.
void FinishDrawing(Context& ctx);

}  // namespace sheafwork::embedded
