// Drawings written by another program (tests/data/dxf/*/make_*.py), read by
// our reader and drawn into a recording backend or painted.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "embedded/render/plot_area.h"
#include "embedded/render/render_test_support.h"
#include "embedded/render/wide_joins.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

Drawing ReadData(const std::string& file) { return ReadTestDrawing("dxf/" + file); }

TEST(OtherWriterRender, NegativeRadiiDrawTheirSize) {
  const Drawing d = ReadData("negative-radius/negative-radius.dxf");
  // The circle of radius 20 about (50, 50), the quarter arc of 30 about (150, 50).
  ExpectNear(ComputeLayoutExtents(d, ModelOf(d), ModelOf(d).settings),
             Box2::Of({30, 30}, {180, 80}), 1e-6);
}

TEST(OtherWriterRender, ArrayOfReferencesShowsItsAttributesInEveryCell) {
  const Drawing d = ReadData("minsert-attributes/minsert.dxf");
  std::vector<Vec2> places;
  for (const Recorded& r : DrawLayout(d, ModelOf(d)).items) {
    if (r.kind == Recorded::Kind::Text && r.text == "A-1") places.push_back(r.points[0]);
  }
  // Turned by 90°: a column further is 30 up, a row further 20 to the left.
  ExpectNear(places, {{98, 100}, {98, 130}, {98, 160}, {78, 100}, {78, 130}, {78, 160}}, 1e-9);
}

bool HasPoint(const Recorded& r, Vec2 p) {
  for (const Vec2& q : r.points) {
    if (std::hypot(q.x - p.x, q.y - p.y) < 1e-9) return true;
  }
  return false;
}

TEST(OtherWriterRender, WidePolylineCornersAreMitredUpToALimit) {
  const Drawing d = ReadData("wide-polyline-corners/corners.dxf");
  std::vector<Recorded> fills;
  for (const Recorded& r : DrawLayout(d, ModelOf(d)).items) {
    if (r.kind == Recorded::Kind::Fill) fills.push_back(r);
  }
  // The right angle at (50, 0), 4 wide: its outer corner is filled to the
  // mitre point.
  const auto mitred = [&](const Recorded& r) { return HasPoint(r, {52, -2}); };
  EXPECT_EQ(std::count_if(fills.begin(), fills.end(), mitred), 1);
  // The sharp turn at (150, 0) is cut across, not drawn as a long spike.
  const auto bevelled = [&](const Recorded& r) {
    return r.points.size() == 3 && HasPoint(r, {150, 0}) && HasPoint(r, {150, -2});
  };
  EXPECT_EQ(std::count_if(fills.begin(), fills.end(), bevelled), 1);
  for (const Recorded& r : fills) {
    if (!HasPoint(r, {150, 0})) continue;  // a band, not the corner
    for (const Vec2& p : r.points) EXPECT_LT(std::hypot(p.x - 150, p.y), kMiterLimit * 2);
  }
}

// Multileaders (tests/data/dxf/entities) plotted 1:1 on a 100 mm sheet:
// ink at the arrow tips, landings, the text and the block's circle, none
// elsewhere.
TEST(OtherWriterRender, MultileadersLeaveInkWhereTheirPartsAre) {
  constexpr double kPx = 4;
  const Drawing d = ReadTestDrawing("dxf/entities/multileaders.dxf");
  const QImage image = RenderSheet(d, ModelOf(d), OneToOneSettings(100), kPx);
  for (const Vec2 p :
       {Vec2{20.3, 20.6}, Vec2{44, 47.5}, Vec2{51, 47.6}, Vec2{60.2, 21}, Vec2{85, 80}}) {
    EXPECT_TRUE(InkNear(image, kPx, p, 0.6)) << "no ink at " << p.x << ", " << p.y;
  }
  for (const Vec2 p : {Vec2{30, 70}, Vec2{15, 15}}) {
    EXPECT_FALSE(InkNear(image, kPx, p, 0.6)) << "ink at " << p.x << ", " << p.y;
  }
}

}  // namespace
}  // namespace sheafwork::embedded
