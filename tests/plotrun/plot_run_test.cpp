#include "plot_run_fixture.h"
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

}  // namespace
}  // namespace sheafwork
