// The list of a session and the commands on it: rows added and removed,
// lists opened, appended, saved and started anew.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <stdexcept>
#include <tuple>
#include <vector>

#include "batch/list_commands.h"
#include "batch/list_file.h"
#include "batch/list_row.h"
#include "batch/session.h"
#include "fakes/native_path.h"
#include "fakes/scripted_prompt.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using testing::NativePath;
using testing::TempFolder;
using ::testing::ThrowsMessage;

class ListCommandsTest : public ::testing::Test {
 protected:
  ListCommandsTest() : session("/logs") { session.List.Append().FileName = "/a/1.dwg"; }

  std::string SavedList(const std::string& name) {
    Session other("/logs");
    other.List.Append().FileName = "/n/1.dwg";
    other.Log.JournalHeader = "theirs";
    EXPECT_TRUE(WriteListFile(other, folder.File(name)).ok());
    return folder.File(name);
  }
  const PromptMessage& OnlyMessage() {
    EXPECT_EQ(prompt.messages.size(), 1u);
    return prompt.messages.at(0);
  }

  TempFolder folder;
  Session session;
  testing::ScriptedPrompt prompt;
};

TEST_F(ListCommandsTest, OpeningReplacesTheListAndSetsTheCaption) {
  const std::string path = SavedList("north.QX3");
  session.ListModified = true;
  prompt.ThenAnswer(PromptAnswer::No).ThenChoose(path);
  ASSERT_TRUE(OpenList(session, prompt));
  EXPECT_EQ(prompt.messages.at(0).text, LoadResourceText(ids::kSaveCurrentList));
  EXPECT_EQ(std::tie(prompt.dialogs[0].request.title, prompt.dialogs[0].request.filter),
            std::tuple(LoadResourceText(93), LoadResourceText(94)));
  EXPECT_EQ(std::tuple(session.List.Entry(1).FileName, session.Log.JournalHeader, session.Caption,
                       session.ListModified),
            std::tuple("/n/1.dwg", "theirs", LoadResourceText(95) + path, false));

  // A chosen name that does not end in "qx3" is ignored without a word.
  prompt.ThenAnswer(PromptAnswer::No).ThenChoose(folder.Write("notes.txt", "x"));
  EXPECT_FALSE(OpenList(session, prompt));
  EXPECT_EQ(prompt.messages.size(), 2u);
}

TEST_F(ListCommandsTest, BadFilesShowTheirMessages) {
  EXPECT_FALSE(LoadListFile(session, prompt, testing::TestData("lists/not_a_list.qx3")));
  EXPECT_EQ(std::tie(OnlyMessage().text, OnlyMessage().icon),
            std::tuple(LoadResourceText(91), PromptIcon::Question));
  EXPECT_EQ(session.List.Entry(1).FileName, "/a/1.dwg");

  prompt.messages.clear();
  EXPECT_FALSE(LoadListFile(session, prompt, testing::TestData("lists/malformed.qx3")));
  EXPECT_EQ(std::tie(OnlyMessage().text, OnlyMessage().icon, OnlyMessage().title),
            std::tuple(LoadResourceText(92), PromptIcon::Critical, LoadResourceText(88)));
}

TEST_F(ListCommandsTest, AppendingKeepsTheCaptionAndMarksTheListModified) {
  session.Caption = Session::CaptionFor("/lists/current.qx3");
  prompt.ThenChoose(SavedList("more.qx3"));
  ASSERT_TRUE(AppendList(session, prompt));
  EXPECT_EQ(std::tuple(prompt.dialogs[0].request.title, session.List.EntryCount(), session.Caption,
                       session.ListModified),
            std::tuple(LoadResourceText(96), 2, Session::CaptionFor("/lists/current.qx3"), true));
}

TEST_F(ListCommandsTest, SavingRefusesABadNameAndAsksAgainThenWritesAQx3File) {
  prompt.ThenChoose(".qx3").ThenChoose(folder.File("north"));
  ASSERT_TRUE(SaveList(session, prompt));
  EXPECT_EQ(OnlyMessage().text, LoadResourceText(307));
  ASSERT_EQ(prompt.dialogs.size(), 2u);
  EXPECT_TRUE(prompt.dialogs[0].save);
  EXPECT_EQ(prompt.dialogs[1].request.fileName, "");  // cleared after the refusal
  EXPECT_EQ(session.ListName, folder.File("north.qx3"));
}

TEST_F(ListCommandsTest, ANewListWhoseSaveFailsIsNotStarted) {
  session.Log.ErrorHeader = "mine";
  prompt.ThenAnswer(PromptAnswer::Yes).ThenChoose(folder.File("no/such/dir/x.qx3"));
  EXPECT_FALSE(NewList(session, prompt));
  EXPECT_EQ(prompt.messages.back().text, LoadResourceText(98));
  EXPECT_EQ(session.List.EntryCount(), 1);

  prompt.ThenAnswer(PromptAnswer::No);
  ASSERT_TRUE(NewList(session, prompt));
  EXPECT_EQ(std::tuple(session.List.Empty(), session.Log, session.Caption),
            std::tuple(true, DefaultLogSettings("/logs"), LoadResourceText(31)));
  // An empty list is not worth a question, and saving it says message 89.
  ASSERT_TRUE(NewList(session, prompt));
  prompt.ThenChoose(folder.File("empty.qx3"));
  EXPECT_FALSE(SaveList(session, prompt));
  EXPECT_EQ(prompt.messages.back().text, LoadResourceText(89));
}

// A full list takes no further row, and says its limit in French.
TEST_F(ListCommandsTest, AFullListRefusesARowNamingTheLimit) {
  Session s("/logs");
  const std::string drawing = testing::NativePath("/p/a.dwg");
  s.List.Resize(BatchList::kMaxEntries);
  EXPECT_EQ(DrawingRowProblem(s, drawing), LoadResourceText(ids::kListTooManyEntries));
  EXPECT_EQ(AddDrawingToList(s, drawing), nullptr);
  EXPECT_EQ(s.List.EntryCount(), BatchList::kMaxEntries);
  EXPECT_THAT([&s] { s.List.Append(); },
              ThrowsMessage<std::length_error>(LoadResourceText(ids::kListTooManyEntries)));
  s.List.Remove(1);
  EXPECT_EQ(DrawingRowProblem(s, drawing), "");
  EXPECT_NE(AddDrawingToList(s, drawing), nullptr);
}

// Records what the session told its view.
struct RecordingView : ListObserver {
  std::vector<std::string> events;
  void ListReloaded(bool keep) override { events.push_back(keep ? "reload+keep" : "reload"); }
  void EntryAppended(int n) override { events.push_back("append " + std::to_string(n)); }
  void EntryRemoved(int n) override { events.push_back("remove " + std::to_string(n)); }
};

class BatchListTest : public ::testing::Test {
 protected:
  BatchListTest() : session("/logs") {
    for (const std::string& name :
         {NativePath("/p/a.dwg"), NativePath("/p/b.dwg"), NativePath("/p/c.dwg")})
      AddDrawingToList(session, name);
    session.View = &view;
    session.ListModified = false;
  }
  Session session;
  RecordingView view;
  testing::ScriptedPrompt prompt;
};

TEST_F(BatchListTest, AddingTakesAFolderAndANameAndAllowsRepeats) {
  ASSERT_NE(AddDrawingToList(session, "  " + NativePath("/p/a.dwg") + " "), nullptr);
  EXPECT_EQ(std::tuple(session.List.Entry(4).FileName, session.List.Entry(4).Layout,
                       session.ListModified),
            std::tuple(NativePath("/p/a.dwg"), "", true));
  EXPECT_EQ(AddDrawingToList(session, "a.dwg"), nullptr);
  EXPECT_EQ(AddDrawingToList(session, NativePath("/plans/")), nullptr);
  EXPECT_EQ(view.events, std::vector<std::string>{"append 4"});
}

TEST_F(BatchListTest, RemovingOneAsksNothingAndKeepsTheOrder) {
  const int selected[] = {2};
  EXPECT_EQ(RemoveSelectedEntries(session, prompt, selected), 1);
  EXPECT_EQ(session.List.EntryCount(), 2);
  EXPECT_EQ(session.List.Entry(1).FileName, NativePath("/p/a.dwg"));
  EXPECT_EQ(session.List.Entry(2).FileName, NativePath("/p/c.dwg"));
  EXPECT_TRUE(prompt.messages.empty());
  EXPECT_TRUE(session.ListModified);
}

TEST(BatchList, ResizeKeepsWhatFitsAndClearsNewEntries) {
  BatchList list;
  list.Resize(2);
  list.Entry(2).ScaleLW = true;
  list.Resize(1);
  list.Resize(3);
  EXPECT_EQ(list.Entry(2), BatchEntry{});
  EXPECT_THROW(list.Entry(0), std::out_of_range);
  EXPECT_THROW(list.Resize(BatchList::kMaxEntries + 1), std::length_error);
}

TEST(SelectionCache, HoldsTwoThousandPositionsAndStopsAtTheEndMark) {
  SelectionCache cache;
  std::vector<int> rows(2000);
  std::iota(rows.begin(), rows.end(), 1);
  EXPECT_EQ(cache.SelectCountCache(rows), 2000);
  EXPECT_TRUE(cache.FindEntryInArray(2000));
  const int few[] = {7, 3};
  EXPECT_EQ(cache.SelectCountCache(few), 2);
  EXPECT_TRUE(cache.FindEntryInArray(7));
  EXPECT_FALSE(cache.FindEntryInArray(1000));  // behind the end mark now
  rows.push_back(2001);
  EXPECT_THROW(cache.SelectCountCache(rows), SelectionTooLarge);
}

}  // namespace
}  // namespace sheafwork
