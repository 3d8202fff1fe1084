#include <gtest/gtest.h>

#include <filesystem>

#include "command_runner.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using testing::Outcome;
using testing::TempFolder;

using CommandLineTest = testing::ListCommandTest;

TEST_F(CommandLineTest, BadInputGivesTheMessageAndStatus2AndWritesNothing) {
  const std::string bad = folder.Write("bad.qx3", "Liste\r\n");
  Outcome o = Run({"list", "show", bad});
  EXPECT_EQ(o.status, 2);
  EXPECT_EQ(o.err, "sheafwork: " + bad + ": " + LoadResourceText(ids::kListFileNotValid) + "\n");
  EXPECT_EQ(Run({"list", "add", bad, "/p/a.dwg"}).status, 2);
  EXPECT_EQ(TempFolder::Read(bad), "Liste\r\n");

  const std::string empty = folder.File("empty.qx3");
  o = Run({"list", "new", empty});
  EXPECT_EQ(o.status, 2);
  EXPECT_NE(o.err.find(LoadResourceText(ids::kEmptyList)), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(empty));
  EXPECT_EQ(Run({"list", "frobnicate"}).status, 2);
}

TEST_F(CommandLineTest, NewRefusesToReplaceAListUnlessForcedAndAppendKeepsSettings) {
  const std::string list = folder.File("a.qx3");
  const std::string other = folder.File("b.qx3");
  ASSERT_EQ(Run({"list", "new", list, "rel/1.dwg"}).status, 0);
  EXPECT_EQ(Run({"list", "new", list, "/p/2.dwg"}).status, 2);
  EXPECT_EQ(Show(list)["entries"][0]["FileName"], std::filesystem::absolute("rel/1.dwg").string());
  ASSERT_EQ(Run({"list", "new", list, "/p/1.dwg", "--force"}).status, 0);

  ASSERT_EQ(Run({"list", "add", other, "/q/1.dwg", "/q/2.dwg", "--layout", "Objet"}).status, 0);
  ASSERT_EQ(Run({"list", "set", other, "--journal-header", "autre"}).status, 0);
  ASSERT_EQ(Run({"list", "append", list, other}).status, 0);
  const auto doc = Show(list);
  ASSERT_EQ(doc["entries"].size(), 3u);
  EXPECT_EQ(doc["entries"][2]["FileName"], "/q/2.dwg");
  EXPECT_EQ(doc["entries"][2]["Layout"], "Objet");
  EXPECT_EQ(doc["log"]["JournalHeader"], "");
}

TEST_F(CommandLineTest, SetChecksTheNamesOfLogsThatAreOn) {
  const std::string list = folder.File("s.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/p/1.dwg"}).status, 0);
  Outcome o = Run({"list", "set", list, "--journal-file", "/logs/bad|name.log"});
  EXPECT_EQ(o.status, 2);
  EXPECT_NE(o.err.find(LoadResourceText(ids::kJournalNameNotValid)), std::string::npos);
  o = Run({"list", "set", list, "--error-file", "/x/"});
  EXPECT_NE(o.err.find(LoadResourceText(ids::kErrorLogNameNotValid)), std::string::npos);
  EXPECT_EQ(Show(list)["log"]["JournalLogFileName"], "/logs/QXJOURNL.LOG");

  ASSERT_EQ(Run({"list", "set", list, "--journal", "off", "--journal-file", "bad|name"}).status, 0);
  EXPECT_EQ(Show(list)["log"]["JournalLogFileName"], "bad|name");
  EXPECT_EQ(Run({"list", "set", list, "--journal", "maybe"}).status, 2);
}

}  // namespace
}  // namespace sheafwork
