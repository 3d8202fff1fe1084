// The frontend's masks and clips: wipeouts, viewports clipped by an entity
// instead of their rectangle, and clipped block references.

#include <array>

#include "embedded/render/clip_boundary.h"
#include "embedded/render/frontend.h"

namespace sheafwork::embedded {

namespace {

constexpr std::int32_t kViewportClippedByEntity = 65536;

}  // namespace

const Entity* Frontend::ClipBoundaryOf(const Viewport& vp) const {
  if ((vp.flags & kViewportClippedByEntity) == 0 || sheetBlock_ == nullptr) return nullptr;
  return FindByHandle(*sheetBlock_, vp.clipBoundaryHandle);
}

void Frontend::ViewportOutline(const Viewport& vp, const Affine2& paperToOutput,
                               std::vector<Vec2>& polygon) {
  polygon.clear();
  if (const Entity* boundary = ClipBoundaryOf(vp)) {
    if (AppendBoundaryOutline(*boundary, options_.flattening, paperToOutput.Scale(), polygon)) {
      for (Vec2& p : polygon) p = paperToOutput.Apply(p);
      return;
    }
  }
  const double hw = vp.width / 2, hh = vp.height / 2;
  const Vec3& c = vp.center;
  for (const Vec2 corner : {Vec2{c.x - hw, c.y - hh}, Vec2{c.x + hw, c.y - hh},
                            Vec2{c.x + hw, c.y + hh}, Vec2{c.x - hw, c.y + hh}}) {
    polygon.push_back(paperToOutput.Apply(corner));
  }
}

void Frontend::PushBlockClip(std::span<const Vec2> boundary, const Transform3& t) {
  std::vector<Vec2> polygon;
  if (boundary.size() == 2) {
    const Vec2 a = boundary[0], b = boundary[1];
    for (const Vec2 p : {a, Vec2{b.x, a.y}, b, Vec2{a.x, b.y}}) {
      polygon.push_back(t.ApplyXY({p.x, p.y, 0}));
    }
  } else {
    for (const Vec2& p : boundary) polygon.push_back(t.ApplyXY({p.x, p.y, 0}));
  }
  backend_.PushClip(polygon);
}

void Frontend::DrawWipeout(const Wipeout& g, const Transform3& t, const Style& s) {
  if ((g.displayFlags & 1) == 0) return;
  // The boundary in pixel coordinates: the whole image unless clipped.
  const double w = g.imageSize.x > 0 ? g.imageSize.x : 1.0;
  const double h = g.imageSize.y > 0 ? g.imageSize.y : 1.0;
  local_.clear();
  const bool polygon = g.clipping && g.clipType == 2 && g.clipVertices.size() >= 3;
  if (polygon) {
    local_.assign(g.clipVertices.begin(), g.clipVertices.end());
    const Vec2 first = local_.front(), last = local_.back();
    if (first.x == last.x && first.y == last.y) local_.pop_back();
  } else {
    Vec2 lo{-0.5, -0.5}, hi{w - 0.5, h - 0.5};
    if (g.clipping && g.clipVertices.size() >= 2) {
      lo = g.clipVertices[0];
      hi = g.clipVertices[1];
    }
    local_ = {lo, {hi.x, lo.y}, hi, {lo.x, hi.y}};
  }
  if (local_.size() < 3) return;
  out_.clear();
  for (const Vec2& p : local_) {
    const double i = p.x + 0.5, j = h - p.y - 0.5;
    out_.push_back(t.ApplyXY({g.insert.x + i * g.uPixel.x + j * g.vPixel.x,
                              g.insert.y + i * g.uPixel.y + j * g.vPixel.y,
                              g.insert.z + i * g.uPixel.z + j * g.vPixel.z}));
  }
  if (!InCull(out_)) return;
  const int size = static_cast<int>(out_.size());
  backend_.FillLoops(out_, {&size, 1}, Style{kSheetBackground, s.widthMm});
  if (root_.header.wipeoutFrame == 1) backend_.DrawPolyline(out_, true, s);
}

}  // namespace sheafwork::embedded
