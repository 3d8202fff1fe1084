// The default of Backend::DrawText: the run's glyphs as filled outlines,
// so that every backend draws TrueType text the same way.

#include <optional>

#include "embedded/render/backend.h"
#include "embedded/render/text_drawing.h"
#include "embedded/render/truetype_text.h"

namespace sheafwork::embedded {

void Backend::DrawText(const TextRun& run, const Style& style) {
  const RunLines laid = LayOutRunLines(run);
  if (laid.font.face == nullptr) {
    DrawStrokeRun(*this, run, style, std::nullopt);  // no font on this system
    return;
  }
  thread_local CurvePath outlines;
  OutlineRun(run, laid, outlines, [&](const CurvePath& piece) { FillPath(piece, style); });
}

}  // namespace sheafwork::embedded
