// Hatches written by another program (tests/data/dxf/hatch-spline-edges/
// make_drawings.py): a path's edges after a spline edge belong to the path,
// whatever counts the spline edge carries.

#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using Kind = HatchEdge::Kind;

struct SplineEdgeCase {
  const char* file;
  std::vector<Kind> edges;
};

const SplineEdgeCase kCases[] = {
    {"spline-r2018.dxf", {Kind::Line, Kind::Spline, Kind::Line, Kind::Arc}},
    {"spline-fit-r2018.dxf", {Kind::Line, Kind::Spline, Kind::Line, Kind::Arc}},
    {"spline-last-r2018.dxf", {Kind::Line, Kind::Arc, Kind::Line, Kind::Spline}},
    {"spline-last-r2000.dxf", {Kind::Line, Kind::Arc, Kind::Line, Kind::Spline}},
};

TEST(HatchEdges, EdgesAfterASplineEdgeStayInThePath) {
  for (const SplineEdgeCase& c : kCases) {
    SCOPED_TRACE(c.file);
    const Drawing d = testing::ReadFixture(std::string("hatch-spline-edges/") + c.file);
    const Block* model = d.FindBlock("*Model_Space");
    ASSERT_NE(model, nullptr);
    ASSERT_EQ(model->entities.size(), 1u);
    const auto* hatch = std::get_if<Hatch>(&model->entities[0].geometry);
    ASSERT_NE(hatch, nullptr);
    ASSERT_EQ(hatch->loops.size(), 1u);
    std::vector<Kind> kinds;
    for (const HatchEdge& e : hatch->loops[0].edges) kinds.push_back(e.kind);
    ASSERT_EQ(kinds, c.edges);
    for (const HatchEdge& e : hatch->loops[0].edges) {
      if (e.kind == Kind::Spline) {
        EXPECT_EQ(e.controlPoints.size(), 4u);
        EXPECT_EQ(e.knots.size(), 8u);
      }
      if (e.kind == Kind::Arc) {
        EXPECT_DOUBLE_EQ(e.radius, 50);
      }
    }
  }
}

}  // namespace
}  // namespace sheafwork::embedded
