#include "embedded/render/frontend.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "embedded/dxf/reader.h"
#include "embedded/model/xrefs.h"
#include "embedded/render/extents_backend.h"
#include "embedded/render/plot_area.h"
#include "embedded/render/plot_job.h"
#include "embedded/render/render_test_support.h"
#include "embedded/render/wide_joins.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;
using ::testing::HasSubstr;

// The drawings of tests/data/dxf/render (make_drawings.py there says what
// each holds), drawn in their model layout.
Drawing Read(const std::string& name) { return ReadTestDrawing("dxf/render/" + name); }

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

TEST(FrontendBlockTest, AttributesXrefsAndSelfReference) {
  Drawing d = Read("blocks.dxf");
  ResolveExternalReferences(d, "", [](const std::string& path) {
    return std::make_shared<const Drawing>(ReadDxfFile(path));
  });
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
  const Drawing drawing = testing::ReadTestDrawing("dxf/fan-out/blocks.dxf");
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
