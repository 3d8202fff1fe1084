#pragma once
// External references: where each one is found and its drawing.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// Loads the drawing at a path; throws on failure (the reference then counts
/// as not found).
using DrawingLoader = std::function<std::shared_ptr<const Drawing>(const std::string& path)>;

/// How far the references of one drawing opened are followed.
struct XrefLimits {
  /// Levels of references below the drawing opened (its own are level 1).
  int maxDepth = 16;
  /// The sizes of the referenced files loaded, each file counted once.
  std::uintmax_t maxTotalBytes = std::uintmax_t{512} << 20;
};

/// Fills drawing.xrefs from its external-reference blocks: each stored path
/// is looked up as given (relative to the drawing's folder), then by its
/// file name in the drawing's folder and in every folder of `supportPath`
/// (";"-separated). Found references are loaded with `load`, nested ones
/// too (overlays are not followed into), cycles broken. Each file is loaded
/// once, and the references to it share its drawing. A reference found
/// beyond `limits` is left without its drawing, marked with the limit.
void ResolveExternalReferences(Drawing& drawing, const std::string& supportPath,
                               const DrawingLoader& load, const XrefLimits& limits = {});

}  // namespace sheafwork::embedded
