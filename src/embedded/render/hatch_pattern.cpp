#include "embedded/render/hatch_pattern.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "embedded/render/box.h"
#include "embedded/render/transform.h"

namespace sheafwork::embedded {

namespace {

double Dot(Vec2 a, Vec2 b) { return a.x * b.x + a.y * b.y; }

}  // namespace

bool AppendPatternSegments(std::span<const Vec2> points, std::span<const int> loopSizes,
                           const HatchPatternLine& line, std::vector<Vec2>& pairs,
                           std::size_t maxSegments) {
  Box2 box;
  for (const Vec2& p : points) box.Extend(p);
  if (box.Empty()) return true;
  const double angle = Radians(line.angle);
  const Vec2 dir{std::cos(angle), std::sin(angle)};
  const Vec2 normal{-dir.y, dir.x};
  const double step = Dot(line.offset, normal);
  if (!(std::fabs(step) > 1e-9 * std::max({box.Width(), box.Height(), 1e-9}))) return true;
  double lo = std::numeric_limits<double>::infinity(), hi = -lo;
  for (const Vec2 corner :
       {box.min, box.max, Vec2{box.min.x, box.max.y}, Vec2{box.max.x, box.min.y}}) {
    const double n = Dot(corner, normal);
    lo = std::min(lo, n);
    hi = std::max(hi, n);
  }
  const double base = Dot(line.base, normal);
  double k0 = std::ceil((lo - base) / step), k1 = std::floor((hi - base) / step);
  if (k0 > k1) std::swap(k0, k1);
  if (k1 - k0 > static_cast<double>(maxSegments)) return false;

  double patternLength = 0;
  for (double dash : line.dashes) patternLength += std::fabs(dash);
  const std::size_t start = pairs.size();
  std::vector<double> hits;
  for (double k = k0; k <= k1; ++k) {
    const Vec2 origin{line.base.x + k * line.offset.x, line.base.y + k * line.offset.y};
    hits.clear();
    std::size_t first = 0;
    for (int size : loopSizes) {
      for (int i = 0; i < size; ++i) {
        const Vec2 a = points[first + static_cast<std::size_t>(i)];
        const Vec2 b = points[first + static_cast<std::size_t>((i + 1) % size)];
        const double na = Dot({a.x - origin.x, a.y - origin.y}, normal);
        const double nb = Dot({b.x - origin.x, b.y - origin.y}, normal);
        if ((na > 0) == (nb > 0)) continue;
        const double s = na / (na - nb);
        const Vec2 hit{a.x + s * (b.x - a.x), a.y + s * (b.y - a.y)};
        hits.push_back(Dot({hit.x - origin.x, hit.y - origin.y}, dir));
      }
      first += static_cast<std::size_t>(size);
    }
    std::sort(hits.begin(), hits.end());
    auto emit = [&](double t0, double t1) {
      pairs.push_back({origin.x + t0 * dir.x, origin.y + t0 * dir.y});
      pairs.push_back({origin.x + t1 * dir.x, origin.y + t1 * dir.y});
    };
    for (std::size_t h = 0; h + 1 < hits.size(); h += 2) {
      const double t0 = hits[h], t1 = hits[h + 1];
      if (patternLength <= 0) {
        emit(t0, t1);
      } else {
        double pos = std::floor(t0 / patternLength) * patternLength;
        for (std::size_t e = 0; pos <= t1; e = (e + 1) % line.dashes.size()) {
          const double dash = line.dashes[e];
          const double end = pos + std::fabs(dash);
          if (dash >= 0 && end >= t0) emit(std::max(pos, t0), std::min(end, t1));
          pos = end;
          if ((pairs.size() - start) / 2 >= maxSegments) return false;
        }
      }
      if ((pairs.size() - start) / 2 >= maxSegments) return false;
    }
  }
  return true;
}

}  // namespace sheafwork::embedded
