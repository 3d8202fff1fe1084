#include "embedded/render/glyph_strokes.h"

namespace sheafwork::embedded {

namespace {

// Beyond this many points kept the cache starts over: a page of text in
// many sizes and turns must not make it grow without end.
constexpr std::size_t kMaxCachedPoints = 1 << 16;

// Whether `p` lies at least the tolerance away from the segment `a`–`b`.
// Compared on squares and without dividing: sheet millimetres never come
// near overflow.
bool StraysFromSegment(Vec2 p, Vec2 a, Vec2 b) {
  constexpr double kTolerance2 = kStrokeToleranceMm * kStrokeToleranceMm;
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double wx = p.x - a.x, wy = p.y - a.y;
  const double along = wx * dx + wy * dy;
  if (along <= 0) return wx * wx + wy * wy >= kTolerance2;  // nearest to `a`
  const double length2 = dx * dx + dy * dy;
  if (along >= length2) {  // nearest to `b`
    const double vx = p.x - b.x, vy = p.y - b.y;
    return vx * vx + vy * vy >= kTolerance2;
  }
  const double across = wx * dy - wy * dx;  // |w × d| = distance × |d|
  return across * across >= kTolerance2 * length2;
}

}  // namespace

std::size_t DecimateStroke(std::span<Vec2> stroke) {
  if (stroke.size() <= 2) return stroke.size();
  std::size_t kept = 1;
  for (std::size_t i = 1; i + 1 < stroke.size(); ++i) {
    if (StraysFromSegment(stroke[i], stroke[kept - 1], stroke[i + 1])) stroke[kept++] = stroke[i];
  }
  stroke[kept++] = stroke.back();
  return kept;
}

void GlyphStrokeCache::Clear() {
  entries_.clear();
  points_.clear();
  sizes_.clear();
}

void GlyphStrokeCache::Use(const Affine2& map) {
  const double linear[4] = {map.a, map.b, map.c, map.d};
  bool same = !empty_;
  for (int i = 0; i < 4 && same; ++i) same = linear[i] == linear_[i];
  if (same && points_.size() <= kMaxCachedPoints) return;
  Clear();
  for (int i = 0; i < 4; ++i) linear_[i] = linear[i];
  empty_ = false;
}

GlyphStrokeCache::Strokes GlyphStrokeCache::Get(const StrokeGlyph& glyph) {
  const Entry* found = nullptr;
  for (const Entry& e : entries_) {
    if (e.glyph == &glyph) {
      found = &e;
      break;
    }
  }
  if (found == nullptr) {
    Entry e;
    e.glyph = &glyph;
    e.firstPoint = points_.size();
    e.firstSize = sizes_.size();
    const Affine2 linear{linear_[0], linear_[1], linear_[2], linear_[3], 0, 0};
    std::size_t from = 0;
    for (const int size : glyph.sizes) {
      const std::size_t at = points_.size();
      const auto n = static_cast<std::size_t>(size);
      points_.resize(at + n);
      Vec2* out = points_.data() + at;
      for (std::size_t i = 0; i < n; ++i) {
        out[i] = linear.ApplyLinear(glyph.points[from + i]);
        e.box.Extend(out[i]);
      }
      const std::size_t kept = DecimateStroke({out, n});
      points_.resize(at + kept);
      sizes_.push_back(static_cast<int>(kept));
      from += n;
    }
    e.pointCount = points_.size() - e.firstPoint;
    e.sizeCount = sizes_.size() - e.firstSize;
    entries_.push_back(e);
    found = &entries_.back();
  }
  return {std::span<const Vec2>(points_).subspan(found->firstPoint, found->pointCount),
          std::span<const int>(sizes_).subspan(found->firstSize, found->sizeCount), found->box};
}

}  // namespace sheafwork::embedded
