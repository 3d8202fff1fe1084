#pragma once
// Text on a PDF page that is never seen: lines in the standard Helvetica
// with text render mode 3 (neither filled nor stroked), each on the
// baseline of the line drawn there, as tall and as wide, so that a reader
// finds, selects and copies the text where it shows, whatever font drew it.

#include <string_view>

#include "embedded/pdf/content_stream.h"
#include "embedded/pdf/text_fonts.h"
#include "embedded/render/backend.h"
#include "embedded/render/box.h"

namespace sheafwork::embedded {

/// Writes lines of invisible text into one text object, begun with the
/// first line written; End() closes it.
class TextLayer {
 public:
  /// `unitsPerMm` maps sheet millimetres to the page's units. A line whose
  /// box lies wholly outside `visible` (sheet mm, the clip in force) is
  /// left out: what cannot be seen should not be found.
  TextLayer(pdf::ContentStream& out, pdf::TextFonts& fonts, double unitsPerMm, const Box2& visible);

  /// One line of UTF-8 `text`; `lineToSheet` maps the line's own box (x
  /// from 0 to 1 along its drawn advance, y from 0 on its baseline to 1 at
  /// its cap height) onto the sheet. Blank lines are left out.
  void Line(std::string_view text, const Affine2& lineToSheet);
  /// Ends the text object, if one was begun.
  void End();

 private:
  pdf::ContentStream& out_;
  pdf::TextFonts& fonts_;
  double unitsPerMm_;
  Box2 visible_;
  bool begun_ = false;
  std::size_t font_ = 0;  ///< the font in force, once begun
};

/// Writes `run`'s lines (TrueType text) as invisible text. Needs the Qt
/// fonts that lay out the drawn text, and creates the Qt application.
void WriteTextLayer(TextLayer& layer, const TextRun& run);

}  // namespace sheafwork::embedded
