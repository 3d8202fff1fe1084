// Drawings written by another program (an open-source DXF library, see
// tests/data/dxf/other-writer/make_drawings.py): ASCII and binary, release 12 to 2018. The
// reader must find in them what that program was told to write.

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

  ASSERT_FALSE(drawing.layouts.empty());
  const Block* model = drawing.LayoutBlock(drawing.layouts.front());
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(All<Line>(*model).size(), 2u);
  ASSERT_EQ(All<Circle>(*model).size(), 1u);
  EXPECT_DOUBLE_EQ(All<Circle>(*model)[0]->radius, 20);
  ASSERT_EQ(All<Arc>(*model).size(), 1u);
  EXPECT_DOUBLE_EQ(All<Arc>(*model)[0]->endAngle, 90);
  ASSERT_EQ(All<Text>(*model).size(), 1u);
  EXPECT_EQ(All<Text>(*model)[0]->text, "Élévation °");
  ASSERT_EQ(All<Insert>(*model).size(), 1u);
  EXPECT_EQ(All<Insert>(*model)[0]->block, "PORTE");
  EXPECT_DOUBLE_EQ(All<Insert>(*model)[0]->rotation, 30);
  const Block* door = drawing.FindBlock("porte");
  ASSERT_NE(door, nullptr);
  EXPECT_EQ(door->entities.size(), 2u);
  EXPECT_TRUE(drawing.skippedEntities.empty());

  if (GetParam().release12) return;
  ASSERT_EQ(All<Polyline>(*model).size(), 1u);
  const Polyline& polyline = *All<Polyline>(*model)[0];
  ASSERT_EQ(polyline.vertices.size(), 3u);
  EXPECT_DOUBLE_EQ(polyline.vertices[0].bulge, 0.5);
  ASSERT_EQ(All<Ellipse>(*model).size(), 1u);
  EXPECT_DOUBLE_EQ(All<Ellipse>(*model)[0]->ratio, 0.5);
  ASSERT_EQ(All<MText>(*model).size(), 1u);
  EXPECT_EQ(All<MText>(*model)[0]->text, "Ligne 1\\PLigne 2");
  ASSERT_EQ(All<Hatch>(*model).size(), 1u);
  EXPECT_TRUE(All<Hatch>(*model)[0]->solid);
  ASSERT_EQ(All<Hatch>(*model)[0]->loops.size(), 1u);
  ASSERT_EQ(All<Spline>(*model).size(), 1u);
  EXPECT_FALSE(All<Spline>(*model)[0]->controlPoints.empty() &&
               All<Spline>(*model)[0]->fitPoints.empty());
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

}  // namespace
}  // namespace sheafwork::embedded
