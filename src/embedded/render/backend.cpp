#include "embedded/render/backend.h"

#include <cmath>
#include <vector>

#include "embedded/render/curves.h"

namespace sheafwork::embedded {

Backend::~Backend() = default;

void Backend::DrawArc(Vec2 center, double radius, double start, double sweep, const Style& style) {
  const bool full = std::fabs(sweep) >= kTwoPi;
  if (full) sweep = kTwoPi;
  const int n = ArcSegments(radius, sweep, Flattening{0, 64});
  std::vector<Vec2> points;
  AppendArc(points, center, radius, start, sweep, n, true);
  if (full) points.pop_back();
  DrawPolyline(points, full, style);
}

}  // namespace sheafwork::embedded
