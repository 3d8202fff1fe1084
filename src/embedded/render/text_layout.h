#pragma once
// Where the lines of a text run go in the run's own space, given how wide
// each line is. Shared by the painter and by the extents, which only
// estimate widths.

#include <span>
#include <string_view>

#include "embedded/fonts/font_catalog.h"
#include "embedded/render/backend.h"

namespace sheafwork::embedded {

/// Metrics of the font in one unit system (any: glyph units or text units).
struct FontMetrics {
  double capHeight = 0.7;
  double descent = 0.2;
};

/// How far text reaches below its baseline, in cap heights, when nothing
/// better is known.
inline constexpr double kUsualDescent = 0.25;

/// How wide text is in a font: what multi-line text is laid out with.
class TextMeasure {
 public:
  virtual ~TextMeasure() = default;
  /// Width of one line of `text` (UTF-8) in cap heights of `face`, width
  /// factor 1.
  virtual double Advance(const FontFace& face, std::string_view text) = 0;
  /// How far the face reaches below the baseline, in cap heights.
  virtual double Descent(const FontFace& face) {
    (void)face;
    return kUsualDescent;
  }
};

/// The placement of the run's lines in its own space: each line i starts at
/// (x[i], baseline[i]) in units of the run's height, after the horizontal
/// scale (width factor, fit) `xScale` and the vertical `yScale` are applied
/// to glyph units whose cap height is metrics.capHeight.
struct LinePlacement {
  double x = 0;
  double baseline = 0;
};

struct RunPlacement {
  double xScale = 1;  ///< run units per glyph unit, horizontally
  double yScale = 1;  ///< run units per glyph unit, vertically
};

/// Computes the scales and each line's start. `widths` are line widths in
/// glyph units; `out` gets one placement per line.
RunPlacement PlaceRun(const TextRun& run, const FontMetrics& metrics,
                      std::span<const double> widths, std::span<LinePlacement> out);

}  // namespace sheafwork::embedded
