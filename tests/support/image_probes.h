#pragma once
// Sheets painted as images, and looking at painted or rasterised sheets in
// sheet millimetres (y up).

#include <QImage>
#include <cstdint>

#include "embedded/model/drawing.h"
#include "embedded/model/geometry.h"

namespace sheafwork::embedded::testing {

/// Paints `layout` of `drawing` with `settings` on white paper,
/// `pixelsPerMm` pixels per sheet millimetre.
QImage RenderSheet(const Drawing& drawing, const Layout& layout, const PlotSettings& settings,
                   double pixelsPerMm);

/// Whether anything non-white lies within `radiusMm` of sheet point `at`.
bool InkNear(const QImage& image, double pixelsPerMm, Vec2 at, double radiusMm = 0.3);

/// The colour at sheet point `at`, 0xRRGGBB.
std::uint32_t ColorAt(const QImage& image, double pixelsPerMm, Vec2 at);

/// The share of `a`'s dark pixels with a dark pixel of `b` within one
/// pixel: 1 when everything `a` draws, `b` draws too.
double DarkCovered(const QImage& a, const QImage& b);

}  // namespace sheafwork::embedded::testing
