#include "embedded/model/layouts.h"

#include <gtest/gtest.h>

namespace sheafwork::embedded {
namespace {

Drawing WithPaperEntity(bool paperEntity) {
  Drawing d;
  Block model;
  model.name = "*Model_Space";
  model.entities.push_back(Entity{});
  d.blocks.push_back(model);
  Block paper;
  paper.name = "*Paper_Space";
  if (paperEntity) paper.entities.push_back(Entity{});
  d.blocks.push_back(paper);
  d.Reindex();
  return d;
}

TEST(SynthesiseLayouts, LeavesStoredLayoutsAlone) {
  Drawing d = WithPaperEntity(true);
  d.layouts.push_back(Layout{});
  d.layouts[0].name = "Stored";
  SynthesiseLayouts(d);
  ASSERT_EQ(d.layouts.size(), 1u);
  EXPECT_EQ(d.layouts[0].name, "Stored");
}

TEST(SynthesiseLayouts, ModelAloneWhenPaperSpaceIsEmpty) {
  Drawing d;  // not even the model block
  d.header.limMin = {-10, -5};
  d.header.limMax = {100, 50};
  SynthesiseLayouts(d);
  ASSERT_EQ(d.layouts.size(), 1u);
  const Layout& model = d.layouts[0];
  EXPECT_TRUE(model.IsModel());
  EXPECT_EQ(model.name, "Model");
  EXPECT_NE(d.LayoutBlock(model), nullptr);
  EXPECT_EQ(model.limMin.x, -10);
  EXPECT_EQ(model.settings.plotType, kPlotExtents);
  EXPECT_EQ(model.settings.standardScale, 0);  // fit
  EXPECT_GT(model.settings.paperWidth, model.settings.paperHeight);

  Drawing empty = WithPaperEntity(false);
  SynthesiseLayouts(empty);
  EXPECT_EQ(empty.layouts.size(), 1u);
}

TEST(SynthesiseLayouts, PaperSheetFromThePaperLimits) {
  struct Case {
    Vec2 min, max;
    std::int16_t measurement;
    bool sheet;  // the limits make a sheet
    double width, height;
    bool tileMode;  // the model tab is then the active one
  };
  const Case cases[] = {
      {{0, 0}, {420, 297}, 1, true, 420, 297, false},
      {{-20, -7.5}, {277, 202.5}, 1, true, 297, 210, false},
      {{0, 0}, {17, 11}, 0, true, 431.8, 279.4, false},
      {{0, 0}, {12, 9}, 1, false, 420, 297, false},  // 12 x 9 mm is no sheet
      {{5, 5}, {0, 0}, 1, false, 420, 297, false},
      {{0, 0}, {420, 297}, 1, true, 420, 297, true},
  };
  for (const Case& c : cases) {
    Drawing d = WithPaperEntity(true);
    d.header.pLimMin = c.min;
    d.header.pLimMax = c.max;
    d.header.measurement = c.measurement;
    d.header.tileMode = c.tileMode;
    SynthesiseLayouts(d);
    ASSERT_EQ(d.layouts.size(), 2u);
    const Layout& paper = d.layouts[1];
    EXPECT_EQ(d.activeLayout, c.tileMode ? 0u : 1u);
    EXPECT_EQ(paper.name, "Présentation1");
    EXPECT_EQ(paper.blockName, "*Paper_Space");
    EXPECT_FALSE(paper.IsModel());
    EXPECT_EQ(paper.limMax.x, c.max.x);
    const PlotSettings& s = paper.settings;
    EXPECT_NEAR(s.paperWidth, c.width, 1e-9) << c.max.x;
    EXPECT_NEAR(s.paperHeight, c.height, 1e-9) << c.max.y;
    if (!c.sheet) {
      EXPECT_EQ(s.plotType, kPlotExtents);
      continue;
    }
    EXPECT_EQ(s.plotType, kPlotLayout);
    EXPECT_EQ(s.paperUnits, c.measurement == 0 ? 0 : 1);
    // Paper point P lands at margin + origin + P (in mm) from the sheet's
    // lower-left corner: the lower-left limit must land on the corner.
    const double unit = c.measurement == 0 ? 25.4 : 1;
    EXPECT_NEAR(s.marginLeft + s.origin.x + c.min.x * unit, 0, 1e-9);
    EXPECT_NEAR(s.marginBottom + s.origin.y + c.min.y * unit, 0, 1e-9);
  }
}

}  // namespace
}  // namespace sheafwork::embedded
