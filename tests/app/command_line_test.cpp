#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include <nlohmann/json.hpp>

#include "app/command_line.h"
#include "fakes/temp_folder.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using testing::TempFolder;

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

class CommandLineTest : public ::testing::Test {
 protected:
  Outcome Run(std::vector<std::string> args) {
    args.insert(args.begin(), "sheafwork");
    std::vector<const char*> argv;
    for (const auto& a : args) argv.push_back(a.c_str());
    std::ostringstream out, err;
    const int status = RunCommandLine(static_cast<int>(argv.size()), argv.data(), out, err,
                                      CommandEnvironment{"/logs"});
    return {status, out.str(), err.str()};
  }
  nlohmann::json ShowJson(const std::string& list) {
    const Outcome o = Run({"list", "show", "--json", list});
    EXPECT_EQ(o.status, 0) << o.err;
    return nlohmann::json::parse(o.out);
  }

  TempFolder folder;
};

TEST_F(CommandLineTest, NewAndAddWithEveryFieldWriteTheExactFormat) {
  const std::string list = folder.File("lot.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/plans/rez.dwg"}).status, 0);
  const Outcome added = Run({"list",
                             "add",
                             list,
                             "/plans/étage.dwg",
                             "--layout",
                             "Toutes les présentations",
                             "--setup",
                             "/gabarits/a.dwt|A1",
                             "--device",
                             "PDF.pc3",
                             "--layers",
                             "MURS 1 COTES 0",
                             "--area",
                             "5",
                             "--scale",
                             "1:50",
                             "--custom-scale",
                             "--scale-lineweights",
                             "--plot-file",
                             "/sorties/étage.pdf"});
  ASSERT_EQ(added.status, 0) << added.err;
  const std::string bytes = TempFolder::Read(list);
  const std::string expectedTail =
      "\"BATCH NUM FILES\",2\r\n"
      "\"BATCH WIN SIZE\",\"1024,768\"\r\n"
      "\"DWG#1FILENAME\",\"/plans/rez.dwg\"\r\n"
      "\"DWG#1LAYOUT\",\"\"\r\n\"DWG#1PLOTSETUP\",\"\"\r\n\"DWG#1PLOTDEVICE\",\"\"\r\n"
      "\"DWG#1LAYERS\",\"\"\r\n\"DWG#1PLOTAREA\",\"\"\r\n\"DWG#1PLOTSCALE\",\"\"\r\n"
      "\"DWG#1SCALECUSTOM\",#FALSE#\r\n\"DWG#1SCALELW\",#FALSE#\r\n\"DWG#1PLOTFILE\",\"\"\r\n"
      "\"DWG#2FILENAME\",\"/plans/\xE9tage.dwg\"\r\n"
      "\"DWG#2LAYOUT\",\"Toutes les pr\xE9sentations\"\r\n"
      "\"DWG#2PLOTSETUP\",\"/gabarits/a.dwt|A1\"\r\n"
      "\"DWG#2PLOTDEVICE\",\"PDF.pc3\"\r\n"
      "\"DWG#2LAYERS\",\"MURS 1 COTES 0\"\r\n"
      "\"DWG#2PLOTAREA\",\"5\"\r\n"
      "\"DWG#2PLOTSCALE\",\"1:50\"\r\n"
      "\"DWG#2SCALECUSTOM\",#TRUE#\r\n"
      "\"DWG#2SCALELW\",#TRUE#\r\n"
      "\"DWG#2PLOTFILE\",\"/sorties/\xE9tage.pdf\"\r\n";
  const std::string expected =
      "Orvane 2000 Sheafwork List File\r\n"
      "\"BATCH FILE NAME\",\"" +
      list +
      "\"\r\n"
      "\"BATCH JOURNAL LOG ON?\",#TRUE#\r\n"
      "\"BATCH JOURNAL LOG FILENAME\",\"/logs/QXJOURNL.LOG\"\r\n"
      "\"BATCH JOURNAL HEADER\",\"\"\r\n"
      "\"BATCH JOURNAL USER COMMENT\",\"\"\r\n"
      "\"BATCH JOURNAL APPEND?\",#FALSE#\r\n"
      "\"BATCH ERROR LOG ON?\",#TRUE#\r\n"
      "\"BATCH ERROR LOG FILENAME\",\"/logs/QXERROR.LOG\"\r\n"
      "\"BATCH ERROR HEADER\",\"\"\r\n"
      "\"BATCH ERROR APPEND?\",#FALSE#\r\n" +
      expectedTail;
  EXPECT_EQ(bytes, expected);
}

TEST_F(CommandLineTest, AddCreatesAMissingListAndMakesPathsFull) {
  const std::string list = folder.File("new.qx3");
  const Outcome o = Run({"list", "add", list, "/p/a.dwg", "/p/b.dwg", "--layout", "Objet"});
  ASSERT_EQ(o.status, 0) << o.err;
  const auto doc = ShowJson(list);
  ASSERT_EQ(doc["entries"].size(), 2u);
  EXPECT_EQ(doc["entries"][1]["FileName"], "/p/b.dwg");
  EXPECT_EQ(doc["entries"][1]["Layout"], "Objet");
  EXPECT_EQ(doc["winSize"], "1024,768");
  EXPECT_EQ(doc["name"], list);
}

TEST_F(CommandLineTest, ShowJsonGivesTheListAsRead) {
  const std::string list = folder.Write("t.qx3",
                                        "ORVANE R15 SHEAFWORK LIST FILE\r\n"
                                        "\"DWG#3LAYOUT\",\"Plan\"\r\n"
                                        "\"BATCH JOURNAL HEADER\",\"Nuit du 22\"\r\n"
                                        "\"BATCH WIN SIZE\",\"1920,1080\"\r\n"
                                        "\"batch error append?\",#TRUE#\r\n"
                                        "\"UNKNOWN\",\"x\"\r\n"
                                        "\"DWG#1FILENAME\",\"C:\\plans\\a.dwg\"\r\n"
                                        "\"DWG#1SCALELW\",#TRUE#\r\n");
  const auto doc = ShowJson(list);
  EXPECT_EQ(doc["name"], "");
  EXPECT_EQ(doc["winSize"], "1920,1080");
  EXPECT_EQ(doc["log"]["JournalHeader"], "Nuit du 22");
  EXPECT_EQ(doc["log"]["ErrorAppend"], true);
  EXPECT_EQ(doc["log"]["JournalLogFileName"], "/logs/QXJOURNL.LOG");
  ASSERT_EQ(doc["entries"].size(), 3u);
  EXPECT_EQ(doc["entries"][0]["FileName"], "C:\\plans\\a.dwg");
  EXPECT_EQ(doc["entries"][0]["ScaleLW"], true);
  EXPECT_EQ(doc["entries"][1]["FileName"], "");
  EXPECT_EQ(doc["entries"][2]["Layout"], "Plan");
  const std::vector<std::string> keys = {"FileName", "Layout",   "PlotSetup", "PlotDevice",
                                         "Layers",   "PlotArea", "PlotScale", "ScaleCustom",
                                         "ScaleLW",  "PlotFile"};
  std::vector<std::string> seen;
  for (const auto& item : doc["entries"][0].items()) seen.push_back(item.key());
  std::sort(seen.begin(), seen.end());
  std::vector<std::string> sorted = keys;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(seen, sorted);
}

TEST_F(CommandLineTest, BadInputGivesTheMessageAndStatus2AndWritesNothing) {
  const std::string bad = folder.Write("bad.qx3", "Liste\r\n");
  Outcome o = Run({"list", "show", bad});
  EXPECT_EQ(o.status, 2);
  EXPECT_EQ(o.err, "sheafwork: " + bad + ": " + LoadResourceText(91) + "\n");

  o = Run({"list", "add", bad, "/p/a.dwg"});
  EXPECT_EQ(o.status, 2);
  EXPECT_EQ(TempFolder::Read(bad), "Liste\r\n");

  const std::string empty = folder.File("empty.qx3");
  o = Run({"list", "new", empty});
  EXPECT_EQ(o.status, 2);
  EXPECT_NE(o.err.find(LoadResourceText(89)), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(empty));

  o = Run({"list", "show", folder.File("missing.qx3")});
  EXPECT_EQ(o.status, 2);
  EXPECT_NE(o.err.find(LoadResourceText(92)), std::string::npos);

  o = Run({"list", "frobnicate"});
  EXPECT_EQ(o.status, 2);
  EXPECT_TRUE(o.out.empty());
}

TEST_F(CommandLineTest, NewRefusesToReplaceAnExistingListUnlessForced) {
  const std::string list = folder.File("l.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/p/a.dwg"}).status, 0);
  EXPECT_EQ(Run({"list", "new", list, "/p/b.dwg"}).status, 2);
  EXPECT_EQ(ShowJson(list)["entries"][0]["FileName"], "/p/a.dwg");
  ASSERT_EQ(Run({"list", "new", list, "/p/b.dwg", "--force"}).status, 0);
  EXPECT_EQ(ShowJson(list)["entries"][0]["FileName"], "/p/b.dwg");
}

TEST_F(CommandLineTest, AppendAddsTheOtherListsRowsAndKeepsItsOwnSettings) {
  const std::string list = folder.File("a.qx3");
  const std::string other = folder.File("b.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/p/1.dwg"}).status, 0);
  ASSERT_EQ(Run({"list", "new", other, "/q/1.dwg", "/q/2.dwg"}).status, 0);
  ASSERT_EQ(Run({"list", "set", other, "--journal-header", "autre"}).status, 0);
  ASSERT_EQ(Run({"list", "append", list, other}).status, 0);
  const auto doc = ShowJson(list);
  ASSERT_EQ(doc["entries"].size(), 3u);
  EXPECT_EQ(doc["entries"][2]["FileName"], "/q/2.dwg");
  EXPECT_EQ(doc["log"]["JournalHeader"], "");
  EXPECT_EQ(doc["name"], list);
}

TEST_F(CommandLineTest, SetChangesTheLogSettingsAndChecksNamesOfLogsThatAreOn) {
  const std::string list = folder.File("s.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/p/1.dwg"}).status, 0);
  Outcome o = Run({"list", "set", list, "--journal-file", "/logs/bad|name.log"});
  EXPECT_EQ(o.status, 2);
  EXPECT_NE(o.err.find(LoadResourceText(309)), std::string::npos);
  EXPECT_EQ(ShowJson(list)["log"]["JournalLogFileName"], "/logs/QXJOURNL.LOG");

  // A bad name is accepted while its log is off.
  o = Run({"list", "set", list, "--journal", "off", "--journal-file", "bad|name", "--error-mode",
           "append", "--error-header", "Erreurs"});
  ASSERT_EQ(o.status, 0) << o.err;
  const auto doc = ShowJson(list);
  EXPECT_EQ(doc["log"]["JournalLogOn"], false);
  EXPECT_EQ(doc["log"]["JournalLogFileName"], "bad|name");
  EXPECT_EQ(doc["log"]["ErrorAppend"], true);
  EXPECT_EQ(doc["log"]["ErrorHeader"], "Erreurs");

  o = Run({"list", "set", list, "--error-file", "/x/"});
  EXPECT_EQ(o.status, 2);
  EXPECT_NE(o.err.find(LoadResourceText(310)), std::string::npos);
  EXPECT_EQ(Run({"list", "set", list, "--journal", "maybe"}).status, 2);
}

TEST_F(CommandLineTest, ShowAsTextUsesTheListColumnTitles) {
  const std::string list = folder.File("t.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/plans/a.dwg"}).status, 0);
  const Outcome o = Run({"list", "show", list});
  ASSERT_EQ(o.status, 0);
  EXPECT_NE(o.out.find("1. a.dwg\n"), std::string::npos);
  EXPECT_NE(o.out.find("Présentation : *Onglet courant*\n"), std::string::npos);
  EXPECT_NE(o.out.find("Périphérique de traçage : Par défaut\n"), std::string::npos);
}

}  // namespace
}  // namespace sheafwork
