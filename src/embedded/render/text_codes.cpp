#include "embedded/render/text_codes.h"

#include "text/utf8.h"

namespace sheafwork::embedded {

std::optional<char> CaretCharacter(char next) {
  if (next == ' ') return '^';
  if (next >= '@' && next <= '_') return static_cast<char>(next - '@');
  return std::nullopt;
}

void AppendWithSpecialCodes(std::string_view text, std::string& out) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '^' && i + 1 < text.size()) {
      if (const std::optional<char> c = CaretCharacter(text[i + 1])) {
        if (*c == '\t') {
          out.push_back(' ');
        } else if (*c == '^') {
          out.push_back('^');
        }
        ++i;
        continue;
      }
    }
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

}  // namespace sheafwork::embedded
