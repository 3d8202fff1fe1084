#include "text/windows1252.h"

#include <array>
#include <cstdint>

#include "text/utf8.h"

namespace sheafwork {
namespace {

// Code points of bytes 0x80 to 0x9F; every other byte is its own code point.
// Undefined bytes map to the C1 control of the same value.
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80-87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88-8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90-97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98-9F
};

int EncodeCodePoint(char32_t cp) {
  if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<int>(cp);
  for (std::size_t i = 0; i < kHighControls.size(); ++i) {
    if (kHighControls[i] == cp) return static_cast<int>(0x80 + i);
  }
  return -1;
}

}  // namespace

std::string Windows1252ToUtf8(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8);
  for (unsigned char b : bytes) {
    if (b < 0x80) {
      out.push_back(static_cast<char>(b));
      continue;
    }
    AppendUtf8(out, b < 0xA0 ? kHighControls[b - 0x80] : char32_t{b});
  }
  return out;
}

Windows1252Text Utf8ToWindows1252(std::string_view utf8) {
  Windows1252Text result;
  result.bytes.reserve(utf8.size());
  std::size_t pos = 0;
  while (pos < utf8.size()) {
    const auto c = static_cast<unsigned char>(utf8[pos]);
    if (c < 0x80) {
      result.bytes.push_back(static_cast<char>(c));
      ++pos;
      continue;
    }
    const DecodedChar d = DecodeUtf8(utf8, pos);
    pos += d.length;
    const int byte = d.valid ? EncodeCodePoint(d.codePoint) : -1;
    if (byte < 0) {
      result.bytes.push_back('?');
      ++result.replaced;
    } else {
      result.bytes.push_back(static_cast<char>(byte));
    }
  }
  return result;
}

bool IsValidUtf8(std::string_view bytes) {
  std::size_t pos = 0;
  while (pos < bytes.size()) {
    const DecodedChar d = DecodeUtf8(bytes, pos);
    if (!d.valid) return false;
    pos += d.length;
  }
  return true;
}

}  // namespace sheafwork
