// Drawings written by another program, then damaged the way files met in
// practice are (tests/data/dxf/layout-links/make_drawings.py): every layout
// must show its own content or, when its block cannot be found, none at all
// and say why, never another layout's. The second layout was the active one
// when saved, so its block is "*Paper_Space" although it is not the first.

#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

// The texts of a block, which in these drawings name the layout they are on.
std::vector<std::string> TextsOf(const Block& block) {
  std::vector<std::string> texts;
  for (const Entity& e : block.entities) {
    if (const auto* text = std::get_if<Text>(&e.geometry)) texts.push_back(text->text);
  }
  return texts;
}

struct ExpectedLayout {
  const char* name;
  const char* text;  ///< the one text on it; null when its block is lost
};

struct DamagedCase {
  const char* file;
  std::vector<ExpectedLayout> layouts;
};

const DamagedCase kCases[] = {
    {"layouts.dxf", {{"Alpha", "ALPHA"}, {"Beta", "BETA"}, {"Gamma", "GAMMA"}}},
    {"no-block-record-table-header.dxf",
     {{"Alpha", "ALPHA"}, {"Beta", "BETA"}, {"Gamma", "GAMMA"}}},
    {"no-tables-section-header.dxf", {{"Alpha", "ALPHA"}, {"Beta", "BETA"}, {"Gamma", "GAMMA"}}},
    {"no-blocks-section-header.dxf", {{"Alpha", "ALPHA"}, {"Beta", "BETA"}, {"Gamma", "GAMMA"}}},
    {"no-blocks-section-end.dxf", {{"Alpha", "ALPHA"}, {"Beta", "BETA"}, {"Gamma", "GAMMA"}}},
    {"no-entities-section-end.dxf", {{"Alpha", "ALPHA"}, {"Beta", "BETA"}, {"Gamma", "GAMMA"}}},
    {"layout-link-wrong.dxf", {{"Alpha", "ALPHA"}, {"Beta", "BETA"}, {"Gamma", "GAMMA"}}},
    {"layout-block-missing.dxf", {{"Alpha", "ALPHA"}, {"Beta", "BETA"}, {"Gamma", nullptr}}},
    {"model-space-record-renamed.dxf", {{"Alpha", "ALPHA"}, {"Beta", "BETA"}, {"Gamma", "GAMMA"}}},
};

TEST(DamagedFiles, LayoutsAreLinkedToTheirOwnBlocksOrFailWithTheReason) {
  for (const DamagedCase& c : kCases) {
    SCOPED_TRACE(c.file);
    const Drawing d = testing::ReadFixture(std::string("layout-links/") + c.file);
    ASSERT_EQ(d.layouts.size(), c.layouts.size() + 1);  // and the model
    EXPECT_EQ(TextsOf(*d.LayoutBlock(d.layouts[0])), std::vector<std::string>{"MODELE"});
    for (std::size_t i = 0; i < c.layouts.size(); ++i) {
      const ExpectedLayout& expected = c.layouts[i];
      const Layout& layout = d.layouts[i + 1];
      SCOPED_TRACE(expected.name);
      EXPECT_EQ(layout.name, expected.name);
      const Block* block = d.LayoutBlock(layout);
      if (expected.text == nullptr) {
        EXPECT_EQ(block, nullptr);
        EXPECT_NE(layout.blockError.find(c.file), std::string::npos) << layout.blockError;
        EXPECT_NE(layout.blockError.find(expected.name), std::string::npos) << layout.blockError;
        continue;
      }
      EXPECT_EQ(layout.blockError, "");
      ASSERT_NE(block, nullptr);
      EXPECT_EQ(TextsOf(*block), std::vector<std::string>{expected.text});
    }
  }
}

}  // namespace
}  // namespace sheafwork::embedded
