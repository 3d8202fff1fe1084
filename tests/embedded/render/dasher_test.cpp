// The dash cutter and the point symbols: pure geometry.

#include "embedded/render/dasher.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "embedded/render/point_style.h"
#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

using testing::ExpectNear;

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

TEST(DasherTest, TooDensePatternGivesNothing) {
  Dasher dasher;
  dasher.SetPattern(std::vector<double>{0.001, -0.001}, 1, 0.1);
  dasher.SetMaxPieces(1000);
  const Cut dense = CutUp(dasher, {{0, 0}, {1000, 0}});
  EXPECT_EQ(dense.result, Dasher::Result::kTooDense);
  EXPECT_TRUE(dense.pieces.empty());
  // The same pattern on a line it fits on.
  EXPECT_EQ(CutUp(dasher, {{0, 0}, {0.5, 0}}).result, Dasher::Result::kDashed);
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
  struct Case {
    int mode;
    std::size_t strokes;
    bool dot;
    bool circle;
  };
  const Case cases[] = {
      {0, 0, true, false},   {1, 0, false, false}, {2, 2, false, false},
      {3, 2, false, false},  {4, 1, false, false}, {34, 2, false, true},
      {66, 6, false, false}, {99, 6, false, true}, {32, 0, true, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.mode);
    std::vector<Vec2> pairs;
    const PointSymbol s = AppendPointSymbol(c.mode, {10, 20}, 4, pairs);
    EXPECT_EQ(pairs.size(), 2 * c.strokes);
    EXPECT_EQ(s.dot, c.dot);
    EXPECT_EQ(s.circleRadius, c.circle ? 2.0 : 0.0);
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

}  // namespace
}  // namespace sheafwork::embedded
