// The default of Backend::DrawText: the run's glyphs as filled outlines,
// so that every backend draws TrueType text the same way.

#include <optional>

#include "embedded/render/backend.h"
#include "embedded/render/text_drawing.h"
#include "embedded/render/truetype_text.h"

namespace sheafwork::embedded {

namespace {

// Largest gap between a glyph's curves and their chords on the sheet.
constexpr double kGlyphFlatteningMm = 0.005;

}  // namespace

void Backend::DrawText(const TextRun& run, const Style& style) {
  const RunLines laid = LayOutRunLines(run);
  if (laid.font.face == nullptr) {
    DrawStrokeRun(*this, run, style, std::nullopt);  // no font on this system
    return;
  }
  thread_local Loops loops;
  loops.points.clear();
  loops.sizes.clear();
  AppendRunOutlines(run, laid, kGlyphFlatteningMm, loops);
  if (!loops.sizes.empty()) FillLoops(loops.points, loops.sizes, style);
}

}  // namespace sheafwork::embedded
