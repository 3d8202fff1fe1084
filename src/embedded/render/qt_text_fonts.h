#pragma once
// The Qt font that text in a TrueType face is painted with, shared by the
// painter, the outlines of text for backends without text of their own,
// and the measuring of multi-line text, so that all three agree.

#include <QFont>
#include <QStringList>
#include <vector>

#include "embedded/render/backend.h"
#include "embedded/render/text_layout.h"

namespace sheafwork::embedded {

/// Glyph units: the pixel size of the fonts below.
inline constexpr int kTextGlyphPixels = 200;

struct QtTextFont {
  QFont font;
  FontMetrics metrics;  ///< in glyph units
};

/// The family asked for when the system has it, else the font file's stem
/// when the system has that family, else DejaVu Sans; bold and italic as
/// asked; letter spacing from `tracking`. Needs a QGuiApplication.
QtTextFont TextFontFor(const FontFace& face, double tracking = 1);

/// A run's lines in its font, measured and placed: where painting the
/// text, outlining it and the PDF's text layer all start.
struct QtRunLines {
  QtTextFont font;
  QStringList lines;
  std::vector<double> widths;  ///< each line's, in glyph units
  std::vector<LinePlacement> placements;
  RunPlacement placement;
  double shear = 0;  ///< the slant: tan of the oblique angle
};
/// Needs a QGuiApplication.
QtRunLines LayOutRunLines(const TextRun& run);

/// Measures with the fonts above; without a QGuiApplication, estimates
/// from the number of characters.
TextMeasure& QtTextMeasure();

/// Measures with the fonts above, creating the Qt application when the
/// first text is measured: outputs that need no Qt otherwise start it only
/// for TrueType text, and measure it as the others do.
TextMeasure& GuiTextMeasure();

}  // namespace sheafwork::embedded
