// How a run is shared out among processes: shards of the rows, the rows'
// fingerprint, and the records a worker sends back for each row.
#include "plotrun/shard.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "fakes/test_data.h"
#include "plot_run_fixture.h"
#include "plotrun/row_record.h"

namespace sheafwork {
namespace {

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

}  // namespace
}  // namespace sheafwork
