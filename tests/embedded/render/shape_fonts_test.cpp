// Text in shape fonts found along the font search path: a drawing written
// by ezdxf (tests/data/fonts/make_drawing.py) with styles using our test
// fonts, drawn at one drawing unit per vector length.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "embedded/render/frontend.h"
#include "embedded/render/shape_font.h"
#include "render_test_support.h"

namespace sheafwork::embedded {
namespace {

using testing::Recorded;

const std::string kFonts = testing::DataPath("fonts");

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

// Whether some polyline lies on the circle, all round it.
bool HasCircle(const std::vector<Recorded>& items, Vec2 center, double radius,
               std::uint32_t rgb = 0) {
  return std::any_of(items.begin(), items.end(), [&](const Recorded& r) {
    if (r.kind != Recorded::Kind::Polyline || r.points.size() < 8) return false;
    if (rgb != 0 && r.style.rgb != rgb) return false;
    Box2 box;
    for (const Vec2& p : r.points) {
      if (std::fabs(std::hypot(p.x - center.x, p.y - center.y) - radius) > 1e-6) return false;
      box.Extend(p);
    }
    return box.max.x - box.min.x > 2 * radius * 0.99 && box.max.y - box.min.y > 2 * radius * 0.99;
  });
}

TEST(ShapeFontsTest, TextIsDrawnWithTheShapeFontsFoundOnTheSearchPath) {
  const std::vector<Recorded> items = Draw(kFonts);
  // "LO" in trait.shx: the L's three points, the O's circle.
  EXPECT_TRUE(HasStroke(items, {{11, 16}, {11, 10}, {15, 10}}));
  EXPECT_TRUE(HasCircle(items, {19, 13}, 2));
  // A character of code page 936 from the style's big font.
  EXPECT_TRUE(HasStroke(items, {{11, 30}, {11, 38}}));
  EXPECT_TRUE(HasStroke(items, {{10, 34}, {16, 34}}));
  // The Unicode font named without its extension: Greek from its shapes.
  EXPECT_TRUE(HasStroke(items, {{10, 50}, {12, 56}, {14, 50}}));
  EXPECT_TRUE(HasCircle(items, {13, 50}, 2));
  // Multi-line text: an inline colour on the style's font, then \F to
  // another shape font.
  EXPECT_TRUE(HasCircle(items, {43, 19}, 2, 0xFF0000));
  EXPECT_TRUE(HasStroke(items, {{46, 16}, {48, 22}, {50, 16}}));
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

TEST(ShapeFontsTest, StandardShapeFontsHaveAStandIn) {
  struct Case {
    const char* name;
    bool standard;
  };
  const Case cases[] = {
      {"romans.shx", true}, {"ROMANS", true},        {"C:\\Fonts\\isocp.SHX", true},
      {"txt", true},        {" simplex.shx ", true}, {"gdt.shx", false},
      {"arial.ttf", false}, {"maison.shx", false},   {"", false}};
  for (const Case& c : cases) EXPECT_EQ(IsStandardShapeFont(c.name), c.standard) << c.name;
  EXPECT_EQ(FindShapeFontFile("UNI", kFonts), kFonts + "/uni.shx");  // ".shx" added, any case
  EXPECT_EQ(FindShapeFontFile("romans.shx", kFonts), "");
}

}  // namespace
}  // namespace sheafwork::embedded
