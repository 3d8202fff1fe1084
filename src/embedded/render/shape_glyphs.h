#pragma once
// The strokes of one shape of a compiled shape file: its definition
// bytes played as pen moves (vectors in sixteen directions, displacements,
// octant, fractional and bulge arcs, the position stack, scale changes and
// subshapes), as a glyph of the stroke-font kind.

#include <cstdint>
#include <optional>

#include "embedded/fonts/shape_file.h"
#include "embedded/render/stroke_font.h"

namespace sheafwork::embedded {

/// The glyph of shape `number` of `file`: in cap heights for a font (its
/// height above the baseline is 1), in vector lengths for a file of
/// symbols; the advance is where the pen ends along x. Nullopt when the file
/// has no such shape. Codes cut short or out of place end the shape where
/// they stand.
std::optional<StrokeGlyph> ShapeGlyph(const ShapeFile& file, std::uint32_t number);

}  // namespace sheafwork::embedded
