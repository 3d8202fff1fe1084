#pragma once
// Text in a TrueType face, laid out the same way for every use: measuring
// multi-line text, the glyph outlines backends fill, and the PDF's text
// layer. When the system has no font at all, the stroke font stands in, so
// that text is never lost.

#include <functional>
#include <string_view>
#include <vector>

#include "embedded/fonts/font_catalog.h"
#include "embedded/render/backend.h"
#include "embedded/render/text_layout.h"

namespace sheafwork::embedded {

/// A run's lines in its face, measured and placed, in the face's design
/// units (or cap heights of the stroke font when there is no face).
struct RunLines {
  ChosenFace font;
  FontMetrics metrics;
  std::vector<std::string_view> lines;           ///< into the run's text
  std::vector<double> widths;                    ///< each line's advance
  std::vector<std::vector<PlacedGlyph>> glyphs;  ///< each line's, shaped; none without a face
  std::vector<LinePlacement> placements;
  RunPlacement placement;
  double shear = 0;  ///< the slant: tan of the oblique angle
};

RunLines LayOutRunLines(const TextRun& run);

/// Puts the glyph outlines of `run` on the sheet into `out` and hands them
/// to `fill`: a long run a piece at a time (whole glyphs, `out` emptied
/// between pieces), so that its outlines need no more room than a piece.
/// Nothing when the run has no face.
void OutlineRun(const TextRun& run, const RunLines& laid, CurvePath& out,
                const std::function<void(const CurvePath&)>& fill);

/// Measures with the faces above.
TextMeasure& TrueTypeMeasure();

}  // namespace sheafwork::embedded
