#include "plotrun/shard.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "fakes/test_data.h"
#include "plot_run_fixture.h"
#include "res/string_ids.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;

TEST(ParseShardTest, TakesKOfNAndRefusesEverythingElse) {
  for (const auto& row : testing::ReadTestTable("plotrun/shards.tsv")) {
    SCOPED_TRACE(row.where);
    const auto shard = ParseShard(row[0]);
    EXPECT_EQ(shard ? shard->Text() : "refused", row[1]);
  }
}

TEST(ShardTest, RowsGoRoundRobinAndEveryRowToExactlyOneShard) {
  constexpr int kRows = 11;
  for (int count = 1; count <= 4; ++count) {
    std::vector<int> owners(kRows + 1, 0);
    for (int index = 1; index <= count; ++index) {
      const Shard shard{index, count};
      int held = 0;
      for (int row = 1; row <= kRows; ++row) {
        if (!shard.Holds(row)) continue;
        ++owners[row];
        ++held;
        EXPECT_EQ((row - 1) % count + 1, index) << "row " << row;
      }
      EXPECT_EQ(shard.RowsOf(kRows), held) << shard.Text();
    }
    for (int row = 1; row <= kRows; ++row) EXPECT_EQ(owners[row], 1) << "row " << row;
  }
  EXPECT_EQ((Shard{3, 4}).RowsOf(2), 0);
}

TEST(ShardLogNameTest, TheShardGoesBeforeTheLastExtension) {
  for (const auto& row : testing::ReadTestTable("plotrun/shard_logs.tsv")) {
    SCOPED_TRACE(row.where);
    EXPECT_EQ(ShardLogName(row[0], Shard{2, 4}), row[1]);
  }
}

TEST(RowsFingerprintTest, ChangesWithAnyFieldOrRowOrder) {
  BatchList list;
  list.Append().FileName = "/p/a.dxf";
  list.Append().FileName = "/p/b.dxf";
  const std::string fingerprint = RowsFingerprint(list);
  EXPECT_EQ(fingerprint.size(), 16u);
  EXPECT_EQ(RowsFingerprint(list), fingerprint);

  BatchList swapped;
  swapped.Append().FileName = "/p/b.dxf";
  swapped.Append().FileName = "/p/a.dxf";
  EXPECT_NE(RowsFingerprint(swapped), fingerprint);

  // A character moved from one field to the next.
  BatchList moved = list;
  moved.Entry(1).FileName = "/p/a.dx";
  moved.Entry(1).Layout = "f";
  EXPECT_NE(RowsFingerprint(moved), fingerprint);

  BatchList flagged = list;
  flagged.Entry(2).ScaleLW = true;
  EXPECT_NE(RowsFingerprint(flagged), fingerprint);
}

class ShardRunTest : public PlotRunTest {
 protected:
  RunResult RunShard(const Shard& shard) {
    RunServices services;
    services.clock = [this] { return Tick(); };
    services.observer = &observer;
    services.prompt = &prompt;
    services.plotsRow = [shard](int row) { return shard.Holds(row); };
    return PlotAllEntries(session, hostSession, services);
  }

  static std::string Bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
};

// A shard counts and plots only its rows: a drawing missing in another
// shard's rows does not end it. What each row wrote to each log is told in
// bytes that cut the files exactly into the header and the rows' lines.
TEST_F(ShardRunTest, PlotsOnlyItsRowsAndTellsEachRowsShareOfTheLogs) {
  auto& plan = host.AddDrawing("Plan.dwg");
  plan.AddLayout("Vue A");
  Row(host.Folder().File("Absent.dwg"), "Toutes les présentations");  // shard 1's
  Row(plan, "Vue A");
  Row(plan, "Vue A");
  Row(host.Folder().File("Manque.dwg"), "Vue A");
  Row(plan, "Vue B");  // shard 1's: no such layout
  Row(plan, "Vue A");

  const RunResult result = RunShard(Shard{2, 2});
  EXPECT_FALSE(result.endedEarly);
  EXPECT_EQ(result.totalPlots, 3);
  EXPECT_EQ(result.plotted, 2);
  EXPECT_EQ(result.failed, 1);
  EXPECT_THAT(observer.events, ElementsAre("cleared", "start 2/6", "2 plotted", "start 4/6",
                                           "4 failed", "start 6/6", "6 plotted"));

  const std::string journal = Bytes(session.Log.JournalLogFileName);
  const std::string errors = Bytes(session.Log.ErrorLogFileName);
  EXPECT_EQ(result.logBytesBeforeRows.journal, std::string("journal\r\ncomment\r\n").size());
  EXPECT_EQ(result.logBytesBeforeRows.errorLog, std::string("errors\r\n").size());
  ASSERT_EQ(result.rowLogBytes.size(), 3u);
  std::uint64_t journalAt = result.logBytesBeforeRows.journal;
  std::uint64_t errorsAt = result.logBytesBeforeRows.errorLog;
  std::vector<std::string> rows;
  for (const RowLogBytes& row : result.rowLogBytes) {
    rows.push_back(std::to_string(row.row) + ": " +
                   journal.substr(journalAt, row.journal).substr(0, 8) + "|" +
                   std::to_string(std::count(
                       errors.begin() + static_cast<long>(errorsAt),
                       errors.begin() + static_cast<long>(errorsAt + row.errorLog), '\n')));
    journalAt += row.journal;
    errorsAt += row.errorLog;
  }
  EXPECT_EQ(journalAt, journal.size());
  EXPECT_EQ(errorsAt, errors.size());
  EXPECT_THAT(rows, ElementsAre("2: Plan.dwg|0", "4: |2", "6: Plan.dwg|0"));
}

}  // namespace
}  // namespace sheafwork
