#pragma once
// An axis-aligned rectangle that may be empty.

#include <algorithm>
#include <limits>

#include "embedded/model/geometry.h"

namespace sheafwork::embedded {

struct Box2 {
  Vec2 min{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
  Vec2 max{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

  static Box2 Of(Vec2 a, Vec2 b) {
    Box2 box;
    box.Extend(a);
    box.Extend(b);
    return box;
  }
  bool Empty() const { return !(min.x <= max.x && min.y <= max.y); }
  double Width() const { return max.x - min.x; }
  double Height() const { return max.y - min.y; }
  Vec2 Center() const { return {(min.x + max.x) / 2, (min.y + max.y) / 2}; }
  void Extend(Vec2 p) {
    min.x = std::min(min.x, p.x);
    min.y = std::min(min.y, p.y);
    max.x = std::max(max.x, p.x);
    max.y = std::max(max.y, p.y);
  }
  void Extend(const Box2& b) {
    if (b.Empty()) return;
    Extend(b.min);
    Extend(b.max);
  }
  /// Whether `b` lies wholly inside (edges included).
  bool Contains(const Box2& b) const {
    return min.x <= b.min.x && min.y <= b.min.y && b.max.x <= max.x && b.max.y <= max.y;
  }
  bool Intersects(const Box2& b) const {
    return !(b.min.x > max.x || b.max.x < min.x || b.min.y > max.y || b.max.y < min.y);
  }
  Box2 Intersection(const Box2& b) const {
    Box2 r;
    r.min = {std::max(min.x, b.min.x), std::max(min.y, b.min.y)};
    r.max = {std::min(max.x, b.max.x), std::min(max.y, b.max.y)};
    return r;
  }
};

}  // namespace sheafwork::embedded
