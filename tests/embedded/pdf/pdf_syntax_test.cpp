// PDF syntax: content streams and strings as written, the standard font's
// widths, and values read back from a file of ours, their object references
// renumbered for another document and the values around them left as they
// are (tables in tests/data/pdf).

#include "embedded/pdf/content_stream.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "embedded/pdf/helvetica_widths.h"
#include "embedded/pdf/pdf_strings.h"
#include "embedded/pdf/pdf_syntax.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded::pdf {
namespace {

using sheafwork::testing::ReadTestTable;

TEST(ContentStreamTest, ChunksEndAtLineEndsAndTogetherAreTheWholeText) {
  std::vector<std::string> chunks;
  ContentStream content([&](std::string chunk) { chunks.push_back(std::move(chunk)); }, 50);
  std::string expected;
  for (int i = 0; i < 40; ++i) {
    content.Int(i).Int(-i * 1000).Op("m");
    content.Real(i / 3.0, 2).Op("w");
    expected += std::to_string(i) + " " + std::to_string(-i * 1000) + " m\n";
    std::string w;
    AppendDecimal(w, i / 3.0, 2);
    expected += w + " w\n";
  }
  content.Finish();
  ASSERT_GT(chunks.size(), 5u);
  EXPECT_EQ(content.Chunks(), chunks.size());
  std::string joined;
  for (const std::string& chunk : chunks) {
    EXPECT_EQ(chunk.back(), '\n');
    EXPECT_LT(chunk.size(), 50u + 20u);  // cut at the first line end past the size
    joined += chunk;
  }
  EXPECT_EQ(joined, expected);
  EXPECT_EQ(content.Bytes(), expected.size());
}

TEST(PdfStringsTest, LiteralAndTextStrings) {
  EXPECT_EQ(LiteralString("a (b) \\c"), "(a \\(b\\) \\\\c)");
  EXPECT_EQ(LiteralString("\xE9\n"), "(\\351\\012)");
  EXPECT_EQ(TextString("Plan"), "(Plan)");
  // é is U+00E9; 𝄞 (U+1D11E) takes a surrogate pair; a stray byte U+FFFD.
  EXPECT_EQ(TextString("\xC3\xA9"), "<FEFF00E9>");
  EXPECT_EQ(TextString("\xF0\x9D\x84\x9E"), "<FEFFD834DD1E>");
  EXPECT_EQ(TextString("a\xFF"), "<FEFF0061FFFD>");
  EXPECT_EQ(DateString(86400 * 365 + 3661), "D:19710101010101Z");
}

TEST(HelveticaWidthsTest, CountTheCharactersOfTheCodePage) {
  EXPECT_DOUBLE_EQ(HelveticaWidth(""), 0);
  EXPECT_DOUBLE_EQ(HelveticaWidth("ii"), 2 * HelveticaWidth("i"));
  EXPECT_GT(HelveticaWidth("W"), HelveticaWidth("i"));
  // Accented letters are as wide as their base letter.
  EXPECT_DOUBLE_EQ(HelveticaWidth("\xE9"), HelveticaWidth("e"));  // é
  EXPECT_DOUBLE_EQ(HelveticaWidth("\xC9"), HelveticaWidth("E"));  // É
  EXPECT_DOUBLE_EQ(HelveticaWidth("\n"), 0);
}

TEST(PdfImportTest, ReferencesAreRenumberedWhereverTheyAreAndNowhereElse) {
  std::vector<int> renumbered(20);
  std::iota(renumbered.begin(), renumbered.end(), 100);
  for (const auto& row : ReadTestTable("pdf/renumbering.txt")) {
    SCOPED_TRACE(row.where);
    const std::string& text = row[0];
    PdfParser parser(text, 0);
    PdfValue value;
    ASSERT_TRUE(parser.Value(value));
    EXPECT_EQ(parser.Position(), text.size());
    EXPECT_EQ(RenumberReferences(text, parser.References(), renumbered), row[1]);
  }
  for (const auto& row : ReadTestTable("pdf/bad-values.txt")) {
    SCOPED_TRACE(row.where);
    PdfParser parser(row[0], 0);
    PdfValue value;
    EXPECT_FALSE(parser.Value(value));
  }
}

}  // namespace
}  // namespace sheafwork::embedded::pdf
