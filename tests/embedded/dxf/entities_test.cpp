// Entities as the reader decodes them: each kind from the tags a writer of
// release 2000 or later puts down, subclass markers included, and wipeouts
// and clipped block references (tests/data/dxf/entity-tags and masking,
// written by hand); hatch paths with spline edges written by another program
// (hatch-spline-edges).

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using testing::ModelEntities;

Drawing Read(const std::string& name) { return testing::ReadFixture("entity-tags/" + name); }

TEST(ReaderEntities, CommonPropertiesFromTheEntityPart) {
  const Drawing d = Read("common-properties.dxf");
  const Entity& e = ModelEntities(d).at(0);
  const EntityProps& p = e.props;
  EXPECT_EQ(std::tuple(e.handle, p.layer, p.linetype, p.color, p.trueColor, p.lineweight,
                       p.linetypeScale, p.invisible),
            std::tuple("2F", "Murs", "BYBLOCK", kColorByBlock, 0xFF00FFu, 50, 2, true));
  const auto& c = std::get<Circle>(e.geometry);
  EXPECT_EQ(std::tuple(c.radius, c.center.y, c.extrusion.z), std::tuple(5, 2, -1));
}

TEST(ReaderEntities, TextAlignmentComesFromTheRightSubclass) {
  const Drawing d = Read("text-and-attribute.dxf");
  const std::vector<Entity>& all = ModelEntities(d);
  ASSERT_EQ(all.size(), 2u);
  const auto& text = std::get<Text>(all[0].geometry);
  EXPECT_EQ(std::tuple(text.text, text.style, text.horizontalAlign, text.verticalAlign,
                       text.hasAlignPoint, text.alignPoint.x),
            std::tuple("  Cuisine", "Cotes", 1, 2, true, 5));

  const auto& insert = std::get<Insert>(all[1].geometry);
  EXPECT_EQ(std::tuple(insert.block, insert.scale.x, insert.rotation), std::tuple("Porte", -1, 90));
  ASSERT_EQ(insert.attributes.size(), 1u);
  const Attribute& a = insert.attributes[0];
  // The vertical alignment is code 74, not the field length in 73.
  EXPECT_EQ(std::tuple(a.tag, a.invisible, a.props.layer, a.text.text, a.text.horizontalAlign,
                       a.text.verticalAlign),
            std::tuple("NUMERO", true, "Attributs", "P12", 2, 3));
}

TEST(ReaderEntities, MTextJoinsItsChunksInOrder) {
  // Two chunks of 250 letters under code 3, then the last one under code 1.
  const Drawing d = Read("mtext-chunks.dxf");
  ASSERT_EQ(ModelEntities(d).size(), 1u);
  const auto& m = std::get<MText>(ModelEntities(d)[0].geometry);
  EXPECT_EQ(m.text, std::string(250, 'a') + std::string(250, 'b') + "\\Pfin");
  EXPECT_EQ(std::tuple(m.attachment, m.width), std::tuple(5, 100.0));
  EXPECT_NEAR(m.rotation, 90, 1e-9);
}

TEST(ReaderEntities, PolylinesOfBothKinds) {
  const Drawing d = Read("polylines.dxf");
  const std::vector<Entity>& all = ModelEntities(d);
  ASSERT_EQ(all.size(), 4u);
  const auto& lw = std::get<Polyline>(all[0].geometry);
  ASSERT_EQ(lw.vertices.size(), 3u);
  EXPECT_TRUE(lw.closed);
  EXPECT_EQ(std::tuple(lw.constantWidth, lw.vertices[1].bulge, lw.vertices[2].point.y),
            std::tuple(0.5, 1, 2));

  const auto& pl = std::get<Polyline>(all[1].geometry);
  ASSERT_EQ(pl.vertices.size(), 2u);  // the frame point is left out
  // The first vertex's start width is the polyline's default.
  EXPECT_EQ(std::tuple(pl.is3d, pl.elevation, pl.vertices[0].bulge, pl.vertices[0].startWidth,
                       pl.vertices[1].endWidth),
            std::tuple(false, 4, -0.5, 0.2, 0.7));
  EXPECT_EQ(std::get<MeshEdges>(all[2].geometry).vertices.size(), 2u);
  EXPECT_TRUE(std::holds_alternative<Point>(all[3].geometry));
  EXPECT_TRUE(d.skippedEntities.empty());
}

TEST(ReaderEntities, ReleaseTwelveViewportFromExtendedData) {
  const Drawing d = Read("viewport-r12.dxf");
  const auto& vp = std::get<Viewport>(d.FindBlock("*Paper_Space")->entities.at(0).geometry);
  EXPECT_EQ(std::tuple(vp.viewTarget.x, vp.viewDirection.z, vp.viewHeight, vp.viewCenter.x,
                       vp.viewCenter.y),
            std::tuple(5, 1, 300, 7, 8));
  EXPECT_EQ(vp.frozenLayers, std::vector<std::string>{"HIDDEN"});
}

TEST(ReaderEntities, CurvesSolidsAndUnknownKinds) {
  const Drawing d = Read("curves-and-unknown-kinds.dxf");
  const std::vector<Entity>& all = ModelEntities(d);
  ASSERT_EQ(all.size(), 10u);
  const auto& ellipse = std::get<Ellipse>(all[0].geometry);
  EXPECT_EQ(std::tuple(ellipse.majorAxis.x, ellipse.endParam), std::tuple(4, 3.14));
  EXPECT_EQ(std::get<Spline>(all[1].geometry).fitPoints.size(), 3u);
  const auto& solid = std::get<Solid>(all[2].geometry);
  EXPECT_EQ(solid.corners[3].y, 1);  // the third corner repeated
  EXPECT_EQ(std::get<Face3d>(all[3].geometry).invisibleEdges, 5);
  EXPECT_EQ(std::get<Arc>(all[4].geometry).startAngle, 270);
  const auto& dim = std::get<Dimension>(all[5].geometry);
  EXPECT_EQ(std::tuple(dim.block, dim.insert.has_value(), dim.textMidpoint.y),
            std::tuple("*D5", false, 2));
  const auto& leader = std::get<Leader>(all[6].geometry);
  EXPECT_EQ(std::tuple(leader.vertices.size(), leader.arrowhead), std::tuple(2u, false));
  EXPECT_EQ(std::get<Undrawn>(all[7].geometry).kind, "MLINE");
  EXPECT_EQ(d.skippedEntities.at("MLINE"), 2);
  EXPECT_TRUE(std::holds_alternative<AttributeDefinition>(all[9].geometry));
  EXPECT_EQ(d.skippedEntities.count("ATTDEF"), 0u);
}

// A path's edges after a spline edge belong to the path, whatever counts the
// spline edge carries. The edges in order: L line, A arc, S spline.
TEST(HatchEdges, EdgesAfterASplineEdgeStayInThePath) {
  const std::pair<const char*, const char*> cases[] = {{"spline-r2018.dxf", "LSLA"},
                                                       {"spline-fit-r2018.dxf", "LSLA"},
                                                       {"spline-last-r2018.dxf", "LALS"},
                                                       {"spline-last-r2000.dxf", "LALS"}};
  for (const auto& [file, edges] : cases) {
    SCOPED_TRACE(file);
    const Drawing d = testing::ReadFixture(std::string("hatch-spline-edges/") + file);
    ASSERT_EQ(ModelEntities(d).size(), 1u);
    const auto* hatch = std::get_if<Hatch>(&ModelEntities(d)[0].geometry);
    ASSERT_NE(hatch, nullptr);
    ASSERT_EQ(hatch->loops.size(), 1u);
    std::string kinds;
    for (const HatchEdge& e : hatch->loops[0].edges) {
      using Kind = HatchEdge::Kind;
      kinds += e.kind == Kind::Line     ? 'L'
               : e.kind == Kind::Arc    ? 'A'
               : e.kind == Kind::Spline ? 'S'
                                        : 'E';
      if (e.kind == Kind::Spline) {
        EXPECT_EQ(std::tuple(e.controlPoints.size(), e.knots.size()), std::tuple(4u, 8u));
      }
      if (e.kind == Kind::Arc) {
        EXPECT_DOUBLE_EQ(e.radius, 50);
      }
    }
    EXPECT_EQ(kinds, edges);
  }
}

TEST(ReaderWipeout, PlacementAndPolygonBoundaryInPixels) {
  const Drawing d = testing::ReadFixture("masking/wipeout-polygon.dxf");
  const Entity& e = ModelEntities(d).at(0);
  EXPECT_EQ(e.props.layer, "Masque");
  const auto& w = std::get<Wipeout>(e.geometry);
  EXPECT_EQ(std::tuple(w.insert.x, w.insert.y, w.uPixel.x, w.vPixel.y, w.imageSize.x, w.imageSize.y,
                       w.displayFlags, w.clipping, w.clipType),
            std::tuple(100, 50, 40, 20, 1, 1, 7, true, 2));
  ASSERT_EQ(w.clipVertices.size(), 4u);
  EXPECT_EQ(std::tuple(w.clipVertices[1].x, w.clipVertices[1].y, w.clipVertices[2].x,
                       w.clipVertices[2].y),
            std::tuple(0.5, -0.5, 0, 0.5));
}

// An INSERT whose extension dictionary leads to a spatial filter of three
// points, enabled or not, under the key SPATIAL or another one.
TEST(ReaderInserts, ClipBoundaryThroughTheExtensionDictionary) {
  const std::pair<const char*, bool> cases[] = {
      {"insert-clipped.dxf", true},
      {"insert-clip-off.dxf", false},
      {"insert-other-filter.dxf", false},
      {"insert-no-objects.dxf", false},
  };
  for (const auto& [file, clipped] : cases) {
    SCOPED_TRACE(file);
    const Drawing d = testing::ReadFixture(std::string("masking/") + file);
    const auto& insert = std::get<Insert>(ModelEntities(d).at(0).geometry);
    EXPECT_EQ(insert.block, "B");
    ASSERT_EQ(insert.clip != nullptr, clipped);
    if (clipped) {
      const std::vector<Vec2>& boundary = insert.clip->boundary;
      ASSERT_EQ(boundary.size(), 3u);
      EXPECT_DOUBLE_EQ(boundary[1].x, 5);
      EXPECT_DOUBLE_EQ(boundary[2].y, 5);
    }
  }
}

}  // namespace
}  // namespace sheafwork::embedded
