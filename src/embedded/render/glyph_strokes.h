#pragma once
// Stroke-font glyphs as a text draws them on the sheet. Every glyph of one
// text goes through the same linear map (its size, turn, slant and
// mirroring), and only the glyph's origin moves along the baseline; the
// points a stroke needs on the sheet depend on that linear map alone. So
// each glyph is mapped and cut down to those points once per map, and each
// use of it only moves them into place.

#include <cstddef>
#include <span>
#include <vector>

#include "embedded/render/box.h"
#include "embedded/render/stroke_font.h"
#include "embedded/render/transform.h"

namespace sheafwork::embedded {

/// How far (sheet millimetres) a point of a glyph's stroke may lie from the
/// chord of its neighbours and still be left out.
inline constexpr double kStrokeToleranceMm = 0.02;

/// Keeps the first and last points of `stroke` and those that stray at least
/// the tolerance from the chord between the last point kept and the next
/// one; returns how many points are kept, at the front of `stroke`.
std::size_t DecimateStroke(std::span<Vec2> stroke);

class GlyphStrokeCache {
 public:
  /// A glyph's strokes under the linear map, relative to its origin on the
  /// sheet. Valid until the next call of Get or Use.
  struct Strokes {
    std::span<const Vec2> points;  ///< only the points the sheet needs
    std::span<const int> sizes;    ///< points of each stroke
    Box2 box;                      ///< around every point of the glyph, before any was left out
  };

  /// Sets the map the glyphs are drawn through; what was kept for another
  /// linear part is forgotten.
  void Use(const Affine2& map);
  Strokes Get(const StrokeGlyph& glyph);

 private:
  struct Entry {
    const StrokeGlyph* glyph = nullptr;
    std::size_t firstPoint = 0, pointCount = 0;
    std::size_t firstSize = 0, sizeCount = 0;
    Box2 box;
  };
  void Clear();

  double linear_[4] = {0, 0, 0, 0};
  bool empty_ = true;  ///< no map set yet
  std::vector<Entry> entries_;
  std::vector<Vec2> points_;
  std::vector<int> sizes_;
};

}  // namespace sheafwork::embedded
