#include <string>

#include "plot_run_fixture.h"
#include "res/string_ids.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;

class ParallelRowsTest : public PlotRunTest {
 protected:
  /// Plots the list with `jobs` stand-in workers (tests/data/parallel/workers).
  RunResult RunWith(const std::string& worker, int jobs) {
    RunServices services;
    services.clock = [this] { return Tick(); };
    services.observer = &observer;
    services.prompt = &prompt;
    services.jobs = jobs;
    services.workerCommand = {
        "/bin/bash", std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/parallel/workers/" + worker};
    return PlotAllEntries(session, hostSession, services);
  }
  void Rows(int count) {
    const auto& plan = host.AddDrawing("Plan.dwg");
    for (int i = 0; i < count; ++i) Row(plan);
  }
};

// Rows answered out of order are written in row order, to the journal and
// to the observer alike.
TEST_F(ParallelRowsTest, RecordsAreWrittenInRowOrder) {
  Rows(5);
  const RunResult result = RunWith("answers-in-pairs.sh", 2);
  EXPECT_EQ(result.plotted, 5);
  EXPECT_FALSE(result.endedEarly);
  EXPECT_THAT(Journal(), ElementsAre("ligne 1", "ligne 2", "ligne 3", "ligne 4", "ligne 5"));
  EXPECT_THAT(observer.events, ElementsAre("cleared", "start 1/5", "1 plotted", "start 2/5",
                                           "2 plotted", "start 3/5", "3 plotted", "start 4/5",
                                           "4 plotted", "start 5/5", "5 plotted"));
}

// Workers that end before answering fail each row they were handed with how
// they ended; others take the rows left, and the run reaches the end.
TEST_F(ParallelRowsTest, RowsOfAWorkerThatEndsFailWithItsStatus) {
  Rows(3);
  const RunResult result = RunWith("exits-at-once.sh", 2);
  EXPECT_EQ(result.failed, 3);
  EXPECT_EQ(result.plotted, 0);
  EXPECT_FALSE(result.endedEarly);
  const std::string ended = Text(ids::kWorkerExited) + "3";
  const std::string failed = Text(ids::kPlotFailed) + host.Folder().path().string() + "/Plan.dwg";
  EXPECT_THAT(Errors(), ElementsAre(ended, failed, ended, failed, ended, failed));
  EXPECT_THAT(observer.events, ElementsAre("cleared", "start 1/3", "1 failed", "start 2/3",
                                           "2 failed", "start 3/3", "3 failed"));
}

}  // namespace
}  // namespace sheafwork
