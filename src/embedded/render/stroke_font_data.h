#pragma once
// The tables of the stroke font, in grid units (cap height 12, x-height 8,
// descenders to -4).
//
// A glyph's strokes are separated by ';'. A stroke is a list of items
// separated by blanks: "x,y" is a point; "@cx,cy,rx,ry,a0,a1" appends an
// elliptic arc of centre (cx, cy) and radii rx, ry from angle a0 to a1
// (degrees; counter-clockwise when a1 > a0).

#include <span>

namespace sheafwork::embedded::stroke_data {

struct GlyphSource {
  char32_t code;
  double advance;
  const char* strokes;
};

/// A diacritical mark: strokes relative to its anchor, which is the
/// middle of the base letter at its top plus a gap (or at the baseline
/// when `below`).
struct MarkSource {
  char name;
  bool below;
  const char* strokes;
};

/// A letter made of a base letter and a mark.
struct ComposedSource {
  char32_t code;
  char32_t base;
  char mark;
};

std::span<const GlyphSource> Glyphs();
std::span<const MarkSource> Marks();
std::span<const ComposedSource> Composed();
/// Drawn for characters the font lacks.
const GlyphSource& Placeholder();

}  // namespace sheafwork::embedded::stroke_data
