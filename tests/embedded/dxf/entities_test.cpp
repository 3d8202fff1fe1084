// Entities as the reader decodes them, each kind from the tags a writer of
// release 2000 or later puts down, subclass markers included
// (tests/data/dxf/entity-tags, written by hand).

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using testing::ModelEntities;

Drawing Read(const std::string& name) { return testing::ReadFixture("entity-tags/" + name); }

template <typename T>
const T& Only(const Drawing& d) {
  const std::vector<Entity>& all = ModelEntities(d);
  EXPECT_EQ(all.size(), 1u);
  return std::get<T>(all.at(0).geometry);
}

TEST(ReaderEntities, CommonPropertiesFromTheEntityPart) {
  const Drawing d = Read("common-properties.dxf");
  const Entity& e = ModelEntities(d).at(0);
  EXPECT_EQ(e.handle, "2F");
  EXPECT_EQ(e.props.layer, "Murs");
  EXPECT_EQ(e.props.linetype, "BYBLOCK");
  EXPECT_EQ(e.props.color, kColorByBlock);
  EXPECT_EQ(e.props.trueColor, 0xFF00FFu);
  EXPECT_EQ(e.props.lineweight, 50);
  EXPECT_EQ(e.props.linetypeScale, 2);
  EXPECT_TRUE(e.props.invisible);
  const auto& c = std::get<Circle>(e.geometry);
  EXPECT_EQ(c.radius, 5);
  EXPECT_EQ(c.center.y, 2);
  EXPECT_EQ(c.extrusion.z, -1);
}

TEST(ReaderEntities, TextAlignmentComesFromTheRightSubclass) {
  const Drawing d = Read("text-and-attribute.dxf");
  const std::vector<Entity>& all = ModelEntities(d);
  ASSERT_EQ(all.size(), 2u);
  const auto& text = std::get<Text>(all[0].geometry);
  EXPECT_EQ(text.text, "  Cuisine");
  EXPECT_EQ(text.style, "Cotes");
  EXPECT_EQ(text.horizontalAlign, 1);
  EXPECT_EQ(text.verticalAlign, 2);
  EXPECT_TRUE(text.hasAlignPoint);
  EXPECT_EQ(text.alignPoint.x, 5);

  const auto& insert = std::get<Insert>(all[1].geometry);
  EXPECT_EQ(insert.block, "Porte");
  EXPECT_EQ(insert.scale.x, -1);
  EXPECT_EQ(insert.rotation, 90);
  ASSERT_EQ(insert.attributes.size(), 1u);
  const Attribute& a = insert.attributes[0];
  EXPECT_EQ(a.tag, "NUMERO");
  EXPECT_TRUE(a.invisible);
  EXPECT_EQ(a.props.layer, "Attributs");
  EXPECT_EQ(a.text.text, "P12");
  EXPECT_EQ(a.text.horizontalAlign, 2);
  EXPECT_EQ(a.text.verticalAlign, 3);  // 74, not the field length in 73
}

TEST(ReaderEntities, MTextJoinsItsChunksInOrder) {
  // Two chunks of 250 letters under code 3, then the last one under code 1.
  const Drawing d = Read("mtext-chunks.dxf");
  const auto& m = Only<MText>(d);
  EXPECT_EQ(m.text, std::string(250, 'a') + std::string(250, 'b') + "\\Pfin");
  EXPECT_EQ(m.attachment, 5);
  EXPECT_EQ(m.width, 100);
  EXPECT_NEAR(m.rotation, 90, 1e-9);
}

TEST(ReaderEntities, PolylinesOfBothKinds) {
  const Drawing d = Read("polylines.dxf");
  const std::vector<Entity>& all = ModelEntities(d);
  ASSERT_EQ(all.size(), 4u);
  const auto& lw = std::get<Polyline>(all[0].geometry);
  ASSERT_EQ(lw.vertices.size(), 3u);
  EXPECT_TRUE(lw.closed);
  EXPECT_EQ(lw.constantWidth, 0.5);
  EXPECT_EQ(lw.vertices[1].bulge, 1);
  EXPECT_EQ(lw.vertices[2].point.y, 2);

  const auto& pl = std::get<Polyline>(all[1].geometry);
  ASSERT_EQ(pl.vertices.size(), 2u);  // the frame point is left out
  EXPECT_FALSE(pl.is3d);
  EXPECT_EQ(pl.elevation, 4);
  EXPECT_EQ(pl.vertices[0].bulge, -0.5);
  EXPECT_EQ(pl.vertices[0].startWidth, 0.2);  // the polyline's default
  EXPECT_EQ(pl.vertices[1].endWidth, 0.7);
  EXPECT_EQ(std::get<MeshEdges>(all[2].geometry).vertices.size(), 2u);
  EXPECT_TRUE(std::holds_alternative<Point>(all[3].geometry));
  EXPECT_TRUE(d.skippedEntities.empty());
}

TEST(ReaderEntities, HatchPathsPatternAndClockwiseArcs) {
  const Drawing d = Read("hatch.dxf");
  const auto& h = Only<Hatch>(d);
  EXPECT_EQ(h.pattern, "ANSI31");
  EXPECT_FALSE(h.solid);
  EXPECT_EQ(h.elevation, 2);
  EXPECT_EQ(h.style, 1);
  ASSERT_EQ(h.loops.size(), 2u);
  ASSERT_EQ(h.loops[0].edges.size(), 2u);
  EXPECT_EQ(h.loops[0].edges[0].kind, HatchEdge::Kind::Line);
  EXPECT_EQ(h.loops[0].edges[0].end.x, 10);
  const HatchEdge& arc = h.loops[0].edges[1];
  EXPECT_EQ(arc.kind, HatchEdge::Kind::Arc);
  EXPECT_FALSE(arc.counterClockwise);
  EXPECT_EQ(arc.startAngle, 0);  // as stored
  EXPECT_EQ(arc.endAngle, 180);
  EXPECT_TRUE(h.loops[1].isPolyline);
  ASSERT_EQ(h.loops[1].polyline.size(), 2u);
  EXPECT_EQ(h.loops[1].polyline[0].bulge, 0.5);
  ASSERT_EQ(h.patternLines.size(), 1u);
  EXPECT_EQ(h.patternLines[0].offset.x, -2.2);
  EXPECT_EQ(h.patternLines[0].dashes, (std::vector<double>{3, -1}));
}

TEST(ReaderEntities, HatchSplineEdgeWithFitDataBeforeTheSourceCount) {
  const Drawing d = Read("hatch-spline-fit-data.dxf");
  const auto& h = Only<Hatch>(d);
  EXPECT_TRUE(h.solid);
  ASSERT_EQ(h.loops.size(), 1u);
  ASSERT_EQ(h.loops[0].edges.size(), 1u);
  const HatchEdge& s = h.loops[0].edges[0];
  EXPECT_EQ(s.kind, HatchEdge::Kind::Spline);
  EXPECT_EQ(s.knots.size(), 8u);
  EXPECT_EQ(s.controlPoints.size(), 4u);
  EXPECT_EQ(s.fitPoints.size(), 2u);
}

TEST(ReaderEntities, ViewportFrozenLayersByHandle) {
  // Layers Cotes (A0) and Texte (A1); the viewport freezes a1 and an unknown FF.
  const Drawing d = Read("viewport.dxf");
  const auto& vp = std::get<Viewport>(d.FindBlock("*Paper_Space")->entities.at(0).geometry);
  EXPECT_EQ(vp.width, 200);
  EXPECT_EQ(vp.id, 3);
  EXPECT_EQ(vp.viewCenter.y, 20);
  EXPECT_EQ(vp.viewTarget.y, 2);
  EXPECT_EQ(vp.viewHeight, 600);
  EXPECT_EQ(vp.twist, 15);
  EXPECT_EQ(vp.flags, 163840);
  EXPECT_EQ(vp.frozenLayers, std::vector<std::string>{"Texte"});
}

TEST(ReaderEntities, ReleaseTwelveViewportFromExtendedData) {
  const Drawing d = Read("viewport-r12.dxf");
  const auto& vp = std::get<Viewport>(d.FindBlock("*Paper_Space")->entities.at(0).geometry);
  EXPECT_EQ(vp.viewTarget.x, 5);
  EXPECT_EQ(vp.viewDirection.z, 1);
  EXPECT_EQ(vp.viewHeight, 300);
  EXPECT_EQ(vp.viewCenter.x, 7);
  EXPECT_EQ(vp.viewCenter.y, 8);
  EXPECT_EQ(vp.frozenLayers, std::vector<std::string>{"HIDDEN"});
}

TEST(ReaderEntities, CurvesSolidsAndUnknownKinds) {
  const Drawing d = Read("curves-and-unknown-kinds.dxf");
  const std::vector<Entity>& all = ModelEntities(d);
  ASSERT_EQ(all.size(), 10u);
  EXPECT_EQ(std::get<Ellipse>(all[0].geometry).majorAxis.x, 4);
  EXPECT_EQ(std::get<Ellipse>(all[0].geometry).endParam, 3.14);
  EXPECT_EQ(std::get<Spline>(all[1].geometry).fitPoints.size(), 3u);
  const auto& solid = std::get<Solid>(all[2].geometry);
  EXPECT_EQ(solid.corners[3].y, 1);  // the third corner repeated
  EXPECT_EQ(std::get<Face3d>(all[3].geometry).invisibleEdges, 5);
  EXPECT_EQ(std::get<Arc>(all[4].geometry).startAngle, 270);
  const auto& dim = std::get<Dimension>(all[5].geometry);
  EXPECT_EQ(dim.block, "*D5");
  EXPECT_FALSE(dim.insert.has_value());
  EXPECT_EQ(dim.textMidpoint.y, 2);
  const auto& leader = std::get<Leader>(all[6].geometry);
  EXPECT_EQ(leader.vertices.size(), 2u);
  EXPECT_FALSE(leader.arrowhead);
  EXPECT_EQ(std::get<Undrawn>(all[7].geometry).kind, "MLINE");
  EXPECT_EQ(d.skippedEntities.at("MLINE"), 2);
  EXPECT_TRUE(std::holds_alternative<AttributeDefinition>(all[9].geometry));
  EXPECT_EQ(d.skippedEntities.count("ATTDEF"), 0u);
}

}  // namespace
}  // namespace sheafwork::embedded
