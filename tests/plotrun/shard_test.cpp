#include "plotrun/shard.h"

#include "fakes/test_data.h"
#include "plot_run_fixture.h"

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

}  // namespace
}  // namespace sheafwork
