#include "support/pdf_text.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "fakes/cups_queue.h"

namespace sheafwork::embedded::testing {

bool HavePdftotext() { return std::system("pdftotext -v >/dev/null 2>&1") == 0; }

std::string PdfText(const std::string& pdf, const std::string& options) {
  int status = 0;
  const std::string text =
      sheafwork::testing::RunCommand("pdftotext " + options + " '" + pdf + "' -", status);
  EXPECT_EQ(status, 0) << text;
  return text;
}

}  // namespace sheafwork::embedded::testing
