#include "embedded/render/stroke_font.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

using testing::ExpectNear;

TEST(StrokeFontTest, EveryGlyphFitsItsCell) {
  const StrokeFont& font = StrokeFont::Get();
  ASSERT_GT(font.Characters().size(), 150u);
  for (char32_t c : font.Characters()) {
    const StrokeGlyph* g = font.Find(c);
    ASSERT_NE(g, nullptr);
    SCOPED_TRACE(::testing::Message() << "U+" << std::hex << static_cast<unsigned>(c));
    EXPECT_GT(g->advance, 0.2);
    EXPECT_LT(g->advance, 1.6);
    int total = 0;
    for (int size : g->sizes) {
      EXPECT_GE(size, 2);
      total += size;
    }
    EXPECT_EQ(static_cast<std::size_t>(total), g->points.size());
    const bool blank = c == U' ' || c == 0xA0;
    EXPECT_EQ(g->sizes.empty(), blank);
    for (const Vec2& p : g->points) {
      EXPECT_GE(p.x, -0.1);
      EXPECT_LE(p.x, g->advance);
      EXPECT_GE(p.y, -0.4);
      EXPECT_LE(p.y, 1.35);
    }
  }
}

TEST(StrokeFontTest, BoundsFromTheGlyphBoxesAreTheBoxOfTheLaidOutStrokes) {
  // Text is culled on these bounds before its strokes are made: they must
  // be the box of those strokes, whatever the spacing, with marks, missing
  // characters and blanks.
  const StrokeFont& font = StrokeFont::Get();
  const char* texts[] = {"Façade Ø25", "IA", "\xE6\xBC\xA2x\xFF", " "};
  for (const char* text : texts) {
    for (const double tracking : {1.0, 1.3}) {
      SCOPED_TRACE(text);
      std::vector<Vec2> laid;
      std::vector<int> laidSizes;
      font.AppendStrokes(text, tracking, laid, laidSizes);
      Box2 laidBox;
      for (const Vec2& p : laid) laidBox.Extend(p);
      const Box2 bounds = font.Bounds(text, tracking);
      EXPECT_EQ(bounds.Empty(), laid.empty());
      if (!laid.empty()) ExpectNear(bounds, laidBox, 1e-12);
    }
  }
}

}  // namespace
}  // namespace sheafwork::embedded
