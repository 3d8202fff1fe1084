#include "embedded/render/glyph_strokes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace sheafwork::embedded {
namespace {

struct Copy {
  std::vector<Vec2> points;
  std::vector<int> sizes;
  Box2 box;
};

Copy CopyOf(const GlyphStrokeCache::Strokes& s) {
  return {{s.points.begin(), s.points.end()}, {s.sizes.begin(), s.sizes.end()}, s.box};
}

void ExpectSame(const Copy& a, const Copy& b) {
  ASSERT_EQ(a.sizes, b.sizes);
  ASSERT_EQ(a.points.size(), b.points.size());
  for (std::size_t i = 0; i < a.points.size(); ++i) {
    EXPECT_EQ(a.points[i].x, b.points[i].x);
    EXPECT_EQ(a.points[i].y, b.points[i].y);
  }
}

TEST(GlyphStrokesTest, CachedGlyphMovedIntoPlaceIsTheGlyphMappedAndCutDirectly) {
  // Under a turned, mirrored, slanted, tiny or large map, the cached strokes
  // moved to the glyph's origin are what mapping every point of the glyph
  // and cutting each stroke on the sheet gives.
  const Affine2 maps[] = {
      Affine2::Translation(300, 200) * Affine2::Rotation(Radians(37)) * Affine2::Scaling(3, 3),
      Affine2::Translation(-15, 40) * Affine2::Scaling(-2, 2),           // mirrored
      Affine2{2.5 * 0.8, 0, std::tan(Radians(20)) * 2.5, 2.5, 120, 80},  // narrow and slanted
      Affine2::Translation(10, 10) * Affine2::Rotation(Radians(200)) *
          Affine2::Scaling(0.4, 0.4),  // small, upside down
      Affine2::Scaling(60, 60),        // large
  };
  const StrokeFont& font = StrokeFont::Get();
  std::size_t dropped = 0;
  for (std::size_t m = 0; m < std::size(maps); ++m) {
    const Affine2& map = maps[m];
    const Vec2 origin = map.Apply({0, 0});
    GlyphStrokeCache cache;
    cache.Use(map);
    for (const char32_t code : {U'o', U'e', U'A', U'8', U'é', U'S'}) {
      ASSERT_NE(font.Find(code), nullptr);
      const StrokeGlyph& glyph = *font.Find(code);
      const GlyphStrokeCache::Strokes got = cache.Get(glyph);
      ASSERT_EQ(got.sizes.size(), glyph.sizes.size());
      Box2 box;
      std::size_t from = 0, at = 0;
      for (std::size_t s = 0; s < glyph.sizes.size(); ++s) {
        std::vector<Vec2> direct;
        for (int i = 0; i < glyph.sizes[s]; ++i) {
          direct.push_back(map.Apply(glyph.points[from + static_cast<std::size_t>(i)]));
          box.Extend(Vec2{direct.back().x - origin.x, direct.back().y - origin.y});
        }
        direct.resize(DecimateStroke(direct));
        dropped += static_cast<std::size_t>(glyph.sizes[s]) - direct.size();
        ASSERT_EQ(static_cast<std::size_t>(got.sizes[s]), direct.size()) << "map " << m;
        for (const Vec2& p : direct) {
          EXPECT_NEAR(got.points[at].x + origin.x, p.x, 1e-9) << "map " << m;
          EXPECT_NEAR(got.points[at].y + origin.y, p.y, 1e-9) << "map " << m;
          ++at;
        }
        from += static_cast<std::size_t>(glyph.sizes[s]);
      }
      EXPECT_NEAR(got.box.min.x, box.min.x, 1e-9);
      EXPECT_NEAR(got.box.max.y, box.max.y, 1e-9);
    }
  }
  EXPECT_GT(dropped, 20u);  // the small map leaves points out
}

TEST(GlyphStrokesTest, TheCacheFollowsTheLinearPartOfTheMap) {
  // The same glyph again, after others, or under a map that only moves it,
  // comes out the same; under another size or turn it comes out for that
  // one, and going back gives the first again.
  const StrokeFont& font = StrokeFont::Get();
  const StrokeGlyph& o = *font.Find(U'o');
  const StrokeGlyph& b = *font.Find(U'B');
  const Affine2 small = Affine2::Rotation(Radians(10)) * Affine2::Scaling(0.5, 0.5);
  const Affine2 large = Affine2::Scaling(40, 40);

  GlyphStrokeCache cache;
  cache.Use(small);
  const Copy first = CopyOf(cache.Get(o));
  cache.Get(b);
  ExpectSame(CopyOf(cache.Get(o)), first);
  cache.Use(Affine2::Translation(500, -20) * small);
  ExpectSame(CopyOf(cache.Get(o)), first);

  cache.Use(large);
  const Copy big = CopyOf(cache.Get(o));
  EXPECT_GT(big.points.size(), first.points.size());
  GlyphStrokeCache fresh;
  fresh.Use(large);
  ExpectSame(CopyOf(fresh.Get(o)), big);

  cache.Use(small);
  ExpectSame(CopyOf(cache.Get(o)), first);
}

TEST(GlyphStrokesTest, DecimationKeepsWhatStraysFromTheChord) {
  struct Case {
    const char* what;
    std::vector<Vec2> stroke;
    std::size_t kept;
  };
  const double t = kStrokeToleranceMm;
  const Case cases[] = {
      {"straight", {{0, 0}, {1, 0}, {2, 0}, {3, 0}}, 2},
      {"bumps under the tolerance", {{0, 0}, {1, t / 2}, {2, -t / 2}, {3, 0}}, 2},
      {"bumps over it", {{0, 0}, {1, 2 * t}, {2, -2 * t}, {3, 0}}, 4},
      {"doubling back past the start", {{0, 0}, {-1, 0}, {1, 0}}, 3},
      {"running on past the end", {{0, 0}, {2, 0}, {1, 0}}, 3},
      {"a point off a closed loop's seam", {{0, 0}, {0, 3 * t}, {0, 0}}, 3},
      {"a point on a closed loop's seam", {{0, 0}, {t / 3, 0}, {0, 0}}, 2},
      {"two points", {{0, 0}, {0, 0}}, 2},
  };
  for (const Case& c : cases) {
    std::vector<Vec2> stroke = c.stroke;
    const std::size_t kept = DecimateStroke(stroke);
    EXPECT_EQ(kept, c.kept) << c.what;
    EXPECT_EQ(stroke[kept - 1].x, c.stroke.back().x) << c.what;
  }
}

}  // namespace
}  // namespace sheafwork::embedded
