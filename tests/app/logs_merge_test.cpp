// `plot --shard` and `logs merge` in-process, with the scripted host: the
// merged logs are byte for byte those of one run over the whole list when
// the clock is the same for both.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "command_runner.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using ::testing::HasSubstr;

class LogsMergeTest : public testing::HostCommandTest {
 protected:
  /// Five rows, the third of a layout the drawing lacks.
  void MakeList() {
    for (const char* layout : {"Vue A", "Vue A", "Vue Z", "Vue A", "Vue A"}) {
      ASSERT_EQ(Run({"list", "add", list, plan, "--layout", layout}).status, 0);
    }
    ASSERT_EQ(Run({"list", "set", list, "--journal-header", "lot", "--journal-comment", "nuit",
                   "--error-header", "erreurs"})
                  .status,
              0);
  }

  std::string Log(const std::string& name) const {
    return testing::TempFolder::Read(env.defaultLogFolder + "/" + name);
  }
};

TEST_F(LogsMergeTest, ThreeShardsMergedAreOneRunOverTheWholeList) {
  MakeList();
  ASSERT_EQ(Run({"plot", list}).status, 1);
  const std::string journal = Log("QXJOURNL.LOG");
  const std::string errors = Log("QXERROR.LOG");
  ASSERT_THAT(errors, HasSubstr("ERREUR"));
  std::filesystem::remove_all(env.defaultLogFolder);

  // Rows 1 and 4, 2 and 5, then 3, which fails; run in any order.
  const int expected[] = {0, 0, 1};
  for (int shard = 3; shard >= 1; --shard) {
    const auto o = Run({"plot", list, "--shard", std::to_string(shard) + "/3"});
    EXPECT_EQ(o.status, expected[shard - 1]) << o.err;
  }
  // Shard 1 wrote rows 1 and 4 after the header and comment.
  const std::string first = Log("QXJOURNL.shard-1-of-3.LOG");
  EXPECT_EQ(std::count(first.begin(), first.end(), '\n'), 4);
  const auto merged = Run({"logs", "merge", list});
  EXPECT_EQ(merged.status, 1) << merged.err;
  EXPECT_THAT(merged.err, HasSubstr("3 part(s) réunie(s) : 4 ligne(s) tracée(s), 1 en échec"));
  EXPECT_EQ(Log("QXJOURNL.LOG"), journal);
  EXPECT_EQ(Log("QXERROR.LOG"), errors);
}

// What the merge cannot start from: status 2, the list named with the
// reason; a number of shards out of range is refused in French.
TEST_F(LogsMergeTest, NothingToMergeIsSaid) {
  MakeList();
  struct Case {
    std::vector<std::string> settings;
    int reason;
  };
  const Case cases[] = {
      {{"--journal", "on"}, ids::kMergeNoShards},
      {{"--journal", "off", "--error-log", "off"}, ids::kMergeNoLog},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.reason);
    std::vector<std::string> args = {"list", "set", list};
    args.insert(args.end(), c.settings.begin(), c.settings.end());
    ASSERT_EQ(Run(args).status, 0);
    testing::ExpectRefused(Run({"logs", "merge", list}),
                           "sheafwork: " + list + ": " + LoadResourceText(c.reason));
  }
  testing::ExpectRefused(Run({"logs", "merge", list, "--shards", "0"}),
                         "--shards : « 0 » n'est pas entre 1 et 32767");
}

}  // namespace
}  // namespace sheafwork
