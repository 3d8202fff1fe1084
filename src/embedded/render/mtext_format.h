#pragma once
// MTEXT contents read into formatted pieces: text of one format, stacked
// fractions and paragraph breaks. Unknown or malformed codes are skipped.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sheafwork::embedded {

class ShapeFace;

/// The look of a stretch of multi-line text.
struct MTextFormat {
  std::string family;       ///< TrueType family (\f), empty for the style's font
  std::string file;         ///< font file (the style's, or \F)
  bool strokeFont = false;  ///< a shape font: drawn as strokes
  /// The shape font's face when `strokeFont`; our stroke font alone when null.
  const ShapeFace* shapeFace = nullptr;
  bool bold = false;
  bool italic = false;
  double height = 1;  ///< cap height in drawing units
  double widthFactor = 1;
  double obliqueDegrees = 0;
  double tracking = 1;               ///< factor on every character's advance
  std::optional<std::uint32_t> rgb;  ///< 0xRRGGBB; none for the entity's own colour
  int aci = 0;                       ///< the colour number `rgb` came from (\C), 0 for none
  bool underline = false;
  bool overline = false;
  bool strike = false;
  int lineAlign = 0;        ///< \A: 0 bottom, 1 middle, 2 top of the line
  int paragraphAlign = -1;  ///< \pxq: 0 left, 1 centre, 2 right; -1 by attachment

  bool operator==(const MTextFormat&) const = default;
};

struct MTextPiece {
  enum class Kind { Text, Stack, Paragraph };
  Kind kind = Kind::Text;
  std::string text;      ///< Text: UTF-8 (\~ as U+00A0); Stack: the upper part
  std::string bottom;    ///< Stack: the lower part
  char stackKind = '/';  ///< '/' over a bar, '#' diagonal, '^' without a bar
  MTextFormat format;
  /// Paragraph: made by \N, which ends a column too.
  bool columnBreak = false;
  /// Paragraph: how many breaks in a row it stands for, all of one kind
  /// and format (a text of nothing but breaks stays one piece).
  std::uint32_t breaks = 1;
};

/// Reads MTEXT contents starting from `base`: \P (and \N, \X) break the
/// paragraph; \~, \\, \{, \}, \U+XXXX and %%c %%d %%p %%% give characters;
/// { } scope the format; \f \F \H \W \Q \T \C \c \L \l \O \o \K \k \A \p
/// change it; \S makes a stacked fraction. Consecutive text of one format
/// is one piece.
std::vector<MTextPiece> ParseMText(std::string_view text, const MTextFormat& base);

}  // namespace sheafwork::embedded
