// Malformed input ends in a DxfError that names the file and the place; no
// input, however broken, does anything else (tests/data/dxf/errors).

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"
#include "embedded/dxf/reader.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::ReadTestData;
using sheafwork::testing::TestData;
using ::testing::AllOf;
using ::testing::HasSubstr;

TEST(ReaderErrors, NamesTheFileThePlaceAndWhatWasExpected) {
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/errors/messages.tsv")) {
    SCOPED_TRACE(row.where);
    try {
      ReadDxfFile(TestData("dxf/errors/" + row[0]));
      ADD_FAILURE() << "read without error";
    } catch (const DxfError& e) {
      for (std::size_t i = 1; i < row.fields.size(); ++i) EXPECT_THAT(e.what(), HasSubstr(row[i]));
    }
  }
}

TEST(ReaderErrors, EveryTruncationOfAGoodFileFailsCleanlyOrReads) {
  // Cutting a file anywhere must end in a DxfError or, when the cut falls
  // between sections, a drawing; never anything else.
  const std::string good = ReadTestData("dxf/errors/good.dxf");
  ASSERT_FALSE(good.empty());
  for (std::size_t n = 0; n < good.size(); ++n) {
    try {
      ReadDxf(good.substr(0, n), "cut.dxf");
    } catch (const DxfError& e) {
      EXPECT_THAT(e.what(), HasSubstr("cut.dxf")) << n;
    }
  }
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
    const Drawing d = testing::ReadFixture(std::string("layout-links/") + file);
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
