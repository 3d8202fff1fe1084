// Curves flattened into points: arcs, bulges, splines, hatch patterns, and
// the boxes of arcs.

#include "embedded/render/curves.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "embedded/render/arc_box.h"
#include "embedded/render/hatch_pattern.h"
#include "embedded/render/render_test_support.h"
#include "embedded/render/transform.h"

namespace sheafwork::embedded {
namespace {

using testing::ExpectNear;

constexpr double kPi = std::numbers::pi;

TEST(CurvesTest, BulgeGivesTheArcThroughBothVertices) {
  struct Case {
    Vec2 from, to;
    double bulge;
    Vec2 center;
    double radius;
  };
  const Case cases[] = {
      {{0, 0}, {2, 0}, std::tan(kPi / 8), {1, 1}, std::sqrt(2.0)},    // 90° counter-clockwise
      {{0, 0}, {2, 0}, -std::tan(kPi / 8), {1, -1}, std::sqrt(2.0)},  // 90° clockwise
      {{0, 0}, {2, 0}, 1, {1, 0}, 1},                                 // half circle
      {{5, 5}, {5, 9}, 1, {5, 7}, 2},
  };
  for (const Case& c : cases) {
    const BulgeArc arc = ArcFromBulge(c.from, c.to, c.bulge);
    ExpectNear(arc.center, c.center, 1e-12);
    EXPECT_NEAR(arc.radius, c.radius, 1e-12);
    std::vector<Vec2> points{c.from};
    AppendBulgeSegment(points, c.from, c.to, c.bulge, 1, Flattening{});
    ExpectNear(points.back(), c.to, 0);  // exactly
    for (const Vec2& p : points) {
      EXPECT_NEAR(std::hypot(p.x - c.center.x, p.y - c.center.y), c.radius, 1e-9);
    }
    // The arc's middle point bulges to the side the sign says.
    const Vec2 mid = points[points.size() / 2];
    const double side =
        (c.to.x - c.from.x) * (mid.y - c.from.y) - (c.to.y - c.from.y) * (mid.x - c.from.x);
    EXPECT_LT(side * c.bulge, 0);
  }
}

TEST(CurvesTest, BSplinesByDeBoor) {
  // A clamped quadratic with three control points is a Bézier curve.
  std::vector<Vec3> out;
  const std::vector<Vec3> cps{{0, 0, 0}, {1, 2, 0}, {2, 0, 0}};
  AppendBSpline(out, 2, std::vector<double>{0, 0, 0, 1, 1, 1}, cps, {}, 4);
  ASSERT_EQ(out.size(), 5u);
  EXPECT_NEAR(out[2].x, 1, 1e-12);
  EXPECT_NEAR(out[2].y, 1, 1e-12);  // 0.25·0 + 0.5·2 + 0.25·0
  EXPECT_NEAR(out[4].x, 2, 1e-12);

  // A rational quadratic with weights 1, √½, 1 is a quarter circle.
  out.clear();
  const std::vector<Vec3> quarter{{1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  AppendBSpline(out, 2, std::vector<double>{0, 0, 0, 1, 1, 1}, quarter,
                std::vector<double>{1, std::sqrt(0.5), 1}, 16);
  for (const Vec3& p : out) EXPECT_NEAR(std::hypot(p.x, p.y), 1, 1e-12);

  // A knot vector of the wrong length falls back to a clamped one.
  out.clear();
  AppendBSpline(out, 3, std::vector<double>{0, 1}, cps, {}, 8);
  ASSERT_EQ(out.size(), 9u);
  EXPECT_NEAR(out.front().x, 0, 1e-12);
  EXPECT_NEAR(out.back().x, 2, 1e-12);
}

TEST(HatchPatternTest, LinesAreCutToTheBoundaryAndDashed) {
  // A 10 × 10 square with a 2 × 2 hole in the middle.
  const std::vector<Vec2> points{{0, 0}, {10, 0}, {10, 10}, {0, 10},
                                 {4, 4}, {6, 4},  {6, 6},   {4, 6}};
  const std::vector<int> sizes{4, 4};
  HatchPatternLine line;
  line.base = {0, 0.5};
  line.offset = {0, 1};
  std::vector<Vec2> pairs;
  ASSERT_TRUE(AppendPatternSegments(points, sizes, line, pairs, 1000));
  // Ten lines at y = 0.5 ... 9.5; those at 4.5 and 5.5 are split by the hole.
  ASSERT_EQ(pairs.size() / 2, 12u);
  double total = 0;
  for (std::size_t i = 0; i < pairs.size(); i += 2) {
    total += std::hypot(pairs[i + 1].x - pairs[i].x, pairs[i + 1].y - pairs[i].y);
  }
  EXPECT_NEAR(total, 10 * 10 - 2 * 2, 1e-9);

  line.dashes = {1, -1};  // half of every line
  pairs.clear();
  ASSERT_TRUE(AppendPatternSegments(points, std::vector<int>{4}, line, pairs, 1000));
  total = 0;
  for (std::size_t i = 0; i < pairs.size(); i += 2) total += pairs[i + 1].x - pairs[i].x;
  EXPECT_NEAR(total, 50, 1e-9);

  line.offset = {0, 1e-6};  // far too dense: refused, not a million lines
  pairs.clear();
  EXPECT_FALSE(AppendPatternSegments(points, sizes, line, pairs, 1000));
}

// The box of an arc is that of its ends and the extremes it passes, for
// every start and sweep either way, a turn and more included.
TEST(ArcBoxTest, MatchesADenselySampledArc) {
  // Steps through every case, and ends exactly on the axes.
  std::vector<double> starts = {0, kPi / 2, 2 * kPi + kPi / 4};
  std::vector<double> sweeps = {kPi / 2, -kPi / 2, 1.5 * kPi, 2 * kPi, -2 * kPi};
  for (double start = -7; start < 7; start += 0.37) starts.push_back(start);
  for (double sweep = -7.1; sweep < 7.2; sweep += 0.41) sweeps.push_back(sweep);
  for (const double start : starts) {
    for (const double sweep : sweeps) {
      Box2 sampled;
      constexpr int kSamples = 2000;
      for (int i = 0; i <= kSamples; ++i) {
        const double a = start + sweep * i / kSamples;
        sampled.Extend(Vec2{3 + 2 * std::cos(a), -1 + 2 * std::sin(a)});
      }
      SCOPED_TRACE(::testing::Message() << "start " << start << " sweep " << sweep);
      ExpectNear(ArcBox({3, -1}, 2, start, sweep), sampled, 1e-5);
    }
  }
}

// A placement in space (turned about a tilted axis, scaled unevenly, moved)
// and its inverse bring every point back; a flat one has no inverse.
TEST(TransformTest, InverseBringsPointsBack) {
  const Transform3 t = Transform3::Translation({5, -7, 3}) * Transform3::Ocs({0.3, -0.4, 0.8}) *
                       Transform3::RotationZ(33) * Transform3::Scaling({2, 0.5, 3});
  const Transform3 inverse = t.Inverse();
  for (const Vec3 p : {Vec3{0, 0, 0}, Vec3{1, 2, 3}, Vec3{-40, 7, 0.5}}) {
    const Vec3 back = inverse.Apply(t.Apply(p));
    EXPECT_NEAR(std::hypot(back.x - p.x, back.y - p.y, back.z - p.z), 0, 1e-9);
  }
  const Vec3 q = Transform3::Scaling({1, 1, 0}).Inverse().Apply({4, 5, 6});
  EXPECT_EQ(q.x, 4);
  EXPECT_EQ(q.z, 6);  // the identity
}

}  // namespace
}  // namespace sheafwork::embedded
