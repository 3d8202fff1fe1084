#pragma once
// Large drawings for measuring the reader: many entities of every common
// kind, placed by a seeded generator so that the same count always gives the
// same file.

#include <cstddef>
#include <cstdint>

#include "dxfgen/document.h"

namespace sheafwork::dxfgen {

/// A release-2000 drawing with `entityCount` model-space entities cycling
/// through lines, arcs, circles, polylines with bulges, texts, block
/// references and solid hatches, on sixteen layers (in runs of up to 40
/// entities around one spot, mostly in the layer's colour), and one paper
/// layout.
Document LargeDrawing(std::size_t entityCount, std::uint64_t seed = 1);

}  // namespace sheafwork::dxfgen
