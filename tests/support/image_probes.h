#pragma once
// Looking at painted or rasterised sheets in sheet millimetres (y up).

#include <QImage>
#include <cstdint>
#include <optional>

#include "embedded/model/geometry.h"
#include "embedded/render/box.h"

namespace sheafwork::embedded::testing {

/// Whether anything non-white lies within `radiusMm` of sheet point `at`.
bool InkNear(const QImage& image, double pixelsPerMm, Vec2 at, double radiusMm = 0.3);

/// The colour at sheet point `at`, 0xRRGGBB.
std::uint32_t ColorAt(const QImage& image, double pixelsPerMm, Vec2 at);

/// The share of the pixels in `box` (whole image when empty) that are dark,
/// or, given `rgb`, near that colour.
double InkShare(const QImage& image, double pixelsPerMm, const Box2& box,
                std::optional<std::uint32_t> rgb = std::nullopt);

/// The share of `a`'s dark pixels with a dark pixel of `b` within one
/// pixel: 1 when everything `a` draws, `b` draws too.
double DarkCovered(const QImage& a, const QImage& b);

}  // namespace sheafwork::embedded::testing
