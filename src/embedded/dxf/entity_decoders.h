#pragma once
// Turns entity records into the model's entities.

#include <span>
#include <string_view>

#include "embedded/dxf/context.h"

namespace sheafwork::embedded {

enum class Decoded {
  kEntity,   ///< `out` holds the entity
  kIgnored,  ///< a kind that a plot never shows (lights)
};

/// Decodes the entity in `r`; `paperSpace` receives its 67 flag. A kind the
/// host cannot draw becomes an Undrawn entity, counted in the drawing's
/// skipped entities. A polyline mesh comes back as empty MeshEdges, to be
/// filled from its VERTEX records (PolylineMeshBuilder).
Decoded DecodeEntity(Context& ctx, const Record& r, Entity& out, bool& paperSpace);

/// Adds the VERTEX in `r` to `polyline`, unless it is a spline frame point.
/// `polylineRecord` supplies the default widths.
void AddVertex(Context& ctx, const Record& r, const Record& polylineRecord, Polyline& polyline);

/// Decodes the ATTRIB in `r`.
Attribute DecodeAttribute(Context& ctx, const Record& r);

/// The MTEXT in `r`, whose own tags are `own`.
MText DecodeMText(Context& ctx, const Record& r, std::span<const DataTag* const> own);

/// The hatch in `own` (tags of AcDbHatch, in file order).
Hatch DecodeHatch(Context& ctx, std::span<const DataTag* const> own);

}  // namespace sheafwork::embedded
