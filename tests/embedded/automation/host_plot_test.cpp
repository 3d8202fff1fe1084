// Plotting through the embedded host: each device's output, failed plots,
// the progress display, layouts as drawings from elsewhere store them, and the
// plot style table of a layout.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

#include "embedded/automation/embedded_fixture.h"
#include "embedded/plotstyle/plot_style_file.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

using EmbeddedPlotTest = EmbeddedHostTest;

TEST_F(EmbeddedPlotTest, EachDeviceWritesItsKindOfOutputWhereItBelongs) {
  for (const char* name : {"PNG.pc3", "SVG.pc3", "HPGL2.pc3"}) {
    std::filesystem::copy_file(std::string(SHEAFWORK_SOURCE_DIR) + "/data/plotters/" + name,
                               data.path() / "plotters" / name);
  }
  const std::string folder = files.File("pdf");
  std::filesystem::create_directories(folder);
  data.Write("plotters/Dossier.pc3", "driver = pdf\noutput-folder = " + folder +
                                         "\npaper = ISO A3 (420.00 x 297.00 mm) | 420 x 297\n");
  const std::map<std::string, OutputKind> kinds = {{"pdf", OutputKind::Pdf},
                                                   {"png", OutputKind::Png},
                                                   {"svg", OutputKind::Svg},
                                                   {"hpgl", OutputKind::Hpgl},
                                                   {"printer", OutputKind::Printer}};
  auto doc = OpenPlan();
  auto plot = doc->GetPlot();
  for (const auto& row : testing::ReadTestTable("dxf/automation/devices.tsv")) {
    SCOPED_TRACE(row.where);
    plots.clear();
    Show(*doc, row[0]);
    ASSERT_TRUE(row[2] == "-" ? plot->PlotToDevice(row[1])
                              : plot->PlotToFile(files.File(row[2]), row[1]));
    ASSERT_EQ(plots.size(), 1u);
    EXPECT_EQ(plots[0].output, kinds.at(row[3]));
    const bool printer = row[3] == "printer";
    const std::string output = printer ? row[4] : files.File(row[4]);
    EXPECT_EQ(printer ? plots[0].printerName : plots[0].outputPath, output);
    EXPECT_THAT(HostLogLines().back(),
                HasSubstr((printer ? "sortie imprimante " : "sortie ") + output));
    // A layout's own sheet stays, even though the device does not offer it.
    if (row[0] == "Coupe") {
      EXPECT_EQ(plots[0].settings.mediaName, "Feuille maison");
      EXPECT_DOUBLE_EQ(plots[0].settings.paperWidth, 500);
    }
  }
}

TEST_F(EmbeddedPlotTest, FailedPlotsReturnFalseWithTheirReasonInTheHostLog) {
  data.Write("plotters/Casse.pc3", "driver = pdf\n");
  auto doc = OpenPlan();
  auto plot = doc->GetPlot();
  Show(*doc, "Coupe");
  EXPECT_FALSE(plot->PlotToDevice("Absent.pc3"));
  EXPECT_FALSE(plot->PlotToDevice("Casse.pc3"));
  EXPECT_FALSE(plot->PlotToFile(files.File("absent/x.pdf"), "PDF.pc3"));
  plotFailure = "police introuvable";
  EXPECT_FALSE(plot->PlotToDevice("PDF.pc3"));
  EXPECT_TRUE(plots.empty());

  const std::string start = "Échec du tracé : dessin " + planPath + ", présentation Coupe, ";
  const auto log = HostLogLines();
  EXPECT_THAT(
      log, ElementsAre(
               start + "périphérique Absent.pc3 : périphérique de traçage introuvable : Absent.pc3",
               HasSubstr("Casse.pc3 : aucun papier"),
               HasSubstr("dossier de sortie introuvable : " + files.File("absent")),
               start + "périphérique PDF.pc3 : police introuvable"));
  EXPECT_EQ(display->failures, log);
}

TEST_F(EmbeddedPlotTest, BatchModeDrivesTheProgressDisplayUntilCancelled) {
  auto doc = OpenPlan();
  auto plot = doc->GetPlot();
  EXPECT_TRUE(plot->SheafworkProgress());
  std::int16_t count = 2;
  plot->StartBatchMode(count);
  Show(*doc, "Présentation1");
  plot->PlotToDevice(std::nullopt);
  // Progress is the host's, whichever document's plot object reads it.
  EXPECT_TRUE(Host()->ActiveDocument()->GetPlot()->SheafworkProgress());
  display->cancel = true;
  EXPECT_FALSE(plot->SheafworkProgress());
  EXPECT_FALSE(plot->SheafworkProgress());
  EXPECT_THAT(display->events, ElementsAre("start 2", "1/2 Plan.dxf Présentation1", "finish"));

  // A new batch starts afresh; switching progress off ends it.
  display->cancel = false;
  plot->StartBatchMode(count);
  EXPECT_TRUE(plot->SheafworkProgress());
  plot->SetSheafworkProgress(false);
  EXPECT_FALSE(plot->SheafworkProgress());
  EXPECT_EQ(display->events.back(), "finish");
  EXPECT_EQ(ErrorOf([&] { plot->SetNumberOfCopies(0); }).number(), 5);
}

TEST(ConsoleProgressDisplayTest, DrawsABarOnlyOnATerminalAndAlwaysNamesFailures) {
  std::ostringstream pipe;
  auto quiet = ConsoleProgressDisplay(pipe, false);
  quiet->Start(2);
  quiet->Step("Plan.dxf", "Présentation1", 1, 2);
  quiet->PlotFailed("échec");
  quiet->Finish();
  EXPECT_EQ(pipe.str(), "sheafwork: échec\n");
  EXPECT_FALSE(quiet->Cancelled());

  std::ostringstream terminal;
  auto bar = ConsoleProgressDisplay(terminal, true);
  bar->Start(2);
  bar->Step("Plan.dxf", "Présentation1", 2, 2);
  EXPECT_THAT(terminal.str(),
              HasSubstr("[###############               ] 2/2 Plan.dxf - Présentation1"));
  bar->Finish();
  EXPECT_TRUE(terminal.str().ends_with("\r\033[K"));
}

// Layouts as drawings from elsewhere store them: never set up, with devices
// this machine does not have, with paper names written another way. The
// drawing is read by the DXF reader from tests/data/dxf/sheets.
TEST_F(EmbeddedHostTest, ForeignLayoutsPlotOnTheDevicesPaperThatTheirStoredPaperStandsFor) {
  options.reader = {};  // the DXF reader
  const std::string path = files.File("never_set_up.dxf");
  std::filesystem::copy_file(testing::TestData("dxf/sheets/never_set_up.dxf"), path);
  auto doc = Open(path);
  doc->Activate();
  Host()->GetPreferences()->SetLogFileOn(true);
  // Saved on the model tab: the paper layout to go back to is the one on
  // *Paper_Space, not the first tab.
  doc->SetActiveSpace(0);
  EXPECT_EQ(doc->ActiveLayout()->Name(), "Autre PDF");
  auto plot = doc->GetPlot();
  for (const auto& row : testing::ReadTestTable("dxf/sheets/never_set_up.tsv")) {
    SCOPED_TRACE(row.where);
    for (const bool given : {false, true}) {
      plots.clear();
      display->notices.clear();
      Show(*doc, row[0]);
      ASSERT_TRUE(plot->PlotToDevice(given ? std::optional<std::string>("PDF.pc3")
                                           : std::optional<std::string>()));
      ASSERT_EQ(plots.size(), 1u);
      EXPECT_EQ(plots[0].settings.mediaName, row[1]);
      EXPECT_NEAR(plots[0].settings.paperWidth, std::stod(row[2]), 1e-6);
      EXPECT_NEAR(plots[0].settings.paperHeight, std::stod(row[3]), 1e-6);
      if (!given) {
        EXPECT_THAT(HostLogLines("never_set_up"),
                    Contains(AllOf(HasSubstr(row[4]), HasSubstr("présentation " + row[0]))));
        EXPECT_EQ(display->notices.size(), row[5] == "1" ? 1u : 0u);
      } else {
        EXPECT_THAT(display->notices, IsEmpty());
      }
    }
  }
  EXPECT_THAT(display->failures, IsEmpty());

  // A missing device without a fallback fails, and a given missing device
  // never has one stand in.
  plots.clear();
  Show(*doc, "Vierge");
  EXPECT_FALSE(plot->PlotToDevice("Absent.pc3"));
  auto preferences = std::dynamic_pointer_cast<EmbeddedPreferences>(Host()->GetPreferences());
  ASSERT_NE(preferences, nullptr);
  EXPECT_EQ(preferences->FallbackDevice(), "PDF.pc3");
  preferences->SetFallbackDevice("Autre.pc3");
  Show(*doc, "Autre PDF");
  EXPECT_FALSE(plot->PlotToDevice(std::nullopt));
  EXPECT_TRUE(plots.empty());
  EXPECT_THAT(display->failures,
              ElementsAre(HasSubstr("introuvable : Absent.pc3"),
                          HasSubstr("périphérique de remplacement introuvable : Autre.pc3")));
}

// A plot style table whose colour 1 is `colourOneRgb`, as its file holds it.
std::string TableBytes(std::uint32_t colourOneRgb) {
  PlotStyleTable table;
  table.entries[0].color = EncodePlotStyleColor(colourOneRgb);
  const std::vector<unsigned char> bytes = WritePlotStyleTable(table);
  return {bytes.begin(), bytes.end()};
}

// The table of a layout is looked for in the data folder, then the user's,
// or along the path the preference gives. A table named but unreadable fails
// the plot of the sheet, with a line naming the table and the fault: plotting
// without it would give a colour plot where the layout asked for monochrome.
// A table this machine does not have is named on the display and in the log,
// and the sheet plots without it; so does a named-style table (.stb), which
// the host does not apply.
TEST_F(EmbeddedHostTest, APlotStyleTableIsFoundAlongThePathOrItsFaultNamed) {
  // Plots layout "Présentation1" of a drawing whose settings name `table`;
  // whether the plot was made.
  const auto plotWith = [&](const std::string& table, bool plotStyles = true) {
    Drawing drawing = SampleDrawing();
    PlotSettings& settings = drawing.layouts[2].settings;
    settings.styleSheet = table;
    settings.Set(kPlotPlotStyles, plotStyles);
    auto doc = OpenPlan(drawing);
    Show(*doc, "Présentation1");
    const bool done = doc->GetPlot()->PlotToDevice(std::nullopt);
    doc->Close(false);
    return done;
  };
  const auto plottedColourOne = [&]() -> std::optional<std::uint32_t> {
    if (plots.empty() || !plots.back().plotStyles) return std::nullopt;
    return plots.back().plotStyles->entries[0].PenRgb();
  };

  for (const std::string name : {"truncated.ctb", "lying.ctb", "damaged.ctb", "notes.ctb"}) {
    data.Write("plotstyles/" + name, testing::ReadTestData("plotstyle/broken/" + name));
  }
  data.Write("plotstyles/noms.stb", TableBytes(0));
  for (const auto& row : testing::ReadTestTable("plotstyle/broken/host_plots.tsv")) {
    SCOPED_TRACE(row.where);
    plots.clear();
    display->failures.clear();
    const std::size_t before = HostLog().size();
    const bool plotted = plotWith(row[0]);
    const std::string added = HostLog().substr(before);
    if (row[1] == "plots") {
      EXPECT_TRUE(plotted);
      ASSERT_EQ(plots.size(), 1u);
      EXPECT_EQ(plots[0].plotStyles, nullptr);
      EXPECT_THAT(added, HasSubstr(row[2]));
      EXPECT_THAT(display->failures, IsEmpty());
      continue;
    }
    EXPECT_FALSE(plotted);
    EXPECT_THAT(plots, IsEmpty());
    EXPECT_THAT(added, AllOf(HasSubstr("Échec du tracé : dessin"), HasSubstr(row[2])));
    EXPECT_THAT(display->failures, ElementsAre(HasSubstr(row[2])));
  }
  EXPECT_THAT(display->notices, Contains(HasSubstr("« absente.ctb » introuvable")));

  const std::size_t logged = HostLog().size();
  user.Write("plotstyles/Maison.ctb", TableBytes(0x0000FF));
  ASSERT_TRUE(plotWith("maison.ctb"));
  EXPECT_EQ(plottedColourOne(), 0x0000FFu);
  data.Write("plotstyles/maison.ctb", TableBytes(0x00FF00));
  ASSERT_TRUE(plotWith("maison.ctb"));
  EXPECT_EQ(plottedColourOne(), 0x00FF00u);
  auto preferences = std::dynamic_pointer_cast<EmbeddedPreferences>(Host()->GetPreferences());
  EXPECT_EQ(preferences->PlotStylePath(),
            (data.path() / "plotstyles").string() + ";" + (user.path() / "plotstyles").string());
  preferences->SetPlotStylePath((user.path() / "plotstyles").string());
  ASSERT_TRUE(plotWith("maison.ctb"));
  EXPECT_EQ(plottedColourOne(), 0x0000FFu);
  // Settings that do not plot with plot styles get no table.
  ASSERT_TRUE(plotWith("maison.ctb", false));
  EXPECT_EQ(plottedColourOne(), std::nullopt);
  EXPECT_THAT(HostLog().substr(logged), Not(HasSubstr("Table de styles")));
}

}  // namespace
}  // namespace sheafwork::embedded
