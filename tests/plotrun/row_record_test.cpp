#include "plotrun/row_record.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace sheafwork {
namespace {

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
