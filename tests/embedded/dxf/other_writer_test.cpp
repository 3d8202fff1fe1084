// Drawings written by another program (an open-source DXF library, with the
// make_*.py scripts beside them under tests/data/dxf): the reader must find in
// them what that program was told to write.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using testing::All;

const Block& Model(const Drawing& d) {
  const Block* model = d.FindBlock("*Model_Space");
  EXPECT_NE(model, nullptr);
  return *model;
}

struct OtherWriterFile {
  const char* name;
  bool release12;
};

Drawing Read(const OtherWriterFile& file) {
  return testing::ReadFixture(std::string("other-writer/") + file.name);
}

class OtherWriterTest : public ::testing::TestWithParam<OtherWriterFile> {};

TEST_P(OtherWriterTest, TablesAndModelSpaceAreRead) {
  const Drawing drawing = Read(GetParam());

  const Layer* walls = drawing.FindLayer("murs");
  ASSERT_NE(walls, nullptr);
  EXPECT_EQ(walls->color, 1);
  EXPECT_TRUE(walls->on);
  const Layer* hidden = drawing.FindLayer("CACHE");
  ASSERT_NE(hidden, nullptr);
  EXPECT_FALSE(hidden->on);
  EXPECT_EQ(hidden->color, 3);

  const Block& model = Model(drawing);
  EXPECT_EQ(All<Line>(model).size(), 2u);
  ASSERT_EQ(All<Circle>(model).size(), 1u);
  EXPECT_DOUBLE_EQ(All<Circle>(model)[0]->radius, 20);
  ASSERT_EQ(All<Arc>(model).size(), 1u);
  EXPECT_DOUBLE_EQ(All<Arc>(model)[0]->endAngle, 90);
  ASSERT_EQ(All<Text>(model).size(), 1u);
  EXPECT_EQ(All<Text>(model)[0]->text, "Élévation °");
  ASSERT_EQ(All<Insert>(model).size(), 1u);
  EXPECT_EQ(All<Insert>(model)[0]->block, "PORTE");
  EXPECT_DOUBLE_EQ(All<Insert>(model)[0]->rotation, 30);
  const Block* door = drawing.FindBlock("porte");
  ASSERT_NE(door, nullptr);
  EXPECT_EQ(door->entities.size(), 2u);
  EXPECT_TRUE(drawing.skippedEntities.empty());

  if (GetParam().release12) return;
  ASSERT_EQ(All<Polyline>(model).size(), 1u);
  const Polyline& polyline = *All<Polyline>(model)[0];
  ASSERT_EQ(polyline.vertices.size(), 3u);
  EXPECT_DOUBLE_EQ(polyline.vertices[0].bulge, 0.5);
  ASSERT_EQ(All<Ellipse>(model).size(), 1u);
  EXPECT_DOUBLE_EQ(All<Ellipse>(model)[0]->ratio, 0.5);
  ASSERT_EQ(All<MText>(model).size(), 1u);
  EXPECT_EQ(All<MText>(model)[0]->text, "Ligne 1\\PLigne 2");
  ASSERT_EQ(All<Hatch>(model).size(), 1u);
  EXPECT_TRUE(All<Hatch>(model)[0]->solid);
  ASSERT_EQ(All<Hatch>(model)[0]->loops.size(), 1u);
  ASSERT_EQ(All<Spline>(model).size(), 1u);
  EXPECT_FALSE(All<Spline>(model)[0]->controlPoints.empty() &&
               All<Spline>(model)[0]->fitPoints.empty());
}

TEST_P(OtherWriterTest, LayoutsAndViewports) {
  const Drawing drawing = Read(GetParam());
  std::vector<std::string> names;
  for (const Layout& layout : drawing.layouts) names.push_back(layout.name);

  if (GetParam().release12) {
    // No layout objects: the model and the one paper space.
    EXPECT_THAT(names, ::testing::ElementsAre("Model", "Présentation1"));
    return;
  }
  EXPECT_THAT(names, ::testing::ElementsAre("Model", "Layout1", "Deuxième"));
  EXPECT_TRUE(drawing.layouts[0].IsModel());
  const Layout& sheet = drawing.layouts[1];
  EXPECT_FALSE(sheet.IsModel());
  EXPECT_DOUBLE_EQ(sheet.settings.paperWidth, 420);
  EXPECT_DOUBLE_EQ(sheet.settings.paperHeight, 297);
  const Block* paper = drawing.LayoutBlock(sheet);
  ASSERT_NE(paper, nullptr);
  EXPECT_EQ(All<Line>(*paper).size(), 1u);
  // The layout's own viewport and the one added onto model space.
  const auto viewports = All<Viewport>(*paper);
  ASSERT_EQ(viewports.size(), 2u);
  EXPECT_DOUBLE_EQ(viewports[1]->width, 300);
  EXPECT_DOUBLE_EQ(viewports[1]->height, 200);
  EXPECT_DOUBLE_EQ(viewports[1]->viewHeight, 150);
  EXPECT_DOUBLE_EQ(viewports[1]->viewCenter.x, 100);
}

INSTANTIATE_TEST_SUITE_P(Files, OtherWriterTest,
                         ::testing::Values(OtherWriterFile{"ez-r12.dxf", true},
                                           OtherWriterFile{"ez-r2007.dxf", false},
                                           OtherWriterFile{"ezbin-r2000.dxf", false},
                                           OtherWriterFile{"ezbin-r2018.dxf", false}),
                         [](const ::testing::TestParamInfo<OtherWriterFile>& info) {
                           std::string name = info.param.name;
                           for (char& c : name) {
                             if (c == '-' || c == '.') c = '_';
                           }
                           return name;
                         });

// tests/data/dxf/mtext: column layouts in the forms of release 2018 and of
// older releases, background fills, and attributes followed by an xrecord part.
TEST(MTextReadingTest, ColumnLayoutsInBothForms) {
  // Static columns, dynamic columns of one height, of their own heights;
  // the older form adds a linked MTEXT per further column, with no layout.
  for (const char* file : {"columns-r2018.dxf", "columns-r2007.dxf"}) {
    SCOPED_TRACE(file);
    const Drawing drawing = testing::ReadFixture(std::string("mtext/") + file);
    std::vector<const MText*> laidOut;
    for (const MText* m : All<MText>(Model(drawing))) {
      if (m->extras && m->extras->columns.type != 0) laidOut.push_back(m);
    }
    ASSERT_EQ(laidOut.size(), 3u);
    const MTextColumns& fixed = laidOut[0]->extras->columns;
    EXPECT_EQ(fixed.type, 1);
    EXPECT_EQ(fixed.count, 3);
    EXPECT_DOUBLE_EQ(fixed.width, 30);
    EXPECT_DOUBLE_EQ(fixed.gutter, 5);
    EXPECT_DOUBLE_EQ(fixed.height, 40);
    const MTextColumns& flowing = laidOut[1]->extras->columns;
    EXPECT_EQ(flowing.type, 2);
    EXPECT_TRUE(flowing.autoHeight);
    EXPECT_DOUBLE_EQ(flowing.width, 40);
    EXPECT_DOUBLE_EQ(flowing.gutter, 4);
    EXPECT_DOUBLE_EQ(flowing.height, 20);
    const MTextColumns& manual = laidOut[2]->extras->columns;
    EXPECT_EQ(manual.type, 2);
    EXPECT_FALSE(manual.autoHeight);
    EXPECT_EQ(manual.count, 2);
    EXPECT_EQ(manual.heights, (std::vector<double>{10, 25}));
    // The embedded object repeats the insertion point in codes of its own:
    // it must not move the text.
    EXPECT_DOUBLE_EQ(laidOut[0]->insert.y, 100);
  }
}

TEST(MTextReadingTest, AttributeVisibilityIsTheAttributesOwn) {
  // Each attribute is followed by an xrecord part whose own 70 codes
  // ("really locked" among them) say nothing of visibility.
  const Drawing drawing = testing::ReadFixture("mtext/attributes-r2018.dxf");
  const std::vector<const Insert*> inserts = All<Insert>(Model(drawing));
  ASSERT_EQ(inserts.size(), 1u);
  ASSERT_EQ(inserts[0]->attributes.size(), 2u);
  EXPECT_EQ(inserts[0]->attributes[0].tag, "TITRE");
  EXPECT_FALSE(inserts[0]->attributes[0].invisible);
  EXPECT_EQ(inserts[0]->attributes[1].tag, "CACHE");
  EXPECT_TRUE(inserts[0]->attributes[1].invisible);
}

// tests/data/dxf/entities: kinds of entity that drawings from other programs
// carry beside the usual ones.
Drawing Read(const std::string& name) { return testing::ReadFixture("entities/" + name); }

TEST(EntityKinds, MeshesBecomeTheirVisibleEdges) {
  const Drawing d = Read("meshes.dxf");
  const auto meshes = All<MeshEdges>(Model(d));
  ASSERT_EQ(meshes.size(), 3u);
  // Polyface: two squares, the shared edge hidden in the second only.
  EXPECT_EQ(meshes[0]->vertices.size(), 6u);
  EXPECT_EQ(meshes[0]->edges.size(), 2 * 7u);
  // Polygon mesh 3 × 3, open both ways: 2 × 3 edges each way.
  EXPECT_EQ(meshes[1]->vertices.size(), 9u);
  EXPECT_EQ(meshes[1]->edges.size(), 2 * 12u);
  // MESH: one square face.
  EXPECT_EQ(meshes[2]->vertices.size(), 4u);
  EXPECT_EQ(meshes[2]->edges.size(), 2 * 4u);
  EXPECT_TRUE(d.skippedEntities.empty());
}

}  // namespace
}  // namespace sheafwork::embedded
