// Entities as the reader decodes them, each kind from the tags a writer of
// release 2000 or later puts down (subclass markers included).

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/dxf/dxf_text.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using testing::EndOfFile;
using testing::EntityStart;
using testing::ModelEntities;
using testing::ReadEntities;
using testing::Section;
using testing::Tags;

template <typename T>
const T& Only(const Drawing& d) {
  const std::vector<Entity>& all = ModelEntities(d);
  EXPECT_EQ(all.size(), 1u);
  return std::get<T>(all.at(0).geometry);
}

TEST(ReaderEntities, CommonPropertiesFromTheEntityPart) {
  const Drawing d = ReadEntities(Tags({{0, "CIRCLE"},
                                       {5, "2F"},
                                       {330, "1F"},
                                       {100, "AcDbEntity"},
                                       {8, "Murs"},
                                       {6, "BYBLOCK"},
                                       {62, "0"},
                                       {420, "16711935"},
                                       {370, "50"},
                                       {48, "2"},
                                       {60, "1"},
                                       {100, "AcDbCircle"},
                                       {10, "1"},
                                       {20, "2"},
                                       {30, "0"},
                                       {40, "5"},
                                       {210, "0"},
                                       {220, "0"},
                                       {230, "-1"}}));
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
  const Drawing d =
      ReadEntities(EntityStart("TEXT", "AcDbText") +
                   Tags({{10, "1"},
                         {20, "2"},
                         {40, "2.5"},
                         {1, "  Cuisine"},
                         {50, "30"},
                         {7, "Cotes"},
                         {72, "1"},
                         {11, "5"},
                         {21, "2"},
                         {100, "AcDbText"},
                         {73, "2"}}) +
                   EntityStart("INSERT", "AcDbBlockReference") +
                   Tags({{66, "1"}, {2, "Porte"}, {10, "10"}, {20, "20"}, {41, "-1"}, {50, "90"}}) +
                   Tags({{0, "ATTRIB"},
                         {100, "AcDbEntity"},
                         {8, "Attributs"},
                         {100, "AcDbText"},
                         {10, "11"},
                         {20, "21"},
                         {40, "1"},
                         {1, "P12"},
                         {72, "2"},
                         {11, "12"},
                         {21, "21"},
                         {100, "AcDbAttribute"},
                         {2, "NUMERO"},
                         {70, "1"},
                         {73, "10"},
                         {74, "3"}}) +
                   Tags({{0, "SEQEND"}, {100, "AcDbEntity"}, {8, "0"}}));
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
  const std::string first(250, 'a');
  const std::string second(250, 'b');
  const Drawing d = ReadEntities(EntityStart("MTEXT", "AcDbMText") + Tags({{10, "1"},
                                                                           {20, "2"},
                                                                           {40, "3"},
                                                                           {41, "100"},
                                                                           {71, "5"},
                                                                           {3, first},
                                                                           {3, second},
                                                                           {1, "\\Pfin"},
                                                                           {11, "0"},
                                                                           {21, "1"},
                                                                           {31, "0"}}));
  const auto& m = Only<MText>(d);
  EXPECT_EQ(m.text, first + second + "\\Pfin");
  EXPECT_EQ(m.attachment, 5);
  EXPECT_EQ(m.width, 100);
  EXPECT_NEAR(m.rotation, 90, 1e-9);
}

TEST(ReaderEntities, PolylinesOfBothKinds) {
  const Drawing d = ReadEntities(
      EntityStart("LWPOLYLINE", "AcDbPolyline") +
      Tags({{90, "3"},
            {70, "1"},
            {43, "0.5"},
            {10, "0"},
            {20, "0"},
            {10, "2"},
            {20, "0"},
            {42, "1"},
            {10, "2"},
            {20, "2"}}) +
      EntityStart("POLYLINE", "AcDb2dPolyline") +
      Tags({{66, "1"}, {10, "0"}, {20, "0"}, {30, "4"}, {70, "4"}, {40, "0.2"}, {41, "0.2"}}) +
      EntityStart("VERTEX", "AcDbVertex") +
      Tags({{100, "AcDb2dVertex"}, {10, "0"}, {20, "0"}, {70, "16"}}) +
      EntityStart("VERTEX", "AcDbVertex") +
      Tags({{100, "AcDb2dVertex"}, {10, "1"}, {20, "1"}, {42, "-0.5"}, {70, "8"}}) +
      Tags({{0, "VERTEX"},
            {100, "AcDbEntity"},
            {8, "0"},
            {10, "3"},
            {20, "1"},
            {41, "0.7"},
            {70, "8"}}) +
      Tags({{0, "SEQEND"}, {100, "AcDbEntity"}, {8, "0"}}) +
      // A polyface mesh without faces: read with its vertices, no edge.
      Tags({{0, "POLYLINE"},
            {8, "0"},
            {66, "1"},
            {70, "64"},
            {0, "VERTEX"},
            {8, "0"},
            {10, "1"},
            {0, "VERTEX"},
            {8, "0"},
            {10, "2"},
            {0, "SEQEND"},
            {8, "0"}}) +
      Tags({{0, "POINT"}, {8, "0"}, {10, "9"}, {20, "9"}}));
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
  const Drawing d = ReadEntities(EntityStart("HATCH", "AcDbHatch") +
                                 Tags({
                                     {10, "0"},
                                     {20, "0"},
                                     {30, "2"},
                                     {210, "0"},
                                     {220, "0"},
                                     {230, "1"},
                                     {2, "ANSI31"},
                                     {70, "0"},
                                     {71, "0"},
                                     {91, "2"},
                                     // an edge path: a line and a clockwise arc
                                     {92, "1"},
                                     {93, "2"},
                                     {72, "1"},
                                     {10, "0"},
                                     {20, "0"},
                                     {11, "10"},
                                     {21, "0"},
                                     {72, "2"},
                                     {10, "5"},
                                     {20, "0"},
                                     {40, "5"},
                                     {50, "0"},
                                     {51, "180"},
                                     {73, "0"},
                                     {97, "1"},
                                     {330, "AB"},
                                     // a polyline path with a bulge
                                     {92, "2"},
                                     {72, "1"},
                                     {73, "1"},
                                     {93, "2"},
                                     {10, "1"},
                                     {20, "1"},
                                     {42, "0.5"},
                                     {10, "2"},
                                     {20, "2"},
                                     {42, "0"},
                                     {97, "0"},
                                     {75, "1"},
                                     {76, "1"},
                                     {52, "45"},
                                     {41, "1"},
                                     {77, "0"},
                                     {78, "1"},
                                     {53, "45"},
                                     {43, "0"},
                                     {44, "0"},
                                     {45, "-2.2"},
                                     {46, "2.2"},
                                     {79, "2"},
                                     {49, "3"},
                                     {49, "-1"},
                                     {98, "1"},
                                     {10, "7"},
                                     {20, "7"},
                                 }));
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
  const Drawing d = ReadEntities(
      EntityStart("HATCH", "AcDbHatch") +
      Tags({
          {2, "SOLID"}, {70, "1"}, {91, "1"}, {92, "1"}, {93, "1"}, {72, "4"},   {94, "3"},
          {73, "0"},    {74, "0"}, {95, "8"}, {96, "4"}, {40, "0"}, {40, "0"},   {40, "0"},
          {40, "0"},    {40, "1"}, {40, "1"}, {40, "1"}, {40, "1"}, {10, "0"},   {20, "0"},
          {10, "1"},    {20, "1"}, {10, "2"}, {20, "1"}, {10, "3"}, {20, "0"},   {97, "2"},
          {11, "0"},    {21, "0"}, {11, "3"}, {21, "0"}, {97, "1"}, {330, "C1"}, {75, "0"},
      }));
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
  const std::string tables = Section("TABLES", Tags({{0, "TABLE"},
                                                     {2, "LAYER"},
                                                     {0, "LAYER"},
                                                     {5, "A0"},
                                                     {2, "Cotes"},
                                                     {0, "LAYER"},
                                                     {5, "A1"},
                                                     {2, "Texte"},
                                                     {0, "ENDTAB"}}));
  const Drawing d = ReadEntities(
      Tags({{0, "VIEWPORT"}, {100, "AcDbEntity"}, {67, "1"},   {8, "0"},    {100, "AcDbViewport"},
            {10, "150"},     {20, "100"},         {40, "200"}, {41, "120"}, {68, "2"},
            {69, "3"},       {12, "10"},          {22, "20"},  {17, "1"},   {27, "2"},
            {45, "600"},     {51, "15"},          {331, "a1"}, {331, "FF"}, {90, "163840"}}),
      tables);
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
  const Drawing d = ReadDxf(
      Section("ENTITIES",
              Tags({{0, "VIEWPORT"},  {8, "0"},    {67, "1"},    {10, "100"},  {20, "80"},
                    {40, "150"},      {41, "90"},  {68, "1"},    {69, "2"},    {1001, "ACAD"},
                    {1000, "MVIEW"},  {1002, "{"}, {1070, "16"}, {1010, "5"},  {1020, "6"},
                    {1030, "0"},      {1010, "0"}, {1020, "0"},  {1030, "1"},  {1040, "0"},
                    {1040, "300"},    {1040, "7"}, {1040, "8"},  {1040, "50"}, {1002, "{"},
                    {1003, "HIDDEN"}, {1002, "}"}, {1002, "}"}})) +
          EndOfFile(),
      "r12.dxf");
  const auto& vp = std::get<Viewport>(d.FindBlock("*Paper_Space")->entities.at(0).geometry);
  EXPECT_EQ(vp.viewTarget.x, 5);
  EXPECT_EQ(vp.viewDirection.z, 1);
  EXPECT_EQ(vp.viewHeight, 300);
  EXPECT_EQ(vp.viewCenter.x, 7);
  EXPECT_EQ(vp.viewCenter.y, 8);
  EXPECT_EQ(vp.frozenLayers, std::vector<std::string>{"HIDDEN"});
}

TEST(ReaderEntities, CurvesSolidsAndUnknownKinds) {
  const Drawing d = ReadEntities(
      EntityStart("ELLIPSE", "AcDbEllipse") +
      Tags({{10, "1"}, {20, "1"}, {11, "4"}, {21, "0"}, {40, "0.5"}, {41, "0"}, {42, "3.14"}}) +
      EntityStart("SPLINE", "AcDbSpline") +
      Tags({{70, "8"},
            {71, "3"},
            {72, "0"},
            {73, "0"},
            {74, "3"},
            {11, "0"},
            {21, "0"},
            {11, "1"},
            {21, "1"},
            {11, "2"},
            {21, "0"}}) +
      EntityStart("SOLID", "AcDbTrace") +
      Tags({{10, "0"}, {20, "0"}, {11, "1"}, {21, "0"}, {12, "0"}, {22, "1"}}) +
      EntityStart("3DFACE", "AcDbFace") +
      Tags({{10, "0"}, {11, "1"}, {12, "1"}, {22, "1"}, {13, "0"}, {23, "1"}, {70, "5"}}) +
      EntityStart("ARC", "AcDbCircle") +
      Tags({{10, "0"}, {20, "0"}, {40, "2"}, {100, "AcDbArc"}, {50, "270"}, {51, "90"}}) +
      EntityStart("DIMENSION", "AcDbDimension") +
      Tags({{2, "*D5"},
            {10, "3"},
            {20, "4"},
            {11, "1"},
            {21, "2"},
            {70, "33"},
            {100, "AcDbAlignedDimension"},
            {13, "0"},
            {14, "5"}}) +
      EntityStart("LEADER", "AcDbLeader") +
      Tags({{3, "Standard"}, {71, "0"}, {76, "2"}, {10, "0"}, {20, "0"}, {10, "5"}, {20, "5"}}) +
      Tags({{0, "MLINE"}, {8, "0"}, {10, "0"}}) + Tags({{0, "MLINE"}, {8, "0"}}) +
      Tags({{0, "ATTDEF"}, {8, "0"}, {1, "x"}}));
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
