#pragma once
// External references: where each one is found and its drawing.

#include <functional>
#include <memory>
#include <string>

#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// Loads the drawing at a path; throws on failure (the reference then counts
/// as not found).
using DrawingLoader = std::function<std::shared_ptr<const Drawing>(const std::string& path)>;

/// Fills drawing.xrefs from its external-reference blocks: each stored path
/// is looked up as given (relative to the drawing's folder), then by its
/// file name in the drawing's folder and in every folder of `supportPath`
/// (";"-separated). Found references are loaded with `load`, nested ones
/// too (overlays are not followed into), cycles broken.
void ResolveExternalReferences(Drawing& drawing, const std::string& supportPath,
                               const DrawingLoader& load);

}  // namespace sheafwork::embedded
