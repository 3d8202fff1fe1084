#include <unistd.h>

#include <cerrno>
#include <string>

#include "plot_run_fixture.h"
#include "plotrun/worker_process.h"
#include "res/string_ids.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;

using ParallelRowsTest = PlotRunTest;

// Rows answered out of order are written in row order, to the journal and
// to the observer alike.
TEST_F(ParallelRowsTest, RecordsAreWrittenInRowOrder) {
  const auto& plan = host.AddDrawing("Plan.dwg");
  for (int i = 0; i < 5; ++i) Row(plan);
  const RunResult result = Run("answers-in-pairs.sh");
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
  const auto& plan = host.AddDrawing("Plan.dwg");
  for (int i = 0; i < 3; ++i) Row(plan);
  const RunResult result = Run("exits-at-once.sh");
  EXPECT_EQ(result.failed, 3);
  EXPECT_EQ(result.plotted, 0);
  EXPECT_FALSE(result.endedEarly);
  const std::string ended = Text(ids::kWorkerExited) + "3";
  const std::string failed = Text(ids::kPlotFailed) + host.Folder().path().string() + "/Plan.dwg";
  EXPECT_THAT(Errors(), ElementsAre(ended, failed, ended, failed, ended, failed));
  EXPECT_THAT(observer.events, ElementsAre("cleared", "start 1/3", "1 failed", "start 2/3",
                                           "2 failed", "start 3/3", "3 failed"));
}

// A worker reads what the run sends it (the list as a block, then row
// numbers) from a pipe, however the bytes arrive.
TEST(RowSourceTest, ReadsTheListThenEachRowUntilTheRunCloses) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  const std::string list = "[Liste]\nplan.dxf\n\n";
  // Everything in one write: lines and the block share the reader's buffer.
  ASSERT_TRUE(WriteAllTo(fds[1], Block(list) + "3\n12\n"));
  close(fds[1]);
  RowSource rows(fds[0]);
  // A value left in errno by an earlier interrupted call is not a new one.
  errno = EINTR;
  std::string block;
  ASSERT_TRUE(rows.ReadBlock(block));
  EXPECT_EQ(block, list);
  EXPECT_EQ(rows.NextRow(), 3);
  EXPECT_EQ(rows.NextRow(), 12);
  EXPECT_EQ(rows.NextRow(), 0);
  close(fds[0]);

  // A size that is not a number is no block.
  ASSERT_EQ(pipe(fds), 0);
  ASSERT_TRUE(WriteAllTo(fds[1], "12x\nabc"));
  close(fds[1]);
  RowSource bad(fds[0]);
  EXPECT_FALSE(bad.ReadBlock(block));
  close(fds[0]);
}

}  // namespace
}  // namespace sheafwork
