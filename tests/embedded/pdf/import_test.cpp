// Pages of a file our writer made are added to another document with their
// object references renumbered; the values around them are left as they are.

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "embedded/pdf/pdf_syntax.h"

namespace sheafwork::embedded::pdf {
namespace {

const std::string kData = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/pdf";

std::vector<std::string> Lines(const std::string& file) {
  std::ifstream in(kData + "/" + file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line[0] != '#') lines.push_back(line);
  }
  EXPECT_FALSE(lines.empty()) << file;
  return lines;
}

TEST(PdfImportTest, ReferencesAreRenumberedWhereverTheyAreAndNowhereElse) {
  std::vector<int> renumbered(20);
  for (int i = 0; i < 20; ++i) renumbered[static_cast<std::size_t>(i)] = i + 100;
  for (const std::string& line : Lines("renumbering.txt")) {
    SCOPED_TRACE(line);
    const std::size_t arrow = line.find(" => ");
    ASSERT_NE(arrow, std::string::npos);
    const std::string text = line.substr(0, arrow);
    PdfParser parser(text, 0);
    PdfValue value;
    ASSERT_TRUE(parser.Value(value));
    EXPECT_EQ(parser.Position(), text.size());
    EXPECT_EQ(RenumberReferences(text, parser.References(), renumbered), line.substr(arrow + 4));
  }
  for (const std::string& line : Lines("bad-values.txt")) {
    SCOPED_TRACE(line);
    PdfParser parser(line, 0);
    PdfValue value;
    EXPECT_FALSE(parser.Value(value));
  }
}

}  // namespace
}  // namespace sheafwork::embedded::pdf
