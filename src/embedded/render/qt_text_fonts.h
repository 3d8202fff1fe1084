#pragma once
// The Qt font that text in a TrueType face is painted with, shared by the
// painter, the outlines of text for backends without text of their own,
// and the measuring of multi-line text, so that all three agree.

#include <QFont>

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

/// Measures with the fonts above; without a QGuiApplication, estimates
/// from the number of characters.
TextMeasure& QtTextMeasure();

/// Measures with the fonts above, creating the Qt application when the
/// first text is measured: outputs that need no Qt otherwise start it only
/// for TrueType text, and measure it as the others do.
TextMeasure& GuiTextMeasure();

}  // namespace sheafwork::embedded
