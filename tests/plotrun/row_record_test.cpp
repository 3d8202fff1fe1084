#include "plotrun/row_record.h"

#include <gtest/gtest.h>

#include <string>
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

void ExpectSame(const RowRecord& expected, const RowRecord& actual) {
  EXPECT_EQ(expected.row, actual.row);
  EXPECT_EQ(expected.skipped, actual.skipped);
  EXPECT_EQ(expected.cancelled, actual.cancelled);
  EXPECT_EQ(expected.ended, actual.ended);
  ASSERT_EQ(expected.events.size(), actual.events.size());
  for (std::size_t i = 0; i < expected.events.size(); ++i) {
    EXPECT_EQ(expected.events[i].kind, actual.events[i].kind);
    EXPECT_EQ(expected.events[i].text, actual.events[i].text);
  }
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
    const auto expected = SampleRecords();
    ASSERT_EQ(expected.size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) ExpectSame(expected[i], records[i]);
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
