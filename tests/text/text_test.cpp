#include <gtest/gtest.h>

#include <string>

#include "fakes/test_data.h"
#include "text/decimal.h"
#include "text/strings.h"
#include "text/windows1252.h"

namespace sheafwork {
namespace {

TEST(Windows1252Test, EveryByteSurvivesARoundTrip) {
  std::string all;
  for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
  const std::string utf8 = Windows1252ToUtf8(all);
  EXPECT_TRUE(IsValidUtf8(utf8));
  const Windows1252Text back = Utf8ToWindows1252(utf8);
  EXPECT_EQ(back.bytes, all);
  EXPECT_EQ(back.replaced, 0u);
  // Bytes 0x80-0x9F; 0x8D is undefined and becomes the C1 control.
  EXPECT_EQ(Windows1252ToUtf8("\x80\x8C\x8D\x92\x9F\xE9"), "€Œ\xC2\x8D’Ÿé");
}

TEST(Windows1252Test, ReplacesWhatTheCodePageCannotHoldAndCountsIt) {
  for (const auto& row : testing::ReadTestTable("text/windows1252.tsv")) {
    SCOPED_TRACE(row.where);
    const Windows1252Text out = Utf8ToWindows1252(row[0]);
    EXPECT_EQ(out.bytes, row[1]);
    EXPECT_EQ(out.replaced, std::stoul(row[2]));
  }
  EXPECT_TRUE(IsValidUtf8("a日😀\xF4\x8F\xBF\xBF"));
  for (const char* bad : {"\xF4\x90\x80\x80", "\xED\xA0\x80", "ok\xE2\x82"}) {
    EXPECT_FALSE(IsValidUtf8(bad)) << ::testing::PrintToString(bad);
  }
}

TEST(StringsTest, ComparesIgnoringLetterCase) {
  for (const auto& row : testing::ReadTestTable("text/case_insensitive.tsv")) {
    const bool result = row[0] == "equals"   ? EqualsIgnoreCase(row[1], row[2])
                        : row[0] == "starts" ? StartsWithIgnoreCase(row[1], row[2])
                                             : EndsWithIgnoreCase(row[1], row[2]);
    EXPECT_EQ(result, row[3] == "yes") << row.where;
  }
}

TEST(DecimalTest, NumbersAreShortAndNeverNegativeZero) {
  for (const auto& row : testing::ReadTestTable("text/decimals.tsv")) {
    std::string out;
    AppendDecimal(out, std::stod(row[0]), std::stoi(row[1]));
    EXPECT_EQ(out, row[2]) << row.where;
  }
}

}  // namespace
}  // namespace sheafwork
