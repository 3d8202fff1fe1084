#include "embedded/pdf/pdf_strings.h"

#include <array>
#include <cstdint>

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

// The code point starting at text[i]; moves i past it.
char32_t NextCodePoint(std::string_view text, std::size_t& i) {
  constexpr char32_t kReplacement = 0xFFFD;
  const auto lead = static_cast<unsigned char>(text[i++]);
  if (lead < 0x80) return lead;
  int extra = 0;
  char32_t cp = 0;
  char32_t min = 0;
  if ((lead & 0xE0) == 0xC0) {
    extra = 1, cp = lead & 0x1F, min = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    extra = 2, cp = lead & 0x0F, min = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    extra = 3, cp = lead & 0x07, min = 0x10000;
  } else {
    return kReplacement;
  }
  for (int k = 0; k < extra; ++k) {
    if (i >= text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
      return kReplacement;
    }
    cp = (cp << 6) | (static_cast<unsigned char>(text[i++]) & 0x3F);
  }
  if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return kReplacement;
  return cp;
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
    const char32_t cp = NextCodePoint(text, i);
    if (cp >= 0x10000) {
      const char32_t v = cp - 0x10000;
      AppendUnit(out, static_cast<std::uint16_t>(0xD800 + (v >> 10)));
      AppendUnit(out, static_cast<std::uint16_t>(0xDC00 + (v & 0x3FF)));
    } else {
      AppendUnit(out, static_cast<std::uint16_t>(cp));
    }
  }
  out += '>';
  return out;
}

std::string DateString(std::time_t when) {
  std::tm utc{};
  gmtime_r(&when, &utc);
  std::array<char, 32> buffer{};
  const std::size_t n = std::strftime(buffer.data(), buffer.size(), "D:%Y%m%d%H%M%SZ", &utc);
  return std::string(buffer.data(), n);
}

}  // namespace sheafwork::embedded::pdf
