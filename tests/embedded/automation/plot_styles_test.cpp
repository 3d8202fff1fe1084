// The plot style table of a layout: found along the host's plot-style path
// and handed to the plot engine; a table that cannot be read fails the plot.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "embedded/automation/embedded_fixture.h"
#include "embedded/plotstyle/plot_style_file.h"
#include "fakes/temp_folder.h"

namespace sheafwork::embedded {
namespace {

using ::testing::Contains;
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

// A table named but unreadable fails the plot of the sheet, with a line
// naming the table and the fault: plotting without it would give a colour
// plot where the layout asked for monochrome. A table this machine does not
// have is named on the display and in the log, and the sheet plots without
// it; so does a named-style table (.stb), which the host does not apply.
TEST_F(PlotStylesHostTest, ATableThatCannotBeReadFailsThePlotAMissingOneIsNamed) {
  const std::string broken = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/plotstyle/broken/";
  for (const char* name : {"truncated.ctb", "lying.ctb", "damaged.ctb", "notes.ctb"}) {
    Put(data, std::string("plotstyles/") + name, testing::TempFolder::Read(broken + name));
  }
  Put(data, "plotstyles/noms.stb", TableBytes(0));
  struct Case {
    const char* table;
    const char* fault;  ///< null: the plot goes on without a table
    const char* note;   ///< what the log says when it goes on
  };
  const Case cases[] = {
      {"absente.ctb", nullptr,
       "Table de styles de tracé « absente.ctb » introuvable sur cette machine : présentation "
       "tracée sans elle"},
      {"truncated.ctb", "truncated.ctb : données compressées tronquées", nullptr},
      {"lying.ctb", "lying.ctb : ", nullptr},
      {"damaged.ctb", "damaged.ctb : ", nullptr},
      {"notes.ctb", "notes.ctb : ", nullptr},
      {"noms.stb", nullptr, "Table de styles nommés « noms.stb » non appliquée"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.table);
    plots.clear();
    display->failures.clear();
    const std::size_t before = PlanLog().size();
    const bool plotted = PlotWith(c.table);
    const std::string added = PlanLog().substr(before);
    if (!c.fault) {
      EXPECT_TRUE(plotted);
      ASSERT_EQ(plots.size(), 1u);
      EXPECT_EQ(plots[0].plotStyles, nullptr);
      EXPECT_THAT(added, HasSubstr(c.note));
      EXPECT_THAT(display->failures, IsEmpty());
      continue;
    }
    EXPECT_FALSE(plotted);
    EXPECT_THAT(plots, IsEmpty());
    EXPECT_THAT(added, HasSubstr("Échec du tracé : dessin"));
    EXPECT_THAT(added, HasSubstr(c.fault));
    ASSERT_EQ(display->failures.size(), 1u);
    EXPECT_THAT(display->failures[0], HasSubstr(c.fault));
  }
  EXPECT_THAT(display->notices, Contains(HasSubstr("« absente.ctb » introuvable")));
}

}  // namespace
}  // namespace sheafwork::embedded
