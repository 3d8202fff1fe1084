#pragma once
// A layout plotted to an image with its own page settings, as the golden
// images are.

#include <QImage>

#include "embedded/model/drawing.h"

namespace sheafwork::golden {

/// Pixels per millimetre of paper in the images compared.
inline constexpr double kPixelsPerMm = 4;

/// The sheet of `layout` of `drawing`, white paper, kPixelsPerMm.
QImage RenderSheet(const embedded::Drawing& drawing, const embedded::Layout& layout);

}  // namespace sheafwork::golden
