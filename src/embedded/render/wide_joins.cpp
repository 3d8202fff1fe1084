#include "embedded/render/wide_joins.h"

#include <algorithm>
#include <cmath>

namespace sheafwork::embedded {

std::size_t WideJoin(Vec2 vertex, Vec2 in, double halfIn, Vec2 out, double halfOut,
                     std::array<Vec2, 4>& corner) {
  const double turn = in.x * out.y - in.y * out.x;  // > 0 turning left
  if (std::fabs(turn) < 1e-9 || !(halfIn > 0) || !(halfOut > 0)) return 0;
  // The outer side is on the right of a left turn, on the left of a right one.
  const double side = turn > 0 ? 1.0 : -1.0;
  const Vec2 a{vertex.x + in.y * side * halfIn, vertex.y - in.x * side * halfIn};
  const Vec2 b{vertex.x + out.y * side * halfOut, vertex.y - out.x * side * halfOut};
  // Where the two outer edges meet: a + t·in = b + u·out.
  const double t = ((b.x - a.x) * out.y - (b.y - a.y) * out.x) / turn;
  const Vec2 miter{a.x + t * in.x, a.y + t * in.y};
  const double reach = std::hypot(miter.x - vertex.x, miter.y - vertex.y);
  corner[0] = vertex;
  corner[1] = a;
  if (t >= 0 && reach <= kMiterLimit * std::max(halfIn, halfOut)) {
    corner[2] = miter;
    corner[3] = b;
    return 4;
  }
  corner[2] = b;
  return 3;
}

Vec2 RunDirection(std::span<const Vec2> points, bool atEnd) {
  const std::size_t n = points.size();
  for (std::size_t k = 1; k < n; ++k) {
    const Vec2 p = atEnd ? points[n - 1 - k] : points[k - 1];
    const Vec2 q = atEnd ? points[n - k] : points[k];
    const double dx = q.x - p.x, dy = q.y - p.y;
    const double length = std::hypot(dx, dy);
    if (length > 0) return {dx / length, dy / length};
  }
  return {0, 0};
}

}  // namespace sheafwork::embedded
