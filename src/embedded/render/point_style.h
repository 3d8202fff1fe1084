#pragma once
// How POINT entities look: the symbol the drawing's point display mode
// asks for ($PDMODE) at the size it asks for ($PDSIZE).

#include <vector>

#include "embedded/model/geometry.h"

namespace sheafwork::embedded {

/// Size of a point symbol in drawing units: `pdSize` when positive, a
/// percentage of `viewHeight` (the height shown by the view or viewport the
/// point is drawn in) when negative, 5 % of it when 0.
double PointSymbolSize(double pdSize, double viewHeight);

/// What a symbol has besides its strokes.
struct PointSymbol {
  bool dot = false;         ///< a dot at the point
  double circleRadius = 0;  ///< > 0: a circle around the point
};

/// Appends to `pairs` (points 2i, 2i+1 are a stroke) the strokes of the
/// symbol of `pdMode` of `size` around `at`: 0 a dot, 1 nothing, 2 a plus,
/// 3 a cross, 4 a tick upwards; + 32 a circle, + 64 a square around it.
PointSymbol AppendPointSymbol(int pdMode, Vec2 at, double size, std::vector<Vec2>& pairs);

}  // namespace sheafwork::embedded
