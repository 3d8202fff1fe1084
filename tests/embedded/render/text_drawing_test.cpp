#include "embedded/render/text_drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "embedded/render/frontend.h"
#include "embedded/render/render_test_support.h"
#include "embedded/render/stroke_font.h"
#include "fakes/temp_folder.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

std::size_t CountOf(const std::vector<Recorded>& items, Recorded::Kind kind) {
  return std::count_if(items.begin(), items.end(),
                       [&](const Recorded& r) { return r.kind == kind; });
}

// The box of the points of every item of `kind`.
Box2 BoxOf(const std::vector<Recorded>& items, Recorded::Kind kind) {
  Box2 box;
  for (const Recorded& r : items) {
    if (r.kind == kind) box.Extend(BoxOf(r));
  }
  return box;
}

void AddStyle(Drawing& d, const std::string& name, const std::string& file) {
  TextStyle style;
  style.name = name;
  style.fontFile = file;
  d.textStyles.push_back(style);
  d.Reindex();
}

RecordingBackend DrawModel(const Drawing& d, TextMeasure* measure = nullptr) {
  FrontendOptions options;
  options.textMeasure = measure;
  return DrawLayout(d, ModelOf(d), options);
}

Text MakeText(const std::string& contents, const std::string& style, Vec2 at, double height) {
  Text t;
  t.text = contents;
  t.style = style;
  t.insert = {at.x, at.y, 0};
  t.height = height;
  return t;
}

TEST(TextDrawingTest, MTextRunsCarryTheirColourAndPlace) {
  // tests/data/dxf/render/make_drawings.py says what the drawing holds.
  const Drawing d = ReadTestDrawing("dxf/render/mtext_runs.dxf");
  FixedMeasure measure;
  const RecordingBackend rec = DrawModel(d, &measure);
  std::vector<const Recorded*> texts;
  for (const Recorded& r : rec.items) {
    if (r.kind == Recorded::Kind::Text) texts.push_back(&r);
  }
  ASSERT_EQ(texts.size(), 3u);
  EXPECT_EQ(texts[0]->text, "Rouge");
  EXPECT_EQ(texts[0]->style.rgb, 0xFF0000u);
  EXPECT_EQ(texts[1]->text, " noir");
  EXPECT_EQ(texts[1]->style.rgb, 0x0000FFu);  // the entity's colour 5
  EXPECT_EQ(texts[2]->text, "sous");
  // Rotated a quarter turn: the first line's baseline is 2 units right of
  // the insertion point, the second run 5 characters (10 units) above it.
  EXPECT_NEAR(texts[0]->points[0].x, 12, 1e-9);
  EXPECT_NEAR(texts[0]->points[0].y, 100, 1e-9);
  EXPECT_NEAR(texts[1]->points[0].y, 110, 1e-9);
  // "trait" in a shape font: strokes between the first and third lines.
  const Box2 strokes = BoxOf(rec.items, Recorded::Kind::Polyline);
  EXPECT_FALSE(strokes.Empty());
  EXPECT_GT(strokes.min.x, texts[0]->points[0].x);
  EXPECT_LT(strokes.max.x, texts[2]->points[0].x);
  // The underline of "sous", in the entity's colour, along the text.
  ASSERT_EQ(CountOf(rec.items, Recorded::Kind::Lines), 1u);
  const Box2 under = BoxOf(rec.items, Recorded::Kind::Lines);
  EXPECT_NEAR(under.max.y - under.min.y, 8, 1e-9);
  EXPECT_GT(under.min.x, texts[2]->points[0].x);
}

TEST(TextDrawingTest, TogglesDrawLinesAlongSingleLineText) {
  struct Case {
    const char* text;
    const char* style;
    int horizontalAlign;
    std::vector<double> xs;  ///< ends of the expected segments, in characters
    double y;                ///< their height, in cap heights
  };
  // Fixed-width TrueType face: one unit per byte; text 2 high at (100, 0).
  const Case cases[] = {
      {"a%%ub%%uc", "Arial", 0, {1, 2}, -0.2},
      {"%%Oab", "Arial", 0, {0, 2}, 1.2},               // on to the end
      {"%%ka%%kb%%kc", "Arial", 0, {0, 1, 2, 3}, 0.5},  // twice
      {"a%%ub%%u", "Arial", 2, {-1, 0}, -0.2},          // right-aligned
      {"%%%u", "Arial", 0, {}, 0},                      // "%" then a plain "u"
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    Drawing d = MakeDrawing();
    AddStyle(d, "Arial", "arial.ttf");
    Text t = MakeText(c.text, c.style, {100, 0}, 2);
    t.horizontalAlign = static_cast<std::int16_t>(c.horizontalAlign);
    t.alignPoint = {100, 0, 0};
    t.hasAlignPoint = true;
    ModelSpace(d).entities.push_back(MakeEntity(t));
    d.Reindex();
    FixedMeasure measure;
    const RecordingBackend rec = DrawModel(d, &measure);
    std::vector<Vec2> points;
    for (const Recorded& r : rec.items) {
      if (r.kind == Recorded::Kind::Lines)
        points.insert(points.end(), r.points.begin(), r.points.end());
    }
    std::vector<Vec2> expected;
    for (const double x : c.xs) expected.push_back({100 + 2 * x, 2 * c.y});
    ExpectNear(points, expected);
  }
  // With a shape font the lines follow the stroke font's widths.
  Drawing d = MakeDrawing();
  AddStyle(d, "Plume", "txt");
  ModelSpace(d).entities.push_back(MakeEntity(MakeText("%%uSous%%u sol", "Plume", {0, 0}, 10)));
  d.Reindex();
  const RecordingBackend rec = DrawModel(d);
  ASSERT_EQ(CountOf(rec.items, Recorded::Kind::Lines), 1u);
  const Box2 line = BoxOf(rec.items, Recorded::Kind::Lines);
  EXPECT_NEAR(line.min.x, 0, 1e-9);
  EXPECT_NEAR(line.max.x, StrokeFont::Get().Advance("Sous") * 10, 1e-9);
  EXPECT_NEAR(line.min.y, -2, 1e-9);
}

// A system without any font still shows its TrueType text, in the stroke
// font. The fonts are looked up once per process: the check runs in a
// process of its own whose font configuration has no folder.
TEST(TextDrawingDeathTest, WithoutAnyFontTextIsStroked) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const sheafwork::testing::TempFolder folder;
  const std::string config = folder.Write("fonts.conf", "<fontconfig></fontconfig>\n");
  EXPECT_EXIT(
      {
        setenv("FONTCONFIG_FILE", config.c_str(), 1);
        RecordingBackend backend;
        backend.outlineText = true;
        TextRun run;
        run.text = "HI";
        run.height = 10;
        backend.DrawText(run, Style{0x000000, 0.25});
        const bool stroked = CountOf(backend.items, Recorded::Kind::Polyline) > 0 &&
                             CountOf(backend.items, Recorded::Kind::Fill) == 0;
        std::exit(stroked ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace sheafwork::embedded
