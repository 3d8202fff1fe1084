#include "embedded/paint/paint_sheet.h"
#include "embedded/render/paint_sheet.h"

#include <gtest/gtest.h>

#include <cmath>

#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

constexpr double kPx = 4;  // pixels per millimetre

TEST(PaintSheetTest, SolidHatchFillsBetweenItsLoops) {
  Drawing d = MakeDrawing();
  Hatch hatch;
  hatch.solid = true;
  HatchLoop square;
  square.isPolyline = true;
  for (Vec2 p : {Vec2{20, 20}, Vec2{80, 20}, Vec2{80, 80}, Vec2{20, 80}}) {
    square.polyline.push_back({{p.x, p.y, 0}, 0, 0, 0});
  }
  HatchLoop hole;  // a circle of two edges around (50, 50)
  hole.edges.resize(2);
  for (std::size_t i = 0; i < 2; ++i) {
    HatchEdge& edge = hole.edges[i];
    edge.kind = HatchEdge::Kind::Arc;
    edge.center = {50, 50};
    edge.radius = 10;
    edge.startAngle = 180.0 * static_cast<double>(i);
    edge.endAngle = edge.startAngle + 180;
  }
  hatch.loops = {square, hole};
  Entity e = MakeEntity(hatch);
  e.props.color = 1;
  ModelSpace(d).entities.push_back(e);
  d.Reindex();

  const QImage image = RenderSheet(d, ModelLayout(d), OneToOneSettings(100), kPx);
  EXPECT_EQ(ColorAt(image, kPx, {30, 30}), 0xFF0000u);
  EXPECT_EQ(ColorAt(image, kPx, {50, 50}), 0xFFFFFFu);  // the island
  EXPECT_EQ(ColorAt(image, kPx, {50, 65}), 0xFF0000u);
  EXPECT_EQ(ColorAt(image, kPx, {10, 10}), 0xFFFFFFu);
}

TEST(PaintSheetTest, TextSitsOnItsAlignmentPoint) {
  Drawing d = MakeDrawing();
  Text right;  // right-aligned: the text runs to the left of its point
  right.text = "HHH";
  right.height = 10;
  right.horizontalAlign = 2;
  right.hasAlignPoint = true;
  right.alignPoint = {80, 20, 0};
  ModelSpace(d).entities.push_back(MakeEntity(right));
  Text turned = right;  // left-aligned, a quarter turn: runs upwards
  turned.horizontalAlign = 0;
  turned.hasAlignPoint = false;
  turned.insert = {30, 50, 0};
  turned.rotation = 90;
  ModelSpace(d).entities.push_back(MakeEntity(turned));
  d.Reindex();

  const QImage image = RenderSheet(d, ModelLayout(d), OneToOneSettings(100), kPx);
  EXPECT_TRUE(InkNear(image, kPx, {75, 25}, 1));
  EXPECT_FALSE(InkNear(image, kPx, {85, 25}, 1));
  EXPECT_FALSE(InkNear(image, kPx, {75, 33}, 1));  // above the cap height
  EXPECT_TRUE(InkNear(image, kPx, {25, 55}, 1));
  EXPECT_FALSE(InkNear(image, kPx, {35, 55}, 1));
  EXPECT_FALSE(InkNear(image, kPx, {25, 45}, 1));
}

TEST(PaintSheetTest, RefusesJobsWithoutDrawingOrPaper) {
  Drawing d = MakeDrawing();
  PlotJob job;
  EXPECT_THROW(PlanSheet(job), PlotError);
  job.drawing = &d;
  job.layout = &ModelLayout(d);
  job.settings.paperWidth = 0;
  EXPECT_THROW(PlanSheet(job), PlotError);
}

}  // namespace
}  // namespace sheafwork::embedded
