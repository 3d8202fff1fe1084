// `sheafwork list` commands: a list made, replaced, appended and set; its
// rows added, edited, removed, moved and shown; the words the command line
// does not know; the values a list file cannot hold.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "command_runner.h"
#include "fakes/test_data.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using testing::ExpectRefused;
using ::testing::HasSubstr;
using testing::Outcome;
using testing::TempFolder;

class ListRowsTest : public testing::ListCommandTest {
 protected:
  ListRowsTest() {
    list = folder.File("lot.qx3");
    for (const char* name : {"a.dxf", "b.dxf", "c.dxf"}) drawings.push_back(folder.Write(name, ""));
    EXPECT_EQ(Run({"list", "new", list, drawings[0], drawings[1], drawings[2]}).status, 0);
  }
  nlohmann::json Rows() { return Show(list)["entries"]; }
  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& row : Rows()) {
      names.push_back(std::filesystem::path(row["FileName"].get<std::string>()).filename());
    }
    return names;
  }

  std::string list;
  std::vector<std::string> drawings;
};

TEST_F(ListRowsTest, RemoveAndMoveRenumberTheRows) {
  ASSERT_EQ(Run({"list", "move", list, "3", "--to", "1"}).status, 0);
  EXPECT_EQ(Names(), (std::vector<std::string>{"c.dxf", "a.dxf", "b.dxf"}));
  ASSERT_EQ(Run({"list", "move", list, "1", "--to", "2"}).status, 0);
  EXPECT_EQ(Names(), (std::vector<std::string>{"a.dxf", "c.dxf", "b.dxf"}));
  // Two rows at once, without a question, whatever their order.
  ASSERT_EQ(Run({"list", "remove", list, "3", "1"}).status, 0);
  EXPECT_EQ(Names(), (std::vector<std::string>{"c.dxf"}));

  // A row outside the list changes nothing; nor does emptying the list,
  // which a list file cannot hold.
  const std::string before = TempFolder::Read(list);
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"list", "remove", list, "1", "2"},
        {"list", "move", list, "1", "--to", "0"},
        {"list", "edit", list, "4", "--layout", "X"},
        {"list", "remove", list, "1"}}) {
    SCOPED_TRACE(args[1] + " " + args[3]);
    ExpectRefused(Run(args), "sheafwork: ");
  }
  EXPECT_EQ(TempFolder::Read(list), before);
}

TEST_F(ListRowsTest, EditChangesOnlyTheFieldsGivenWithReadableValues) {
  const nlohmann::json before = Rows();
  ASSERT_EQ(Run({"list", "edit", list, "2", "--layout", "Plan A1", "--area", "extents", "--scale",
                 "1:50", "--scale-lineweights"})
                .status,
            0);
  ASSERT_EQ(Run({"list", "edit", list, "2", "--device", "PDF.pc3"}).status, 0);
  nlohmann::json edited = before[1];
  edited.update({{"Layout", "Plan A1"},
                 {"PlotDevice", "PDF.pc3"},
                 {"PlotArea", "#E"},
                 {"PlotScale", "S#25"},
                 {"ScaleCustom", false},
                 {"ScaleLW", true}});
  EXPECT_EQ(Rows(), nlohmann::json({before[0], edited, before[2]}));

  ASSERT_EQ(Run({"list", "edit", list, "2", "--custom-scale", "1:25", "--no-scale-lineweights",
                 "--area", "window:0,0,420,297"})
                .status,
            0);
  edited.update({{"PlotScale", "1#25"},
                 {"ScaleCustom", true},
                 {"ScaleLW", false},
                 {"PlotArea", "#W0,0,420,297"}});
  EXPECT_EQ(Rows()[1], edited);

  // `list show` gives the readable names beside the codes.
  const Outcome shown = Run({"list", "show", list});
  EXPECT_NE(shown.out.find("#W0,0,420,297 (window:0,0,420,297)"), std::string::npos) << shown.out;
  EXPECT_NE(shown.out.find("1#25 (1:25, Personnalisé)"), std::string::npos) << shown.out;
}

// An unknown value is refused with the accepted ones, and nothing is
// written: never stored to be ignored when the list is plotted.
TEST_F(ListRowsTest, UnknownValuesAreRefusedWithWhatIsAccepted) {
  const std::string before = TempFolder::Read(list);
  for (const auto& row : testing::ReadTestTable("app/unknown_values.tsv")) {
    SCOPED_TRACE(row.where);
    std::vector<std::string> args = {"list", "edit", list, "1"};
    for (const std::string& option : row.List(0)) args.push_back(option);
    ExpectRefused(Run(args), row[1]);
    // `list add` takes the same options and adds no row.
    args[1] = "add";
    args[3] = drawings[0];
    EXPECT_EQ(Run(args).status, 2);
  }
  EXPECT_EQ(TempFolder::Read(list), before);
}

// The desktop starts for no argument or one name of a list, never for a
// command, a mistyped one or two names.
TEST_F(ListRowsTest, OnlyNoArgumentOrOneListNameStartsTheDesktop) {
  const std::string existing = folder.Write("liste", "");
  const std::pair<std::vector<std::string>, bool> cases[] = {
      {{}, true},          {{"/srv/listes/lot.qx3"}, true}, {{existing}, true},
      {{"plto"}, false},   {{"plot", "lot.qx3"}, false},    {{"check"}, false},
      {{"--help"}, false}, {{"a.qx3", "b.qx3"}, false},
  };
  for (const auto& [args, desktop] : cases) {
    std::vector<const char*> argv = {"sheafwork"};
    for (const std::string& arg : args) argv.push_back(arg.c_str());
    EXPECT_EQ(WantsDesktop(static_cast<int>(argv.size()), argv.data()), desktop)
        << (args.empty() ? "(none)" : args[0]);
  }
}

using CommandLineTest = testing::ListCommandTest;

TEST_F(CommandLineTest, BadInputGivesTheMessageAndStatus2AndWritesNothing) {
  const std::string bad = folder.Write("bad.qx3", "Liste\r\n");
  const Outcome o = Run({"list", "show", bad});
  EXPECT_EQ(o.status, 2);
  EXPECT_EQ(o.err, "sheafwork: " + bad + ": " + LoadResourceText(ids::kListFileNotValid) + "\n");
  EXPECT_EQ(Run({"list", "add", bad, "/p/a.dwg"}).status, 2);
  EXPECT_EQ(TempFolder::Read(bad), "Liste\r\n");

  const std::string empty = folder.File("empty.qx3");
  ExpectRefused(Run({"list", "new", empty}), LoadResourceText(ids::kEmptyList));
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
  ExpectRefused(Run({"list", "set", list, "--journal-file", "/logs/bad|name.log"}),
                LoadResourceText(ids::kJournalNameNotValid));
  ExpectRefused(Run({"list", "set", list, "--error-file", "/x/"}),
                LoadResourceText(ids::kErrorLogNameNotValid));
  EXPECT_EQ(Show(list)["log"]["JournalLogFileName"], "/logs/QXJOURNL.LOG");

  ASSERT_EQ(Run({"list", "set", list, "--journal", "off", "--journal-file", "bad|name"}).status, 0);
  EXPECT_EQ(Show(list)["log"]["JournalLogFileName"], "bad|name");
  EXPECT_EQ(Run({"list", "set", list, "--journal", "maybe"}).status, 2);
}

// Values a list file cannot hold (line breaks, double quotes, characters
// outside Windows-1252 in paths and names) are refused by `list add`,
// `list new` and `list set` with status 2 and the list left as it was; texts
// that are only shown keep "?" with a warning.
using ListValuesTest = testing::ListCommandTest;

TEST_F(ListValuesTest, RefusedValuesLeaveTheListAsItWas) {
  const std::string list = folder.File("v.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/p/1.dwg"}).status, 0);
  const std::string before = TempFolder::Read(list);

  for (const auto& row : testing::ReadTestTable("app/refused_values.tsv")) {
    SCOPED_TRACE(row.where);
    std::vector<std::string> args = {"list", row[0], list};
    for (const std::string& arg : row.List(1)) args.push_back(arg);
    ExpectRefused(Run(args), LoadResourceText(std::stoi(row[2])) + " : " +
                                 LoadResourceText(std::stoi(row[3])));
    EXPECT_EQ(TempFolder::Read(list), before);
  }
  // A new list with such a path is not created at all.
  const std::string fresh = folder.File("n.qx3");
  EXPECT_EQ(Run({"list", "new", fresh, "/p/a\rb.dwg"}).status, 2);
  EXPECT_FALSE(std::filesystem::exists(fresh));
}

TEST_F(ListValuesTest, ShownTextsKeepQuestionMarksWithAWarning) {
  const std::string list = folder.File("h.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/p/caf\xC3\xA9 \xE2\x82\xAC.dwg"}).status, 0);
  testing::Outcome o = Run({"list", "set", list, "--journal-header", "Plan \xE5\x8C\x97"});
  ASSERT_EQ(o.status, 0) << o.err;
  EXPECT_THAT(o.err, HasSubstr(LoadResourceText(ids::kFieldJournalHeader) + " : " +
                               LoadResourceText(ids::kValueKeptWithMarks)));

  const auto doc = Show(list);
  EXPECT_EQ(doc["log"]["JournalHeader"], "Plan ?");
  // Characters of the code page are kept as they are, without a word.
  EXPECT_EQ(doc["entries"][0]["FileName"], "/p/caf\xC3\xA9 \xE2\x82\xAC.dwg");
  o = Run({"list", "set", list, "--error-header", "\xC3\x89tage \xE2\x80\x93 2"});
  EXPECT_EQ(o.status, 0);
  EXPECT_EQ(o.err, "");
}

TEST_F(ListValuesTest, ListsThatAreNotFilesOrTooLongAreRefusedByName) {
  // A list that names more drawings than a list holds says the limit.
  const std::string big = testing::TestData("app/too-many-rows.qx3");
  ExpectRefused(Run({"list", "show", big}),
                big + ": " + LoadResourceText(ids::kListTooManyEntries));
  // A device is no list.
  const testing::Outcome device = Run({"list", "show", "/dev/zero"});
  ExpectRefused(device, "/dev/zero: ");
  EXPECT_THAT(device.err, HasSubstr(LoadResourceText(ids::kNotRegularFile)));
}

}  // namespace
}  // namespace sheafwork
