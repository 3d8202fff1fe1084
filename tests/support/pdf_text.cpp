#include "support/pdf_text.h"

#include <gtest/gtest.h>

#include <cstdio>
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

std::optional<Box2> WordBox(const std::string& bboxes, const std::string& word) {
  const std::size_t at = bboxes.find(">" + word + "<");
  if (at == std::string::npos) return std::nullopt;
  double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
  if (std::sscanf(bboxes.c_str() + bboxes.rfind("<word", at),
                  "<word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\"", &x0, &y0, &x1,
                  &y1) != 4) {
    return std::nullopt;
  }
  constexpr double kMmPerPoint = 25.4 / 72;
  return Box2::Of({x0 * kMmPerPoint, y0 * kMmPerPoint}, {x1 * kMmPerPoint, y1 * kMmPerPoint});
}

}  // namespace sheafwork::embedded::testing
