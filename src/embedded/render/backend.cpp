#include "embedded/render/backend.h"

#include <cmath>
#include <vector>

#include "embedded/render/curves.h"

namespace sheafwork::embedded {

namespace {

// Largest gap between a filled path's curves and their chords on the sheet.
constexpr double kPathFlatteningMm = 0.005;

}  // namespace

Backend::~Backend() = default;

void Backend::FillPath(const CurvePath& path, const Style& style) {
  thread_local std::vector<Vec2> points;
  thread_local std::vector<int> sizes;
  points.clear();
  sizes.clear();
  FlattenPath(path, kPathFlatteningMm, points, sizes);
  if (!sizes.empty()) FillLoops(points, sizes, style);
}

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
