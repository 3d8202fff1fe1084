#include "embedded/render/pdf_backend.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "embedded/model/referenced_files.h"
#include "embedded/pdf/document.h"
#include "embedded/render/pdf_book.h"
#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"
#include "support/pdf_reading.h"
#include "text/utf8.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;
using sheafwork::testing::TempFolder;
namespace pdft = pdf::testing;

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
const Style kRed{0xFF0000, 0.25};

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
        b.DrawPoint({1, 1}, kRed);
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
  const std::string area = ContentOf([&](Backend& b) { b.FillLoops(loops, sizes, kRed); });
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
  Drawing d = testing::ReadTestDrawing("dxf/pdf-parts/" + name);
  ResolveImageFiles(d, "");
  return d;
}

// The model of `drawing`, filed as `name`, on a `width` × `height` sheet.
PlotJob ModelJob(const Drawing& drawing, const std::string& name, double width, double height) {
  PlotJob job = testing::MakeJob(drawing, testing::ModelOf(drawing),
                                 testing::OneToOneSettings(width, height));
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
      try {
        book.AddSheetFrom(file, "plan.dxf", "plan.dxf", "Objet");
        ADD_FAILURE() << "added " << file;
      } catch (const PlotError& e) {
        EXPECT_EQ(std::string(e.what()).find(message + file), 0u) << e.what();
      }
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
