// The frontend's strokes: linetype dashes and point symbols.

#include "embedded/render/frontend.h"
#include "embedded/render/point_style.h"

namespace sheafwork::embedded {

namespace {

/// Length on the sheet of a linetype's dots (output units).
constexpr double kDotLength = 0.1;

}  // namespace

void Frontend::BeginStrokes(const Resolved& r, const Transform3& t) {
  if (r.linetype == nullptr) {
    dasher_.SetPattern({}, 1, 0);
    return;
  }
  const double entityScale = r.linetypeScale > 0 ? r.linetypeScale : 1.0;
  const double globalScale = root_.header.ltScale > 0 ? root_.header.ltScale : 1.0;
  const double scale =
      entityScale * globalScale * t.PlaneAt(0).Scale() / std::max(linetypeViewScale_, 1e-300);
  dasher_.SetPattern(r.linetype->dashes, scale, kDotLength);
}

void Frontend::Stroke(std::span<const Vec2> points, bool closed, const Style& s) {
  if (!dasher_.Active()) {
    backend_.DrawPolyline(points, closed, s);
    return;
  }
  if (backend_.DrawDashed(points, closed, dasher_, s) == Dasher::Result::kTooDense) {
    ++stats_.denseLinetypes;
    backend_.DrawPolyline(points, closed, s);
  }
}

void Frontend::StrokeSegments(bool closed, const Style& s) {
  (void)closed;  // a closed polyline's last segment ends at its first point
  std::size_t start = 0;
  for (const std::size_t end : segmentEnds_) {
    segment_.clear();
    for (std::size_t i = start; i <= end; ++i) segment_.push_back(out_[i % out_.size()]);
    start = end;
    dasher_.Restart();
    Stroke(segment_, false, s);
  }
}

void Frontend::DrawPointSymbol(const Point& g, const Transform3& t, const Style& s) {
  dasher_.SetPattern({}, 1, 0);  // symbols are drawn whole
  const double size = PointSymbolSize(root_.header.pdSize, viewHeight_);
  const Vec2 at{g.position.x, g.position.y};
  pairs_.clear();
  const PointSymbol symbol = AppendPointSymbol(root_.header.pdMode, at, size, pairs_);
  const Affine2 a = t.PlaneAt(g.position.z);
  if (symbol.dot) {
    const Vec2 p = a.Apply(at);
    if (InCull({&p, 1})) backend_.DrawPoint(p, s);
  }
  for (Vec2& p : pairs_) p = a.Apply(p);
  if (!pairs_.empty() && InCull(pairs_)) backend_.DrawLines(pairs_, s);
  if (symbol.circleRadius > 0) DrawCircle(g.position, symbol.circleRadius, 0, 360, kUnitZ, t, s);
}

}  // namespace sheafwork::embedded
