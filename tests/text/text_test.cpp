#include <gtest/gtest.h>

#include <limits>
#include <string>

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
  struct Case {
    std::string utf8, bytes;
    std::size_t replaced;
  };
  const Case cases[] = {
      {"a日b😀c", "a?b?c", 2},  {"\xC2\x80", "?", 1},  // U+0080 is not the euro byte
      {"\xC0\xAF", "??", 2},                          // overlong
      {"\xE2\x82x", "??x", 2},                        // truncated euro sign
      {"\xE9t\xE9", "?t?", 2},                        // Windows-1252 bytes passed as UTF-8
  };
  for (const Case& c : cases) {
    const Windows1252Text out = Utf8ToWindows1252(c.utf8);
    EXPECT_EQ(out.bytes, c.bytes) << testing::PrintToString(c.utf8);
    EXPECT_EQ(out.replaced, c.replaced) << testing::PrintToString(c.utf8);
  }
  EXPECT_TRUE(IsValidUtf8("a日😀\xF4\x8F\xBF\xBF"));
  for (const char* bad : {"\xF4\x90\x80\x80", "\xED\xA0\x80", "ok\xE2\x82"}) {
    EXPECT_FALSE(IsValidUtf8(bad)) << testing::PrintToString(bad);
  }
}

TEST(StringsTest, TrimsOnlySpaces) {
  EXPECT_EQ(TrimSpaces("   "), "");
  EXPECT_EQ(TrimSpaces(" \t a b\t "), "\t a b\t");
}

TEST(StringsTest, ComparesIgnoringLetterCase) {
  EXPECT_TRUE(EqualsIgnoreCase("PAR DÉFAUT Œuvre Ÿ Þ", "par défaut œUVRE ÿ þ"));
  EXPECT_FALSE(EqualsIgnoreCase("×", "÷"));  // between the accented capitals
  EXPECT_FALSE(EqualsIgnoreCase("abc", "abcd"));
  EXPECT_FALSE(EqualsIgnoreCase("abcd", "abc"));
  EXPECT_TRUE(EqualsIgnoreCase("\xE9", "\xE9"));
  EXPECT_FALSE(EqualsIgnoreCase("\xC9", "é"));  // a malformed byte is not a letter
  EXPECT_FALSE(EqualsIgnoreCase("\xC9", "\xE9"));

  EXPECT_TRUE(StartsWithIgnoreCase("DWG#12FILENAME", "dwg#"));
  EXPECT_FALSE(StartsWithIgnoreCase("dwg", "DWG#"));
  EXPECT_TRUE(EndsWithIgnoreCase("plan.QX3", ".qx3"));
  EXPECT_FALSE(EndsWithIgnoreCase("x", "xx"));
  EXPECT_FALSE(StartsWithIgnoreCase("É", "\xC3"));  // part of a character
  EXPECT_FALSE(EndsWithIgnoreCase("café", "\xA9"));
  EXPECT_TRUE(EndsWithIgnoreCase("plan\xA9", "\xA9"));
}

TEST(DecimalTest, NumbersAreShortAndNeverNegativeZero) {
  struct Case {
    double value;
    int decimals;
    const char* text;
  } cases[] = {
      {0.5, 3, "0.5"},
      {12.0, 3, "12"},
      {-3.25, 1, "-3.2"},  // to_chars rounds half to even
      {1.23456, 3, "1.235"},
      {-0.0001, 3, "0"},
      {0.06, 6, "0.06"},
      {100, 0, "100"},
      {std::numeric_limits<double>::quiet_NaN(), 3, "0"},
      {std::numeric_limits<double>::infinity(), 3, "0"},
  };
  for (const Case& c : cases) {
    std::string out;
    AppendDecimal(out, c.value, c.decimals);
    EXPECT_EQ(out, c.text) << c.value;
  }
}

}  // namespace
}  // namespace sheafwork
