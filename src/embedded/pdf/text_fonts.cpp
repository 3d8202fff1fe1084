#include "embedded/pdf/text_fonts.h"

#include <algorithm>
#include <cstdio>

#include "embedded/pdf/helvetica_widths.h"
#include "embedded/pdf/pdf_strings.h"
#include "text/utf8.h"
#include "text/windows1252.h"

namespace sheafwork::embedded::pdf {

namespace {

constexpr std::size_t kNoFont = static_cast<std::size_t>(-1);
// Codes given out beyond ASCII: the control codes, then from DEL up.
constexpr int kLastLowCode = 31;
constexpr int kFirstHighCode = 127;
constexpr int kCodes = 256;
// Characters the code page lacks: as wide as a digit, or an em for the
// ideographs and syllables of East Asian scripts.
constexpr std::uint16_t kUsualWidth = 556;
constexpr std::uint16_t kWideWidth = 1000;
// CMap blocks hold at most this many entries.
constexpr std::size_t kCMapBlock = 100;

bool Wide(char32_t c) {
  return (c >= 0x2E80 && c <= 0x9FFF) || (c >= 0xAC00 && c <= 0xD7A3) ||
         (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFF00 && c <= 0xFF60) || c >= 0x20000;
}

std::uint16_t CharacterWidth(char32_t c) {
  std::string utf8;
  AppendUtf8(utf8, c);
  const Windows1252Text code = Utf8ToWindows1252(utf8);
  if (code.replaced == 0 && code.bytes.size() == 1) {
    return static_cast<std::uint16_t>(
        HelveticaCodeWidth(static_cast<unsigned char>(code.bytes[0])));
  }
  return Wide(c) ? kWideWidth : kUsualWidth;
}

void AppendHexByte(std::string& out, int code) {
  char hex[8];
  std::snprintf(hex, sizeof hex, "<%02X>", static_cast<unsigned>(code) & 0xFFu);
  out += hex;
}

// The name the glyph list gives a character by its code point.
std::string GlyphName(char32_t c) {
  char name[16];
  std::snprintf(name, sizeof name, c >= 0x10000 ? "/u%06X" : "/uni%04X", static_cast<unsigned>(c));
  return name;
}

}  // namespace

TextFonts::Font::Font() {
  for (int code = 0x20; code < 0x7F; ++code) {
    widths[static_cast<std::size_t>(code)] =
        static_cast<std::uint16_t>(HelveticaCodeWidth(static_cast<unsigned char>(code)));
  }
}

TextFonts::Slot TextFonts::Assign(char32_t c) {
  if (fonts_.empty() || fonts_.back().next >= kCodes) fonts_.emplace_back();
  Font& font = fonts_.back();
  const Slot slot{static_cast<std::uint32_t>(fonts_.size() - 1),
                  static_cast<std::uint8_t>(font.next), CharacterWidth(c)};
  font.characters.emplace_back(slot.code, c);
  font.widths[slot.code] = slot.width;
  font.next = font.next == kLastLowCode ? kFirstHighCode : font.next + 1;
  slots_.emplace(c, slot);
  return slot;
}

void TextFonts::Encode(std::string_view text, Line& line) {
  if (fonts_.empty()) fonts_.emplace_back();
  std::size_t used = 0;
  // The font of the last piece; kNoFont while it holds only ASCII, which
  // every copy has.
  std::size_t current = kNoFont;
  auto start = [&](std::size_t font) {
    if (used == line.pieces.size()) line.pieces.emplace_back();
    Piece& piece = line.pieces[used++];
    piece.font = font;
    piece.bytes.clear();
    current = font;
  };
  long thousandths = 0;
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte >= 0x20 && byte < 0x7F) {
      if (used == 0) start(kNoFont);
      line.pieces[used - 1].bytes += static_cast<char>(byte);
      thousandths += fonts_.front().widths[byte];
      ++i;
      continue;
    }
    const DecodedChar decoded = DecodeUtf8(text, i);
    i += decoded.length;
    const char32_t c = decoded.valid ? decoded.codePoint : 0xFFFD;
    if (c < 0x20 || (c >= 0x7F && c < 0xA0)) continue;
    const auto found = slots_.find(c);
    const Slot slot = found != slots_.end() ? found->second : Assign(c);
    if (used == 0) {
      start(slot.font);
    } else if (current == kNoFont) {
      line.pieces[used - 1].font = current = slot.font;
    } else if (current != slot.font) {
      start(slot.font);
    }
    line.pieces[used - 1].bytes += static_cast<char>(slot.code);
    thousandths += slot.width;
  }
  line.pieces.resize(used);
  for (Piece& piece : line.pieces) {
    if (piece.font == kNoFont) piece.font = 0;
  }
  line.width = static_cast<double>(thousandths) / 1000.0;
}

std::string TextFonts::Resource(std::size_t font) { return "/F" + std::to_string(font + 1); }

std::string TextFonts::FontDictionary(std::size_t font, int toUnicode) const {
  const Font& f = fonts_.at(font);
  std::string out =
      "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding << /Type /Encoding "
      "/BaseEncoding /WinAnsiEncoding";
  if (!f.characters.empty()) {
    out += " /Differences [";
    for (const auto& [code, c] : f.characters) {
      out += ' ' + std::to_string(code) + ' ' + GlyphName(c);
    }
    out += " ]";
  }
  // The widths of the codes in use: ASCII's and those given out.
  std::size_t first = 0x20, last = 0x7E;
  for (const auto& [code, c] : f.characters) {
    first = std::min<std::size_t>(first, code);
    last = std::max<std::size_t>(last, code);
  }
  out += " >> /FirstChar " + std::to_string(first) + " /LastChar " + std::to_string(last) +
         " /Widths [";
  for (std::size_t code = first; code <= last; ++code) {
    out += (code - first) % 32 == 0 ? '\n' : ' ';
    out += std::to_string(f.widths[code]);
  }
  out += "] /ToUnicode " + std::to_string(toUnicode) + " 0 R >>";
  return out;
}

std::string TextFonts::ToUnicodeMap(std::size_t font) const {
  const Font& f = fonts_.at(font);
  std::string out =
      "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
      "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
      "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
      "1 begincodespacerange\n<00> <FF>\nendcodespacerange\n"
      "1 beginbfrange\n<20> <7E> <0020>\nendbfrange\n";
  for (std::size_t first = 0; first < f.characters.size(); first += kCMapBlock) {
    const std::size_t end = std::min(f.characters.size(), first + kCMapBlock);
    out += std::to_string(end - first) + " beginbfchar\n";
    for (std::size_t i = first; i < end; ++i) {
      AppendHexByte(out, f.characters[i].first);
      out += " <";
      AppendUtf16Hex(out, f.characters[i].second);
      out += ">\n";
    }
    out += "endbfchar\n";
  }
  out += "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
  return out;
}

std::string TextFonts::ResourceEntry(std::span<const int> objects) const {
  if (objects.empty()) return {};
  std::string out = "/Font <<";
  for (std::size_t i = 0; i < objects.size(); ++i) {
    out += ' ' + Resource(i) + ' ' + std::to_string(objects[i]) + " 0 R";
  }
  return out + " >>";
}

}  // namespace sheafwork::embedded::pdf
