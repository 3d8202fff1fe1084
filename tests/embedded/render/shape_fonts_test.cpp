// Text in stroke fonts: our own, and shape fonts found along the font search
// path (a drawing written by ezdxf, tests/data/fonts/make_drawing.py, with
// styles using our test fonts, drawn at one drawing unit per vector length).

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "embedded/render/frontend.h"
#include "embedded/render/render_test_support.h"
#include "embedded/render/shape_font.h"
#include "embedded/render/shape_glyphs.h"
#include "embedded/render/stroke_font.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using testing::ExpectNear;
using testing::Recorded;

const std::string kFonts = sheafwork::testing::TestData("fonts");

std::vector<Recorded> Draw(const std::string& searchPath) {
  const Drawing d = testing::ReadTestDrawing("fonts/shape_fonts.dxf");
  FrontendOptions options;
  options.fontSearchPath = searchPath;
  testing::FixedMeasure measure;
  options.textMeasure = &measure;
  return testing::DrawLayout(d, testing::ModelOf(d), options).items;
}

bool Near(Vec2 a, Vec2 b) { return std::hypot(a.x - b.x, a.y - b.y) < 1e-6; }

// Whether some polyline runs through `points` in order, from its first point.
bool HasStroke(const std::vector<Recorded>& items, std::initializer_list<Vec2> points) {
  return std::any_of(items.begin(), items.end(), [&](const Recorded& r) {
    if (r.kind != Recorded::Kind::Polyline || r.points.size() != points.size()) return false;
    return std::equal(r.points.begin(), r.points.end(), points.begin(), Near);
  });
}

TEST(ShapeFontsTest, WithoutTheFilesOurStrokeFontStandsInAndGreekComesFromTheFallbackFace) {
  for (const std::string& searchPath : {kFonts, std::string()}) {
    SCOPED_TRACE("search path: " + searchPath);
    const std::vector<Recorded> items = Draw(searchPath);
    // α in romans.shx, which is nowhere: filled glyph outlines of the
    // fallback face, not the placeholder box.
    bool filled = false;
    for (const Recorded& r : items) {
      bool inBand = !r.points.empty();
      for (const Vec2& p : r.points) inBand = inBand && p.y > 66 && p.y < 78;
      if (!inBand) continue;
      EXPECT_EQ(r.kind, Recorded::Kind::Fill);
      filled = filled || r.kind == Recorded::Kind::Fill;
    }
    EXPECT_TRUE(filled);
  }
  // No files: the L of "LO" is our stroke font's, not trait.shx's.
  EXPECT_FALSE(HasStroke(Draw(""), {{11, 16}, {11, 10}, {15, 10}}));
}

// Shapes of our test fonts (tests/data/fonts/*.shp) played into glyphs: the
// expected boxes and advances are worked out by hand from the sources, in
// vector lengths, and compared in cap heights.
std::string FontPath(const std::string& name) { return kFonts + "/" + name; }

double Deg(double d) { return d * std::numbers::pi / 180; }

TEST(ShapeGlyphsTest, ShapeCodesDrawWhatTheirSourceSays) {
  // Fractional arcs of radius 3 starting at the pen, their offsets in
  // 256ths of an octant: from 45° + 56/256 of 45° (about 55°) to 90° +
  // 28/256 (about 95°) counter-clockwise, or to 0° + 28/256 clockwise.
  const double start = 45 + 56 * 45.0 / 256;
  const double endCcw = 90 + 28 * 45.0 / 256, endCw = 28 * 45.0 / 256;
  const double cx = -3 * std::cos(Deg(start)), cy = -3 * std::sin(Deg(start));
  struct Case {
    const char* file;
    std::uint32_t shape;
    double advance;
    double minX, minY, maxX, maxY;  ///< the strokes' box
    std::size_t strokes;
    double unit;  ///< vector lengths per cap height
  };
  const Case cases[] = {
      {"trait.shx", 'L', 6, 1, 0, 5, 6, 1, 6},
      {"trait.shx", 'O', 6, 1, 1, 5, 5, 1, 6},    // octant arc: the whole circle
      {"trait.shx", '1', 1, 0, 0, 1, 6, 1, 6},    // code 9 up to (0,0)
      {"trait.shx", 'E', 6, 0, 0, 4, 6, 2, 6},    // subshape and position stack
      {"trait.shx", 'H', 1, 0, 0, 1, 2, 1, 6},    // scale ×2 then ÷2
      {"trait.shx", 'V', 1, 0, 0, 1, 0, 1, 6},    // code 14: vertical-only move skipped
      {"trait.shx", 'S', -6, -6, 0, 3, 6, 1, 6},  // bulge 127: a half circle on the right
      // Counter-clockwise: through the top of the circle.
      {"trait.shx", 'C', cx + 3 * std::cos(Deg(endCcw)), cx + 3 * std::cos(Deg(endCcw)), 0, 0,
       cy + 3, 1, 6},
      {"trait.shx", 'c', cx + 3 * std::cos(Deg(endCw)), 0, cy + 3 * std::sin(Deg(endCw)),
       cx + 3 * std::cos(Deg(endCw)), 0, 1, 6},
      {"trait.shx", 256, 3, -1, 4, 1, 6, 1, 6},
      {"trait.shx", ' ', 6, 0, 0, 0, 0, 0, 6},
      {"uni.shx", 0x394, 5, 0, 0, 4, 6, 1, 6},  // the 'A' as a two-byte subshape
      {"uni.shx", 0x3B1, 2, -4, -2, 0, 2, 1, 6},
      {"big.shx", 0xD6D0, 7, 0, 0, 6, 8, 2, 8},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.file) + " shape " + std::to_string(c.shape));
    const ShapeFile file = ShapeFile::Read(FontPath(c.file));
    const std::optional<StrokeGlyph> glyph = ShapeGlyph(file, c.shape);
    ASSERT_TRUE(glyph.has_value());
    constexpr double kTol = 1e-3;
    EXPECT_NEAR(glyph->advance, c.advance / c.unit, kTol);
    EXPECT_EQ(glyph->sizes.size(), c.strokes);
    if (c.strokes == 0) {
      EXPECT_TRUE(glyph->box.Empty());
      continue;
    }
    ExpectNear(glyph->box,
               Box2::Of({c.minX / c.unit, c.minY / c.unit}, {c.maxX / c.unit, c.maxY / c.unit}),
               kTol);
  }
}

TEST(StrokeFontTest, EveryGlyphFitsItsCellAndTextBoundsAreTheBoxOfItsStrokes) {
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
  // Text is culled on bounds from the glyph boxes before its strokes are
  // made: they must be the box of those strokes, whatever the spacing, with
  // marks, missing characters and blanks.
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
