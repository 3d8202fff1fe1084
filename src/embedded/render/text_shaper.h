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
#include "embedded/render/box.h"
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
  /// A band this thick (drawing units), filled like TrueType glyphs; 0 for
  /// a line in the pen, like stroke-font glyphs.
  double thickness = 0;
};

struct ShapedText {
  std::vector<ShapedRun> runs;
  std::vector<ShapedLine> lines;
  /// Each column's box (its width, from its top to the lowest baseline or
  /// its given height), when TextBlock::boxes asks for them.
  std::vector<Box2> columns;
};

/// How text flows from column to column.
struct TextColumns {
  int type = 0;       ///< 0 one column, 1 static (\N ends a column), 2 dynamic
  int count = 0;      ///< static: columns at least; dynamic of given heights: columns
  double gutter = 0;  ///< between two columns
  double height = 0;  ///< of every column; 0 for as deep as its text
  /// Dynamic columns of their own heights (the last column takes the rest);
  /// empty for columns all `height` high.
  std::span<const double> heights;
  bool reversed = false;  ///< the first column on the right
};

struct TextBlock {
  double columnWidth = 0;  ///< 0: no wrapping
  int attachment = 1;      ///< 1 top left ... 9 bottom right
  double lineSpacing = 1;  ///< factor on 5/3 of the tallest cap height of a line
  TextColumns columns;
  bool boxes = false;  ///< fill ShapedText::columns
};

ShapedText ShapeText(std::span<const MTextPiece> pieces, const TextBlock& block,
                     TextMeasure& measure);

/// Width in drawing units of `text` in `format` (height, width factor and
/// tracking applied).
double FormattedWidth(std::string_view text, const MTextFormat& format, TextMeasure& measure);

}  // namespace sheafwork::embedded
