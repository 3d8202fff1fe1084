#include "embedded/pdf/pdf_strings.h"

#include <array>
#include <cstdint>

#include "text/utf8.h"

namespace sheafwork::embedded::pdf {

namespace {

constexpr char kHex[] = "0123456789ABCDEF";

bool PlainAscii(std::string_view text) {
  for (char c : text) {
    const auto u = static_cast<unsigned char>(c);
    if (u < 0x20 || u > 0x7E) return false;
  }
  return true;
}

void AppendUnit(std::string& out, std::uint16_t unit) {
  for (int shift = 12; shift >= 0; shift -= 4) out += kHex[(unit >> shift) & 0xF];
}

}  // namespace

std::string LiteralString(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() + 2);
  out += '(';
  for (char c : bytes) {
    const auto u = static_cast<unsigned char>(c);
    if (c == '(' || c == ')' || c == '\\') {
      out += '\\';
      out += c;
    } else if (u < 0x20 || u > 0x7E) {
      out += '\\';
      out += static_cast<char>('0' + ((u >> 6) & 7));
      out += static_cast<char>('0' + ((u >> 3) & 7));
      out += static_cast<char>('0' + (u & 7));
    } else {
      out += c;
    }
  }
  out += ')';
  return out;
}

std::string TextString(std::string_view text) {
  if (PlainAscii(text)) return LiteralString(text);
  std::string out = "<FEFF";
  for (std::size_t i = 0; i < text.size();) {
    const DecodedChar next = DecodeUtf8(text, i);
    i += next.length;
    AppendUtf16Hex(out, next.valid ? next.codePoint : 0xFFFD);
  }
  out += '>';
  return out;
}

std::string TextStringToUtf8(std::string_view bytes) {
  std::string out;
  if (bytes.size() < 2 || bytes[0] != '\xFE' || bytes[1] != '\xFF') {
    for (char c : bytes) AppendUtf8(out, static_cast<unsigned char>(c));
    return out;
  }
  const auto unit = [&](std::size_t i) {
    return static_cast<char32_t>((static_cast<unsigned char>(bytes[i]) << 8) |
                                 static_cast<unsigned char>(bytes[i + 1]));
  };
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    char32_t c = unit(i);
    if (c >= 0xD800 && c < 0xDC00 && i + 3 < bytes.size() && unit(i + 2) >= 0xDC00 &&
        unit(i + 2) < 0xE000) {
      c = 0x10000 + ((c - 0xD800) << 10) + (unit(i + 2) - 0xDC00);
      i += 2;
    } else if (c >= 0xD800 && c < 0xE000) {
      c = 0xFFFD;
    }
    AppendUtf8(out, c);
  }
  return out;
}

void AppendUtf16Hex(std::string& out, char32_t c) {
  if (c >= 0x10000) {
    const char32_t v = c - 0x10000;
    AppendUnit(out, static_cast<std::uint16_t>(0xD800 + (v >> 10)));
    AppendUnit(out, static_cast<std::uint16_t>(0xDC00 + (v & 0x3FF)));
  } else {
    AppendUnit(out, static_cast<std::uint16_t>(c));
  }
}

std::string DateString(std::time_t when) {
  std::tm utc{};
#ifdef _WIN32
  gmtime_s(&utc, &when);
#else
  gmtime_r(&when, &utc);
#endif
  std::array<char, 32> buffer{};
  const std::size_t n = std::strftime(buffer.data(), buffer.size(), "D:%Y%m%d%H%M%SZ", &utc);
  return std::string(buffer.data(), n);
}

}  // namespace sheafwork::embedded::pdf
