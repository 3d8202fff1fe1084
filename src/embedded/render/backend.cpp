#include "embedded/render/backend.h"

#include <cmath>
#include <vector>

#include "embedded/render/box.h"
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

void Backend::PushClipLoops(std::span<const Vec2> points, std::span<const int> loopSizes) {
  (void)loopSizes;
  Box2 box;
  for (const Vec2& p : points) box.Extend(p);
  if (box.Empty()) {
    PushClip({});
    return;
  }
  const Vec2 corners[4] = {box.min, {box.max.x, box.min.y}, box.max, {box.min.x, box.max.y}};
  PushClip(corners);
}

Dasher::Result Backend::DrawDashed(std::span<const Vec2> points, bool closed, Dasher& dasher,
                                   const Style& style) {
  thread_local std::vector<Vec2> pieces;
  thread_local std::vector<int> sizes;
  pieces.clear();
  sizes.clear();
  const Dasher::Result result = dasher.Cut(points, closed, pieces, sizes);
  if (result == Dasher::Result::kTooDense) return result;
  std::size_t at = 0;
  for (const int size : sizes) {
    const std::span<const Vec2> piece(pieces.data() + at, static_cast<std::size_t>(size));
    if (size == 2) {
      DrawLines(piece, style);  // batched by the backend
    } else {
      DrawPolyline(piece, false, style);
    }
    at += static_cast<std::size_t>(size);
  }
  return result;
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
