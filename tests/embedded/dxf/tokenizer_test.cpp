#include "embedded/dxf/tokenizer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "embedded/dxf/reader.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::ReadTestData;
using ::testing::AllOf;
using ::testing::HasSubstr;

// A tag as read: its code, its value and the line (or byte offset) it
// starts on.
using Read = std::tuple<int, std::string, std::size_t>;

std::vector<Read> Tokenize(std::string_view bytes) {
  Tokenizer t(bytes, "t.dxf");
  std::vector<Read> out;
  Tag tag;
  while (t.Next(tag)) out.emplace_back(tag.code, std::string(tag.value), tag.line);
  return out;
}

TEST(TokenizerAscii, SplitsTagsWhateverTheLineEnds) {
  const std::vector<Read> tags = {{0, "SECTION", 1}, {2, "HEADER", 3}};
  // What each case shows, its bytes, the tags read.
  const std::vector<std::tuple<const char*, std::string, std::vector<Read>>> cases = {
      {"LF", "0\nSECTION\n2\nHEADER\n", tags},
      {"CR LF", "0\r\nSECTION\r\n2\r\nHEADER\r\n", tags},
      {"lone CR", "0\rSECTION\r2\rHEADER\r", tags},
      {"no final line end", "0\nSECTION\n2\nHEADER", tags},
      {"byte-order mark",
       "\xEF\xBB\xBF"
       "0\nSECTION\n2\nHEADER\n",
       tags},
      {"right-aligned codes", "  0\nSECTION\n  2\nHEADER\n", tags},
      {"code with trailing blanks", "0 \t\nSECTION\n2\nHEADER\n", tags},
      {"comments skipped",
       "999\nmade by hand\n0\nSECTION\n999\n\n2\nHEADER\n",
       {{0, "SECTION", 3}, {2, "HEADER", 7}}},
      {"stops at EOF, garbage ignored", "0\nSECTION\n2\nHEADER\n0\nEOF\n\x01garbage\nabc", tags},
      {"string values keep their spaces", "1\n  two words \n", {{1, "  two words ", 1}}},
      {"empty value", "1\n\n0\nEOF\n", {{1, "", 1}}},
      {"trailing blank lines", "0\nSECTION\n2\nHEADER\n\n\n  \n", tags},
  };
  for (const auto& [what, input, expected] : cases) EXPECT_EQ(Tokenize(input), expected) << what;
}

TEST(TokenizerAscii, ReadsNumbersInEveryCommonSpelling) {
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/numbers.tsv")) {
    SCOPED_TRACE(row.where);
    const std::string text = "40\n" + row[0] + "\n";
    Tokenizer t(text, "n.dxf");
    Tag tag;
    ASSERT_TRUE(t.Next(tag));
    EXPECT_EQ(tag.Double(), row[1] == "refused" ? std::nullopt : std::optional(std::stod(row[1])));
    if (row[2] != "-") {
      EXPECT_EQ(tag.Integer(), row[2] == "refused"
                                   ? std::nullopt
                                   : std::optional<std::int64_t>(std::stoll(row[2])));
    }
  }
}

// Binary files of tests/data/dxf/binary (make_binary.py): a header of
// release 12 (short group codes) or 2000 (long ones), then EOF and a tag
// after it; the width of the codes is found without the release too.
TEST(TokenizerBinary, ReadsShortAndLongGroupCodesByRelease) {
  for (const bool shortCodes : {true, false}) {
    const std::string name = shortCodes ? "dxf/binary/short-codes" : "dxf/binary/long-codes";
    EXPECT_EQ(Tokenizer(ReadTestData(name + "-no-version.dxf"), "b.dxf").HasShortCodes(),
              shortCodes);
    const std::string bytes = ReadTestData(name + ".dxf");
    Tokenizer t(bytes, "b.dxf");
    ASSERT_TRUE(t.IsBinary());
    EXPECT_EQ(t.HasShortCodes(), shortCodes);
    std::vector<Tag> tags;
    Tag tag;
    while (t.Next(tag)) tags.push_back(tag);
    ASSERT_EQ(tags.size(), shortCodes ? 9u : 10u);
    EXPECT_EQ(std::tuple(tags[3].value, tags[4].Double(), tags[5].Integer(), tags[6].Integer(),
                         tags[7].code, tags[8].code, tags[8].Integer()),
              std::tuple(shortCodes ? "AC1009" : "AC1015", 2.5, -3, 70000, 1001, 1070, 7));
    if (!shortCodes) {
      EXPECT_EQ(std::tuple(tags[9].code, tags[9].value.size(), tags[9].Integer()),
                std::tuple(290, 1u, 1));
    }
    EXPECT_EQ(tags[0].line, 22u);  // byte offsets
  }
}

TEST(TokenizerBinary, TruncatedValueNamesTheOffset) {
  try {
    Tokenize(ReadTestData("dxf/binary/value-cut.dxf"));  // inside the double of code 10
    FAIL();
  } catch (const DxfError& e) {
    EXPECT_THAT(e.what(), AllOf(HasSubstr("t.dxf, octet"), HasSubstr("valeur du code 10")));
  }
  EXPECT_THROW(Tokenize(ReadTestData("dxf/binary/string-unterminated.dxf")), DxfError);
}

}  // namespace
}  // namespace sheafwork::embedded
