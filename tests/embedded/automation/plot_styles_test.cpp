// The plot style table of a layout: found along the host's plot-style path
// and handed to the plot engine, or noted in the host's log when it cannot
// be applied, the plot going on without it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "embedded/automation/embedded_fixture.h"
#include "embedded/plotstyle/plot_style_file.h"

namespace sheafwork::embedded {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::string TableBytes(std::uint32_t colourOneRgb) {
  PlotStyleTable table;
  table.entries[0].color = EncodePlotStyleColor(colourOneRgb);
  const std::vector<unsigned char> bytes = WritePlotStyleTable(table);
  return {bytes.begin(), bytes.end()};
}

class PlotStylesHostTest : public EmbeddedHostTest {
 protected:
  /// Plots layout "Présentation1" of a drawing whose settings name `table`;
  /// whether the plot was made.
  bool PlotWith(const std::string& table, bool plotStyles = true) {
    Drawing drawing = SampleDrawing();
    PlotSettings& settings = drawing.layouts[2].settings;
    settings.styleSheet = table;
    settings.Set(kPlotPlotStyles, plotStyles);
    auto doc = OpenPlan(drawing);
    Show(*doc, "Présentation1");
    const bool done = doc->GetPlot()->PlotToDevice(std::nullopt);
    doc->Close(false);
    return done;
  }
  std::optional<std::uint32_t> PlottedColourOne() const {
    if (plots.empty() || !plots.back().plotStyles) return std::nullopt;
    return plots.back().plotStyles->entries[0].PenRgb();
  }
};

TEST_F(PlotStylesHostTest, DataFolderBeforeUserFolderAndThePreferenceDecides) {
  Put(user, "plotstyles/Maison.ctb", TableBytes(0x0000FF));
  ASSERT_TRUE(PlotWith("maison.ctb"));
  EXPECT_EQ(PlottedColourOne(), 0x0000FFu);

  Put(data, "plotstyles/maison.ctb", TableBytes(0x00FF00));
  ASSERT_TRUE(PlotWith("maison.ctb"));
  EXPECT_EQ(PlottedColourOne(), 0x00FF00u);

  auto preferences = std::dynamic_pointer_cast<EmbeddedPreferences>(Host()->GetPreferences());
  EXPECT_EQ(preferences->PlotStylePath(),
            (data.path() / "plotstyles").string() + ";" + (user.path() / "plotstyles").string());
  preferences->SetPlotStylePath((user.path() / "plotstyles").string());
  ASSERT_TRUE(PlotWith("maison.ctb"));
  EXPECT_EQ(PlottedColourOne(), 0x0000FFu);

  // Settings that do not plot with plot styles get no table.
  ASSERT_TRUE(PlotWith("maison.ctb", false));
  EXPECT_EQ(PlottedColourOne(), std::nullopt);
  EXPECT_THAT(PlanLog(), Not(HasSubstr("Table de styles")));
}

TEST_F(PlotStylesHostTest, TablesThatCannotBeAppliedAreNotedAndThePlotGoesOn) {
  Put(data, "plotstyles/abime.ctb", TableBytes(0).substr(0, 70));
  Put(data, "plotstyles/noms.stb", TableBytes(0));
  struct Case {
    const char* table;
    const char* logged;
  };
  const Case cases[] = {
      {"absente.ctb", "Table de styles de tracé introuvable : absente.ctb"},
      {"abime.ctb", "abime.ctb : données compressées tronquées"},
      {"noms.stb", "Table de styles nommés « noms.stb » non appliquée"},
  };
  for (const Case& c : cases) {
    plots.clear();
    const std::size_t before = PlanLog().size();
    ASSERT_TRUE(PlotWith(c.table)) << c.table;
    const std::string added = PlanLog().substr(before);
    ASSERT_EQ(plots.size(), 1u) << c.table;
    EXPECT_EQ(plots[0].plotStyles, nullptr) << c.table;
    EXPECT_THAT(added, HasSubstr(c.logged)) << c.table;
    EXPECT_THAT(added, HasSubstr("Présentation1) ; tracé sans table")) << c.table;
    EXPECT_THAT(added, HasSubstr("Tracé : dessin")) << c.table;
  }
  EXPECT_THAT(display->failures, IsEmpty());
}

}  // namespace
}  // namespace sheafwork::embedded
