#include "embedded/model/layouts.h"

#include <gtest/gtest.h>

namespace sheafwork::embedded {
namespace {

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

  Drawing empty;
  for (const char* name : {"*Model_Space", "*Paper_Space"}) {
    Block block;
    block.name = name;
    empty.blocks.push_back(block);
  }
  empty.blocks[0].entities.push_back(Entity{});
  empty.Reindex();
  SynthesiseLayouts(empty);
  EXPECT_EQ(empty.layouts.size(), 1u);
}

}  // namespace
}  // namespace sheafwork::embedded
