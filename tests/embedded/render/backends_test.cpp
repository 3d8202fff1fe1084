// The backends that write a plot's file: HP-GL/2 (read back as a plotter
// draws it) and PDF (the content streams as written, the text layer, and a
// book of sheets).

#include "embedded/render/hpgl_backend.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "embedded/model/referenced_files.h"
#include "embedded/pdf/document.h"
#include "embedded/render/pdf_backend.h"
#include "embedded/render/pdf_book.h"
#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"
#include "support/hpgl_reader.h"
#include "support/image_probes.h"
#include "support/pdf_reading.h"
#include "text/utf8.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;
using sheafwork::testing::TempFolder;
namespace pdft = pdf::testing;

// HP-GL/2.

constexpr Style kRed{0xFF0000, 0.35};
constexpr Style kBlue{0x0000FF, 0.5};

TEST(HpglBackendTest, SetsUpThePlotAndAPenPerColour) {
  HpglBackend b(420, 297, "plan.dxf - \"A3\"");
  const std::vector<Vec2> line = {{10, 10}, {20, 10}};
  b.DrawPolyline(line, false, kRed);
  b.DrawPolyline(line, false, kBlue);
  b.DrawPolyline(line, false, Style{0xFF0000, 0.7});  // the red pen, wider
  b.DrawPolyline(line, false, kRed);
  const std::string file = b.Finish();
  const HpglPlot plot = ReadHpgl(file);

  EXPECT_EQ(file.rfind("IN;CO\"plan.dxf - 'A3'\";PS16800,11880;WU0;NP4;", 0), 0u) << file;
  EXPECT_EQ(file.substr(file.size() - 10), "PU;SP0;PG;");
  EXPECT_EQ(plot.All("PC"), (std::vector<std::string>{"PC1,255,0,0", "PC2,0,0,255"}));
  EXPECT_EQ(b.PenColors(), (std::vector<std::uint32_t>{0xFF0000, 0x0000FF}));
  // Widths with the pens; in the drawing only where a pen changes width.
  EXPECT_EQ(plot.All("PW"),
            (std::vector<std::string>{"PW0.35,1", "PW0.5,2", "PW0.7,1", "PW0.35,1"}));
  EXPECT_EQ(plot.All("SP"), (std::vector<std::string>{"SP1", "SP2", "SP1", "SP0"}));
  ASSERT_EQ(plot.strokes.size(), 4u);
  EXPECT_EQ(plot.strokes[1].pen, 2);
  EXPECT_DOUBLE_EQ(plot.strokes[2].widthMm, 0.7);
  EXPECT_DOUBLE_EQ(plot.strokes[3].widthMm, 0.35);
}

TEST(HpglBackendTest, PaletteSizesAndPensBeyondTheLast) {
  struct Case {
    int colours;
    std::string palette;
  };
  const std::vector<Vec2> line = {{1, 1}, {2, 2}};
  for (const Case& c : {Case{1, "NP2;"}, Case{3, "NP4;"}, Case{4, "NP8;"}, Case{300, "NP256;"}}) {
    HpglBackend b(100, 100, "");
    for (int i = 0; i < c.colours; ++i) {
      b.DrawPolyline(line, false, Style{static_cast<std::uint32_t>(i * 0x010203), 0.25});
    }
    const std::string file = b.Finish();
    EXPECT_NE(file.find(c.palette), std::string::npos) << c.colours;
    EXPECT_EQ(file.find("CO\""), std::string::npos);  // no title, no comment
    const int pens = std::min(c.colours, HpglBackend::kMaxPens);
    EXPECT_EQ(ReadHpgl(file).All("PC").size(), static_cast<std::size_t>(pens));
  }
  // Once the pens run out, a colour takes the nearest pen's.
  HpglBackend b(100, 100, "");
  for (int i = 0; i < HpglBackend::kMaxPens; ++i) {
    b.DrawPolyline(line, false, Style{static_cast<std::uint32_t>(i) << 16, 0.25});
  }
  b.DrawPolyline(line, false, Style{0x7F0101, 0.25});
  b.DrawPolyline(line, false, Style{0x000101, 0.25});  // the first pen's
  const HpglPlot plot = ReadHpgl(b.Finish());
  ASSERT_GE(plot.strokes.size(), 2u);
  EXPECT_EQ(plot.strokes[plot.strokes.size() - 2].pen, 0x7F + 1);
  EXPECT_EQ(plot.strokes.back().pen, 1);
}

TEST(HpglBackendTest, LongRunsAreSplitAndFarPointsClippedOntoTheLine) {
  HpglBackend b(100, 100, "");
  std::vector<Vec2> zigzag;
  for (int i = 0; i < 600; ++i) zigzag.push_back({i * 0.1, (i % 2) * 1.0});
  b.DrawPolyline(zigzag, false, kRed);
  // From the sheet to very far away: cut where the plotter's range ends,
  // in the same direction.
  b.DrawLines(std::vector<Vec2>{{0, 0}, {1e9, 1e9}}, kBlue);
  b.DrawLines(std::vector<Vec2>{{0, 0}, {std::nan(""), 1}}, kBlue);  // dropped
  const HpglPlot plot = ReadHpgl(b.Finish());
  std::size_t points = 0;
  for (const std::string& pd : plot.All("PD")) {
    const std::size_t n = (std::count(pd.begin(), pd.end(), ',') + 1) / 2;
    EXPECT_LE(n, 256u);
    points += n;
  }
  EXPECT_EQ(points, 599u + 1u);
  const auto& far = plot.strokes.back();
  ASSERT_EQ(far.points.size(), 2u);
  EXPECT_GT(far.points[1].x, 1e6);
  EXPECT_LT(far.points[1].x * 40, std::ldexp(1.0, 30));
  EXPECT_DOUBLE_EQ(far.points[1].x, far.points[1].y);
}

TEST(HpglBackendTest, ArcsAndCircles) {
  HpglBackend b(100, 100, "");
  b.DrawArc({50, 50}, 10, 0, std::numbers::pi / 2, kRed);
  b.DrawArc({50, 50}, 10, std::numbers::pi, -std::numbers::pi / 4, kRed);  // clockwise
  b.DrawArc({20, 20}, 5, 1, 2 * std::numbers::pi, kRed);
  b.DrawArc({70, 70}, 0.01, 0, 1, kRed);  // too small for the plotter: chords
  const std::string file = b.Finish();
  EXPECT_NE(file.find("PU2400,2000;PD;AA2000,2000,90,1;"), std::string::npos) << file;
  EXPECT_NE(file.find("PU1600,2000;PD;AA2000,2000,-45,1;"), std::string::npos) << file;
  EXPECT_NE(file.find("PU800,800;CI200,1;"), std::string::npos) << file;
  EXPECT_NE(file.find("CT1;"), std::string::npos);
  EXPECT_EQ(file.find("AA2800"), std::string::npos);

  const HpglPlot plot = ReadHpgl(file);
  const Box2 box = plot.InkExtents();
  EXPECT_NEAR(box.min.x, 15 - 0.175, 0.01);  // the circle's left
  EXPECT_NEAR(box.max.x, 70 + 0.175, 0.05);  // the tiny arc
  const QImage image = RenderHpgl(plot, 4);
  const auto ink = [&](double x, double y) { return InkNear(image, 4, {x, y}, 0); };
  EXPECT_TRUE(ink(50 + 10 * std::cos(0.7), 50 + 10 * std::sin(0.7)));
  EXPECT_FALSE(ink(50 + 10 * std::cos(-0.7), 50 + 10 * std::sin(-0.7)));
  EXPECT_TRUE(ink(50 + 10 * std::cos(2.8), 50 + 10 * std::sin(2.8)));  // above the left end
  EXPECT_FALSE(ink(50 + 10 * std::cos(3.5), 50 + 10 * std::sin(3.5)));
}

TEST(HpglBackendTest, ClipsAreInputWindowsAroundThePolygon) {
  HpglBackend b(100, 100, "");
  const std::vector<Vec2> line = {{0, 50}, {100, 50}};
  const std::vector<Vec2> frame = {{10.01, 20}, {60, 20}, {60, 70.99}, {10.01, 70.99}};
  const std::vector<Vec2> triangle = {{30, 10}, {90, 30}, {50, 80}};
  const std::vector<Vec2> elsewhere = {{80, 80}, {90, 80}, {90, 90}};
  b.PushClip(frame);
  b.DrawPolyline(line, false, kRed);
  b.PushClip(triangle);  // its box, within the frame
  b.DrawPolyline(line, false, kRed);
  b.PushClip(elsewhere);  // nothing left: nothing drawn
  b.DrawPolyline(line, false, kBlue);
  b.DrawPoint({85, 85}, kBlue);
  b.FillLoops(triangle, std::vector<int>{3}, kBlue);
  b.PopClip();
  b.PopClip();
  b.DrawPolyline(line, false, kRed);
  b.PopClip();
  b.DrawPolyline(line, false, kRed);
  b.PopClip();  // one too many: ignored
  const HpglPlot plot = ReadHpgl(b.Finish());
  EXPECT_EQ(plot.All("IW"),
            (std::vector<std::string>{"IW400,800,2400,2840", "IW1200,800,2400,2840",
                                      "IW1200,800,2400,2840", "IW400,800,2400,2840", "IW"}));
  EXPECT_TRUE(plot.fills.empty());
  ASSERT_EQ(plot.strokes.size(), 4u);
  EXPECT_EQ(plot.penColors.size(), 1u);  // the hidden blue never got a pen
  EXPECT_DOUBLE_EQ(plot.strokes[0].window.min.x, 10);
  EXPECT_DOUBLE_EQ(plot.strokes[1].window.min.x, 30);
  EXPECT_DOUBLE_EQ(plot.strokes[2].window.max.y, 71);
  EXPECT_TRUE(plot.strokes[3].window.Empty());
}

// PDF.

// What a PdfBackend writes for `draw`, all in one text.
template <typename Draw>
std::string ContentOf(Draw draw, pdf::OptionalContent* layers = nullptr) {
  std::string text;
  {
    pdf::ContentStream page([&](std::string chunk) { text += chunk; }, std::size_t{1} << 20);
    pdf::TextFonts fonts;
    {
      PdfBackend backend(page, fonts, layers);
      draw(backend);
    }
    page.Finish();
  }
  return text;
}

constexpr double kInch = 25.4;
const Style kBlack{0x000000, 0.25};
const Style kThinRed{0xFF0000, 0.25};

TEST(PdfBackendTest, WholeUnitsOf1200PerInchScaledToPointsOnce) {
  const std::string text = ContentOf([](Backend& b) {
    const Vec2 pairs[] = {{0, 0}, {kInch, kInch / 2}};
    b.DrawLines(pairs, kBlack);
  });
  EXPECT_EQ(text.rfind("0.06 0 0 0.06 0 0 cm\n1 J\n1 j\n", 0), 0u) << text;
  EXPECT_NE(text.find("0 0 m\n1200 600 l\nS\n"), std::string::npos) << text;
  EXPECT_EQ(Count(text, " cm\n"), 1u);
}

TEST(PdfBackendTest, LayersMarkWhatTheyDrawWithoutCrossingAClip) {
  const Vec2 low[] = {{0, 0}, {10, 0}};
  const Vec2 high[] = {{0, 5}, {10, 5}};
  const Vec2 square[] = {{0, 0}, {20, 0}, {20, 20}, {0, 20}};
  pdf::OptionalContent layers;
  const std::string text = ContentOf(
      [&](Backend& b) {
        b.BeginLayer("Murs");
        b.DrawLines(low, kBlack);
        b.BeginLayer("Murs");
        b.DrawLines(high, kBlack);  // the same layer's path goes on
        b.PushClip(square);
        b.DrawLines(low, kBlack);
        b.PopClip();
        b.BeginLayer("Cotes");
        b.DrawPoint({1, 1}, kThinRed);
        b.BeginLayer("Vide");  // draws nothing: no group
        b.BeginLayer("Murs");
        b.DrawLines(high, kBlack);
      },
      &layers);
  std::vector<std::string> marks;
  std::vector<std::string> open;  // "q" and "BDC" not yet ended
  std::string previous;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::string op = line.substr(line.rfind(' ') + 1);
    if (op == "BDC") marks.push_back(line);
    if (op == "q" || op == "BDC") open.push_back(op);
    if (op == "Q" || op == "EMC") {
      ASSERT_FALSE(open.empty()) << text;
      EXPECT_EQ(open.back(), op == "Q" ? "q" : "BDC") << "crossed at " << line << "\n" << text;
      open.pop_back();
    }
    if (op == "EMC") {
      EXPECT_TRUE(previous == "S" || previous == "f*") << text;  // painted
    }
    previous = op;
  }
  EXPECT_TRUE(open.empty()) << text;
  EXPECT_EQ(marks,
            (std::vector<std::string>{"/OC /L1 BDC", "/OC /L1 BDC", "/OC /L2 BDC", "/OC /L1 BDC"}))
      << text;
  EXPECT_EQ(layers.Size(), 2u);
  EXPECT_EQ(Count(text, "\nS\n"), 4u) << text;
}

TEST(PdfBackendTest, CirclesArcsPointsAndAreas) {
  const double r = kInch;  // 1200 units
  const std::string circle = ContentOf([&](Backend& b) { b.DrawArc({0, 0}, r, 0, 7, kBlack); });
  EXPECT_EQ(Count(circle, " c\n"), 4u) << circle;
  EXPECT_NE(circle.find("1200 0 m\n"), std::string::npos) << circle;
  EXPECT_NE(circle.find(" 1200 0 c\nh\n"), std::string::npos) << "closed where it began";

  // A quarter turn clockwise from the top ends on the right.
  const std::string arc = ContentOf([&](Backend& b) {
    b.DrawArc({0, 0}, r, M_PI / 2, -M_PI / 2, kBlack);
  });
  EXPECT_EQ(Count(arc, " c\n"), 1u) << arc;
  EXPECT_NE(arc.find("0 1200 m\n"), std::string::npos) << arc;
  EXPECT_NE(arc.find(" 1200 0 c\n"), std::string::npos) << arc;

  // A point is a round dot: a zero-length line as wide as the dot.
  const std::string point = ContentOf([](Backend& b) { b.DrawPoint({kInch, 0}, {0, 1.0}); });
  EXPECT_NE(point.find("47.24 w\n1200 0 m\n1200 0 l\nS\n"), std::string::npos) << point;

  const Vec2 loops[] = {{0, 0}, {10, 0}, {10, 10}, {2, 2}, {4, 2}, {4, 4}};
  const int sizes[] = {3, 3};
  const std::string area = ContentOf([&](Backend& b) { b.FillLoops(loops, sizes, kThinRed); });
  EXPECT_EQ(Count(area, "\nh\n"), 2u) << area;
  EXPECT_EQ(Count(area, "f*\n"), 1u) << area;
  EXPECT_NE(area.find("1 0 0 rg\n"), std::string::npos) << area;
}

TEST(PdfBackendTest, TextIsInTheTextLayerOnlyWhereItCanBeSeen) {
  TextRun run;
  run.text = "Cuisine";
  run.toSheet = Affine2::Translation(10, 10);
  run.height = 5;
  const std::vector<Vec2> around = {{0, 0}, {50, 0}, {50, 30}, {0, 30}};
  const std::vector<Vec2> elsewhere = {{100, 100}, {120, 100}, {120, 120}, {100, 120}};
  struct Case {
    const char* name;
    std::vector<std::vector<Vec2>> clips;
    std::size_t shown;
  } cases[] = {
      {"no clip", {}, 1},
      {"inside a clip", {around}, 1},
      {"clipped away", {elsewhere}, 0},
      {"in neither of two nested clips", {around, elsewhere}, 0},
      {"nothing passes an empty clip", {{}}, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string text = ContentOf([&](Backend& b) {
      for (const auto& clip : c.clips) b.PushClip(clip);
      b.DrawText(run, kBlack);
    });
    EXPECT_EQ(Count(text, "(Cuisine) Tj\n"), c.shown) << text;
    EXPECT_EQ(Count(text, "3 Tr\n"), c.shown);
    EXPECT_GT(Count(text, "f*\n"), 0u) << "the glyphs are drawn all the same";
  }
}

// Text drawn as strokes is also in the PDF as invisible text where it is
// drawn, and pdftotext finds every character: past the codes one font can
// hold, the characters go on in more fonts, a line switching between them as
// it needs.
TEST(SearchableTextTest, ManyDistinctCharactersAreAllFound) {
  if (!pdf::testing::HavePoppler()) GTEST_SKIP() << "poppler's tools are not installed";
  std::string line;
  for (char32_t c = 0x400; c < 0x4F0; ++c) AppendUtf8(line, c);  // Cyrillic, 240 characters
  line += " plan ";
  for (char32_t c = 0x3B1; c < 0x3C9; ++c) AppendUtf8(line, c);  // Greek small letters
  TempFolder folder;
  const std::string pdf = folder.File("alphabets.pdf");
  {
    pdf::Document document(pdf, {});
    pdf::ContentStream& page = document.BeginPage(2000, 100);
    {
      PdfBackend backend(page, document.Fonts());
      backend.TextDrawn(line, Affine2{650, 0, 0, 3, 10, 10});
    }
    document.EndPage();
    EXPECT_GE(document.Fonts().Size(), 2u);
    document.Close();
  }
  const std::string text = pdf::testing::PdfText(pdf, "-raw");
  EXPECT_NE(text.find(line), std::string::npos) << text;
}

// A book of sheets takes sheets painted into it and sheets written to a
// one-page file first and added from there; a file that cannot be added is
// named and the book goes on.

Drawing Read(const std::string& name) {
  Drawing d = ReadTestDrawing("dxf/pdf-parts/" + name);
  ResolveImageFiles(d, "");
  return d;
}

// The model of `drawing`, filed as `name`, on a `width` × `height` sheet.
PlotJob ModelJob(const Drawing& drawing, const std::string& name, double width, double height) {
  PlotJob job = MakeJob(drawing, ModelOf(drawing), OneToOneSettings(width, height));
  job.drawingName = name;
  job.layoutName = "Objet";
  return job;
}

TEST(PdfBookTest, ASheetFileThatCannotBeAddedIsNamedAndTheBookGoesOn) {
  TempFolder folder;
  const Drawing plan = Read("plan.dxf");
  const Drawing coupe = Read("coupe.dxf");
  const std::string part = folder.File("feuille.pdf");
  {
    PdfBook sheet(part);
    sheet.AddPage(ModelJob(plan, "plan.dxf", 150, 100));
    sheet.Close();
  }
  const std::string whole = TempFolder::Read(part);
  const std::vector<std::pair<std::string, std::string>> bad = {
      {folder.File("absent.pdf"), "impossible de lire le fichier PDF : "},
      {folder.Write("tronque.pdf", whole.substr(0, whole.size() / 2)),
       "le fichier PDF est tronqué ou n'a pas été écrit par Sheafwork : "},
  };
  const std::string path = folder.File("livre.pdf");
  {
    PdfBook book(path);
    book.AddPage(ModelJob(coupe, "coupe.dxf", 100, 60));
    for (const auto& [file, message] : bad) {
      EXPECT_THAT([&] { book.AddSheetFrom(file, "plan.dxf", "plan.dxf", "Objet"); },
                  ::testing::ThrowsMessage<PlotError>(::testing::StartsWith(message + file)));
    }
    EXPECT_EQ(book.Pages(), 1);
    book.AddSheetFrom(part, plan.path, "plan.dxf", "Objet");
    EXPECT_EQ(book.Pages(), 2);
    book.Close();
  }
  std::string error;
  EXPECT_EQ(pdft::Flat(pdft::ReadOutline(pdf::ReadPdfPart(path), error)),
            (std::vector<std::string>{"0 coupe.dxf 0", "1 Objet 0", "0 plan.dxf 1", "1 Objet 1"}));
  EXPECT_EQ(error, "");
}

}  // namespace
}  // namespace sheafwork::embedded
