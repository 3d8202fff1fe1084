// Text drawn as strokes is also in the PDF as invisible text where it is
// drawn: pdftotext finds every character.

#include <gtest/gtest.h>

#include <string>

#include "embedded/pdf/document.h"
#include "embedded/render/pdf_backend.h"
#include "fakes/temp_folder.h"
#include "support/pdf_reading.h"
#include "text/utf8.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::TempFolder;

using pdf::testing::PdfText;

// Past the codes one font can hold, the characters go on in more fonts, a
// line switching between them as it needs.
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
  const std::string text = PdfText(pdf, "-raw");
  EXPECT_NE(text.find(line), std::string::npos) << text;
}

}  // namespace
}  // namespace sheafwork::embedded
