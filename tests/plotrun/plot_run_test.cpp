// The plot run over a list: rows, their failures and cancels, and each
// layout plotted step by step.
#include "fakes/test_data.h"
#include "plot_run_fixture.h"
#include "plotcfg/plot_style_check.h"
#include "plotrun/plot_layout.h"
#include "res/string_ids.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const char* const kAll = "Toutes les présentations";

class PlotAllEntriesTest : public PlotRunTest {
 protected:
  /// A drawing with the model tab and paper-space layouts of these names.
  testing::FakeDrawing& Drawing(const std::string& name, std::vector<std::string> layouts = {}) {
    auto& drawing = host.AddDrawing(name);
    for (const auto& layout : layouts) drawing.AddLayout(layout);
    return drawing;
  }
};

TEST_F(PlotAllEntriesTest, AnEmptyListAnnouncesNothingAndEndsTheBatchMode) {
  const RunResult result = Run();
  EXPECT_EQ(result.totalPlots, 0);
  EXPECT_FALSE(result.endedEarly);
  EXPECT_THAT(
      host.Calls("Plot(Dessin1.dwg)."),
      ElementsAre("Plot(Dessin1.dwg).SetQuietErrorMode(true)",
                  "Plot(Dessin1.dwg).StartBatchMode(0)", "Plot(Dessin1.dwg).SheafworkProgress()",
                  "Plot(Dessin1.dwg).SetSheafworkProgress(false)"));
  EXPECT_THAT(Journal(), IsEmpty());
  EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(PlotAllEntriesTest, ADrawingMissingWhileCountingEndsTheRunBeforeTheBatchMode) {
  const auto& plan = Drawing("Plan.dwg", {"Vue A"});
  auto& broken = Drawing("Casse.dwg", {"Vue A"});
  broken.openError = host::Error(-2145386390, "Dessin endommagé");
  Row(plan, "Vue A");
  Row(host.Folder().File("Absent.dwg"), kAll);

  RunResult result = Run();
  EXPECT_TRUE(result.endedEarly);
  EXPECT_THAT(host.Calls("StartBatchMode"), IsEmpty());
  EXPECT_THAT(host.Plots(), IsEmpty());
  EXPECT_THAT(Errors(), ElementsAre(Text(119) + host.Folder().File("Absent.dwg")));

  // Another error of the host gives message 120.
  session.List.Entry(2).FileName = broken.path;
  result = Run();
  EXPECT_THAT(Errors(), ElementsAre(Text(120) + broken.path));
}

TEST_F(PlotAllEntriesTest, EachFailureOfARowHasItsOwnLinesAndTheRunGoesOn) {
  auto& plan = Drawing("Plan.dwg", {"Vue A", "Vue B"});
  plan.layers = {{"0"}, {"MURS"}};
  auto& broken = Drawing("Casse.dwg");
  broken.openError = host::Error(-2145386390, "Dessin endommagé");
  auto& modeles = Drawing("Modeles.dwt");
  modeles.AddPageSetup("A1");
  const std::string absent = host.Folder().File("Absent.dwg");

  Row(plan, "Vue A").PlotSetup = absent + " | A3";      // 1: setup drawing missing
  Row(plan, "Vue A").PlotSetup = modeles.path + "|A3";  // 2: setup not in it
  Row(absent, "Vue A");                                 // 3: drawing missing
  Row(broken, "Vue A");                                 // 4: drawing broken
  Row(plan, "Vue Z");                                   // 5: layout missing
  Row(plan, kAll).Layers = "MURS x";                    // 6: every layout fails
  Row(plan, "Vue B");                                   // 7: fine

  const RunResult result = Run();
  EXPECT_EQ(result.failed, 6);
  EXPECT_EQ(result.plotted, 1);
  EXPECT_FALSE(result.endedEarly);
  EXPECT_THAT(Errors(),
              ElementsAre(Text(112) + absent, Text(122) + plan.path, Text(113) + "A3",
                          Text(122) + plan.path, Text(119) + absent, Text(122) + absent,
                          Text(120) + broken.path, Text(122) + broken.path, Text(121) + plan.path,
                          Text(122) + plan.path, Text(100) + plan.path, Text(116) + plan.path,
                          Text(122) + plan.path + ", PrésentationVue A", Text(100) + plan.path,
                          Text(116) + plan.path, Text(122) + plan.path + ", PrésentationVue B",
                          Text(122) + plan.path));
  EXPECT_THAT(observer.events,
              ElementsAre("cleared", "start 1/7", "1 failed", "start 2/7", "2 failed", "start 3/7",
                          "3 failed", "start 4/7", "4 failed", "start 5/7", "5 failed", "start 6/7",
                          "6 failed", "start 7/7", "7 plotted"));
  EXPECT_EQ(Journal().size(), 1u);
}

TEST_F(PlotAllEntriesTest, CancellingAtTheStartPlotsNothingAndLeavesTheRowsAlone) {
  const auto& plan = Drawing("Plan.dwg", {"Vue A"});
  Row(plan, "Vue A");
  host.CancelAtPoll(1);
  const RunResult result = Run();
  EXPECT_TRUE(result.cancelled);
  EXPECT_TRUE(result.endedEarly);
  EXPECT_THAT(host.Calls("Documents.Open"), IsEmpty());
  EXPECT_THAT(host.Calls("SetSheafworkProgress"), IsEmpty());
  EXPECT_THAT(observer.events, IsEmpty());
}

TEST_F(PlotAllEntriesTest, CancellingAfterADrawingOpenedLeavesItOpenAndEndsTheBatchMode) {
  const auto& plan = Drawing("Plan.dwg", {"Vue A"});
  Row(plan, "Vue A");
  Row(plan, "Vue A");
  host.CancelAtPoll(2);
  const RunResult result = Run();
  EXPECT_TRUE(result.cancelled);
  EXPECT_THAT(host.Plots(), IsEmpty());
  EXPECT_THAT(host.OpenDocuments(), ElementsAre("Dessin1.dwg", "*" + plan.path));
  EXPECT_THAT(host.Calls("SetSheafworkProgress"),
              ElementsAre("Plot(Plan.dwg).SetSheafworkProgress(false)"));
  EXPECT_THAT(observer.events, ElementsAre("cleared", "start 1/2"));
}

TEST_F(PlotAllEntriesTest, AHostFailureOutsideAPlotLosesTheRowNotTheRun) {
  const auto& plan = Drawing("Plan.dwg", {"Vue A"});
  Row(plan, "Vue A");
  Row(plan, "Vue A");
  host.FailOn("SetNumberOfCopies", host::Error(-5, "Traceur occupé"));
  const RunResult result = Run();
  EXPECT_EQ(result.failed, 2);
  EXPECT_THAT(Errors(), ElementsAre("ERREUR: #-5, Traceur occupé", Text(122) + plan.path,
                                    "ERREUR: #-5, Traceur occupé", Text(122) + plan.path));
}

// Memory that runs out in one row fails that row with a French line; the
// run goes on with the next.
TEST_F(PlotAllEntriesTest, ARowThatRunsOutOfMemoryFailsAndTheRunGoesOn) {
  const auto& plan = Drawing("Plan.dwg", {"Vue A"});
  const auto& big = Drawing("Enorme.dwg", {"Vue A"});
  Row(big, "Vue A");
  Row(plan, "Vue A");
  host.RunOutOfMemoryOn("Plot(Enorme.dwg).PlotToDevice");
  const RunResult result = Run();
  EXPECT_EQ(result.failed, 1);
  EXPECT_EQ(result.plotted, 1);
  EXPECT_THAT(Errors(), ElementsAre(Text(122) + big.path + " : " + Text(ids::kOutOfMemory)));
  EXPECT_THAT(observer.events,
              ElementsAre("cleared", "start 1/2", "1 failed", "start 2/2", "2 plotted"));
  ASSERT_EQ(host.Plots().size(), 1u);
  EXPECT_EQ(host.Plots()[0].drawing, plan.path);
  EXPECT_EQ(host.Plots()[0].layout, "Vue A");
  EXPECT_FALSE(host.Plots()[0].file);
}

// A host whose process ends during a plot: that row fails, the rows after
// it are not tried, the error log says why and the logs are closed whole.
TEST_F(PlotAllEntriesTest, AHostThatHasGoneAwayEndsTheRunAfterFailingItsRow) {
  const auto& plan = Drawing("Plan.dwg", {"Vue A"});
  const auto& coupe = Drawing("Coupe.dwg", {"Vue A"});
  Row(plan, "Vue A").PlotDevice = "PDF.pc3";
  Row(coupe, "Vue A").PlotDevice = "PDF.pc3";
  host.GoneOn("PlotToDevice");
  const RunResult result = Run();
  EXPECT_EQ(result.plotted, 0);
  EXPECT_EQ(result.failed, 1);
  EXPECT_TRUE(result.endedEarly);
  EXPECT_THAT(observer.events, ElementsAre("cleared", "start 1/2", "1 failed"));
  EXPECT_THAT(Errors(), ElementsAre(Text(122) + plan.path, "ERREUR: #-2147023174, Serveur arrêté"));
  EXPECT_THAT(Journal(), IsEmpty());
}

// The same when the host goes away while the next drawing is being opened:
// the rows before it keep their journal lines.
TEST_F(PlotAllEntriesTest, AHostGoneWhileOpeningADrawingEndsTheRun) {
  const auto& plan = Drawing("Plan.dwg", {"Vue A"});
  const auto& coupe = Drawing("Coupe.dwg", {"Vue A"});
  const auto& facade = Drawing("Facade.dwg", {"Vue A"});
  Row(plan, "Vue A");
  Row(coupe, "Vue A");
  Row(facade, "Vue A");
  host.GoneOn("Documents.Open", 1);
  const RunResult result = Run();
  EXPECT_EQ(result.plotted, 1);
  EXPECT_EQ(result.failed, 1);
  EXPECT_TRUE(result.endedEarly);
  EXPECT_THAT(observer.events,
              ElementsAre("cleared", "start 1/3", "1 plotted", "start 2/3", "2 failed"));
  EXPECT_THAT(Errors(), ElementsAre(Text(120) + coupe.path, Text(122) + coupe.path,
                                    "ERREUR: #-2147023174, Serveur arrêté"));
  EXPECT_EQ(Journal().size(), 1u);
}

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
