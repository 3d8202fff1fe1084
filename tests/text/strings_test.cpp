#include "text/strings.h"

#include <gtest/gtest.h>

#include <string>

namespace sheafwork {
namespace {

TEST(StringsTest, TrimSpacesRemovesOnlySpaces) {
  struct Case {
    std::string in;
    std::string out;
  };
  const Case cases[] = {
      {"", ""}, {"   ", ""}, {"  a b  ", "a b"}, {"\tx\t", "\tx\t"}, {" \t x ", "\t x"}, {"x", "x"},
  };
  for (const Case& c : cases) EXPECT_EQ(TrimSpaces(c.in), c.out) << '"' << c.in << '"';
}

TEST(StringsTest, FoldCaseCoversTheCodePageLetters) {
  struct Case {
    char32_t in;
    char32_t out;
  };
  const Case cases[] = {
      {U'A', U'a'}, {U'Z', U'z'}, {U'a', U'a'}, {U'@', U'@'}, {U'[', U'['},
      {U'À', U'à'}, {U'É', U'é'}, {U'Þ', U'þ'}, {U'Š', U'š'}, {U'Œ', U'œ'},
      {U'Ž', U'ž'}, {U'Ÿ', U'ÿ'}, {U'×', U'×'},  // between the accented capitals, but not a letter
      {U'ß', U'ß'}, {U'€', U'€'},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FoldCase(c.in), c.out) << "U+" << std::hex << static_cast<unsigned>(c.in);
  }
}

TEST(StringsTest, ComparesIgnoringLetterCase) {
  struct Case {
    std::string a;
    std::string b;
    bool equal;
  };
  const Case cases[] = {
      {"", "", true},
      {"Orvane R15 Sheafwork List File", "ORVANE r15 sheafwork list file", true},
      {"PAR DÉFAUT", "par défaut", true},
      {"ÀÉÎÕÜ", "àéîõü", true},
      {"Œuvre", "œUVRE", true},
      {"Ÿ", "ÿ", true},
      {"abc", "abcd", false},
      {"abcd", "abc", false},
      {"é", "e", false},
      {"×", "÷", false},
      {"ß", "SS", false},
      // A malformed byte is only ever equal to the same malformed byte, never
      // to the letter whose code it happens to carry.
      {"\xE9", "\xE9", true},
      {"\xE9", "é", false},
      {"\xC9", "é", false},
      {"\xC9", "É", false},
      {"\xC9", "\xE9", false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(EqualsIgnoreCase(c.a, c.b), c.equal)
        << testing::PrintToString(c.a) << " vs " << testing::PrintToString(c.b);
    EXPECT_EQ(EqualsIgnoreCase(c.b, c.a), c.equal)
        << testing::PrintToString(c.b) << " vs " << testing::PrintToString(c.a);
  }
}

TEST(StringsTest, StartsAndEndsWithIgnoringLetterCase) {
  struct Case {
    std::string s;
    std::string part;
    bool starts;
    bool ends;
  };
  const Case cases[] = {
      {"DWG#12FILENAME", "dwg#", true, false},
      {"DWG#12FILENAME", "filename", false, true},
      {"plan.QX3", ".qx3", false, true},
      {"ÉTÉ", "été", true, true},
      {"Œil", "œ", true, false},
      {"abc", "", true, true},
      {"", "", true, true},
      {"", "a", false, false},
      {"dwg", "DWG#", false, false},
      {"x", "xx", false, false},
      // Part of a character is not a character: "É" is C3 89.
      {"É", "\xC3", false, false},
      {"É", "\x89", false, false},
      {"café", "\xA9", false, false},
      // Malformed bytes match themselves.
      {"a\xE9", "a\xE9", true, true},
      {"x\xE9", "\xE9", false, true},
      {"\xE9x", "\xE9", true, false},
      {"\x80", "\x80", true, true},  // a lone continuation byte
      {"plan\xA9", "\xA9", false, true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(StartsWithIgnoreCase(c.s, c.part), c.starts)
        << testing::PrintToString(c.s) << " starts with " << testing::PrintToString(c.part);
    EXPECT_EQ(EndsWithIgnoreCase(c.s, c.part), c.ends)
        << testing::PrintToString(c.s) << " ends with " << testing::PrintToString(c.part);
  }
}

}  // namespace
}  // namespace sheafwork
