#include "plotrun/plot_layout.h"

#include "fakes/test_data.h"
#include "plot_run_fixture.h"
#include "plotcfg/plot_style_check.h"
#include "res/string_ids.h"

namespace sheafwork {
namespace {

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
    ASSERT_TRUE(hostSession.OpenDrawing(plan).ok);
    host.ClearCalls();
  }

  // Plots `layout` with a fresh error log.
  bool Plot(const std::string& layout) {
    EXPECT_TRUE(errorLog.Open(session.Log.ErrorLogFileName, false));
    errorLog.WriteLogLine("errors");
    PlotSetupRecord record;
    LayoutPlotContext context{hostSession,
                              errorLog,
                              PaperChangeReport{errorLog, session.Log, &prompt},
                              record,
                              [this] { return Tick(); },
                              {}};
    std::string elapsed;
    const bool ok = PlotLayout(context, entry, layout, false, elapsed);
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

// A step that fails stops the ones after it and logs its own messages; a plot
// the host refuses or throws on fails without a message. Failure rules stay
// on, so each case fails a step the cases after it no longer reach.
TEST_F(PlotLayoutTest, AFailedStepStopsTheRestWithItsMessages) {
  const std::string toVueA = "Document(Plan.dwg).SetActiveLayout(Vue A)";
  const std::string plotType = "Layout(Vue A).SetPlotType(1)";
  struct Case {
    const char *layout, *setup, *layers, *area, *failOn;
    std::vector<std::string> steps, errors;
  };
  const Case cases[] = {
      {"Vue Z", "A3", "MURS 0", "", "", {}, {Text(121) + plan}},
      {"Vue A", "A0", "MURS 0", "", "", {toVueA}, {Text(115)}},
      {"Vue A",
       "",
       "MURS 0",
       "#E",
       "SetLayerOn",
       {toVueA, "Layer(MURS).SetLayerOn(false)"},
       {Text(100) + plan, Text(116) + plan}},
      {"Vue A", "", "", "#E", "SetPlotType", {toVueA, plotType}, {Text(111) + plan}},
      {"Vue A", "", "", "", "refused", {toVueA, "Plot(Plan.dwg).PlotToDevice()"}, {}},
      {"Vue A", "", "", "", "PlotToDevice", {toVueA, "Plot(Plan.dwg).PlotToDevice()"}, {}},
  };
  for (const Case& c : cases) {
    host.ClearCalls();
    const bool refused = std::string_view(c.failOn) == "refused";
    host.SetPlotResult(!refused);
    if (*c.failOn && !refused) host.FailOn(c.failOn);
    entry.PlotSetup = *c.setup ? c.setup : Text(76);
    entry.Layers = c.layers;
    entry.PlotArea = c.area;
    EXPECT_FALSE(Plot(c.layout)) << c.failOn;
    EXPECT_EQ(Steps(), c.steps) << c.failOn;
    EXPECT_EQ(Errors(), c.errors) << c.failOn;
  }
}

// A plot style table the host does not have is named in the error log and
// the layout still plots (the host plots it without); a table the host has,
// in any letter case or named with a folder where it is, is not.
TEST_F(PlotLayoutTest, AMissingPlotStyleTableIsAWarningInTheErrorLog) {
  testing::TempFolder tables;
  const std::string here = tables.Write("ici.ctb", "");
  const std::string warning = MissingPlotStyleWarning("absente.ctb", "Vue A", plan);
  auto& layout = host.LastOpened(plan)->data.layouts.at(1).settings;
  for (const auto& row : testing::ReadTestTable("plotrun/plot_style_tables.tsv")) {
    SCOPED_TRACE(row.where);
    layout.plotWithPlotStyles = row[0] == "1";
    layout.styleSheet = row[1] == "{here}" ? here : row[1];
    EXPECT_TRUE(Plot("Vue A"));
    EXPECT_EQ(Errors(),
              row[2] == "1" ? std::vector<std::string>{warning} : std::vector<std::string>{});
  }
  // A row for the current tab: the layout by its own name.
  layout.plotWithPlotStyles = true;
  layout.styleSheet = "absente.ctb";
  EXPECT_TRUE(Plot(Text(ids::kLayoutCurrentTab)));
  EXPECT_EQ(Errors(), std::vector<std::string>{warning});
  // The host failing to list its tables costs the warning, not the plot.
  host.FailOn("GetPlotStyleTableNames");
  layout.styleSheet = "absente.ctb";
  EXPECT_TRUE(Plot("Vue A"));
  EXPECT_THAT(Errors(), IsEmpty());
}

TEST(FormatElapsedTimeTest, KeepsTheJournalsArithmetic) {
  auto at = [](int seconds) {
    return LocalTime{2026, 1, 1, seconds / 3600, seconds / 60 % 60, seconds % 60};
  };
  for (const auto& row : testing::ReadTestTable("plotrun/elapsed_times.tsv")) {
    SCOPED_TRACE(row.where);
    EXPECT_EQ(FormatElapsedTime(at(3600), at(3600 + std::stoi(row[0]))), row[1]);
  }
  // Across midnight the difference is negative and is written as it comes.
  EXPECT_EQ(FormatElapsedTime(at(86399), at(0)), "0-23:0-1439:0-36");
}

}  // namespace
}  // namespace sheafwork
