#include "embedded/render/extents_backend.h"

#include <algorithm>

#include "embedded/render/arc_box.h"

namespace sheafwork::embedded {

namespace {

// Rough proportions of a sans-serif face, in cap heights.
constexpr double kAdvancePerChar = 0.85;
constexpr double kDescent = 0.3;

}  // namespace

void ExtentsBackend::Add(std::span<const Vec2> points) {
  if (clips_.empty()) {
    for (const Vec2& p : points) box_.Extend(p);
    return;
  }
  Box2 box;
  for (const Vec2& p : points) box.Extend(p);
  Include(box);
}

void ExtentsBackend::Include(const Box2& box) {
  box_.Extend(clips_.empty() ? box : box.Intersection(clips_.back()));
}

void ExtentsBackend::PushClip(std::span<const Vec2> polygon) {
  Box2 box;
  for (const Vec2& p : polygon) box.Extend(p);
  clips_.push_back(clips_.empty() ? box : box.Intersection(clips_.back()));
}

void ExtentsBackend::PopClip() {
  if (!clips_.empty()) clips_.pop_back();
}

void ExtentsBackend::DrawLines(std::span<const Vec2> pairs, const Style&) { Add(pairs); }

void ExtentsBackend::DrawPolyline(std::span<const Vec2> points, bool, const Style&) { Add(points); }

void ExtentsBackend::DrawArc(Vec2 center, double radius, double start, double sweep, const Style&) {
  Include(ArcBox(center, radius, start, sweep));
}

void ExtentsBackend::FillLoops(std::span<const Vec2> points, std::span<const int>, const Style&) {
  Add(points);
}

void ExtentsBackend::DrawPoint(Vec2 at, const Style&) { Include(Box2::Of(at, at)); }

void ExtentsBackend::DrawText(const TextRun& run, const Style&) {
  widths_.clear();
  double chars = 0;
  for (char c : run.text) {
    if (c == '\n') {
      widths_.push_back(chars * kAdvancePerChar);
      chars = 0;
    } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
      chars += 1;  // one per UTF-8 lead byte
    }
  }
  widths_.push_back(chars * kAdvancePerChar);
  lines_.assign(widths_.size(), LinePlacement{});
  const FontMetrics metrics{1.0, kDescent};
  const RunPlacement p = PlaceRun(run, metrics, widths_, lines_);
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const double x0 = lines_[i].x, x1 = x0 + widths_[i] * p.xScale;
    const double y0 = lines_[i].baseline - kDescent * p.yScale;
    const double y1 = lines_[i].baseline + p.yScale;
    Include(MappedBox(run.toSheet, Box2::Of({x0, y0}, {x1, y1})));
  }
}

}  // namespace sheafwork::embedded
