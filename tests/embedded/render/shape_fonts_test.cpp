// Text in stroke fonts: our own, and shape fonts found along the font search
// path (a drawing written by ezdxf, tests/data/fonts/make_drawing.py, with
// styles using our test fonts, drawn at one drawing unit per vector length).

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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

using testing::BoxIn;
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

// Shapes of our test fonts played into glyphs (tests/data/fonts/glyphs.tsv:
// what they must give, worked out by hand from the sources).
TEST(ShapeGlyphsTest, ShapeCodesDrawWhatTheirSourceSays) {
  for (const auto& row : sheafwork::testing::ReadTestTable("fonts/glyphs.tsv")) {
    SCOPED_TRACE(row.where);
    const std::uint32_t shape = row[1].starts_with("0x")
                                    ? static_cast<std::uint32_t>(std::stoul(row[1], nullptr, 16))
                                    : static_cast<unsigned char>(row[1].at(0));
    const ShapeFile file = ShapeFile::Read(kFonts + "/" + row[0]);
    const std::optional<StrokeGlyph> glyph = ShapeGlyph(file, shape);
    ASSERT_TRUE(glyph.has_value());
    // Compared in cap heights.
    const double unit = std::stod(row[5]);
    constexpr double kTol = 1e-3;
    EXPECT_NEAR(glyph->advance, std::stod(row[2]) / unit, kTol);
    EXPECT_EQ(glyph->sizes.size(), std::stoul(row[4]));
    const Box2 box = BoxIn(row[3]);
    if (box.Empty()) {
      EXPECT_TRUE(glyph->box.Empty());
    } else {
      ExpectNear(
          glyph->box,
          Box2::Of({box.min.x / unit, box.min.y / unit}, {box.max.x / unit, box.max.y / unit}),
          kTol);
    }
  }
  // The big font's two-byte codes start with the lead bytes of its code page.
  const ShapeFile big = ShapeFile::Read(kFonts + "/big.shx");
  EXPECT_TRUE(big.IsLeadByte(0xD6));
  EXPECT_FALSE(big.IsLeadByte(0x41));
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
