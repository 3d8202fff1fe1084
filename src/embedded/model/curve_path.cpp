#include "embedded/model/curve_path.h"

#include <algorithm>
#include <cmath>

namespace sheafwork::embedded {

namespace {

// Most chords one curve is cut into.
constexpr int kMostChords = 64;

// Chords for a cubic whose control polygon bends by `bend` (the larger
// second difference): n chords stay within 3 bend / (4 n²) of the curve.
int Chords(double bend, double tolerance) {
  if (!(bend > 0) || !(tolerance > 0)) return 1;
  const double n = std::ceil(std::sqrt(3 * bend / (4 * tolerance)));
  return static_cast<int>(std::clamp(n, 1.0, static_cast<double>(kMostChords)));
}

double Length(double x, double y) { return std::sqrt(x * x + y * y); }

}  // namespace

void FlattenPath(const CurvePath& path, double tolerance, std::vector<Vec2>& points,
                 std::vector<int>& sizes) {
  std::size_t start = points.size();
  const auto endLoop = [&] {
    std::size_t n = points.size() - start;
    if (n > 1 && points.back().x == points[start].x && points.back().y == points[start].y) {
      points.pop_back();  // closed implicitly
      --n;
    }
    if (n < 3) {
      points.resize(start);
    } else {
      sizes.push_back(static_cast<int>(n));
    }
    start = points.size();
  };
  std::size_t k = 0;
  for (CurvePath::Verb verb : path.verbs) {
    switch (verb) {
      case CurvePath::Verb::Move:
        endLoop();
        points.push_back(path.points[k++]);
        break;
      case CurvePath::Verb::Line:
        points.push_back(path.points[k++]);
        break;
      case CurvePath::Verb::Cubic: {
        const Vec2 p0 = points.size() > start ? points.back() : path.points[k];
        const Vec2 c1 = path.points[k], c2 = path.points[k + 1], p1 = path.points[k + 2];
        k += 3;
        const double bend = std::max(Length(p0.x - 2 * c1.x + c2.x, p0.y - 2 * c1.y + c2.y),
                                     Length(c1.x - 2 * c2.x + p1.x, c1.y - 2 * c2.y + p1.y));
        const int n = Chords(bend, tolerance);
        for (int i = 1; i <= n; ++i) {
          const double t = static_cast<double>(i) / n, u = 1 - t;
          const double a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
          points.push_back({a * p0.x + b * c1.x + c * c2.x + d * p1.x,
                            a * p0.y + b * c1.y + c * c2.y + d * p1.y});
        }
        break;
      }
      case CurvePath::Verb::Close:
        endLoop();
        break;
    }
  }
  endLoop();
}

}  // namespace sheafwork::embedded
