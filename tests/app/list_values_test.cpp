// Values a list file cannot hold (line breaks, double quotes, characters
// outside Windows-1252 in paths and names) are refused by `list add`,
// `list new` and `list set` with status 2 and the list left as it was; texts
// that are only shown keep "?" with a warning.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "command_runner.h"
#include "fakes/test_data.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using ::testing::HasSubstr;

using testing::ExpectRefused;
using testing::TempFolder;

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
