// The reader over small hand-written drawings (tests/data/dxf/layouts,
// tables and encodings): layouts, tables and the text encodings.

#include "embedded/dxf/reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"

namespace sheafwork::embedded {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::Pair;
using testing::ReadFixture;

// The name and the block name of each layout, in order.
std::vector<std::pair<std::string, std::string>> NamesAndBlocks(const Drawing& d) {
  std::vector<std::pair<std::string, std::string>> names;
  for (const Layout& layout : d.layouts) names.emplace_back(layout.name, layout.blockName);
  return names;
}

// layouts.dxf: a LAYOUT's plot-settings part and layout part both use codes
// 1, 70 and 330; the layouts are stored out of tab order.
TEST(ReaderLayouts, TakesEachCodeFromItsSubclassAndSortsByTabOrder) {
  const Drawing d = ReadFixture("layouts/layouts.dxf");
  ASSERT_THAT(NamesAndBlocks(d),
              ElementsAre(Pair("Model", "*Model_Space"), Pair("Plan", "*Paper_Space"),
                          Pair("Façade", "*Paper_Space7")));
  EXPECT_TRUE(d.layouts[0].IsModel());
  EXPECT_FALSE(d.layouts[2].IsModel());
  // The flags are the plot settings' 70, not the layout's own.
  const Layout& plan = d.layouts[1];
  EXPECT_EQ(std::tuple(plan.settings.pageSetupName, plan.settings.flags, plan.settings.configName,
                       plan.limMin.x, plan.limMax.y, plan.handle),
            std::tuple("applied setup", 688, "DWG To PDF.pc3", -20, 289.5, "59"));
  // $TILEMODE 0: the layout on *Paper_Space was active.
  EXPECT_EQ(d.layouts[d.activeLayout].name, "Plan");
  EXPECT_EQ(ReadFixture("layouts/layouts-tilemode-1.dxf").activeLayout, 0u);
  // Every layout's block exists; the inactive layout keeps its entities.
  for (const Layout& l : d.layouts) EXPECT_NE(d.LayoutBlock(l), nullptr) << l.name;
  ASSERT_EQ(d.FindBlock("*Paper_Space7")->entities.size(), 1u);
  EXPECT_EQ(d.FindBlock("*Paper_Space7")->entities[0].handle, "7B");
}

TEST(ReaderLayouts, BrokenLinksBetweenLayoutsAndBlockRecords) {
  // "Plan" names no block record but record 58 names it; "Coupe" is linked
  // nowhere and gets the paper-space block left over; no model layout is
  // listed at all.
  const Drawing d = ReadFixture("layouts/broken-links.dxf");
  ASSERT_THAT(NamesAndBlocks(d), ElementsAre(Pair("Model", _), Pair("Plan", "*Paper_Space"),
                                             Pair("Coupe", "*Paper_Space7")));
  EXPECT_TRUE(d.layouts[0].IsModel());
  EXPECT_FALSE(d.layouts[2].IsModel());  // the block decides, not the flag
}

TEST(ReaderLayouts, BlocksKeepTheirBaseFlagsAndExternalPath) {
  const Drawing d = ReadFixture("layouts/xref-block.dxf");
  const Block* b = d.FindBlock("FOND");
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(std::tuple(b->IsXref(), b->xrefPath, b->layer, b->base.y),
            std::tuple(true, "..\\fonds\\fond.dxf", "Cadre", 6));
}

TEST(ReaderTables, LayerStates) {
  const Drawing d = ReadFixture("tables/layers.dxf");
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/tables/layers.tsv")) {
    SCOPED_TRACE(row.where);
    const Layer* layer = d.FindLayer(row[0]);
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(std::tuple(layer->on, layer->frozen, layer->locked, layer->plottable, layer->color,
                         layer->linetype, layer->lineweight),
              std::tuple(row[1] == "1", row[2] == "1", row[3] == "1", row[4] == "1",
                         std::stoi(row[5]), "DASHED", kLineweightDefault));
  }
}

TEST(ReaderTables, TextStylesKeepFontFilesAndShapeRecords) {
  const Drawing d = ReadFixture("tables/text-styles.dxf");
  ASSERT_EQ(d.textStyles.size(), 3u);
  const TextStyle* cotes = d.FindTextStyle("COTES");
  ASSERT_NE(cotes, nullptr);
  EXPECT_EQ(std::tuple(cotes->fontFile, cotes->bigFontFile, cotes->widthFactor, cotes->oblique,
                       cotes->generation, cotes->isShapeFile),
            std::tuple("romans.shx", "bigfont.shx", 0.8, 15, 2, false));
  EXPECT_EQ(d.FindTextStyle("Titre")->trueTypeFamily, "Arial Narrow");
  EXPECT_TRUE(d.textStyles[2].isShapeFile);
  EXPECT_EQ(d.textStyles[2].fontFile, "ltypeshp.shx");
}

// Two *ACTIVE viewport records: the first is the one shown.
TEST(ReaderTables, ViewsLinetypesAndTheActiveViewport) {
  const Drawing d = ReadFixture("tables/views-linetypes.dxf");
  ASSERT_TRUE(d.activeView.has_value());
  EXPECT_EQ(std::tuple(d.activeView->center.x, d.activeView->height, d.activeView->aspect,
                       d.activeView->twist),
            std::tuple(50, 80, 1.5, 10));
  const Linetype* lt = d.FindLinetype("dashdot");
  ASSERT_NE(lt, nullptr);
  EXPECT_EQ(lt->dashes, (std::vector<double>{1, -0.5, 0}));
  const View* v = d.FindView("Coupe");
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(std::tuple(v->paperSpace, v->width, v->center.y), std::tuple(true, 60, 6));
}

// Each file holds one TEXT in a drawing of ANSI_1252 code page.
TEST(ReaderText, DecodesByReleaseAndUnicodeEscapes) {
  const std::pair<const char*, std::string> cases[] = {
      {"r2004-ansi.dxf", "45° été"},
      {"r2007-utf8.dxf", "45° été"},
      {"r2007-bad-byte.dxf", "bad \xEF\xBF\xBD byte"},
      {"r2000-unicode-escapes.dxf", "90° ⌀"},
      {"r2010-escapes.dxf", "° and \\U+12 and %%d"},
      {"r12-no-escapes.dxf", "{\\fArial|b1;x}\\P"},
  };
  for (const auto& [file, expected] : cases) {
    const Drawing d = ReadFixture(std::string("encodings/") + file);
    EXPECT_EQ(std::get<Text>(testing::ModelEntities(d).at(0).geometry).text, expected) << file;
  }
}

TEST(ReaderHeader, ReadsTheVariablesTheHostUses) {
  const Drawing d = ReadFixture("tables/header.dxf");
  // The extents are stored as ±1e+20: never set.
  EXPECT_EQ(std::tuple(d.header.insUnits, d.header.extMin.has_value(), d.header.extMax.has_value(),
                       d.header.limMax.x, d.header.ltScale, d.header.fillMode, d.header.psLtScale,
                       d.header.styleSheet, d.header.pdMode),
            std::tuple(4, false, false, 841, 2.5, false, false, "monochrome.ctb", 35));

  const Drawing set = ReadFixture("tables/header-extents.dxf");
  ASSERT_TRUE(set.header.extMin.has_value());
  EXPECT_EQ(set.header.extMin->x, -5);
  EXPECT_EQ(set.header.extMax->y, 20);
}

}  // namespace
}  // namespace sheafwork::embedded
