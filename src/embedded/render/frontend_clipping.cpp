// The frontend's masks and clips: wipeouts and raster images, viewports
// clipped by an entity instead of their rectangle, and clipped block
// references.

#include <algorithm>
#include <array>

#include "embedded/render/clip_boundary.h"
#include "embedded/render/frontend.h"

namespace sheafwork::embedded {

namespace {

constexpr std::int32_t kViewportClippedByEntity = 65536;

/// Appends the clip outline `stored` (two points are the corners of a
/// rectangle) mapped by `toOutput`.
void AppendClipLoop(std::span<const Vec2> stored, const Transform3& toOutput,
                    std::vector<Vec2>& out) {
  if (stored.size() == 2) {
    const Vec2 a = stored[0], b = stored[1];
    for (const Vec2 p : {a, Vec2{b.x, a.y}, b, Vec2{a.x, b.y}}) {
      out.push_back(toOutput.ApplyXY({p.x, p.y, 0}));
    }
    return;
  }
  for (const Vec2& p : stored) out.push_back(toOutput.ApplyXY({p.x, p.y, 0}));
}

double BoxArea(std::span<const Vec2> points) {
  Box2 box;
  for (const Vec2& p : points) box.Extend(p);
  return box.Empty() ? 0.0 : box.Width() * box.Height();
}

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

void Frontend::PushBlockClip(const BlockClip& clip, const Transform3& t) {
  // The boundary lies in a plane of its own (normal and origin); the
  // filter's matrices take that plane to world coordinates and on into the
  // block's, where `t` takes over.
  const Transform3 toOutput = t * Transform3::FromRows(clip.inverseInsert) *
                              Transform3::FromRows(clip.toBoundary).Inverse() *
                              Transform3::Translation(clip.origin) * Transform3::Ocs(clip.normal);
  std::vector<Vec2> outline;
  std::vector<Vec2> hole;
  AppendClipLoop(clip.boundary, toOutput, outline);
  if (clip.inverted) AppendClipLoop(clip.hole, toOutput, hole);
  // Of the two outlines an inverted clip keeps, the smaller is the hole
  // (the other, when present, runs around it and the block).
  if (clip.inverted && BoxArea(outline) < BoxArea(hole)) hole.swap(outline);
  savedCulls_.push_back(options_.cull);
  if (!clip.inverted || hole.size() < 3) {
    Box2 box;
    for (const Vec2& p : outline) box.Extend(p);
    options_.cull = options_.cull ? options_.cull->Intersection(box) : box;
    backend_.PushClip(outline);
    return;
  }
  // Everything outside the hole: a loop around the sheet (or far around the
  // hole when nothing is culled) and the hole, filled odd-even.
  Box2 around;
  for (const Vec2& p : hole) around.Extend(p);
  if (options_.cull) {
    around.Extend(*options_.cull);
  } else {
    const double margin = 100 * std::max(around.Width(), around.Height()) + 1e4;
    around = Box2::Of({around.min.x - margin, around.min.y - margin},
                      {around.max.x + margin, around.max.y + margin});
  }
  std::vector<Vec2> loops{
      around.min, {around.max.x, around.min.y}, around.max, {around.min.x, around.max.y}};
  loops.insert(loops.end(), hole.begin(), hole.end());
  const int sizes[2] = {4, static_cast<int>(hole.size())};
  backend_.PushClipLoops(loops, sizes);
}

void Frontend::PopBlockClip() {
  backend_.PopClip();
  if (savedCulls_.empty()) return;
  options_.cull = savedCulls_.back();
  savedCulls_.pop_back();
}

bool Frontend::ImageBoundary(const Wipeout& g, const Transform3& t) {
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
  if (local_.size() < 3) return false;
  out_.clear();
  for (const Vec2& p : local_) {
    const double i = p.x + 0.5, j = h - p.y - 0.5;
    out_.push_back(t.ApplyXY({g.insert.x + i * g.uPixel.x + j * g.vPixel.x,
                              g.insert.y + i * g.uPixel.y + j * g.vPixel.y,
                              g.insert.z + i * g.uPixel.z + j * g.vPixel.z}));
  }
  return true;
}

void Frontend::DrawWipeout(const Wipeout& g, const Transform3& t, const Style& s) {
  if ((g.displayFlags & 1) == 0) return;
  if (!ImageBoundary(g, t) || !InCull(out_)) return;
  const int size = static_cast<int>(out_.size());
  backend_.FillLoops(out_, {&size, 1}, Style{kSheetBackground, s.widthMm});
  if (root_.header.wipeoutFrame == 1) backend_.DrawPolyline(out_, true, s);
}

void Frontend::DrawRasterImage(const RasterImage& g, const Transform3& t, const Style& s) {
  const Wipeout& p = g.placement;
  if (!ImageBoundary(p, t) || !InCull(out_)) return;
  bool drawn = false;
  const auto definition = drawing_->images.find(g.definition);
  if ((p.displayFlags & 1) != 0 && definition != drawing_->images.end() &&
      !definition->second.resolvedPath.empty()) {
    const double w = p.imageSize.x > 0 ? p.imageSize.x : 1.0;
    const double h = p.imageSize.y > 0 ? p.imageSize.y : 1.0;
    const Affine2 toSheet = PlanarMap(t, p.insert, {p.uPixel.x * w, p.uPixel.y * w, p.uPixel.z * w},
                                      {p.vPixel.x * h, p.vPixel.y * h, p.vPixel.z * h});
    // A clip boundary that is the whole image clips nothing.
    const bool clipped = p.clipping && p.clipVertices.size() >= 2;
    if (clipped) backend_.PushClip(out_);
    drawn = backend_.DrawImage({definition->second.resolvedPath, toSheet});
    if (clipped) backend_.PopClip();
  }
  if (!drawn || root_.header.imageFrame == 1) backend_.DrawPolyline(out_, true, s);
}

}  // namespace sheafwork::embedded
