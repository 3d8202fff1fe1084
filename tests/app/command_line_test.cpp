#include <gtest/gtest.h>

#include <vector>

#include <nlohmann/json.hpp>

#include "command_runner.h"
#include "fakes/temp_folder.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using testing::TempFolder;

using testing::Outcome;

class CommandLineTest : public ::testing::Test {
 protected:
  CommandLineTest() { env.defaultLogFolder = "/logs"; }
  Outcome Run(std::vector<std::string> args) { return testing::RunSheafwork(args, env); }
  nlohmann::json Show(const std::string& list) {
    const Outcome o = Run({"list", "show", "--json", list});
    EXPECT_EQ(o.status, 0) << o.err;
    return nlohmann::json::parse(o.out);
  }
  CommandEnvironment env;
  TempFolder folder;
};

TEST_F(CommandLineTest, NewAddAndSetWriteTheExactFormat) {
  const std::string list = folder.File("lot.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/plans/rez.dwg"}).status, 0);
  ASSERT_EQ(Run({"list",
                 "add",
                 list,
                 "/plans/étage.dwg",
                 "--layout",
                 "Toutes les présentations",
                 "--setup",
                 "/g/a.dwt|A1",
                 "--device",
                 "PDF.pc3",
                 "--layers",
                 "MURS 1 COTES 0",
                 "--area",
                 "#E",
                 "--scale",
                 "1#50",
                 "--custom-scale",
                 "--scale-lineweights",
                 "--plot-file",
                 "/s/étage.pdf"})
                .status,
            0);
  ASSERT_EQ(Run({"list", "set", list, "--journal-header", "Nuit", "--journal-comment", "Révision C",
                 "--journal-mode", "append", "--error-log", "off", "--error-file", "/l/e.log",
                 "--error-header", "Erreurs"})
                .status,
            0);
  const std::string entry1 =
      "\"DWG#1FILENAME\",\"/plans/rez.dwg\"\r\n\"DWG#1LAYOUT\",\"\"\r\n\"DWG#1PLOTSETUP\",\"\"\r\n"
      "\"DWG#1PLOTDEVICE\",\"\"\r\n\"DWG#1LAYERS\",\"\"\r\n\"DWG#1PLOTAREA\",\"\"\r\n"
      "\"DWG#1PLOTSCALE\",\"\"\r\n\"DWG#1SCALECUSTOM\",#FALSE#\r\n\"DWG#1SCALELW\",#FALSE#\r\n"
      "\"DWG#1PLOTFILE\",\"\"\r\n";
  const std::string entry2 =
      "\"DWG#2FILENAME\",\"/plans/\xE9tage.dwg\"\r\n"
      "\"DWG#2LAYOUT\",\"Toutes les pr\xE9sentations\"\r\n\"DWG#2PLOTSETUP\",\"/g/a.dwt|A1\"\r\n"
      "\"DWG#2PLOTDEVICE\",\"PDF.pc3\"\r\n\"DWG#2LAYERS\",\"MURS 1 COTES 0\"\r\n"
      "\"DWG#2PLOTAREA\",\"#E\"\r\n\"DWG#2PLOTSCALE\",\"1#50\"\r\n\"DWG#2SCALECUSTOM\",#TRUE#\r\n"
      "\"DWG#2SCALELW\",#TRUE#\r\n\"DWG#2PLOTFILE\",\"/s/\xE9tage.pdf\"\r\n";
  EXPECT_EQ(TempFolder::Read(list), "Orvane 2000 Sheafwork List File\r\n\"BATCH FILE NAME\",\"" +
                                        list +
                                        "\"\r\n"
                                        "\"BATCH JOURNAL LOG ON?\",#TRUE#\r\n"
                                        "\"BATCH JOURNAL LOG FILENAME\",\"/logs/QXJOURNL.LOG\"\r\n"
                                        "\"BATCH JOURNAL HEADER\",\"Nuit\"\r\n"
                                        "\"BATCH JOURNAL USER COMMENT\",\"R\xE9vision C\"\r\n"
                                        "\"BATCH JOURNAL APPEND?\",#TRUE#\r\n"
                                        "\"BATCH ERROR LOG ON?\",#FALSE#\r\n"
                                        "\"BATCH ERROR LOG FILENAME\",\"/l/e.log\"\r\n"
                                        "\"BATCH ERROR HEADER\",\"Erreurs\"\r\n"
                                        "\"BATCH ERROR APPEND?\",#FALSE#\r\n"
                                        "\"BATCH NUM FILES\",2\r\n"
                                        "\"BATCH WIN SIZE\",\"1024,768\"\r\n" +
                                        entry1 + entry2);
}

TEST_F(CommandLineTest, ShowJsonGivesTheListAsRead) {
  const auto doc = Show(folder.Write("t.qx3",
                                     "ORVANE R15 SHEAFWORK LIST FILE\r\n"
                                     "\"DWG#3LAYOUT\",\"Plan\"\r\n"
                                     "\"BATCH WIN SIZE\",\"1920,1080\"\r\n"
                                     "\"batch error append?\",#TRUE#\r\n"
                                     "\"UNKNOWN\",\"x\"\r\n"
                                     "\"DWG#1SCALELW\",#TRUE#\r\n"));
  EXPECT_EQ(doc["name"], "");
  EXPECT_EQ(doc["winSize"], "1920,1080");
  EXPECT_EQ(doc["log"]["ErrorAppend"], true);
  EXPECT_EQ(doc["log"]["JournalLogFileName"], "/logs/QXJOURNL.LOG");
  ASSERT_EQ(doc["entries"].size(), 3u);
  EXPECT_EQ(doc["entries"][0]["ScaleLW"], true);
  EXPECT_EQ(doc["entries"][2]["Layout"], "Plan");
  EXPECT_EQ(doc["entries"][1].size(), 10u);
}

TEST_F(CommandLineTest, BadInputGivesTheMessageAndStatus2AndWritesNothing) {
  const std::string bad = folder.Write("bad.qx3", "Liste\r\n");
  Outcome o = Run({"list", "show", bad});
  EXPECT_EQ(o.status, 2);
  EXPECT_EQ(o.err, "sheafwork: " + bad + ": " + LoadResourceText(91) + "\n");
  EXPECT_EQ(Run({"list", "add", bad, "/p/a.dwg"}).status, 2);
  EXPECT_EQ(TempFolder::Read(bad), "Liste\r\n");

  const std::string empty = folder.File("empty.qx3");
  o = Run({"list", "new", empty});
  EXPECT_EQ(o.status, 2);
  EXPECT_NE(o.err.find(LoadResourceText(89)), std::string::npos);
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
  EXPECT_NE(o.err.find(LoadResourceText(309)), std::string::npos);
  o = Run({"list", "set", list, "--error-file", "/x/"});
  EXPECT_NE(o.err.find(LoadResourceText(310)), std::string::npos);
  EXPECT_EQ(Show(list)["log"]["JournalLogFileName"], "/logs/QXJOURNL.LOG");

  ASSERT_EQ(Run({"list", "set", list, "--journal", "off", "--journal-file", "bad|name"}).status, 0);
  EXPECT_EQ(Show(list)["log"]["JournalLogFileName"], "bad|name");
  EXPECT_EQ(Run({"list", "set", list, "--journal", "maybe"}).status, 2);
}

}  // namespace
}  // namespace sheafwork
