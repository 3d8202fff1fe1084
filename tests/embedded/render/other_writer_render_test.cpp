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

const Layout& Model(const Drawing& d) { return ModelOf(d); }

Drawing ReadData(const std::string& file) { return ReadTestDrawing("dxf/" + file); }

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

// Construction lines, meshes and multileaders (tests/data/dxf/entities)
// plotted 1:1 on a 100 mm sheet: where each must leave ink, and where it
// must not.
constexpr double kPx = 4;

struct InkCase {
  const char* file;
  std::vector<Vec2> ink;    ///< sheet points with ink within 0.6 mm
  std::vector<Vec2> blank;  ///< sheet points without
};

void PrintTo(const InkCase& c, std::ostream* os) { *os << c.file; }

class EntityKindsRender : public ::testing::TestWithParam<InkCase> {};

TEST_P(EntityKindsRender, InkLandsWhereTheEntitiesAre) {
  const InkCase& c = GetParam();
  const Drawing d = ReadTestDrawing(std::string("dxf/entities/") + c.file);
  const QImage image = RenderSheet(d, ModelOf(d), OneToOneSettings(100), kPx);
  for (const Vec2 p : c.ink) {
    EXPECT_TRUE(InkNear(image, kPx, p, 0.6)) << "no ink at " << p.x << ", " << p.y;
  }
  for (const Vec2 p : c.blank) {
    EXPECT_FALSE(InkNear(image, kPx, p, 0.6)) << "ink at " << p.x << ", " << p.y;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Files, EntityKindsRender,
    ::testing::Values(
        // The line through (50, 50) both ways to the sheet's edges; the ray
        // from (20, 80) to the right only.
        InkCase{"construction_lines.dxf", {{5, 5}, {95, 95}, {50, 80}, {95, 80}}, {{10, 80}}},
        // Polyface squares, the 3 × 3 polygon mesh, the MESH square; not
        // inside their faces.
        InkCase{"meshes.dxf",
                {{20, 10}, {40, 30}, {30, 20}, {67, 25}, {82, 40}, {25, 60}, {40, 75}},
                {{20, 20}, {67, 18}, {25, 75}}},
        // Arrow tips, landings, the text and the block's circle.
        InkCase{"multileaders.dxf",
                {{20.3, 20.6}, {44, 47.5}, {51, 47.6}, {60.2, 21}, {85, 80}},
                {{30, 70}, {15, 15}}}));

}  // namespace
}  // namespace sheafwork::embedded
