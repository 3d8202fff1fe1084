// Geometry: curves flattened into points (arcs, bulges, splines, hatch
// patterns), placements in space, dashes, point symbols and the place of a
// plot on its sheet.

#include "embedded/render/curves.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "embedded/render/dasher.h"
#include "embedded/render/hatch_pattern.h"
#include "embedded/render/page_geometry.h"
#include "embedded/render/point_style.h"
#include "embedded/render/render_test_support.h"
#include "embedded/render/transform.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

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

// The dash cutter and the point symbols.

struct Cut {
  Dasher::Result result;
  std::vector<std::vector<Vec2>> pieces;
};

Cut CutUp(Dasher& dasher, std::vector<Vec2> points, bool closed = false) {
  std::vector<Vec2> flat;
  std::vector<int> sizes;
  Cut cut{dasher.Cut(points, closed, flat, sizes), {}};
  std::size_t at = 0;
  for (const int n : sizes) {
    cut.pieces.emplace_back(flat.begin() + static_cast<long>(at),
                            flat.begin() + static_cast<long>(at) + n);
    at += static_cast<std::size_t>(n);
  }
  EXPECT_EQ(at, flat.size());
  return cut;
}

// The stretches of a straight run along x that are drawn, as [from, to]
// along it, touching ones joined.
using Stretches = std::vector<std::pair<double, double>>;

void Join(Stretches& stretches, double from, double to) {
  if (!stretches.empty() && std::fabs(stretches.back().second - from) < 1e-9) {
    stretches.back().second = to;
  } else {
    stretches.emplace_back(from, to);
  }
}

// What an output that dashes lines itself draws of a run `length` long with
// `dashes`: the pattern laid from `offset` before the run's start, each
// element in turn drawn or skipped.
Stretches Dashed(const Dasher::OnOff& dashes, double length) {
  Stretches drawn;
  double t = -dashes.offset;
  for (std::size_t i = 0; t < length && !dashes.lengths.empty(); ++i) {
    const double element = dashes.lengths[i % dashes.lengths.size()];
    const bool on = i % 2 == 0;
    const bool shows = element > 0 ? t + element > 0 : t >= 0;
    if (on && shows) Join(drawn, std::max(t, 0.0), std::min(t + element, length));
    t += element;
  }
  return drawn;
}

TEST(DasherTest, FollowDrawsWhatCutCutsRunAfterRun) {
  // Lengths that add up exactly in binary; dots without length, so that
  // both ways draw them alike.
  const std::vector<std::vector<double>> patterns = {
      {2, -1}, {-1, 2}, {2, -0.5, 0, -0.5}, {1, 1, -1}, {-0.5, 2, -0.5}, {0, -1}, {-1, -1},
  };
  const double runs[] = {10.25, 1, 3.5, 7, 0.75};  // one shorter than most patterns
  for (const auto& pattern : patterns) {
    SCOPED_TRACE(::testing::PrintToString(pattern));
    Dasher cutter, follower;
    const bool dashed = cutter.SetPattern(pattern, 1, 0);
    ASSERT_EQ(follower.SetPattern(pattern, 1, 0), dashed);
    for (const double run : runs) {
      SCOPED_TRACE(run);
      // Two segments along x: the phase runs on across the vertex.
      const std::vector<Vec2> line = {{0, 0}, {run / 3, 0}, {run, 0}};
      const Cut cut = CutUp(cutter, line);
      Dasher::OnOff dashes;
      const Dasher::Result result = follower.Follow(line, false, dashes);
      ASSERT_EQ(result, cut.result);
      if (result != Dasher::Result::kDashed) continue;
      Stretches expected;
      for (const auto& piece : cut.pieces) Join(expected, piece.front().x, piece.back().x);
      const Stretches drawn = Dashed(dashes, run);
      ASSERT_EQ(drawn.size(), expected.size());
      for (std::size_t i = 0; i < drawn.size(); ++i) {
        EXPECT_NEAR(drawn[i].first, expected[i].first, 1e-9) << i;
        EXPECT_NEAR(drawn[i].second, expected[i].second, 1e-9) << i;
      }
    }
  }
}

TEST(PointStyleTest, SymbolsByMode) {
  for (const auto& row : sheafwork::testing::ReadTestTable("render/point_symbols.tsv")) {
    SCOPED_TRACE(row.where);
    std::vector<Vec2> pairs;
    const PointSymbol s = AppendPointSymbol(std::stoi(row[0]), {10, 20}, 4, pairs);
    EXPECT_EQ(pairs.size(), 2 * std::stoul(row[1]));
    EXPECT_EQ(s.dot, row[2] == "dot");
    EXPECT_EQ(s.circleRadius, row[3] == "circle" ? 2.0 : 0.0);
    for (const Vec2& p : pairs) {  // every stroke within the symbol's square
      EXPECT_LE(std::abs(p.x - 10), 2.0 + 1e-12);
      EXPECT_LE(std::abs(p.y - 20), 2.0 + 1e-12);
    }
  }
  std::vector<Vec2> tick;
  AppendPointSymbol(4, {0, 0}, 4, tick);
  ExpectNear(tick, {{0, 0}, {0, 2}});  // upwards from the point
  std::vector<Vec2> small;             // however small
  EXPECT_EQ(AppendPointSymbol(98, {0, 0}, 0.5, small).circleRadius, 0.25);
  EXPECT_EQ(small.size(), 2 * 6u);
}

// Where a plot lands on its sheet (cases in tests/data/render/page_geometry.tsv).

TEST(PageGeometryTest, PlacesThePlotOnTheSheet) {
  for (const auto& row : sheafwork::testing::ReadTestTable("render/page_geometry.tsv")) {
    SCOPED_TRACE(row.where + " " + row[0]);
    const std::vector<double> media = NumbersIn(row[1]);
    PlotSettings s;
    s.paperWidth = media.at(0);
    s.paperHeight = media.at(1);
    s.marginLeft = media.at(2);
    s.marginBottom = media.at(3);
    s.marginRight = media.at(4);
    s.marginTop = media.at(5);
    s.rotation = static_cast<std::int16_t>(std::stoi(row[2]));
    s.flags = kUseStandardScale;
    const double scale = std::stod(row[3]);
    s.standardScale = static_cast<std::int16_t>(scale <= 0 ? -scale : 16);
    if (scale > 0) {
      s.Set(kUseStandardScale, false);
      s.customNumerator = 1;
      s.customDenominator = scale;
    }
    s.Set(kPlotCentered, row[4] == "yes");
    s.origin = PointIn(row[5]);
    s.paperUnits = static_cast<std::int16_t>(std::stoi(row[6]));
    const SheetLayout layout = ComputeSheetLayout(s, {BoxIn(row[7]), std::nullopt});
    ExpectNear(Vec2{layout.frame.width, layout.frame.height}, PointIn(row[8]));
    ExpectNear(layout.frame.printable, BoxIn(row[9]));
    EXPECT_NEAR(layout.mmPerDrawingUnit, std::stod(row[10]), 1e-9);
    ExpectNear(layout.drawingToSheet.Apply(PointIn(row[11])), PointIn(row[12]));
  }
}

}  // namespace
}  // namespace sheafwork::embedded
