// Linetypes, point symbols, wipeouts and viewports clipped by an entity;
// clipped block references, draw order tables and hatch islands around text
// (the drawings of tests/data/dxf/clipping, written by ezdxf: make_clipping.py
// there says what each one holds). Through the frontend (recorded
// primitives) and painted (pixels).

#include <gtest/gtest.h>

#include <QImage>
#include <memory>
#include <string>

#include "embedded/dxf/reader.h"
#include "embedded/model/xrefs.h"
#include "embedded/render/extents_backend.h"
#include "embedded/render/frontend.h"
#include "embedded/render/render_test_support.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

constexpr double kPx = 4;  // pixels per millimetre

/// A drawing with the linetype "TIRETS" (2 on, 1 off) and "Continuous".
Drawing DashedDrawing() {
  Drawing d = MakeDrawing();
  d.linetypes.push_back({"Continuous", "", 0, {}});
  d.linetypes.push_back({"TIRETS", "__ __", 3, {2, -1}});
  return d;
}

std::size_t StrokesOf(const RecordingBackend& rec) {
  std::size_t n = 0;
  for (const Recorded& item : rec.items) {
    if (item.kind == Recorded::Kind::Lines) n += item.points.size() / 2;
    if (item.kind == Recorded::Kind::Polyline) ++n;
  }
  return n;
}

TEST(LinetypeTest, ResolvedLikeColourAndScaledByEveryScale) {
  for (const auto& row : sheafwork::testing::ReadTestTable("render/linetypes.tsv")) {
    SCOPED_TRACE(row.where);
    Drawing d = DashedDrawing();
    d.header.ltScale = std::stod(row[5]);
    Layer axes;
    axes.name = "Axes";
    axes.linetype = row[1];
    d.layers.push_back(axes);
    const double blockScale = std::stod(row[6]);
    Entity line = MakeLine({0, 0}, {10 / blockScale, 0}, "Axes");
    line.props.linetype = row[2];
    line.props.linetypeScale = std::stod(row[4]);
    if (row[3] == "-") {
      ModelSpace(d).entities.push_back(line);
    } else {
      Block block;
      block.name = "B";
      block.entities = {line};
      d.blocks.push_back(block);
      Insert insert;
      insert.block = "B";
      insert.scale = {blockScale, blockScale, 1};
      ModelSpace(d).entities.push_back(MakeEntity(insert, "Axes"));
      ModelSpace(d).entities.back().props.linetype = row[3];
    }
    d.Reindex();
    FrontendStats stats;
    EXPECT_EQ(StrokesOf(DrawLayout(d, ModelOf(d), {}, &stats)), std::stoul(row[7]));
    EXPECT_EQ(stats.denseLinetypes, row[8] == "yes" ? 1u : 0u);
  }
  // A dashed circle is cut, not handed over as one arc.
  Drawing d = DashedDrawing();
  Entity circle = MakeEntity(Circle{{0, 0, 0}, 10, kUnitZ});
  circle.props.linetype = "TIRETS";
  ModelSpace(d).entities.push_back(circle);
  d.Reindex();
  EXPECT_EQ(StrokesOf(DrawLayout(d, ModelOf(d))), 21u);  // 62.8 / 3, rounded up
}

TEST(LinetypeTest, PolylineGenerationFlagKeepsThePhaseAcrossVertices) {
  for (bool generation : {true, false}) {
    SCOPED_TRACE(generation ? "across vertices" : "per segment");
    Drawing d = DashedDrawing();
    Polyline p;
    for (Vec2 v : {Vec2{0, 0}, Vec2{4, 0}, Vec2{4, 4}}) p.vertices.push_back({{v.x, v.y, 0}});
    p.linetypeGeneration = generation;
    Entity e = MakeEntity(p);
    e.props.linetype = "TIRETS";
    ModelSpace(d).entities.push_back(e);
    d.Reindex();
    const RecordingBackend rec = DrawLayout(d, ModelOf(d));
    if (generation) {
      // 0-2, 3-5 round the corner, 6-8.
      ASSERT_EQ(StrokesOf(rec), 3u);
      ASSERT_EQ(rec.items[1].kind, Recorded::Kind::Polyline);
      EXPECT_EQ(rec.items[1].points.size(), 3u);
    } else {
      // 0-2, 3-4 on each side, none turning the corner.
      EXPECT_EQ(StrokesOf(rec), 4u);
      for (const Recorded& item : rec.items) EXPECT_EQ(item.kind, Recorded::Kind::Lines);
    }
  }
}

// tests/data/dxf/render/make_drawings.py says what the drawing holds.
TEST(WipeoutTest, MasksWhatCameBeforeOnly) {
  const Drawing d = ReadTestDrawing("dxf/render/wipeout.dxf");
  const RecordingBackend rec = DrawLayout(d, ModelOf(d));
  ASSERT_EQ(rec.items.size(), 3u);
  EXPECT_EQ(rec.items[1].kind, Recorded::Kind::Fill);
  EXPECT_EQ(rec.items[1].style.rgb, 0xFFFFFFu);

  const QImage image = RenderSheet(d, ModelOf(d), OneToOneSettings(100), kPx);
  EXPECT_TRUE(InkNear(image, kPx, {25, 25}, 0.1));  // the solid around
  EXPECT_FALSE(InkNear(image, kPx, {45, 45}, 1));   // masked
  EXPECT_FALSE(InkNear(image, kPx, {55, 55}, 1));
  EXPECT_TRUE(InkNear(image, kPx, {50, 50}, 0.1));   // drawn after: on top
  EXPECT_FALSE(InkNear(image, kPx, {41, 41}, 0.2));  // no frame by default
}

// A model filled black, seen at 1:1 through a 60 mm viewport at (50, 50),
// in a layout per boundary clipping it (clipped_viewports.tsv says where).
TEST(ClippedViewportTest, ContentOutsideTheBoundaryIsNotDrawn) {
  const Drawing d = ReadTestDrawing("dxf/render/clipped_viewports.dxf");
  PlotSettings s = OneToOneSettings(100);
  s.plotType = kPlotLayout;
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/render/clipped_viewports.tsv")) {
    SCOPED_TRACE(row.where);
    const QImage image = RenderSheet(d, LayoutNamed(d, row[0]), s, kPx);
    EXPECT_TRUE(InkNear(image, kPx, PointIn(row[1]), 0.1));
    EXPECT_FALSE(InkNear(image, kPx, PointIn(row[2]), 0.5));
    // A boundary is the frame: the viewport's own is not drawn.
    EXPECT_NE(InkNear(image, kPx, {21, 50}, 0.5) && InkNear(image, kPx, {79, 79}, 0.5),
              row[3] == "clipped");
  }
}

constexpr double kFinePx = 10;  // pixels per sheet millimetre, for the clipped drawings

Drawing Read(const std::string& name) {
  Drawing d = testing::ReadTestDrawing("dxf/clipping/" + name);
  ResolveExternalReferences(d, "", [](const std::string& path) {
    return std::make_shared<const Drawing>(ReadDxfFile(path));
  });
  return d;
}

// Each reference draws a cross of two 10-unit midlines; its clip keeps part.
TEST(ClippingTest, ReferencesShowWhatTheirClipKeeps) {
  const Drawing d = Read("xclip.dxf");
  const QImage image = RenderSheet(d, ModelOf(d), OneToOneSettings(200, 40), kFinePx);
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/clipping/xclip-probes.tsv")) {
    SCOPED_TRACE(row.where + " " + row[0]);
    EXPECT_EQ(InkNear(image, kFinePx, testing::PointIn(row[1])), row[2] == "ink");
  }
}

TEST(ClippingExtentsTest, OnlyWhatTheClipKeepsCounts) {
  const Drawing d = Read("xclip-xref.dxf");
  ExtentsBackend extents;
  Frontend(d, extents, {}).DrawLayout(testing::ModelOf(d), Affine2{});
  EXPECT_NEAR(extents.Extents().min.x, 10, 0.01);
  EXPECT_NEAR(extents.Extents().max.x, 14, 0.01);  // the cross runs on to 20
}

// Red text drawn first, a blue solid hatch over it; the draw order table
// puts the text on top, in model space (x 0..12) and in a block (x 20..32).
TEST(DrawOrderTest, TextSortedAfterTheHatchIsDrawnOverIt) {
  const Drawing d = Read("draworder.dxf");
  const testing::RecordingBackend rec = testing::DrawLayout(d, testing::ModelOf(d));
  for (const double left : {0.0, 20.0}) {
    SCOPED_TRACE(left);
    int hatch = -1, text = -1;
    for (int i = 0; i < static_cast<int>(rec.items.size()); ++i) {
      const testing::Recorded& item = rec.items[static_cast<std::size_t>(i)];
      if (item.points.empty() || item.points[0].x < left || item.points[0].x > left + 12) continue;
      if (item.style.rgb == 0x0000FF && item.kind == testing::Recorded::Kind::Fill) hatch = i;
      if (item.style.rgb == 0xFF0000 && text < 0) text = i;
    }
    ASSERT_GE(hatch, 0);
    ASSERT_GE(text, 0);
    EXPECT_LT(hatch, text);
  }
}

// Text boxes are never filled: not inside an island, not where they run
// out of the boundary.
TEST(HatchTextBoxTest, IslandsAroundTextStayUnfilled) {
  const Drawing d = Read("hatch-textbox.dxf");
  const QImage image = RenderSheet(d, ModelOf(d), OneToOneSettings(110, 45), kFinePx);
  for (const auto& row :
       sheafwork::testing::ReadTestTable("dxf/clipping/hatch-textbox-probes.tsv")) {
    SCOPED_TRACE(row.where + " " + row[0]);
    EXPECT_EQ(testing::ColorAt(image, kFinePx, testing::PointIn(row[1])) == 0x0000FF,
              row[2] == "filled");
  }
}

}  // namespace
}  // namespace sheafwork::embedded
