#pragma once
// The fonts of a document's invisible text: the standard Helvetica, which
// every reader has without it being embedded, in as many copies as the
// characters need. Every copy holds printable ASCII at its usual codes;
// each other character gets one of the codes left in a copy the first time
// the text meets it. A copy's ToUnicode map says which character every code
// stands for, so that a reader's search and copy find any character, the
// Windows code page's or not. The fonts are written once, when the
// document closes; a document without text has none.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sheafwork::embedded::pdf {

class TextFonts {
 public:
  /// A stretch of text in one copy.
  struct Piece {
    std::size_t font = 0;  ///< the copy, as Resource() names it
    std::string bytes;     ///< its codes
  };
  /// A line of text as pieces, with its advance in Helvetica of size 1.
  struct Line {
    std::vector<Piece> pieces;
    double width = 0;
  };

  /// Encodes UTF-8 `text` into `line` (its pieces reused): control
  /// characters are left out, malformed bytes become U+FFFD. Gives
  /// characters met for the first time their codes.
  void Encode(std::string_view text, Line& line);

  /// The resource name of copy `font` ("/F1" for the first).
  static std::string Resource(std::size_t font);
  /// Copies made so far.
  std::size_t Size() const { return fonts_.size(); }

  /// Copy `font`'s dictionary, whose ToUnicode map is object `toUnicode`.
  std::string FontDictionary(std::size_t font, int toUnicode) const;
  /// Copy `font`'s ToUnicode map (a CMap, the stream's data).
  std::string ToUnicodeMap(std::size_t font) const;
  /// "/Font << /F1 5 0 R … >>" for the pages' resources; `objects` are
  /// the copies' dictionaries in order. Empty without fonts.
  std::string ResourceEntry(std::span<const int> objects) const;

 private:
  struct Slot {
    std::uint32_t font = 0;
    std::uint8_t code = 0;
    std::uint16_t width = 0;  ///< thousandths of the em
  };
  struct Font {
    Font();
    std::vector<std::pair<std::uint8_t, char32_t>> characters;  ///< beyond ASCII, by code
    std::array<std::uint16_t, 256> widths{};                    ///< thousandths, by code
    int next = 1;                                               ///< the next free code
  };

  Slot Assign(char32_t c);

  std::vector<Font> fonts_;
  std::unordered_map<char32_t, Slot> slots_;  ///< every character beyond ASCII met
};

}  // namespace sheafwork::embedded::pdf
