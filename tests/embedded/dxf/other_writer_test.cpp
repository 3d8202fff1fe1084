// Drawings written by another program (an open-source DXF library, with the
// make_*.py scripts beside them under tests/data/dxf): the reader must find in
// them what that program was told to write, and in copies damaged the way
// files met in practice are, link each layout to its own block or to none.

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

using testing::All;
using ::testing::AllOf;
using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using testing::ModelEntities;
using ::testing::Pointee;
using testing::ReadFixture;
using ::testing::SizeIs;

// The release-12 drawing is written without the newer kinds of entity and
// without layout objects.
TEST(OtherWriterTest, TablesModelSpaceLayoutsAndViewportsAreRead) {
  const std::pair<const char*, bool> files[] = {{"ez-r12.dxf", true},
                                                {"ez-r2007.dxf", false},
                                                {"ezbin-r2000.dxf", false},
                                                {"ezbin-r2018.dxf", false}};
  for (const auto& [file, release12] : files) {
    SCOPED_TRACE(file);
    const Drawing drawing = ReadFixture(std::string("other-writer/") + file);

    const Layer* walls = drawing.FindLayer("murs");
    ASSERT_NE(walls, nullptr);
    EXPECT_EQ(std::tuple(walls->color, walls->on), std::tuple(1, true));
    const Layer* hidden = drawing.FindLayer("CACHE");
    ASSERT_NE(hidden, nullptr);
    EXPECT_EQ(std::tuple(hidden->color, hidden->on), std::tuple(3, false));

    const std::vector<Entity>& model = ModelEntities(drawing);
    EXPECT_EQ(All<Line>(model).size(), 2u);
    EXPECT_THAT(All<Circle>(model), ElementsAre(Pointee(Field(&Circle::radius, DoubleEq(20)))));
    EXPECT_THAT(All<Arc>(model), ElementsAre(Pointee(Field(&Arc::endAngle, DoubleEq(90)))));
    EXPECT_THAT(All<Text>(model), ElementsAre(Pointee(Field(&Text::text, "Élévation °"))));
    EXPECT_THAT(All<Insert>(model),
                ElementsAre(Pointee(AllOf(Field(&Insert::block, "PORTE"),
                                          Field(&Insert::rotation, DoubleEq(30))))));
    const Block* door = drawing.FindBlock("porte");
    ASSERT_NE(door, nullptr);
    EXPECT_EQ(door->entities.size(), 2u);
    EXPECT_TRUE(drawing.skippedEntities.empty());

    std::vector<std::string> names;
    for (const Layout& layout : drawing.layouts) names.push_back(layout.name);
    if (release12) {
      // No layout objects: the model and the one paper space.
      EXPECT_THAT(names, ElementsAre("Model", "Présentation1"));
      continue;
    }
    ASSERT_EQ(All<Polyline>(model).size(), 1u);
    const Polyline& polyline = *All<Polyline>(model)[0];
    ASSERT_EQ(polyline.vertices.size(), 3u);
    EXPECT_DOUBLE_EQ(polyline.vertices[0].bulge, 0.5);
    EXPECT_THAT(All<Ellipse>(model), ElementsAre(Pointee(Field(&Ellipse::ratio, DoubleEq(0.5)))));
    EXPECT_THAT(All<MText>(model), ElementsAre(Pointee(Field(&MText::text, "Ligne 1\\PLigne 2"))));
    EXPECT_THAT(
        All<Hatch>(model),
        ElementsAre(Pointee(AllOf(Field(&Hatch::solid, true), Field(&Hatch::loops, SizeIs(1))))));
    ASSERT_EQ(All<Spline>(model).size(), 1u);
    EXPECT_FALSE(All<Spline>(model)[0]->controlPoints.empty() &&
                 All<Spline>(model)[0]->fitPoints.empty());

    EXPECT_THAT(names, ElementsAre("Model", "Layout1", "Deuxième"));
    EXPECT_TRUE(drawing.layouts[0].IsModel());
    const Layout& sheet = drawing.layouts[1];
    EXPECT_FALSE(sheet.IsModel());
    EXPECT_EQ(std::tuple(sheet.settings.paperWidth, sheet.settings.paperHeight),
              std::tuple(420, 297));
    const Block* paper = drawing.LayoutBlock(sheet);
    ASSERT_NE(paper, nullptr);
    EXPECT_EQ(All<Line>(paper->entities).size(), 1u);
    // The layout's own viewport and the one added onto model space.
    const auto viewports = All<Viewport>(paper->entities);
    ASSERT_EQ(viewports.size(), 2u);
    const Viewport& added = *viewports[1];
    EXPECT_EQ(std::tuple(added.width, added.height, added.viewHeight, added.viewCenter.x),
              std::tuple(300, 200, 150, 100));
  }
}

// tests/data/dxf/mtext: column layouts in the forms of release 2018 and of
// older releases, background fills, and attributes followed by an xrecord part.
TEST(MTextReadingTest, ColumnLayoutsInBothForms) {
  // Static columns, dynamic columns of one height, of their own heights;
  // the older form adds a linked MTEXT per further column, with no layout.
  for (const char* file : {"columns-r2018.dxf", "columns-r2007.dxf"}) {
    SCOPED_TRACE(file);
    const Drawing drawing = ReadFixture(std::string("mtext/") + file);
    std::vector<const MText*> laidOut;
    for (const MText* m : All<MText>(ModelEntities(drawing))) {
      if (m->extras && m->extras->columns.type != 0) laidOut.push_back(m);
    }
    ASSERT_EQ(laidOut.size(), 3u);
    const MTextColumns& fixed = laidOut[0]->extras->columns;
    EXPECT_EQ(std::tuple(fixed.type, fixed.count, fixed.width, fixed.gutter, fixed.height),
              std::tuple(1, 3, 30, 5, 40));
    const MTextColumns& flowing = laidOut[1]->extras->columns;
    EXPECT_EQ(
        std::tuple(flowing.type, flowing.autoHeight, flowing.width, flowing.gutter, flowing.height),
        std::tuple(2, true, 40, 4, 20));
    const MTextColumns& manual = laidOut[2]->extras->columns;
    EXPECT_EQ(std::tuple(manual.type, manual.autoHeight, manual.count, manual.heights),
              std::tuple(2, false, 2, std::vector<double>{10, 25}));
    // The embedded object repeats the insertion point in codes of its own:
    // it must not move the text.
    EXPECT_DOUBLE_EQ(laidOut[0]->insert.y, 100);
  }
}

TEST(MTextReadingTest, AttributeVisibilityIsTheAttributesOwn) {
  // Each attribute is followed by an xrecord part whose own 70 codes
  // ("really locked" among them) say nothing of visibility.
  const Drawing drawing = ReadFixture("mtext/attributes-r2018.dxf");
  const std::vector<const Insert*> inserts = All<Insert>(ModelEntities(drawing));
  ASSERT_EQ(inserts.size(), 1u);
  EXPECT_THAT(
      inserts[0]->attributes,
      ElementsAre(AllOf(Field(&Attribute::tag, "TITRE"), Field(&Attribute::invisible, false)),
                  AllOf(Field(&Attribute::tag, "CACHE"), Field(&Attribute::invisible, true))));
}

// tests/data/dxf/entities: kinds of entity that drawings from other programs
// carry beside the usual ones.
TEST(EntityKinds, MeshesBecomeTheirVisibleEdges) {
  const Drawing d = ReadFixture("entities/meshes.dxf");
  const auto meshes = All<MeshEdges>(ModelEntities(d));
  ASSERT_EQ(meshes.size(), 3u);
  // Vertices and edge ends of a polyface of two squares, the shared edge
  // hidden in the second only; of a polygon mesh 3 × 3, open both ways (2 × 3
  // edges each way); of a MESH of one square face.
  const std::pair<std::size_t, std::size_t> expected[] = {{6, 2 * 7}, {9, 2 * 12}, {4, 2 * 4}};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(std::pair(meshes[i]->vertices.size(), meshes[i]->edges.size()), expected[i]) << i;
  }
  EXPECT_TRUE(d.skippedEntities.empty());
}

// Drawings written by another program, then damaged the way files met in
// practice are (tests/data/dxf/layout-links/make_drawings.py): every layout
// must show its own content or, when its block cannot be found, none at all
// and say why, never another layout's. The second layout was the active one
// when saved, so its block is "*Paper_Space" although it is not the first.

// The texts of a block, which in these drawings name the layout they are on.
std::vector<std::string> TextsOf(const Block& block) {
  std::vector<std::string> texts;
  for (const Entity& e : block.entities) {
    if (const auto* text = std::get_if<Text>(&e.geometry)) texts.push_back(text->text);
  }
  return texts;
}

// Every file has the layouts Alpha, Beta and Gamma, each showing its name in
// capitals; in layout-block-missing.dxf the block of Gamma is lost.
TEST(DamagedFiles, LayoutsAreLinkedToTheirOwnBlocksOrFailWithTheReason) {
  for (const char* file :
       {"layouts.dxf", "no-block-record-table-header.dxf", "no-tables-section-header.dxf",
        "no-blocks-section-header.dxf", "no-blocks-section-end.dxf", "no-entities-section-end.dxf",
        "layout-link-wrong.dxf", "layout-block-missing.dxf", "model-space-record-renamed.dxf"}) {
    SCOPED_TRACE(file);
    const Drawing d = ReadFixture(std::string("layout-links/") + file);
    ASSERT_EQ(d.layouts.size(), 4u);  // and the model
    EXPECT_EQ(TextsOf(*d.LayoutBlock(d.layouts[0])), std::vector<std::string>{"MODELE"});
    const std::pair<const char*, const char*> layouts[] = {
        {"Alpha", "ALPHA"}, {"Beta", "BETA"}, {"Gamma", "GAMMA"}};
    for (std::size_t i = 0; i < 3; ++i) {
      const auto [name, text] = layouts[i];
      const Layout& layout = d.layouts[i + 1];
      SCOPED_TRACE(name);
      EXPECT_EQ(layout.name, name);
      const Block* block = d.LayoutBlock(layout);
      if (file == std::string("layout-block-missing.dxf") && i == 2) {
        EXPECT_EQ(block, nullptr);
        EXPECT_THAT(layout.blockError, AllOf(HasSubstr(file), HasSubstr(name)));
        continue;
      }
      EXPECT_EQ(layout.blockError, "");
      ASSERT_NE(block, nullptr);
      EXPECT_EQ(TextsOf(*block), std::vector<std::string>{text});
    }
  }
}

}  // namespace
}  // namespace sheafwork::embedded
