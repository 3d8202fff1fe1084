#pragma once
// Decoding and encoding of single UTF-8 characters, shared by the text helpers.

#include <cstddef>
#include <string>
#include <string_view>

namespace sheafwork {

/// Where malformed bytes go when they are compared as characters: byte b
/// becomes kMalformedByte + b, above every real code point, so it only ever
/// equals the same malformed byte.
inline constexpr char32_t kMalformedByte = 0x110000;

struct DecodedChar {
  char32_t codePoint = 0;
  std::size_t length = 1;  ///< bytes consumed; 1 for a malformed byte
  bool valid = false;
};

/// Decodes the character starting at `pos` (which must be inside `s`). A
/// malformed, overlong, surrogate or truncated sequence yields valid == false
/// and consumes one byte, whose value is then in codePoint.
inline DecodedChar DecodeUtf8(std::string_view s, std::size_t pos) {
  const auto b0 = static_cast<unsigned char>(s[pos]);
  DecodedChar bad{b0, 1, false};
  if (b0 < 0x80) return {b0, 1, true};
  std::size_t len = 0;
  char32_t cp = 0;
  char32_t min = 0;
  if ((b0 & 0xE0) == 0xC0) {
    len = 2, cp = b0 & 0x1F, min = 0x80;
  } else if ((b0 & 0xF0) == 0xE0) {
    len = 3, cp = b0 & 0x0F, min = 0x800;
  } else if ((b0 & 0xF8) == 0xF0) {
    len = 4, cp = b0 & 0x07, min = 0x10000;
  } else {
    return bad;
  }
  if (pos + len > s.size()) return bad;
  for (std::size_t i = 1; i < len; ++i) {
    const auto b = static_cast<unsigned char>(s[pos + i]);
    if ((b & 0xC0) != 0x80) return bad;
    cp = (cp << 6) | (b & 0x3F);
  }
  if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return bad;
  return {cp, len, true};
}

inline void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

}  // namespace sheafwork
