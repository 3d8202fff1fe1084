#include "embedded/fonts/truetype_face.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "embedded/fonts/font_catalog.h"

namespace sheafwork::embedded {
namespace {

const TrueTypeFace& Sans() {
  const TrueTypeFace* face = ChooseFace({"DejaVu Sans", "", false, false}).face;
  if (face == nullptr) throw std::runtime_error("DejaVu Sans is installed by the setup");
  return *face;
}

// The glyph's outline, flattened.
struct Loops {
  std::vector<Vec2> points;
  std::vector<int> sizes;
};

Loops OutlineOf(char c, double tolerance) {
  std::vector<PlacedGlyph> glyphs;
  Sans().Shape(std::string(1, c), 1, glyphs);
  CurvePath path;
  for (const PlacedGlyph& g : glyphs) Sans().AppendOutline(g.id, g.at, path);
  Loops loops;
  FlattenPath(path, tolerance, loops.points, loops.sizes);
  return loops;
}

// Calls `edge(a, b)` for every edge of every closed loop.
template <typename Edge>
void ForEachEdge(const Loops& loops, Edge edge) {
  std::size_t first = 0;
  for (int signedSize : loops.sizes) {
    const auto size = static_cast<std::size_t>(signedSize);
    for (std::size_t i = 0; i < size; ++i) {
      edge(loops.points[first + i], loops.points[first + (i + 1) % size]);
    }
    first += size;
  }
}

// Odd-even area of the loops, as a filled glyph covers.
double Area(const Loops& loops) {
  double twice = 0;
  ForEachEdge(loops, [&](Vec2 a, Vec2 b) { twice += a.x * b.y - b.x * a.y; });
  return std::abs(twice / 2);
}

double Perimeter(const Loops& loops) {
  double total = 0;
  ForEachEdge(loops, [&](Vec2 a, Vec2 b) { total += std::hypot(b.x - a.x, b.y - a.y); });
  return total;
}

TEST(TrueTypeFaceTest, OutlinesStandOnTheBaselineAtTheCapHeight) {
  const TrueTypeFace& face = Sans();
  ASSERT_GT(face.CapHeight(), 0);
  ASSERT_GT(face.Descent(), 0);

  const Loops h = OutlineOf('H', 1);
  ASSERT_EQ(h.sizes.size(), 1u);  // one closed contour, not closed twice
  double low = 1e9, high = -1e9;
  for (Vec2 p : h.points) {
    low = std::min(low, p.y);
    high = std::max(high, p.y);
  }
  EXPECT_NEAR(low, 0, 1);
  EXPECT_NEAR(high, face.CapHeight(), 2);

  const Loops g = OutlineOf('g', 1);
  low = 0;
  for (Vec2 p : g.points) low = std::min(low, p.y);
  EXPECT_LT(low, -0.3 * face.Descent());  // the tail goes below
  EXPECT_GE(low, -face.Descent());

  EXPECT_EQ(OutlineOf('O', 1).sizes.size(), 2u);  // the hole is a loop of its own
  EXPECT_TRUE(OutlineOf(' ', 1).sizes.empty());
}

TEST(TrueTypeFaceTest, CurvesFlattenWithinTheTolerance) {
  // A looser tolerance takes fewer points for the same shape; chords no
  // farther than the tolerance from the curve change the area by less than
  // the tolerance times the outline's length.
  const Loops fine = OutlineOf('O', 0.05);
  for (double tolerance : {2.0, 8.0}) {
    const Loops coarse = OutlineOf('O', tolerance);
    EXPECT_LT(coarse.points.size(), fine.points.size());
    EXPECT_LT(std::abs(Area(coarse) - Area(fine)), tolerance * Perimeter(fine)) << tolerance;
  }
}

TEST(TrueTypeFaceTest, ShapingPlacesGlyphsByCharactersWithKerning) {
  const TrueTypeFace& face = Sans();
  std::vector<PlacedGlyph> glyphs;
  // Two bytes, one character, one glyph.
  face.Shape("É", 1, glyphs);
  EXPECT_EQ(glyphs.size(), 1u);
  const double ab = face.Shape("ab", 1, glyphs);
  ASSERT_EQ(glyphs.size(), 2u);
  EXPECT_DOUBLE_EQ(glyphs[0].at.x, 0);
  EXPECT_NEAR(glyphs[1].at.x, face.Advance("a", 1), 1e-9);
  EXPECT_NEAR(ab, face.Advance("a", 1) + face.Advance("b", 1), 1e-9);
  // Tracking scales every advance.
  EXPECT_NEAR(face.Advance("ab", 1.5), 1.5 * ab, 1e-9);
  // The font's kerning pulls A and V together.
  EXPECT_LT(face.Advance("AV", 1), face.Advance("A", 1) + face.Advance("V", 1));
  EXPECT_EQ(face.Advance("", 1), 0);
}

TEST(TrueTypeFaceTest, UnreadableFilesGiveNoFace) {
  EXPECT_EQ(TrueTypeFace::Open("/nonexistent/font.ttf", 0), nullptr);
  EXPECT_EQ(TrueTypeFace::Open(SHEAFWORK_SOURCE_DIR "/CMakeLists.txt", 0), nullptr);
}

}  // namespace
}  // namespace sheafwork::embedded
