// Drawings written by another program (tests/data/dxf/*/make_drawings.py),
// read by our reader and drawn into a recording backend.

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

using testing::DrawLayout;
using testing::ExpectNear;
using testing::Recorded;

const Layout& Model(const Drawing& d) { return testing::ModelOf(d); }

Drawing ReadData(const std::string& file) { return testing::ReadTestDrawing("dxf/" + file); }

TEST(OtherWriterRender, NegativeRadiiDrawTheirSize) {
  const Drawing d = ReadData("negative-radius/negative-radius.dxf");
  // The circle of radius 20 about (50, 50), the quarter arc of 30 about (150, 50).
  ExpectNear(ComputeLayoutExtents(d, Model(d), Model(d).settings), Box2::Of({30, 30}, {180, 80}),
             1e-6);
}

TEST(OtherWriterRender, ArrayOfReferencesShowsItsAttributesInEveryCell) {
  const Drawing d = ReadData("minsert-attributes/minsert.dxf");
  std::vector<Vec2> places;
  for (const Recorded& r : DrawLayout(d, Model(d)).items) {
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
  for (const Recorded& r : DrawLayout(d, Model(d)).items) {
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

}  // namespace
}  // namespace sheafwork::embedded
