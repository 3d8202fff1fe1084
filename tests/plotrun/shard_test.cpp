// How a run is shared out among processes: shards of the rows, the rows'
// fingerprint, the records a worker sends back for each row, and rows plotted
// by worker processes.
#include "plotrun/shard.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <unistd.h>
#endif

#include <cerrno>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "fakes/test_data.h"
#include "plot_run_fixture.h"
#include "plotrun/row_record.h"
#include "plotrun/worker_process.h"
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

std::vector<RowRecord> SampleRecords() {
  return {
      RowRecord{
          3,
          false,
          false,
          false,
          {{RowEvent::ErrorLine, "ERREUR\u00a0: ligne\nsur deux, \\ et \r fin"},
           {RowEvent::HostFailure, "raison de l'hôte"},
           {RowEvent::Sheet, ""},
           {RowEvent::JournalLine, "plan.dxf, /plans/, Toutes les présentations, , , 00:00:01"},
           {RowEvent::Plotted, ""}}},
      RowRecord{12, false, true, false, {{RowEvent::Cancelled, ""}}},
      RowRecord{13, true, false, false, {}},
      RowRecord{
          14, false, false, true, {{RowEvent::ErrorLine, "\\n tel quel"}, {RowEvent::Failed, ""}}},
  };
}

// Every field of each record, events included, to compare whole lists.
auto Fields(const std::vector<RowRecord>& records) {
  std::vector<std::tuple<int, bool, bool, bool, std::vector<std::pair<char, std::string>>>> fields;
  for (const RowRecord& r : records) {
    std::vector<std::pair<char, std::string>> events;
    for (const RowEvent& event : r.events) events.emplace_back(event.kind, event.text);
    fields.emplace_back(r.row, r.skipped, r.cancelled, r.ended, events);
  }
  return fields;
}

// A pipe hands the records over in pieces of any size: every record comes
// back whole and as it was, whatever the cuts.
TEST(RowRecordTest, RecordsSurvivePiecesOfAnySize) {
  std::string stream;
  for (const RowRecord& record : SampleRecords()) stream += EncodeRecord(record);
  for (const std::size_t piece :
       {std::size_t{1}, std::size_t{2}, std::size_t{7}, std::size_t{64}, stream.size()}) {
    SCOPED_TRACE("pieces of " + std::to_string(piece));
    RecordReader reader;
    std::vector<RowRecord> records;
    for (std::size_t at = 0; at < stream.size(); at += piece) {
      ASSERT_TRUE(reader.Feed(std::string_view(stream).substr(at, piece), records));
    }
    EXPECT_EQ(Fields(records), Fields(SampleRecords()));
  }
}

// A record cut short gives nothing yet; what is not a record at all makes
// the stream unusable rather than being taken for a row.
TEST(RowRecordTest, WhatIsNotARecordIsRefused) {
  RecordReader partial;
  std::vector<RowRecord> records;
  EXPECT_TRUE(partial.Feed("R 5 ---\nE une ligne\n", records));
  EXPECT_TRUE(records.empty());

  for (const char* bytes :
       {"bonjour\n", "R x ---\n", "R 5 --\n", "R 5 ---\nZ inconnu\n", "R 5 ---\nE\n", "R 5---\n"}) {
    SCOPED_TRACE(bytes);
    RecordReader reader;
    EXPECT_FALSE(reader.Feed(bytes, records));
  }
}

#ifndef _WIN32  // worker processes are POSIX ones (stand-in workers are shell scripts)
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
#endif

}  // namespace
}  // namespace sheafwork
