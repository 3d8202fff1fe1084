// Text drawn as strokes (shape fonts, the stroke font standing in for a
// missing one) is also in the PDF as invisible text where it is drawn:
// pdftotext finds it, every character, at its place on the sheet.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "embedded/dxf/reader.h"
#include "embedded/pdf/document.h"
#include "embedded/render/pdf_backend.h"
#include "embedded/render/plot_job.h"
#include "embedded/render/render_test_support.h"
#include "fakes/cups_queue.h"
#include "fakes/temp_folder.h"
#include "text/utf8.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::RunCommand;
using sheafwork::testing::TempFolder;

const std::string kData = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data";
constexpr double kPointsPerMm = 72 / 25.4;

bool HavePdftotext() { return std::system("pdftotext -v >/dev/null 2>&1") == 0; }

// Plots the model of `dxf` at 1:1 on a 150 × 100 mm sheet into `pdf`.
void PlotModel(const std::string& dxf, const std::string& fontSearchPath, const std::string& pdf) {
  const Drawing d = ReadDxfFile(dxf);
  const Layout* model = nullptr;
  for (const Layout& l : d.layouts) {
    if (l.IsModel()) model = &l;
  }
  ASSERT_NE(model, nullptr);
  PlotJob job = testing::MakeJob(d, *model, testing::OneToOneSettings(150, 100));
  job.fontSearchPath = fontSearchPath;
  job.outputPath = pdf;
  RunPlotJob(job);
}

std::string TextOf(const std::string& pdf, const std::string& options = "") {
  int status = 0;
  const std::string text = RunCommand("pdftotext " + options + " '" + pdf + "' -", status);
  EXPECT_EQ(status, 0) << text;
  return text;
}

struct WordBox {
  double x0 = 0, y0 = 0, x1 = 0, y1 = 0;  ///< sheet mm, y down from the top
};

// The box pdftotext -bbox gives `word`, in millimetres; false when absent.
bool FindWord(const std::string& boxes, const std::string& word, WordBox& box) {
  const std::size_t at = boxes.find(">" + word + "<");
  if (at == std::string::npos) return false;
  const std::size_t line = boxes.rfind("<word", at);
  if (std::sscanf(boxes.c_str() + line, "<word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\"",
                  &box.x0, &box.y0, &box.x1, &box.y1) != 4) {
    return false;
  }
  for (double* v : {&box.x0, &box.y0, &box.x1, &box.y1}) *v /= kPointsPerMm;
  return true;
}

TEST(SearchableTextTest, StrokeFontTextIsFoundWithEveryCharacterWhereItIsDrawn) {
  if (!HavePdftotext()) GTEST_SKIP() << "pdftotext missing";
  TempFolder folder;
  const std::string pdf = folder.File("plume.pdf");
  PlotModel(kData + "/dxf/searchable-text/searchable_text.dxf", "", pdf);
  const std::string text = TextOf(pdf);
  for (const char* line : {"Façade Ø25 ° ± Ω ø ⌀", "Coupe AA", "Légende", "Échelle 1:50"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << " in:\n" << text;
  }

  // Where the words are: x from the left, the top and bottom from the
  // sheet's top edge (100 mm). The first text's baseline is at 40 mm, its
  // capitals 5 mm tall; the multi-line text hangs from 90 mm, 4 mm capitals;
  // the turned text runs up from (130, 10).
  const std::string boxes = TextOf(pdf, "-bbox");
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
    WordBox box;
    ASSERT_TRUE(FindWord(boxes, p.word, box)) << boxes;
    const auto expectNear = [](double found, double wanted, double tolerance) {
      if (wanted >= 0) {
        EXPECT_NEAR(found, wanted, tolerance);
      }
    };
    expectNear(box.x0, p.left, 1.0);
    expectNear(box.y0, p.top, 1.5);
    expectNear(box.x1, p.right, 1.5);
    expectNear(box.y1, p.bottom, 1.5);
  }
  WordBox turned;
  ASSERT_TRUE(FindWord(boxes, "Coupe", turned));
  EXPECT_GT(turned.y1 - turned.y0, 3 * (turned.x1 - turned.x0)) << "runs up the sheet";
}

TEST(SearchableTextTest, ShapeFontTextIsFoundBigFontAndUnicodeFontsIncluded) {
  if (!HavePdftotext()) GTEST_SKIP() << "pdftotext missing";
  TempFolder folder;
  const std::string pdf = folder.File("formes.pdf");
  const std::string fonts = kData + "/fonts";
  PlotModel(fonts + "/shape_fonts.dxf", fonts, pdf);
  const std::string text = TextOf(pdf);
  // trait.shx, its big font, the Unicode font, and multi-line text moving
  // from one shape font to another.
  for (const char* word : {"LO", "\u4e2d", "\u0394\u03b1", "\u03b1", "O\u0394"}) {
    EXPECT_NE(text.find(word), std::string::npos) << word << " in:\n" << text;
  }
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
  const std::string text = TextOf(pdf, "-raw");
  EXPECT_NE(text.find(line), std::string::npos) << text;
}

}  // namespace
}  // namespace sheafwork::embedded
