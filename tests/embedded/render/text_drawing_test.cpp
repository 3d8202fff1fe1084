// Text as the frontend draws it: multi-line and single-line text, its runs,
// lines and backgrounds (drawings of tests/data/dxf/render and
// tests/data/dxf/mtext, make_drawings.py there says what each holds), and
// the stroke fonts: our own and shape fonts found along the font search path
// (tests/data/fonts, make_drawing.py there, with styles using our test
// fonts, drawn at one drawing unit per vector length).

#include "embedded/render/text_drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "embedded/render/frontend.h"
#include "embedded/render/render_test_support.h"
#include "embedded/render/shape_font.h"
#include "embedded/render/shape_glyphs.h"
#include "embedded/render/stroke_font.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

const std::string kFonts = sheafwork::testing::TestData("fonts");

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

RecordingBackend DrawModel(const Drawing& d, TextMeasure* measure = nullptr,
                           const std::string& fontSearchPath = "") {
  FrontendOptions options;
  options.textMeasure = measure;
  options.fontSearchPath = fontSearchPath;
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
  ExpectNear(texts[0]->points[0], {12, 100});
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
  // Fixed-width TrueType face: one unit per byte; text 2 high at (100, 0).
  for (const auto& row : sheafwork::testing::ReadTestTable("render/text_toggles.tsv")) {
    SCOPED_TRACE(row.where);
    Drawing d = MakeDrawing();
    AddStyle(d, "Arial", "arial.ttf");
    Text t = MakeText(row[0], "Arial", {100, 0}, 2);
    t.horizontalAlign = static_cast<std::int16_t>(std::stoi(row[1]));
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
    for (const double x : NumbersIn(row[2]))
      expected.push_back({100 + 2 * x, 2 * std::stod(row[3])});
    ExpectNear(points, expected);
  }
  // With a shape font the lines follow the stroke font's widths.
  Drawing d = MakeDrawing();
  AddStyle(d, "Plume", "txt");
  ModelSpace(d).entities.push_back(MakeEntity(MakeText("%%uSous%%u sol", "Plume", {0, 0}, 10)));
  d.Reindex();
  const RecordingBackend rec = DrawModel(d);
  ASSERT_EQ(CountOf(rec.items, Recorded::Kind::Lines), 1u);
  ExpectNear(BoxOf(rec.items, Recorded::Kind::Lines),
             Box2::Of({0, -2}, {StrokeFont::Get().Advance("Sous") * 10, -2}));
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

// Stroke fonts.

TEST(ShapeFontsTest, WithoutTheFilesOurStrokeFontStandsInAndGreekComesFromTheFallbackFace) {
  const Drawing d = ReadTestDrawing("fonts/shape_fonts.dxf");
  FixedMeasure measure;
  for (const std::string& searchPath : {kFonts, std::string()}) {
    SCOPED_TRACE("search path: " + searchPath);
    const std::vector<Recorded> items = DrawModel(d, &measure, searchPath).items;
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
  const Vec2 traitL[] = {{11, 16}, {11, 10}, {15, 10}};
  for (const Recorded& r : DrawModel(d, &measure).items) {
    EXPECT_FALSE(r.kind == Recorded::Kind::Polyline && r.points.size() == 3 &&
                 std::equal(r.points.begin(), r.points.end(), traitL, [](Vec2 a, Vec2 b) {
                   return std::hypot(a.x - b.x, a.y - b.y) < 1e-6;
                 }));
  }
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

// Multi-line and single-line text of drawings written by another program
// (tests/data/dxf/mtext, made by make_drawings.py there), every TrueType
// character one cap height wide.
RecordingBackend DrawFile(const std::string& name) {
  FixedMeasure measure;
  return DrawModel(ReadTestDrawing("dxf/mtext/" + name), &measure);
}

TEST(MTextRenderTest, TextFlowsIntoColumns) {
  for (const char* file : {"columns-r2018.dxf", "columns-r2007.dxf"}) {
    SCOPED_TRACE(file);
    const RecordingBackend rec = DrawFile(file);
    for (const auto& row : sheafwork::testing::ReadTestTable("dxf/mtext/columns.tsv")) {
      SCOPED_TRACE(row.where);
      const double top = std::stod(row[0]), pitch = std::stod(row[1]);
      const std::vector<double> limits = NumbersIn(row[2]);
      std::set<std::size_t> used;
      for (const Recorded& item : rec.items) {
        if (item.kind != Recorded::Kind::Text) continue;
        const Vec2 at = item.points[0];
        if (at.y > top || at.y <= top - 45) continue;
        const double slot = at.x / pitch;
        ASSERT_NEAR(slot, std::round(slot), 1e-9) << item.text;
        const auto column = static_cast<std::size_t>(std::round(slot));
        ASSERT_LT(column, limits.size()) << item.text;
        if (limits[column] > 0) {
          EXPECT_LE(top - at.y, limits[column]) << item.text;
        }
        used.insert(column);
      }
      EXPECT_EQ(used.size(), std::stoul(row[3]));
    }
  }
}

TEST(MTextRenderTest, BackgroundFillsAndFramesTheText) {
  const RecordingBackend rec = DrawFile("background.dxf");
  // background.tsv beside the drawing says how each text is filled and framed.
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/mtext/background.tsv")) {
    SCOPED_TRACE(row.where);
    const std::optional<std::uint32_t> fill =
        row[1] == "-" ? std::nullopt : std::optional(std::stoul(row[1], nullptr, 16));
    const Box2 box = BoxIn(row[3]);
    std::size_t textAt = rec.items.size();
    int fills = 0, frames = 0;
    for (std::size_t i = 0; i < rec.items.size(); ++i) {
      const Recorded& item = rec.items[i];
      if (item.kind == Recorded::Kind::Text && item.text == row[0]) textAt = i;
      const Box2 b = BoxOf(item);
      const bool same =
          std::abs(b.min.x - box.min.x) < 1e-9 && std::abs(b.min.y - box.min.y) < 1e-9 &&
          std::abs(b.max.x - box.max.x) < 1e-9 && std::abs(b.max.y - box.max.y) < 1e-9;
      if (!same) continue;
      if (item.kind == Recorded::Kind::Fill) {
        ++fills;
        if (fill) {
          EXPECT_EQ(item.style.rgb, *fill);
        }
        EXPECT_LT(i, textAt) << "the fill is drawn before its text";
      }
      if (item.kind == Recorded::Kind::Polyline) ++frames;
    }
    EXPECT_EQ(fills, fill ? 1 : 0);
    EXPECT_EQ(frames, row[2] == "framed" ? 1 : 0);
  }
}

TEST(MTextRenderTest, FractionBarsAreThinBandsBetweenTheDigits) {
  // "A \S1<kind>2; B", text height 5, rows with their top at y = 30, 18, 6.
  const RecordingBackend rec = DrawFile("stacked.dxf");
  struct Row {
    double top;
    int bands;  ///< the bar, the slash, or nothing for a tolerance
  };
  const Row rows[] = {{30, 1}, {18, 1}, {6, 0}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.top);
    std::vector<Box2> bands;
    const Recorded* numerator = nullptr;
    const Recorded* denominator = nullptr;
    for (const Recorded& item : rec.items) {
      const Box2 b = BoxOf(item);
      if (b.min.y < row.top - 8 || b.max.y > row.top + 2) continue;
      EXPECT_NE(item.kind, Recorded::Kind::Lines) << "a bar drawn with the pen";
      if (item.kind == Recorded::Kind::Fill) bands.push_back(b);
      if (item.kind == Recorded::Kind::Text && item.text == "1") numerator = &item;
      if (item.kind == Recorded::Kind::Text && item.text == "2") denominator = &item;
    }
    ASSERT_EQ(bands.size(), static_cast<std::size_t>(row.bands));
    if (row.top != 30) continue;
    // The bar: thin, as long as the digits are wide (0.6 of the height),
    // in the gap between the numerator's baseline and the top of the
    // denominator.
    ASSERT_NE(numerator, nullptr);
    ASSERT_NE(denominator, nullptr);
    EXPECT_GT(bands[0].Height(), 0);
    EXPECT_LT(bands[0].Height(), 0.5);
    EXPECT_GE(bands[0].Width(), 3);
    EXPECT_LT(bands[0].max.y, numerator->points[0].y);
    EXPECT_GT(bands[0].min.y, denominator->points[0].y + 3);
  }
}

TEST(MTextRenderTest, BackwardsFittedTextStaysBetweenItsPoints) {
  // Rows 12 apart of text from x = 0 to x = 30: backwards, upside down or
  // both, fitted or aligned.
  const RecordingBackend rec = DrawFile("mirrored.dxf");
  for (int row = 0; row < 6; ++row) {
    SCOPED_TRACE(row);
    const double y = 12.0 * row;
    Box2 box;  // of the strokes (the text is in a shape font) within the row
    for (const Recorded& item : rec.items) {
      const Box2 b = BoxOf(item);
      if (item.kind == Recorded::Kind::Polyline && b.min.y >= y - 6 && b.max.y <= y + 6 &&
          b.Width() < 60) {
        box.Extend(b);
      }
    }
    ASSERT_FALSE(box.Empty());
    EXPECT_GE(box.min.x, -0.5);
    EXPECT_LE(box.max.x, 30.5);
    EXPECT_GT(box.Width(), 25);
  }
}

}  // namespace
}  // namespace sheafwork::embedded
