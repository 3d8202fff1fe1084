#include "embedded/render/arc_box.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

using testing::ExpectNear;

constexpr double kPi = std::numbers::pi;

TEST(ArcBoxTest, TakesTheEndsAndTheExtremesTheArcPasses) {
  const double h = std::sqrt(0.5);
  struct Case {
    const char* name;
    Vec2 center;
    double radius, start, sweep;
    Vec2 min, max;
  } cases[] = {
      {"first quarter", {0, 0}, 1, 0, kPi / 2, {0, 0}, {1, 1}},
      {"over the top", {0, 0}, 1, kPi / 4, kPi / 2, {-h, h}, {h, 1}},
      {"clockwise", {0, 0}, 1, 0, -kPi / 2, {0, -1}, {1, 0}},
      {"across angle zero", {0, 0}, 1, -kPi / 4, kPi / 2, {h, -h}, {1, h}},
      {"a turn further on", {0, 0}, 1, 2 * kPi + kPi / 4, kPi / 2, {-h, h}, {h, 1}},
      {"three quarters", {10, 20}, 2, kPi / 2, 1.5 * kPi, {8, 18}, {12, 22}},
      {"whole circle", {10, 20}, 2, 1, 2 * kPi, {8, 18}, {12, 22}},
      {"whole clockwise", {10, 20}, 2, 1, -7, {8, 18}, {12, 22}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ExpectNear(ArcBox(c.center, c.radius, c.start, c.sweep), Box2::Of(c.min, c.max), 1e-12);
  }
}

TEST(ArcBoxTest, MatchesADenselySampledArc) {
  for (double start = -7; start < 7; start += 0.37) {
    for (double sweep = -6.2; sweep < 6.3; sweep += 0.41) {
      Box2 sampled;
      constexpr int kSamples = 20000;
      for (int i = 0; i <= kSamples; ++i) {
        const double a = start + sweep * i / kSamples;
        sampled.Extend(Vec2{3 + 2 * std::cos(a), -1 + 2 * std::sin(a)});
      }
      SCOPED_TRACE(::testing::Message() << "start " << start << " sweep " << sweep);
      ExpectNear(ArcBox({3, -1}, 2, start, sweep), sampled, 1e-6);
    }
  }
}

}  // namespace
}  // namespace sheafwork::embedded
