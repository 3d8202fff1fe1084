#include "plotrun/plot_layout.h"

#include <filesystem>

#include "plot_run_fixture.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// One layout of an open drawing, plotted by PlotLayout directly.
class PlotLayoutTest : public PlotRunTest {
 protected:
  void SetUp() override {
    auto& drawing = host.AddDrawing("Plan.dwg");
    drawing.AddLayout("Vue A");
    drawing.AddLayout("Vue B");
    drawing.AddPageSetup("A3");
    drawing.layers = {{"0"}, {"MURS"}};
    drawing.views = {"Façade"};
    plan = drawing.path;
    entry = Row(plan, "Vue A");
    ASSERT_TRUE(errorLog.Open(session.Log.ErrorLogFileName, false));
    errorLog.WriteLogLine("errors");
    ASSERT_TRUE(hostSession.OpenDrawing(plan).ok);
    host.ClearCalls();
  }

  bool Plot(const std::string& layout, std::string* elapsed = nullptr) {
    PlotSetupRecord record;
    LayoutPlotContext context{
        hostSession, errorLog, PaperChangeReport{errorLog, session.Log, &prompt}, record, [this] {
          seconds += 75;
          return LocalTime{2026, 11, 22, seconds / 3600, seconds / 60 % 60, seconds % 60};
        }};
    std::string text;
    const bool ok = PlotLayout(context, entry, layout, false, text);
    if (elapsed) *elapsed = text;
    errorLog.Close();
    return ok;
  }

  /// The calls that show each step: the layout, the page setup, the layers,
  /// the plot settings and the plot.
  std::vector<std::string> Steps() const {
    std::vector<std::string> steps;
    for (const auto& call : host.Calls()) {
      for (const char* mark : {".SetActiveLayout(", ".CopyFrom(", ".SetLayerOn(", ".SetPlotType(",
                               ".SetStandardScale(", ".PlotToDevice(", ".PlotToFile("}) {
        if (call.find(mark) != std::string::npos) steps.push_back(call);
      }
    }
    return steps;
  }

  std::string plan;
  BatchEntry entry;
  LogFile errorLog;
};

TEST_F(PlotLayoutTest, TheStepsComeInTheirFixedOrder) {
  entry.PlotSetup = "A3";
  entry.Layers = "MURS 0";
  entry.PlotArea = "#E";
  entry.PlotScale = "S#16";
  std::string elapsed;
  EXPECT_TRUE(Plot("Vue A", &elapsed));
  EXPECT_EQ(elapsed, "00:01:15");
  EXPECT_THAT(Steps(),
              ElementsAre("Document(Plan.dwg).SetActiveLayout(Vue A)", "Layout(Vue A).CopyFrom(A3)",
                          "Layer(MURS).SetLayerOn(false)", "Layout(Vue A).SetPlotType(1)",
                          "Layout(Vue A).SetStandardScale(16)", "Plot(Plan.dwg).PlotToDevice()"));
  EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(PlotLayoutTest, AnUnknownLayoutStopsEverythingWithMessage121) {
  entry.PlotSetup = "A3";
  EXPECT_FALSE(Plot("Vue Z"));
  EXPECT_THAT(Steps(), IsEmpty());
  EXPECT_THAT(Errors(), ElementsAre(Text(121) + plan));
}

TEST_F(PlotLayoutTest, AnUnknownPageSetupStopsBeforeTheLayersWithMessage115) {
  entry.PlotSetup = "A0";
  entry.Layers = "MURS 0";
  EXPECT_FALSE(Plot("Vue A"));
  EXPECT_THAT(Steps(), ElementsAre("Document(Plan.dwg).SetActiveLayout(Vue A)"));
  EXPECT_THAT(Errors(), ElementsAre(Text(115)));
}

TEST_F(PlotLayoutTest, ALayerFailureStopsBeforeThePlotSettingsWithMessage116) {
  entry.Layers = "MURS 0";
  entry.PlotArea = "#E";
  host.FailOn("SetLayerOn");
  EXPECT_FALSE(Plot("Vue A"));
  EXPECT_THAT(host.Calls("SetPlotType"), IsEmpty());
  EXPECT_THAT(Errors(), ElementsAre(Text(100) + plan, Text(116) + plan));
}

TEST_F(PlotLayoutTest, APlotSettingsFailureStopsBeforeThePlotWithItsOwnMessageOnly) {
  entry.PlotArea = "#E";
  host.FailOn("SetPlotType");
  EXPECT_FALSE(Plot("Vue A"));
  EXPECT_THAT(host.Calls("PlotTo"), IsEmpty());
  EXPECT_THAT(Errors(), ElementsAre(Text(111) + plan));
}

TEST_F(PlotLayoutTest, ARefusedPlotOrAHostErrorIsAFailureWithoutAMessage) {
  host.SetPlotResult(false);
  EXPECT_FALSE(Plot("Vue A"));
  EXPECT_THAT(Errors(), IsEmpty());

  ASSERT_TRUE(errorLog.Open(session.Log.ErrorLogFileName, true));
  host.SetPlotResult(true);
  host.FailOn("PlotToDevice");
  EXPECT_FALSE(Plot("Vue A"));
  EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(PlotLayoutTest, TheDefaultDeviceInAnyCasePlotsToTheLayoutsOwnDevice) {
  for (const char* device : {"", "Par défaut", "PAR DÉFAUT", "par défaut"}) {
    host.ClearCalls();
    ASSERT_TRUE(errorLog.Open(session.Log.ErrorLogFileName, true));
    entry.PlotDevice = device;
    EXPECT_TRUE(Plot("Vue A"));
    EXPECT_THAT(host.Calls("PlotTo"), ElementsAre("Plot(Plan.dwg).PlotToDevice()")) << device;
  }
}

TEST_F(PlotLayoutTest, APlotterConfigurationWithoutAFolderIsLookedUpInTheConfigurationFolders) {
  testing::TempFolder empty, configs;
  const std::string found = configs.Write("Traceur.PC3", "");
  std::filesystem::create_directory(configs.path() / "sous");
  configs.Write("sous/Traceur.PC3", "");
  host.printerConfigPath = empty.path().string() + " ; " + configs.path().string();

  const std::pair<std::string, std::string> cases[] = {
      {"Traceur.PC3", found},                            // found in the second folder
      {"Absent.pc3", "Absent.pc3"},                      // not found: the bare name
      {"/cfg/Traceur.PC3", "/cfg/Traceur.PC3"},          // a folder: as it stands
      {"sous/Traceur.PC3", "sous/Traceur.PC3"},          // even when it would be found there
      {"Imprimante du bureau", "Imprimante du bureau"},  // a system printer
  };
  for (const auto& [device, expected] : cases) {
    host.ClearCalls();
    ASSERT_TRUE(errorLog.Open(session.Log.ErrorLogFileName, true));
    entry.PlotDevice = device;
    EXPECT_TRUE(Plot("Vue A"));
    EXPECT_THAT(host.Calls("PlotTo"), ElementsAre("Plot(Plan.dwg).PlotToDevice(" + expected + ")"));
  }
}

TEST_F(PlotLayoutTest, APlotFileIsTrimmedAndTakesTheRowsDevice) {
  entry.PlotFile = "  /out/plan.pdf ";
  entry.PlotDevice = "PDF.pc3";
  EXPECT_TRUE(Plot("Vue A"));
  EXPECT_THAT(host.Calls("PlotTo"),
              ElementsAre("Plot(Plan.dwg).PlotToFile(/out/plan.pdf, PDF.pc3)"));

  // Blanks only are a plot file with an empty name, on the layout's device.
  host.ClearCalls();
  ASSERT_TRUE(errorLog.Open(session.Log.ErrorLogFileName, true));
  entry.PlotFile = "   ";
  entry.PlotDevice = "Par défaut";
  EXPECT_TRUE(Plot("Vue A"));
  EXPECT_THAT(host.Calls("PlotTo"), ElementsAre("Plot(Plan.dwg).PlotToFile()"));
}

TEST(PlotFileForTest, AllLayoutsKeepOnlyTheFolderOfTheTypedName) {
  BatchEntry entry;
  entry.FileName = "/dwg/Plan.dwg";
  entry.PlotFile = "/out/any.plt";
  entry.Layout = "Toutes les présentations";
  EXPECT_EQ(PlotFileFor(entry, "Vue A"), "/out/Plan-Vue A");
  entry.PlotFile = "any.plt";
  EXPECT_EQ(PlotFileFor(entry, "Vue A"), "Plan-Vue A");
  entry.Layout = "Vue A";
  EXPECT_EQ(PlotFileFor(entry, "Vue A"), "any.plt");
}

TEST(FormatElapsedTimeTest, KeepsTheJournalsArithmetic) {
  auto at = [](int seconds) {
    return LocalTime{2026, 1, 1, seconds / 3600, seconds / 60 % 60, seconds % 60};
  };
  const std::pair<int, const char*> cases[] = {
      {9, "00:00:09"},    {75, "00:01:15"},     {600, "00:10:00"},
      {3700, "01:61:39"}, {36000, "10:599:50"}, {0, "00:00:00"},
  };
  for (const auto& [seconds, text] : cases) {
    EXPECT_EQ(FormatElapsedTime(at(3600), at(3600 + seconds)), text) << seconds;
  }
  // Across midnight the difference is negative and is written as it comes.
  EXPECT_EQ(FormatElapsedTime(at(86399), at(0)), "0-23:0-1439:0-36");
}

}  // namespace
}  // namespace sheafwork
