// The frontend: what it hands a backend (recorded primitives) and what it
// paints (pixels) for the drawings of tests/data/dxf/render, tests/data/dxf/
// clipping and other writers' drawings (a make_*.py beside each says what
// it holds). Sections: colours, lineweights and plot style tables; linetypes;
// blocks, references, extents and viewports; wipeouts, clip boundaries, draw
// order and hatch islands around text; other writers' drawings; what bounds
// one sheet's walk.

#include "embedded/render/frontend.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "embedded/dxf/reader.h"
#include "embedded/model/xrefs.h"
#include "embedded/plotstyle/plot_style_file.h"
#include "embedded/render/aci_palette.h"
#include "embedded/render/extents_backend.h"
#include "embedded/render/plot_area.h"
#include "embedded/render/plot_job.h"
#include "embedded/render/plot_style_look.h"
#include "embedded/render/render_test_support.h"
#include "embedded/render/wide_joins.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;
using ::testing::HasSubstr;

constexpr double kPx = 4;       // pixels per millimetre
constexpr double kFinePx = 10;  // pixels per sheet millimetre, for the clipped drawings

// The drawings of tests/data/dxf/render, drawn in their model layout.
Drawing Read(const std::string& name) { return ReadTestDrawing("dxf/render/" + name); }

// `drawing` with its external references read from their files.
Drawing WithXrefs(Drawing drawing) {
  ResolveExternalReferences(drawing, "", [](const std::string& path) {
    return std::make_shared<const Drawing>(ReadDxfFile(path));
  });
  return drawing;
}

Drawing ReadClipping(const std::string& name) {
  return WithXrefs(ReadTestDrawing("dxf/clipping/" + name));
}

// Colours, lineweights and plot style tables.

TEST(FrontendPropertiesTest, ResolvesColoursThroughLayersAndBlocks) {
  const Drawing d = Read("colours.dxf");
  const RecordingBackend rec = DrawLayout(d, ModelOf(d));
  ASSERT_EQ(rec.items.size(), 6u);
  const std::uint32_t colours[] = {0x0000FF, 0x123456, 0xABCDEF, 0xFF0000, 0x000000, 0x000000};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(rec.items[i].style.rgb, colours[i]) << i;
  // Layer 0 inside a block is the reference's layer, at any depth.
  EXPECT_EQ(rec.layers, (std::vector<std::string>{"Rgb", "Rgb", "Red", "Red", "Red", "0"}));
}

TEST(FrontendPropertiesTest, PenWidthsFollowLineweightsAndThePolicy) {
  const Drawing d = Read("lineweights.dxf");
  struct Case {
    const char* name;
    LineweightPolicy policy;
    double widths[4];
  };
  const Case cases[] = {
      {"plotted", {true, 1}, {0.7, 0.5, 0.25, kThinLineMm}},
      {"scaled by half", {true, 0.5}, {0.35, 0.25, 0.125, kThinLineMm}},
      {"not plotted", {false, 1}, {kThinLineMm, kThinLineMm, kThinLineMm, kThinLineMm}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    FrontendOptions options;
    options.lineweights = c.policy;
    const RecordingBackend rec = DrawLayout(d, ModelOf(d), options);
    ASSERT_EQ(rec.items.size(), 4u);
    for (int i = 0; i < 4; ++i) EXPECT_DOUBLE_EQ(rec.items[i].style.widthMm, c.widths[i]);
  }
}

TEST(PlotStylePenTest, ColourNumberSelectsTheEntry) {
  auto table = std::make_shared<PlotStyleTable>();
  table->entries[0].color = EncodePlotStyleColor(0x0000FF);
  table->entries[0].screen = 50;
  table->entries[0].lineweight = 13;  // 0.50 mm
  table->entries[4].color = EncodePlotStyleColor(0x000000);

  // pens.tsv beside pens.dxf says what each of its entities is drawn with.
  const Drawing d = Read("pens.dxf");

  for (const bool withTable : {true, false}) {
    FrontendOptions options;
    if (withTable) options.plotStyles = table;
    std::vector<std::string> expected, pens;
    for (const auto& row : sheafwork::testing::ReadTestTable("dxf/render/pens.tsv")) {
      expected.push_back(row[withTable ? 1 : 2]);
    }
    for (const Recorded& item : DrawLayout(d, ModelOf(d), options).items) {
      char pen[32];
      std::snprintf(pen, sizeof pen, "%06X %g", item.style.rgb, item.style.widthMm);
      pens.push_back(pen);
    }
    EXPECT_EQ(pens, expected) << (withTable ? "with the table" : "without a table");
  }
}

TEST(PlotStylePenTest, InlineColoursOfMultilineTextGoThroughTheTable) {
  auto table = std::make_shared<PlotStyleTable>();
  table->entries[0].color = EncodePlotStyleColor(0x0000FF);  // colour 1 plots blue
  table->entries[4].color = EncodePlotStyleColor(0x000000);  // colour 5 plots black

  // Colour 5, its runs of colours 1, 3, by layer and a true colour.
  const Drawing d = Read("inline_colours.dxf");

  for (const bool withTable : {true, false}) {
    FrontendOptions options;
    if (withTable) options.plotStyles = table;
    const RecordingBackend backend = DrawLayout(d, ModelOf(d), options);
    for (const auto& row : sheafwork::testing::ReadTestTable("render/inline_colours.tsv")) {
      SCOPED_TRACE(row.where + (withTable ? " (table)" : " (no table)"));
      const auto found = std::find_if(
          backend.items.begin(), backend.items.end(),
          [&](const auto& item) { return item.text.find(row[0]) != std::string::npos; });
      ASSERT_NE(found, backend.items.end());
      EXPECT_EQ(found->style.rgb, std::stoul(row[withTable ? 1 : 2], nullptr, 16));
    }
  }
}

TEST(AciPaletteTest, KnownEntries) {
  for (const auto& row : sheafwork::testing::ReadTestTable("render/aci_colours.tsv")) {
    EXPECT_EQ(AciToRgb(std::stoi(row[0])), std::stoul(row[1], nullptr, 16)) << row.where;
  }
}

// Linetypes.

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

// Blocks, references, extents and viewports.

TEST(FrontendBlockTest, AttributesXrefsAndSelfReference) {
  const Drawing d = WithXrefs(Read("blocks.dxf"));
  FrontendStats stats;
  const RecordingBackend rec = DrawLayout(d, ModelOf(d), {}, &stats);
  ASSERT_EQ(rec.items.size(), 3u);
  ExpectNear(rec.items[0].points[0], {100, 0});        // the block's line, not its self-reference
  EXPECT_EQ(rec.items[1].kind, Recorded::Kind::Text);  // after the content, in place
  EXPECT_EQ(rec.items[1].text, "A-12");
  ExpectNear(rec.items[1].points[0], {7, 8});
  ExpectNear(rec.items[2].points[1], {3, 50});  // the external drawing's model space
  EXPECT_EQ(rec.layers, (std::vector<std::string>{"0", "0", "Linked|Murs"}));
  EXPECT_EQ(stats.recursiveBlocks, 1u);
  EXPECT_EQ(stats.unresolvedXrefs, 1u);
}

TEST(FrontendGeometryTest, ExtentsOfEachKindOfEntity) {
  const Drawing all = Read("extents.dxf");
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/render/extents.tsv")) {
    SCOPED_TRACE(row.where);
    Drawing d = all;  // only the entity on the case's layer
    for (Block& b : d.blocks) {
      std::erase_if(b.entities,
                    [&](const Entity& e) { return b.name != "B" && e.props.layer != row[0]; });
    }
    d.Reindex();
    ExpectNear(ComputeLayoutExtents(d, ModelOf(d), ModelOf(d).settings), BoxIn(row[1]));
  }
}

TEST(FrontendViewportTest, DrawsModelSpaceThroughContentViewportsOnly) {
  const Drawing d = Read("viewports.dxf");
  for (bool first : {false, true}) {
    SCOPED_TRACE(first ? "viewports first" : "paper first");
    FrontendOptions options;
    options.viewportsFirst = first;
    const RecordingBackend rec = DrawLayout(d, LayoutNamed(d, "Feuille"), options);
    // Two frames (the overall viewport has none), the paper line, and the
    // walls through the one viewport that is on; its frozen notes stay out.
    ASSERT_EQ(rec.items.size(), 4u);
    EXPECT_EQ(rec.maxClipDepth, 1);
    const Recorded& walls = first ? rec.items[0] : rec.items[3];
    ExpectNear(walls.points[0], {20, 50});
    ExpectNear(walls.points[1], {80, 50});
    const Recorded& paperLine = first ? rec.items[3] : rec.items[2];
    ExpectNear(paperLine.points[1], {1, 1});
  }
}

// Wipeouts, clip boundaries, draw order and hatch islands around text.

TEST(WipeoutTest, MasksWhatCameBeforeOnly) {
  const Drawing d = Read("wipeout.dxf");
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
  const Drawing d = Read("clipped_viewports.dxf");
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

// Each reference draws a cross of two 10-unit midlines; its clip keeps part.
TEST(ClippingTest, ReferencesShowWhatTheirClipKeeps) {
  const Drawing d = ReadClipping("xclip.dxf");
  const QImage image = RenderSheet(d, ModelOf(d), OneToOneSettings(200, 40), kFinePx);
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/clipping/xclip-probes.tsv")) {
    SCOPED_TRACE(row.where + " " + row[0]);
    EXPECT_EQ(InkNear(image, kFinePx, PointIn(row[1])), row[2] == "ink");
  }
}

TEST(ClippingExtentsTest, OnlyWhatTheClipKeepsCounts) {
  const Drawing d = ReadClipping("xclip-xref.dxf");
  ExtentsBackend extents;
  Frontend(d, extents, {}).DrawLayout(ModelOf(d), Affine2{});
  EXPECT_NEAR(extents.Extents().min.x, 10, 0.01);
  EXPECT_NEAR(extents.Extents().max.x, 14, 0.01);  // the cross runs on to 20
}

// Red text drawn first, a blue solid hatch over it; the draw order table
// puts the text on top, in model space (x 0..12) and in a block (x 20..32).
TEST(DrawOrderTest, TextSortedAfterTheHatchIsDrawnOverIt) {
  const Drawing d = ReadClipping("draworder.dxf");
  const RecordingBackend rec = DrawLayout(d, ModelOf(d));
  for (const double left : {0.0, 20.0}) {
    SCOPED_TRACE(left);
    int hatch = -1, text = -1;
    for (int i = 0; i < static_cast<int>(rec.items.size()); ++i) {
      const Recorded& item = rec.items[static_cast<std::size_t>(i)];
      if (item.points.empty() || item.points[0].x < left || item.points[0].x > left + 12) continue;
      if (item.style.rgb == 0x0000FF && item.kind == Recorded::Kind::Fill) hatch = i;
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
  const Drawing d = ReadClipping("hatch-textbox.dxf");
  const QImage image = RenderSheet(d, ModelOf(d), OneToOneSettings(110, 45), kFinePx);
  for (const auto& row :
       sheafwork::testing::ReadTestTable("dxf/clipping/hatch-textbox-probes.tsv")) {
    SCOPED_TRACE(row.where + " " + row[0]);
    EXPECT_EQ(ColorAt(image, kFinePx, PointIn(row[1])) == 0x0000FF, row[2] == "filled");
  }
}

// Drawings written by another program (tests/data/dxf/*/make_*.py).

TEST(OtherWriterRender, NegativeRadiiDrawTheirSize) {
  const Drawing d = ReadTestDrawing("dxf/negative-radius/negative-radius.dxf");
  // The circle of radius 20 about (50, 50), the quarter arc of 30 about (150, 50).
  ExpectNear(ComputeLayoutExtents(d, ModelOf(d), ModelOf(d).settings),
             Box2::Of({30, 30}, {180, 80}), 1e-6);
}

TEST(OtherWriterRender, ArrayOfReferencesShowsItsAttributesInEveryCell) {
  const Drawing d = ReadTestDrawing("dxf/minsert-attributes/minsert.dxf");
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
  const Drawing d = ReadTestDrawing("dxf/wide-polyline-corners/corners.dxf");
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

// What bounds one sheet's walk: the entities it may draw, the user's cancel
// (tests/data/dxf/fan-out/blocks.dxf: B0 one line, each Bn ten references to
// B(n-1)).

// Draws block `name` of `drawing` with `work`; the PlotError's message, or
// empty when it was drawn.
std::string DrawBlock(const Drawing& drawing, const std::string& name, const SheetWork& work) {
  ExtentsBackend backend;
  FrontendOptions options;
  options.work = &work;
  Frontend frontend(drawing, backend, options);
  try {
    frontend.DrawBlockEntities(*drawing.FindBlock(name), Transform3{});
  } catch (const PlotError& error) {
    return error.what();
  }
  return "";
}

TEST(SheetBoundsTest, AWalkStopsPastTheEntityLimitNamingItOrOnACancel) {
  const Drawing drawing = ReadTestDrawing("dxf/fan-out/blocks.dxf");
  for (const auto& row : sheafwork::testing::ReadTestTable("render/entity_limits.tsv")) {
    SCOPED_TRACE(row.where);
    SheetWork work;
    work.entityLimit = std::stoull(row[1]);
    const std::string error = DrawBlock(drawing, row[0], work);
    EXPECT_EQ(error.empty(), row[2].empty()) << error;
    EXPECT_THAT(error, HasSubstr(row[2]));
  }

  int asked = 0;
  SheetWork work;
  work.cancelled = [&] { return ++asked == 2; };
  // 10^9 lines: only a cancel ends this walk before the limit.
  EXPECT_EQ(DrawBlock(drawing, "*Model_Space", work),
            "tracé interrompu à la demande de l'utilisateur");
  EXPECT_EQ(asked, 2);
}

}  // namespace
}  // namespace sheafwork::embedded
