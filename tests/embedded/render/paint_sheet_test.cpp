#include "embedded/render/paint_sheet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

using testing::AddBlock;
using testing::AddLayer;
using testing::InkNear;
using testing::MakeDrawing;
using testing::MakeEntity;
using testing::MakeInsert;
using testing::MakeLine;
using testing::ModelLayout;
using testing::ModelSpace;
using testing::OneToOneSettings;
using testing::PaperLayout;
using testing::PaperSpace;
using testing::RenderSheet;

constexpr double kPx = 4;  // pixels per millimetre

Entity Heavy(Entity e) {
  e.props.lineweight = 50;
  return e;
}

TEST(PaintSheetTest, ModelSpaceLinesArcsAndBlocks) {
  Drawing d = MakeDrawing();
  Layer& off = AddLayer(d, "Off");
  off.on = false;
  ModelSpace(d).entities.push_back(Heavy(MakeLine({10, 80}, {90, 80}, "Off")));
  ModelSpace(d).entities.push_back(Heavy(MakeLine({10, 85}, {90, 85}, "Defpoints")));
  ModelSpace(d).entities.push_back(Heavy(MakeLine({10, 90}, {90, 90})));

  Polyline half;  // a half circle below its chord from (20,50) to (40,50)
  half.vertices = {{{20, 50, 0}, 0, 0, 1}, {{40, 50, 0}, 0, 0, 0}};
  ModelSpace(d).entities.push_back(Heavy(MakeEntity(half)));

  ModelSpace(d).entities.push_back(Heavy(MakeEntity(Arc{{70, 60, 0}, 10, 30, 120, kUnitZ})));
  // Seen from below: object x runs to world -x, the quarter turns to the upper left.
  ModelSpace(d).entities.push_back(Heavy(MakeEntity(Arc{{-80, 30, 0}, 10, 0, 90, {0, 0, -1}})));

  Block& inner = AddBlock(d, "Inner");
  inner.entities.push_back(Heavy(MakeLine({0, 0}, {10, 0})));
  Block& outer = AddBlock(d, "Outer");
  Entity nested = MakeInsert("Inner", {5, 0});
  std::get<Insert>(nested.geometry).rotation = 90;
  outer.entities.push_back(nested);
  Entity top = MakeInsert("Outer", {50, 20});
  std::get<Insert>(top.geometry).scale = {2, 2, 1};
  ModelSpace(d).entities.push_back(top);
  d.Reindex();

  const QImage image = RenderSheet(d, ModelLayout(d), OneToOneSettings(100), kPx);
  EXPECT_FALSE(InkNear(image, kPx, {50, 80}));  // layer off
  EXPECT_FALSE(InkNear(image, kPx, {50, 85}));  // Defpoints
  EXPECT_TRUE(InkNear(image, kPx, {50, 90}));
  EXPECT_EQ(testing::ColorAt(image, kPx, {50, 90}), 0x000000u);  // colour 7 on paper

  EXPECT_TRUE(InkNear(image, kPx, {30, 40}));  // the arc's midpoint
  EXPECT_TRUE(InkNear(image, kPx, {30 + 10 * std::cos(5.5), 50 + 10 * std::sin(5.5)}));
  EXPECT_FALSE(InkNear(image, kPx, {30, 50}));  // not the chord
  EXPECT_FALSE(InkNear(image, kPx, {30, 60}));  // not bulging the other way

  const double q = 10 * std::sqrt(0.5);
  auto onArc = [](double degrees) {
    const double r = degrees * std::numbers::pi / 180;
    return Vec2{70 + 10 * std::cos(r), 60 + 10 * std::sin(r)};
  };
  EXPECT_TRUE(InkNear(image, kPx, onArc(75)));  // counter-clockwise from 30° to 120°
  EXPECT_FALSE(InkNear(image, kPx, onArc(-75)));
  EXPECT_FALSE(InkNear(image, kPx, onArc(0)));
  EXPECT_FALSE(InkNear(image, kPx, onArc(165)));
  EXPECT_TRUE(InkNear(image, kPx, {80 - q, 30 + q}));
  EXPECT_FALSE(InkNear(image, kPx, {80 + q, 30 + q}));

  EXPECT_TRUE(InkNear(image, kPx, {60, 30}));   // inner line turned, scaled, placed
  EXPECT_FALSE(InkNear(image, kPx, {75, 20}));  // where it would be unturned
}

TEST(PaintSheetTest, ViewportsClipAndFreezeTheirLayers) {
  Drawing d = MakeDrawing();
  AddLayer(d, "Notes");
  ModelSpace(d).entities.push_back(Heavy(MakeLine({-40, 0}, {40, 0})));
  ModelSpace(d).entities.push_back(Heavy(MakeLine({-10, 10}, {10, 10}, "Notes")));
  Viewport overall;
  overall.center = {50, 50, 0};
  overall.width = overall.height = overall.viewHeight = 100;
  overall.id = 1;
  Viewport vp;
  vp.center = {50, 50, 0};
  vp.width = vp.height = vp.viewHeight = 40;
  vp.id = 2;
  vp.frozenLayers = {"notes"};
  PaperSpace(d).entities.push_back(MakeEntity(overall));
  PaperSpace(d).entities.push_back(MakeEntity(vp));
  d.Reindex();

  PlotSettings s = OneToOneSettings(100);
  s.plotType = kPlotLayout;
  const QImage image = RenderSheet(d, PaperLayout(d), s, kPx);
  EXPECT_TRUE(InkNear(image, kPx, {40, 50}));
  EXPECT_TRUE(InkNear(image, kPx, {30, 40}));   // the frame
  EXPECT_FALSE(InkNear(image, kPx, {25, 50}));  // the line beyond the frame
  EXPECT_FALSE(InkNear(image, kPx, {75, 50}));
  EXPECT_FALSE(InkNear(image, kPx, {50, 60}));   // frozen in this viewport
  EXPECT_FALSE(InkNear(image, kPx, {50, 0.2}));  // no frame for the overall viewport
}

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
  for (int i = 0; i < 2; ++i) {
    hole.edges[static_cast<std::size_t>(i)].kind = HatchEdge::Kind::Arc;
    hole.edges[static_cast<std::size_t>(i)].center = {50, 50};
    hole.edges[static_cast<std::size_t>(i)].radius = 10;
    hole.edges[static_cast<std::size_t>(i)].startAngle = 180.0 * i;
    hole.edges[static_cast<std::size_t>(i)].endAngle = 180.0 * (i + 1);
  }
  hatch.loops = {square, hole};
  Entity e = MakeEntity(hatch);
  e.props.color = 1;
  ModelSpace(d).entities.push_back(e);
  d.Reindex();

  const QImage image = RenderSheet(d, ModelLayout(d), OneToOneSettings(100), kPx);
  EXPECT_EQ(testing::ColorAt(image, kPx, {30, 30}), 0xFF0000u);
  EXPECT_EQ(testing::ColorAt(image, kPx, {50, 50}), 0xFFFFFFu);  // the island
  EXPECT_EQ(testing::ColorAt(image, kPx, {50, 65}), 0xFF0000u);
  EXPECT_EQ(testing::ColorAt(image, kPx, {10, 10}), 0xFFFFFFu);
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
  QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
  EXPECT_THROW(PlanSheet(job), PlotError);
  job.drawing = &d;
  job.layout = &ModelLayout(d);
  job.settings.paperWidth = 0;
  EXPECT_THROW(PlanSheet(job), PlotError);
}

}  // namespace
}  // namespace sheafwork::embedded
