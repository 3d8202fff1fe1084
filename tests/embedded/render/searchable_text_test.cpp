// Text drawn as strokes (shape fonts, the stroke font standing in for a
// missing one) is also in the PDF as invisible text where it is drawn:
// pdftotext finds it, every character, at its place on the sheet.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "embedded/pdf/document.h"
#include "embedded/render/pdf_backend.h"
#include "embedded/render/plot_job.h"
#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "support/pdf_text.h"
#include "text/utf8.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::TempFolder;

using testing::HavePdftotext;
using testing::PdfText;

// Plots the model of `dxf` at 1:1 on a 150 × 100 mm sheet into `pdf`.
void PlotModel(const std::string& dxf, const std::string& fontSearchPath, const std::string& pdf) {
  const Drawing d = testing::ReadTestDrawing(dxf);
  PlotJob job = testing::MakeJob(d, testing::ModelOf(d), testing::OneToOneSettings(150, 100));
  job.fontSearchPath = fontSearchPath;
  job.outputPath = pdf;
  RunPlotJob(job);
}

TEST(SearchableTextTest, StrokeFontTextIsFoundWithEveryCharacterWhereItIsDrawn) {
  if (!HavePdftotext()) GTEST_SKIP() << "pdftotext missing";
  TempFolder folder;
  const std::string pdf = folder.File("plume.pdf");
  PlotModel("dxf/searchable-text/searchable_text.dxf", "", pdf);
  const std::string text = PdfText(pdf);
  for (const char* line : {"Façade Ø25 ° ± Ω ø ⌀", "Coupe AA", "Légende", "Échelle 1:50"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << " in:\n" << text;
  }

  // Where the words are: x from the left, the top and bottom from the
  // sheet's top edge (100 mm). The first text's baseline is at 40 mm, its
  // capitals 5 mm tall; the multi-line text hangs from 90 mm, 4 mm capitals;
  // the turned text runs up from (130, 10).
  const std::string boxes = PdfText(pdf, "-bbox");
  struct Place {
    const char* word;
    double left, top, right, bottom;  ///< mm; a negative value is not checked
  } places[] = {
      {"Façade", 10, 100 - 45, -1, 100 - 40},
      {"Légende", 10, 100 - 90, -1, 100 - 86},
      {"Coupe", 125, -1, 130, 100 - 10},
  };
  for (const Place& p : places) {
    SCOPED_TRACE(p.word);
    const std::optional<Box2> box = testing::WordBox(boxes, p.word);
    ASSERT_TRUE(box.has_value()) << boxes;
    const auto expectNear = [](double found, double wanted, double tolerance) {
      EXPECT_TRUE(wanted < 0 || std::abs(found - wanted) <= tolerance) << found << " vs " << wanted;
    };
    expectNear(box->min.x, p.left, 1.0);
    expectNear(box->min.y, p.top, 1.5);
    expectNear(box->max.x, p.right, 1.5);
    expectNear(box->max.y, p.bottom, 1.5);
  }
  const std::optional<Box2> turned = testing::WordBox(boxes, "Coupe");
  ASSERT_TRUE(turned.has_value());
  EXPECT_GT(turned->Height(), 3 * turned->Width()) << "runs up the sheet";
}

TEST(SearchableTextTest, ShapeFontTextIsFoundBigFontAndUnicodeFontsIncluded) {
  if (!HavePdftotext()) GTEST_SKIP() << "pdftotext missing";
  TempFolder folder;
  const std::string pdf = folder.File("formes.pdf");
  PlotModel("fonts/shape_fonts.dxf", sheafwork::testing::TestData("fonts"), pdf);
  const std::string text = PdfText(pdf);
  // trait.shx, its big font, the Unicode font, and multi-line text moving
  // from one shape font to another.
  for (const char* word : {"LO", "\u4e2d", "\u0394\u03b1", "\u03b1", "O\u0394"}) {
    EXPECT_NE(text.find(word), std::string::npos) << word << " in:\n" << text;
  }
}

// TrueType text is in the PDF's text layer too, found where it is drawn.
TEST(SearchableTextTest, TrueTypeTextIsFoundWhereItIsDrawn) {
  if (!HavePdftotext()) GTEST_SKIP() << "pdftotext missing";
  Drawing d = testing::MakeDrawing();
  Text t;
  t.text = "Façade sud ½ Ω";  // Ω is not in the Windows code page, but is found
  t.insert = {10, 40, 0};
  t.height = 8;
  Text turned = t;
  turned.text = "Coupe AA";
  turned.insert = {130, 10, 0};
  turned.rotation = 90;
  testing::ModelSpace(d).entities = {testing::MakeEntity(t), testing::MakeEntity(turned)};
  d.Reindex();
  TempFolder folder;
  PlotJob job = testing::MakeJob(d, testing::ModelLayout(d), testing::OneToOneSettings(150, 100));
  job.outputPath = folder.File("texte.pdf");
  RunPlotJob(job);
  const std::string text = PdfText(job.outputPath);
  EXPECT_NE(text.find("Façade sud ½ Ω"), std::string::npos) << text;
  EXPECT_NE(text.find("Coupe AA"), std::string::npos) << text;
  // The first word starts at 10 mm on the 100 mm tall sheet, its cap
  // height above its baseline at 40 mm.
  const std::optional<Box2> word = testing::WordBox(PdfText(job.outputPath, "-bbox"), "Façade");
  ASSERT_TRUE(word.has_value());
  EXPECT_NEAR(word->min.x, 10, 2);
  EXPECT_NEAR(word->min.y, 100 - 48, 3);
  EXPECT_NEAR(word->max.y, 100 - 40, 3);
}

// Past the codes one font can hold, the characters go on in more fonts, a
// line switching between them as it needs.
TEST(SearchableTextTest, ManyDistinctCharactersAreAllFound) {
  if (!HavePdftotext()) GTEST_SKIP() << "pdftotext missing";
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
  const std::string text = PdfText(pdf, "-raw");
  EXPECT_NE(text.find(line), std::string::npos) << text;
}

}  // namespace
}  // namespace sheafwork::embedded
