// Colour numbers: the colours of the palette, and what the frontend makes of
// an entity's colour number and of the colours inside multiline text through
// a plot style table.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "embedded/plotstyle/plot_style_file.h"
#include "embedded/render/aci_palette.h"
#include "embedded/render/frontend.h"
#include "embedded/render/plot_style_look.h"
#include "embedded/render/render_test_support.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

TEST(PlotStylePenTest, ColourNumberSelectsTheEntry) {
  auto table = std::make_shared<PlotStyleTable>();
  table->entries[0].color = EncodePlotStyleColor(0x0000FF);
  table->entries[0].screen = 50;
  table->entries[0].lineweight = 13;  // 0.50 mm
  table->entries[4].color = EncodePlotStyleColor(0x000000);

  // tests/data/dxf/render/make_drawings.py says what pens.dxf holds, pens.tsv
  // beside it what each of its entities is drawn with.
  const Drawing d = ReadTestDrawing("dxf/render/pens.dxf");

  for (const bool withTable : {true, false}) {
    FrontendOptions options;
    if (withTable) options.plotStyles = table;
    std::vector<std::string> expected, pens;
    for (const auto& row : sheafwork::testing::ReadTestTable("dxf/render/pens.tsv")) {
      expected.push_back(row[withTable ? 1 : 2]);
    }
    for (const Recorded& item : DrawLayout(d, ModelOf(d), options).items) {
      char pen[32];
      std::snprintf(pen, sizeof pen, "%06X %g", item.style.rgb, item.style.widthMm);
      pens.push_back(pen);
    }
    EXPECT_EQ(pens, expected) << (withTable ? "with the table" : "without a table");
  }
}

TEST(PlotStylePenTest, InlineColoursOfMultilineTextGoThroughTheTable) {
  auto table = std::make_shared<PlotStyleTable>();
  table->entries[0].color = EncodePlotStyleColor(0x0000FF);  // colour 1 plots blue
  table->entries[4].color = EncodePlotStyleColor(0x000000);  // colour 5 plots black

  // Colour 5, its runs of colours 1, 3, by layer and a true colour.
  const Drawing d = ReadTestDrawing("dxf/render/inline_colours.dxf");

  for (const bool withTable : {true, false}) {
    FrontendOptions options;
    if (withTable) options.plotStyles = table;
    const RecordingBackend backend = DrawLayout(d, ModelOf(d), options);
    for (const auto& row : sheafwork::testing::ReadTestTable("render/inline_colours.tsv")) {
      SCOPED_TRACE(row.where + (withTable ? " (table)" : " (no table)"));
      const auto found = std::find_if(
          backend.items.begin(), backend.items.end(),
          [&](const auto& item) { return item.text.find(row[0]) != std::string::npos; });
      ASSERT_NE(found, backend.items.end());
      EXPECT_EQ(found->style.rgb, std::stoul(row[withTable ? 1 : 2], nullptr, 16));
    }
  }
}

TEST(AciPaletteTest, KnownEntries) {
  for (const auto& row : sheafwork::testing::ReadTestTable("render/aci_colours.tsv")) {
    EXPECT_EQ(AciToRgb(std::stoi(row[0])), std::stoul(row[1], nullptr, 16)) << row.where;
  }
}

}  // namespace
}  // namespace sheafwork::embedded
