#include "text/windows1252.h"

#include <gtest/gtest.h>

#include <string>

namespace sheafwork {
namespace {

TEST(Windows1252Test, EveryByteSurvivesARoundTrip) {
  std::string all;
  for (int b = 0; b < 256; ++b) {
    const std::string one(1, static_cast<char>(b));
    const std::string utf8 = Windows1252ToUtf8(one);
    EXPECT_TRUE(IsValidUtf8(utf8)) << "byte " << b;
    const Windows1252Text back = Utf8ToWindows1252(utf8);
    EXPECT_EQ(back.bytes, one) << "byte " << b;
    EXPECT_EQ(back.replaced, 0u) << "byte " << b;
    all += one;
  }
  const Windows1252Text back = Utf8ToWindows1252(Windows1252ToUtf8(all));
  EXPECT_EQ(back.bytes, all);
  EXPECT_EQ(back.replaced, 0u);
}

TEST(Windows1252Test, DecodesTheCodePageCharacters) {
  struct Case {
    unsigned char byte;
    std::string utf8;
  };
  const Case cases[] = {
      {0x41, "A"},
      {0x80, "€"},
      {0x8A, "Š"},
      {0x8C, "Œ"},
      {0x92, "’"},
      {0x9C, "œ"},
      {0x9F, "Ÿ"},
      {0xA0, "\xC2\xA0"},
      {0xE9, "é"},
      {0xFF, "ÿ"},
      // Bytes the code page leaves undefined become the C1 control of that value.
      {0x81, "\xC2\x81"},
      {0x8D, "\xC2\x8D"},
      {0x8F, "\xC2\x8F"},
      {0x90, "\xC2\x90"},
      {0x9D, "\xC2\x9D"},
  };
  for (const Case& c : cases) {
    const std::string byte(1, static_cast<char>(c.byte));
    EXPECT_EQ(Windows1252ToUtf8(byte), c.utf8) << "byte " << int{c.byte};
    EXPECT_EQ(Utf8ToWindows1252(c.utf8).bytes, byte) << "byte " << int{c.byte};
  }
}

TEST(Windows1252Test, ReplacesWhatTheCodePageCannotHold) {
  struct Case {
    std::string utf8;
    std::string bytes;
    std::size_t replaced;
  };
  const Case cases[] = {
      {"", "", 0},
      {"plan é.dwg", "plan \xE9.dwg", 0},
      {"日", "?", 1},
      {"a日b😀c", "a?b?c", 2},
      {"\xC2\x80", "?", 1},  // U+0080: the byte 0x80 is the euro sign, not this control
      // Malformed UTF-8: every byte of the sequence becomes '?'.
      {"\xC0\xAF", "??", 2},            // overlong '/'
      {"x\x80y", "x?y", 1},             // lone continuation byte
      {"\xED\xA0\x80", "???", 3},       // surrogate U+D800
      {"\xF4\x90\x80\x80", "????", 4},  // beyond U+10FFFF
      {"ab\xC3", "ab?", 1},             // truncated at the end
      {"\xE2\x82x", "??x", 2},          // truncated euro sign
      {"\xE9t\xE9", "?t?", 2},          // Windows-1252 bytes passed as UTF-8
  };
  for (const Case& c : cases) {
    const Windows1252Text out = Utf8ToWindows1252(c.utf8);
    EXPECT_EQ(out.bytes, c.bytes) << "input " << testing::PrintToString(c.utf8);
    EXPECT_EQ(out.replaced, c.replaced) << "input " << testing::PrintToString(c.utf8);
  }
}

TEST(Windows1252Test, RecognisesWellFormedUtf8) {
  const std::string valid[] = {
      "", "abc", "é", "€", "日本", "😀", "\xEF\xBF\xBF", "\xF4\x8F\xBF\xBF", std::string(1, '\0'),
  };
  for (const auto& s : valid) EXPECT_TRUE(IsValidUtf8(s)) << testing::PrintToString(s);

  const std::string invalid[] = {
      "\xE9",              // Windows-1252 é
      "\x80",              // lone continuation
      "\xC0\xAF",          // overlong
      "\xE0\x80\xAF",      // overlong in three bytes
      "\xED\xA0\x80",      // surrogate
      "\xF4\x90\x80\x80",  // beyond U+10FFFF
      "\xC3",              // truncated
      "ok\xE2\x82",        // truncated after valid text
      "\xF8\x88\x80\x80\x80",
      "\xFF",
  };
  for (const auto& s : invalid) EXPECT_FALSE(IsValidUtf8(s)) << testing::PrintToString(s);
}

}  // namespace
}  // namespace sheafwork
