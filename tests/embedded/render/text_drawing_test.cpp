#include "embedded/render/text_drawing.h"

#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <string>
#include <vector>

#include "embedded/render/frontend.h"
#include "embedded/render/plot_job.h"
#include "embedded/render/render_test_support.h"
#include "embedded/render/stroke_font.h"
#include "fakes/temp_folder.h"
#include "support/pdf_reading.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

std::size_t CountOf(const std::vector<Recorded>& items, Recorded::Kind kind) {
  return ItemsOf(items, kind).size();
}

void AddStyle(Drawing& d, const std::string& name, const std::string& file,
              const std::string& family = {}) {
  TextStyle style;
  style.name = name;
  style.fontFile = file;
  style.trueTypeFamily = family;
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

// The drawings of tests/data/dxf/render (make_drawings.py there says what
// each holds).
Drawing Read(const std::string& name) { return ReadTestDrawing("dxf/render/" + name); }

TEST(TextDrawingTest, StrokeTextIsLeftOutOnlyWhenNoneOfItsStrokesReachesTheCullBox) {
  // Text is left out early on a bound of its glyphs' boxes; what it draws
  // must not depend on that: a box touching only a corner of the strokes
  // keeps all of them, a box beside them (within the bound of a turned or
  // slanted text) keeps none.
  const Affine2 maps[] = {
      Affine2::Translation(50, 20) * Affine2::Scaling(4, 4),
      Affine2::Translation(50, 20) * Affine2::Rotation(Radians(35)) * Affine2::Scaling(4, 4),
      Affine2{-3, 0, 1.5, 4, 50, 20},  // mirrored and slanted
  };
  const auto draw = [](const Affine2& map, const std::optional<Box2>& cull) {
    RecordingBackend rec;
    DrawStrokeLine(rec, ShapeFace::Builtin(), "Coupe A-A", 1.1, map, Style{}, cull);
    return rec.items;
  };
  for (const Affine2& map : maps) {
    const std::vector<Recorded> all = draw(map, std::nullopt);
    ASSERT_FALSE(all.empty());
    Box2 drawn;
    Vec2 highest = all.front().points.front();
    for (const Recorded& r : all) {
      for (const Vec2& p : r.points) {
        drawn.Extend(p);
        if (p.y > highest.y) highest = p;
      }
    }
    const double gap = 0.05;
    const Box2 touching =
        Box2::Of({highest.x - gap, highest.y - gap}, {highest.x + gap, highest.y + 1});
    const Box2 above = Box2::Of({drawn.min.x, drawn.max.y + gap}, {drawn.max.x, drawn.max.y + 10});
    const Box2 far = Box2::Of({-500, -500}, {-400, -400});
    const std::vector<Recorded> kept = draw(map, touching);
    ASSERT_EQ(kept.size(), all.size());
    for (std::size_t i = 0; i < all.size(); ++i) ExpectNear(kept[i].points, all[i].points, 0);
    EXPECT_TRUE(draw(map, above).empty());
    EXPECT_TRUE(draw(map, far).empty());
  }
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
    ASSERT_EQ(points.size(), c.xs.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
      EXPECT_NEAR(points[i].x, 100 + 2 * c.xs[i], 1e-9);
      EXPECT_NEAR(points[i].y, 2 * c.y, 1e-9);
    }
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

TEST(TextDrawingTest, DefaultTextIsFilledOutlines) {
  struct Case {
    int horizontal;
    double left, right;  ///< where the text may lie along x
  };
  // "HI" 10 high at (50, 20): about 15 wide in a sans-serif face.
  const Case cases[] = {{0, 50, 80}, {2, 20, 50}};
  for (const Case& c : cases) {
    RecordingBackend backend;
    backend.outlineText = true;  // a backend with no text of its own
    TextRun run;
    run.text = "HI";
    run.height = 10;
    run.horizontalAlign = c.horizontal;
    run.toSheet = Affine2::Translation(50, 20);
    backend.DrawText(run, Style{0x00FF00, 0.25});
    ASSERT_FALSE(backend.items.empty());
    std::size_t loops = 0;
    for (const Recorded& r : backend.items) {
      ASSERT_EQ(r.kind, Recorded::Kind::Fill);
      EXPECT_EQ(r.style.rgb, 0x00FF00u);
      EXPECT_EQ(std::accumulate(r.loopSizes.begin(), r.loopSizes.end(), std::size_t{0}),
                r.points.size());
      loops += r.loopSizes.size();
    }
    EXPECT_GE(loops, 2u);  // one outline per letter at least
    const Box2 box = BoxOf(backend.items, Recorded::Kind::Fill);
    EXPECT_NEAR(box.min.y, 20, 0.1);  // on the baseline
    EXPECT_NEAR(box.max.y, 30, 0.3);  // cap height 10
    EXPECT_GE(box.min.x, c.left);
    EXPECT_LE(box.max.x, c.right);
    EXPECT_GT(box.max.x - box.min.x, 8);
  }
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

TEST(TextDrawingTest, PdfPlotShowsFormattedAndShapeFontText) {
  const Drawing d = Read("formatted_text.dxf");
  sheafwork::testing::TempFolder folder;
  PlotJob job = MakeJob(d, ModelOf(d), OneToOneSettings(200));
  job.outputPath = folder.File("texte.pdf");
  RunPlotJob(job);
  const int dpi = 100;
  const QImage image = pdf::testing::RasterisePage(job.outputPath, 1, dpi, folder.File("texte"));
  if (image.isNull()) GTEST_SKIP() << "pdftoppm is not available";
  const double k = dpi / 25.4;
  // The stroke-font title: ink along its line, nothing just above it.
  const double title = StrokeFont::Get().Advance("Élévation Sud Ø25") * 10;
  EXPECT_GT(InkShare(image, k, Box2::Of({10, 170}, {10 + title, 180})), 0.05);
  EXPECT_LT(InkShare(image, k, Box2::Of({10, 185}, {10 + title, 195})), 0.001);
  EXPECT_LT(InkShare(image, k, Box2::Of({10 + title + 2, 168}, {200, 182})), 0.001);
  // The multi-line text: three lines from the top of the first at y = 140.
  EXPECT_GT(InkShare(image, k, Box2::Of({10, 134}, {40, 140})), 0.05);             // "Gras et"
  EXPECT_GT(InkShare(image, k, Box2::Of({35, 134}, {80, 140}), 0xFF0000), 0.02);   // "rouge" in red
  EXPECT_LT(InkShare(image, k, Box2::Of({10, 134}, {30, 140}), 0xFF0000), 0.001);  // "Gras" not red
  EXPECT_GT(InkShare(image, k, Box2::Of({10, 108}, {45, 120})), 0.05);    // "Grand" twice as high
  EXPECT_LT(InkShare(image, k, Box2::Of({100, 60}, {200, 130})), 0.001);  // nothing further
}

}  // namespace
}  // namespace sheafwork::embedded
