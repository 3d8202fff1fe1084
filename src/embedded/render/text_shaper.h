#pragma once
// Lays formatted multi-line text out: words wrapped at the column width,
// lines spaced and placed by the attachment point, stacked fractions
// built. What comes out is single-line runs of one format, each placed by
// the left end of its baseline, and the lines a run draws beside its
// characters (underline, overline, strike-through, fraction bars), all in
// the text's own space (drawing units, y up, the attachment point at the
// origin).

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "embedded/model/geometry.h"
#include "embedded/render/mtext_format.h"
#include "embedded/render/text_layout.h"

namespace sheafwork::embedded {

struct ShapedRun {
  std::string text;
  MTextFormat format;
  Vec2 origin;          ///< left end of the baseline
  double width = 0;     ///< drawing units
  bool stroke = false;  ///< drawn with the stroke font
};

struct ShapedLine {
  Vec2 from;
  Vec2 to;
  std::optional<std::uint32_t> rgb;  ///< none for the entity's colour
  int aci = 0;                       ///< the colour number of `rgb`, 0 for none
};

struct ShapedText {
  std::vector<ShapedRun> runs;
  std::vector<ShapedLine> lines;
};

struct TextBlock {
  double columnWidth = 0;  ///< 0: no wrapping
  int attachment = 1;      ///< 1 top left ... 9 bottom right
  double lineSpacing = 1;  ///< factor on 5/3 of the tallest cap height of a line
};

ShapedText ShapeText(std::span<const MTextPiece> pieces, const TextBlock& block,
                     TextMeasure& measure);

/// Width in drawing units of `text` in `format` (height, width factor and
/// tracking applied).
double FormattedWidth(std::string_view text, const MTextFormat& format, TextMeasure& measure);

}  // namespace sheafwork::embedded
