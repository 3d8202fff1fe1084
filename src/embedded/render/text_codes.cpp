#include "embedded/render/text_codes.h"

#include <cstdint>

#include "text/utf8.h"

namespace sheafwork::embedded {

namespace {

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Reads "+XXXX" after a \U at `pos`; returns the characters used, 0 if none.
std::size_t ReadUnicodeEscape(std::string_view text, std::size_t pos, std::uint32_t& cp) {
  if (pos >= text.size() || text[pos] != '+') return 0;
  if (pos + 5 > text.size()) return 0;
  cp = 0;
  for (std::size_t i = pos + 1; i < pos + 5; ++i) {  // exactly four digits
    const int v = HexValue(text[i]);
    if (v < 0) return 0;
    cp = cp * 16 + static_cast<std::uint32_t>(v);
  }
  return 5;
}

}  // namespace

void AppendWithSpecialCodes(std::string_view text, std::string& out) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%' || i + 2 >= text.size() || text[i + 1] != '%') {
      out.push_back(text[i]);
      continue;
    }
    switch (text[i + 2]) {
      case 'd':
      case 'D':
        out += "\xC2\xB0";
        break;
      case 'c':
      case 'C':
        out += "\xC3\x98";
        break;
      case 'p':
      case 'P':
        out += "\xC2\xB1";
        break;
      case '%':
        out.push_back('%');
        break;
      case 'u':
      case 'U':
      case 'o':
      case 'O':
      case 'k':
      case 'K':
        break;
      default:
        out.append(text.substr(i, 3));
        break;
    }
    i += 2;
  }
}

void AppendMTextPlain(std::string_view text, std::string& out) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '{' || c == '}') continue;
    if (c != '\\' || i + 1 >= text.size()) {
      plain.push_back(c);
      continue;
    }
    const char code = text[++i];
    switch (code) {
      case 'P':
      case 'N':
        plain.push_back('\n');
        break;
      case '~':
        plain.push_back(' ');
        break;
      case '\\':
      case '{':
      case '}':
        plain.push_back(code);
        break;
      case 'L':
      case 'l':
      case 'O':
      case 'o':
      case 'K':
      case 'k':
        break;
      case 'U': {
        std::uint32_t cp = 0;
        const std::size_t used = ReadUnicodeEscape(text, i + 1, cp);
        if (used == 0) {
          plain.push_back(code);
        } else {
          AppendUtf8(plain, cp);
          i += used;
        }
        break;
      }
      case 'S': {  // stacked text up to ';': "a^b", "a/b", "a#b" become "a/b"
        for (++i; i < text.size() && text[i] != ';'; ++i) {
          const char s = text[i];
          plain.push_back(s == '^' || s == '#' ? '/' : s);
        }
        break;
      }
      case 'f':
      case 'F':
      case 'H':
      case 'h':
      case 'W':
      case 'w':
      case 'Q':
      case 'q':
      case 'T':
      case 't':
      case 'C':
      case 'c':
      case 'A':
      case 'a':
      case 'p':
        while (i < text.size() && text[i] != ';') ++i;
        break;
      default:
        plain.push_back(code);
        break;
    }
  }
  AppendWithSpecialCodes(plain, out);
}

}  // namespace sheafwork::embedded
