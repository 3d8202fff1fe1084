#include "embedded/render/curves.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace sheafwork::embedded {

namespace {

constexpr int kMaxArcSegments = 4096;

Vec3 Lerp(const Vec3& a, const Vec3& b, double t) {
  return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.z + (b.z - a.z) * t};
}

double Distance(const Vec3& a, const Vec3& b) {
  return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y) +
                   (a.z - b.z) * (a.z - b.z));
}

}  // namespace

int ArcSegments(double outputRadius, double sweep, const Flattening& f) {
  const double angle = std::fabs(sweep);
  if (angle == 0) return 1;
  double step = std::numbers::pi / 2;
  if (outputRadius > 0 && f.tolerance > 0 && f.tolerance < outputRadius) {
    step = std::min(step, 2 * std::acos(1 - f.tolerance / outputRadius));
  }
  const double minimum = angle * std::max(f.minSegmentsPerCircle, 4) / (2 * std::numbers::pi);
  const double n = std::max(std::ceil(angle / step), std::ceil(minimum));
  if (!(n >= 1)) return 1;  // not a number
  return static_cast<int>(std::min(n, static_cast<double>(kMaxArcSegments)));
}

void AppendArc(std::vector<Vec2>& out, Vec2 center, double radius, double start, double sweep,
               int segments, bool withStart) {
  // The direction turns by a fixed step: rotate it rather than take a sine
  // and cosine per point, starting exactly again every kExactEvery points
  // and at the last one so that rounding cannot build up.
  constexpr int kExactEvery = 32;
  const int first = withStart ? 0 : 1;
  const double step = sweep / segments;
  const double stepCos = std::cos(step), stepSin = std::sin(step);
  double cs = 0, sn = 0;
  for (int i = first; i <= segments; ++i) {
    if (i == first || i == segments || i % kExactEvery == 0) {
      const double a = start + sweep * i / segments;
      cs = std::cos(a);
      sn = std::sin(a);
    } else {
      const double next = cs * stepCos - sn * stepSin;
      sn = sn * stepCos + cs * stepSin;
      cs = next;
    }
    out.push_back({center.x + radius * cs, center.y + radius * sn});
  }
}

BulgeArc ArcFromBulge(Vec2 from, Vec2 to, double bulge) {
  const double dx = to.x - from.x, dy = to.y - from.y;
  const double chord = std::hypot(dx, dy);
  BulgeArc arc;
  arc.radius = chord * (1 + bulge * bulge) / (4 * std::fabs(bulge));
  const double along = chord * (1 - bulge * bulge) / (4 * bulge);
  const Vec2 normal{-dy / chord, dx / chord};
  arc.center = {(from.x + to.x) / 2 + normal.x * along, (from.y + to.y) / 2 + normal.y * along};
  arc.startAngle = std::atan2(from.y - arc.center.y, from.x - arc.center.x);
  arc.sweep = 4 * std::atan(bulge);
  return arc;
}

void AppendBulgeSegment(std::vector<Vec2>& out, Vec2 from, Vec2 to, double bulge,
                        double outputScale, const Flattening& flattening) {
  if (bulge == 0 || (from.x == to.x && from.y == to.y) || !std::isfinite(bulge)) {
    out.push_back(to);
    return;
  }
  const BulgeArc arc = ArcFromBulge(from, to, bulge);
  const int n = ArcSegments(arc.radius * outputScale, arc.sweep, flattening);
  AppendArc(out, arc.center, arc.radius, arc.startAngle, arc.sweep, n, false);
  out.back() = to;  // exactly the next vertex
}

void AppendBSpline(std::vector<Vec3>& out, int degree, std::span<const double> knotsIn,
                   std::span<const Vec3> cps, std::span<const double> weightsIn, int samples) {
  const int n = static_cast<int>(cps.size());
  if (n < 2) return;
  const int p = std::clamp(degree, 1, n - 1);
  const std::size_t knotCount = static_cast<std::size_t>(n + p + 1);
  std::vector<double> knots(knotsIn.begin(), knotsIn.end());
  bool valid = knots.size() == knotCount;
  for (std::size_t i = 1; valid && i < knots.size(); ++i) valid = knots[i] >= knots[i - 1];
  if (valid) valid = knots[static_cast<std::size_t>(n)] > knots[static_cast<std::size_t>(p)];
  if (!valid) {
    knots.assign(knotCount, 0);
    for (int i = 0; i < static_cast<int>(knotCount); ++i) {
      knots[static_cast<std::size_t>(i)] = std::clamp(i - p, 0, n - p);
    }
  }
  const bool rational = weightsIn.size() == cps.size();
  // Homogeneous control points.
  std::vector<double> h(static_cast<std::size_t>(4 * n));
  for (int i = 0; i < n; ++i) {
    const double w = rational && weightsIn[static_cast<std::size_t>(i)] > 0
                         ? weightsIn[static_cast<std::size_t>(i)]
                         : 1.0;
    const Vec3& c = cps[static_cast<std::size_t>(i)];
    h[static_cast<std::size_t>(4 * i)] = c.x * w;
    h[static_cast<std::size_t>(4 * i + 1)] = c.y * w;
    h[static_cast<std::size_t>(4 * i + 2)] = c.z * w;
    h[static_cast<std::size_t>(4 * i + 3)] = w;
  }
  const double t0 = knots[static_cast<std::size_t>(p)];
  const double t1 = knots[static_cast<std::size_t>(n)];
  samples = std::max(samples, 1);
  std::vector<double> d(static_cast<std::size_t>(4 * (p + 1)));
  int span = p;
  for (int s = 0; s <= samples; ++s) {
    const double t = s == samples ? t1 : t0 + (t1 - t0) * s / samples;
    while (span < n - 1 && t >= knots[static_cast<std::size_t>(span + 1)]) ++span;
    // de Boor on the p + 1 control points of this span.
    for (int j = 0; j <= p; ++j) {
      for (int c = 0; c < 4; ++c) {
        d[static_cast<std::size_t>(4 * j + c)] =
            h[static_cast<std::size_t>(4 * (j + span - p) + c)];
      }
    }
    for (int r = 1; r <= p; ++r) {
      for (int j = p; j >= r; --j) {
        const double lo = knots[static_cast<std::size_t>(j + span - p)];
        const double hi = knots[static_cast<std::size_t>(j + 1 + span - r)];
        const double alpha = hi > lo ? (t - lo) / (hi - lo) : 0.0;
        for (int c = 0; c < 4; ++c) {
          const std::size_t k = static_cast<std::size_t>(4 * j + c);
          d[k] = (1 - alpha) * d[k - 4] + alpha * d[k];
        }
      }
    }
    const std::size_t k = static_cast<std::size_t>(4 * p);
    const double w = d[k + 3] != 0 ? d[k + 3] : 1.0;
    out.push_back({d[k] / w, d[k + 1] / w, d[k + 2] / w});
  }
}

void AppendThroughPoints(std::vector<Vec3>& out, std::span<const Vec3> pts, bool closed,
                         int samplesPerSpan) {
  const std::size_t n = pts.size();
  if (n < 2) return;
  samplesPerSpan = std::max(samplesPerSpan, 1);
  auto at = [&](long i) -> const Vec3& {
    const long count = static_cast<long>(n);
    if (closed) return pts[static_cast<std::size_t>(((i % count) + count) % count)];
    return pts[static_cast<std::size_t>(std::clamp(i, 0L, count - 1))];
  };
  const long spans = static_cast<long>(closed ? n : n - 1);
  out.push_back(pts[0]);
  for (long i = 0; i < spans; ++i) {
    Vec3 p0 = at(i - 1), p1 = at(i), p2 = at(i + 1), p3 = at(i + 2);
    if (!closed && i == 0) p0 = Lerp(p1, p2, -1);  // mirror the missing neighbour
    if (!closed && i == spans - 1) p3 = Lerp(p1, p2, 2);
    // Centripetal parametrisation (alpha = 0.5) avoids loops and cusps.
    const double d01 = std::max(std::sqrt(Distance(p0, p1)), 1e-12);
    const double d12 = std::max(std::sqrt(Distance(p1, p2)), 1e-12);
    const double d23 = std::max(std::sqrt(Distance(p2, p3)), 1e-12);
    const double k0 = 0, k1 = d01, k2 = k1 + d12, k3 = k2 + d23;
    for (int s = 1; s <= samplesPerSpan; ++s) {
      const double t = k1 + (k2 - k1) * s / samplesPerSpan;
      const Vec3 a1 = Lerp(p0, p1, (t - k0) / (k1 - k0));
      const Vec3 a2 = Lerp(p1, p2, (t - k1) / (k2 - k1));
      const Vec3 a3 = Lerp(p2, p3, (t - k2) / (k3 - k2));
      const Vec3 b1 = Lerp(a1, a2, (t - k0) / (k2 - k0));
      const Vec3 b2 = Lerp(a2, a3, (t - k1) / (k3 - k1));
      out.push_back(Lerp(b1, b2, (t - k1) / (k2 - k1)));
    }
  }
}

}  // namespace sheafwork::embedded
