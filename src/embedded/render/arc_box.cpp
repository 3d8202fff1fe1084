#include "embedded/render/arc_box.h"

#include <cmath>
#include <numbers>

#include "embedded/render/transform.h"

namespace sheafwork::embedded {

Box2 ArcBox(Vec2 center, double radius, double start, double sweep) {
  const Vec2 c = center;
  const double r = radius;
  if (std::fabs(sweep) >= kTwoPi) return Box2::Of({c.x - r, c.y - r}, {c.x + r, c.y + r});
  if (sweep < 0) {
    start += sweep;
    sweep = -sweep;
  }
  const double end = start + sweep;
  Box2 box = Box2::Of({c.x + r * std::cos(start), c.y + r * std::sin(start)},
                      {c.x + r * std::cos(end), c.y + r * std::sin(end)});
  if (!(std::fabs(start) < 1e12) || !std::isfinite(end)) return box;  // angles of no meaning
  // The circle's extreme points lie at multiples of a quarter turn.
  constexpr double kQuarter = std::numbers::pi / 2;
  const Vec2 extremes[4] = {{c.x + r, c.y}, {c.x, c.y + r}, {c.x - r, c.y}, {c.x, c.y - r}};
  const double first = std::ceil(start / kQuarter);
  for (int i = 0; i < 4 && (first + i) * kQuarter <= end; ++i) {
    const long long quarter = static_cast<long long>(first) + i;
    box.Extend(extremes[((quarter % 4) + 4) % 4]);
  }
  return box;
}

}  // namespace sheafwork::embedded
