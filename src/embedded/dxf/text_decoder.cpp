#include "embedded/dxf/text_decoder.h"

#include <cstring>

#include "text/strings.h"
#include "text/utf8.h"
#include "text/windows1252.h"

namespace sheafwork::embedded {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool NeedsWork(std::string_view raw) {
  for (const char c : raw) {
    if ((static_cast<unsigned char>(c) & 0x80) != 0 || c == '\\') return true;
  }
  return false;
}

std::string Utf8WithReplacement(std::string_view raw) {
  std::string out;
  out.reserve(raw.size());
  for (std::size_t i = 0; i < raw.size();) {
    const DecodedChar d = DecodeUtf8(raw, i);
    AppendUtf8(out, d.valid ? d.codePoint : kReplacement);
    i += d.length;
  }
  return out;
}

// Replaces every \U+XXXX (four hex digits) by its character.
std::string DecodeUnicodeEscapes(std::string text) {
  if (text.find("\\U+") == std::string::npos) return text;
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    if (text.compare(i, 3, "\\U+") == 0 && i + 7 <= text.size()) {
      char32_t cp = 0;
      bool hex = true;
      for (std::size_t k = 0; k < 4 && hex; ++k) {
        const int v = HexDigitValue(text[i + 3 + k]);
        hex = v >= 0;
        cp = (cp << 4) | static_cast<char32_t>(v < 0 ? 0 : v);
      }
      if (hex) {
        AppendUtf8(out, (cp >= 0xD800 && cp <= 0xDFFF) ? kReplacement : cp);
        i += 7;
        continue;
      }
    }
    out.push_back(text[i++]);
  }
  return out;
}

}  // namespace

void TextDecoder::SetVersion(std::string_view acadVer) {
  // Release names sort as strings: "AC1018" < "AC1021" < "AC1032".
  utf8_ = acadVer.size() == 6 && acadVer.starts_with("AC") && acadVer >= "AC1021";
}

std::string TextDecoder::Decode(std::string_view raw) const {
  if (!NeedsWork(raw)) return std::string(raw);
  std::string text = utf8_ ? Utf8WithReplacement(raw) : Windows1252ToUtf8(raw);
  return DecodeUnicodeEscapes(std::move(text));
}

}  // namespace sheafwork::embedded
