// Kinds of entity that drawings from other programs carry beside the usual
// ones (tests/data/dxf/entities, written by ezdxf: make_entities.py), and
// the count of those the host cannot draw.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <variant>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"
#include "embedded/dxf/reader.h"
#include "embedded/model/undrawn.h"

namespace sheafwork::embedded {
namespace {

using testing::All;

Drawing Read(const std::string& name) { return testing::ReadFixture("entities/" + name); }

const Block& Model(const Drawing& d) {
  const Block* model = d.FindBlock("*Model_Space");
  EXPECT_NE(model, nullptr);
  return *model;
}

TEST(EntityKinds, ConstructionLinesKeepTheirBaseDirectionAndKind) {
  const Drawing d = Read("construction_lines.dxf");
  const auto lines = All<ConstructionLine>(Model(d));
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_FALSE(lines[0]->ray);
  EXPECT_DOUBLE_EQ(lines[0]->base.x, 50);
  EXPECT_NEAR(lines[0]->direction.x, lines[0]->direction.y, 1e-12);
  EXPECT_TRUE(lines[1]->ray);
  EXPECT_DOUBLE_EQ(lines[1]->base.y, 80);
}

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

TEST(EntityKinds, MultileadersKeepLinesArrowsAndContent) {
  const Drawing d = Read("multileaders.dxf");
  const auto leaders = All<MultiLeader>(Model(d));
  ASSERT_EQ(leaders.size(), 2u);
  const MultiLeader& text = *leaders[0];
  ASSERT_EQ(text.lineEnds.size(), 1u);
  ASSERT_GE(text.points.size(), 2u);
  EXPECT_DOUBLE_EQ(text.points[0].x, 20);
  EXPECT_DOUBLE_EQ(text.points[0].y, 20);
  EXPECT_DOUBLE_EQ(text.arrowSize, 4);
  ASSERT_EQ(text.text.size(), 1u);
  EXPECT_EQ(text.text[0].text, "NOTE");
  EXPECT_DOUBLE_EQ(text.text[0].height, 5);
  EXPECT_TRUE(text.block.empty());

  const MultiLeader& block = *leaders[1];
  EXPECT_TRUE(block.text.empty());
  EXPECT_EQ(block.block, "REPERE");
  EXPECT_DOUBLE_EQ(block.points[0].x, 60);
}

TEST(EntityKinds, AStandAloneAttributeDefinitionShowsItsTag) {
  const Drawing d = Read("attribute_definitions.dxf");
  const auto definitions = All<AttributeDefinition>(Model(d));
  ASSERT_EQ(definitions.size(), 1u);
  EXPECT_EQ(definitions[0]->tag.text, "REPERE");
  EXPECT_DOUBLE_EQ(definitions[0]->tag.height, 5);
  const Block* block = d.FindBlock("CARTOUCHE");
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(All<AttributeDefinition>(*block).size(), 1u);
}

TEST(EntityKinds, KindsTheHostCannotDrawAreCountedWhereAPlotWouldShowThem) {
  const Drawing d = Read("undrawn.dxf");
  EXPECT_EQ(All<Undrawn>(Model(d)).size(), 4u);
  // The multiline on a layer that is off is left out by design.
  const std::map<std::string, int> expected = {{"MLINE", 2}, {"TOLERANCE", 1}};
  EXPECT_EQ(UndrawnEntities(d), expected);
  EXPECT_EQ(UndrawnEntities(d, d.layouts.at(0)), expected);
  EXPECT_EQ(FormatUndrawn(expected), "MLINE (2), TOLERANCE (1)");
  // A paper layout without viewports does not show the model.
  for (const Layout& layout : d.layouts) {
    if (!layout.IsModel()) {
      EXPECT_TRUE(UndrawnEntities(d, layout).empty()) << layout.name;
    }
  }
  EXPECT_TRUE(UndrawnEntities(Read("meshes.dxf")).empty());
}

}  // namespace
}  // namespace sheafwork::embedded
