#include <gtest/gtest.h>

#include "batch/list_commands.h"
#include "batch/list_file.h"
#include "batch/session.h"
#include "fakes/scripted_prompt.h"
#include "fakes/temp_folder.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using testing::ScriptedPrompt;
using testing::TempFolder;

class ListCommandsTest : public ::testing::Test {
 protected:
  ListCommandsTest() : session("/logs") {}

  std::string SavedList(const std::string& name, const std::string& drawing) {
    Session other("/logs");
    other.List.Append().FileName = drawing;
    other.Log.JournalHeader = "from " + name;
    const std::string path = folder.File(name);
    EXPECT_TRUE(WriteListFile(other, path).ok());
    return path;
  }

  TempFolder folder;
  Session session;
  ScriptedPrompt prompt;
};

TEST_F(ListCommandsTest, OpeningAsksToSaveAListWithEntriesAndCancelEndsIt) {
  session.List.Append().FileName = "/a/1.dwg";
  prompt.ThenAnswer(PromptAnswer::Cancel);
  EXPECT_FALSE(OpenList(session, prompt));
  ASSERT_EQ(prompt.messages.size(), 1u);
  EXPECT_EQ(prompt.messages[0].text, LoadResourceText(90));
  EXPECT_EQ(prompt.messages[0].buttons, PromptButtons::YesNoCancel);
  EXPECT_EQ(prompt.messages[0].icon, PromptIcon::Information);
  EXPECT_TRUE(prompt.dialogs.empty());
}

TEST_F(ListCommandsTest, OpeningReplacesTheListAndSetsTheCaption) {
  const std::string path = SavedList("north.QX3", "/n/1.dwg");
  session.List.Append().FileName = "/a/1.dwg";
  session.ListModified = true;
  prompt.ThenAnswer(PromptAnswer::No).ThenChoose(path);
  ASSERT_TRUE(OpenList(session, prompt));
  ASSERT_EQ(prompt.dialogs.size(), 1u);
  EXPECT_EQ(prompt.kinds[0], "open");
  EXPECT_EQ(prompt.dialogs[0].title, LoadResourceText(93));
  EXPECT_EQ(prompt.dialogs[0].filter, LoadResourceText(94));
  EXPECT_TRUE(prompt.dialogs[0].mustExist);
  ASSERT_EQ(session.List.EntryCount(), 1);
  EXPECT_EQ(session.List.Entry(1).FileName, "/n/1.dwg");
  EXPECT_EQ(session.Log.JournalHeader, "from north.QX3");
  EXPECT_EQ(session.Caption, LoadResourceText(95) + path);
  EXPECT_FALSE(session.ListModified);
}

TEST_F(ListCommandsTest, ANameNotEndingInQx3IsIgnoredSilently) {
  prompt.ThenChoose(folder.Write("notes.txt", "Orvane 2000 Sheafwork List File\r\n"));
  EXPECT_FALSE(OpenList(session, prompt));
  EXPECT_TRUE(prompt.messages.empty());
}

TEST_F(ListCommandsTest, AWrongFileShowsMessage91AndKeepsTheList) {
  session.List.Append().FileName = "/a/1.dwg";
  EXPECT_FALSE(LoadListFile(session, prompt, folder.Write("bad.qx3", "hello\r\n")));
  ASSERT_EQ(prompt.messages.size(), 1u);
  EXPECT_EQ(prompt.messages[0].text, LoadResourceText(91));
  EXPECT_EQ(prompt.messages[0].icon, PromptIcon::Question);
  EXPECT_EQ(session.List.EntryCount(), 1);
}

TEST_F(ListCommandsTest, AMalformedFileShowsMessage92) {
  EXPECT_FALSE(LoadListFile(
      session, prompt,
      folder.Write("m.qx3",
                   "Orvane 2000 Sheafwork List File\r\n\"DWG#1FILENAME\",\"/x.dwg\"\r\nx\r\n")));
  ASSERT_EQ(prompt.messages.size(), 1u);
  EXPECT_EQ(prompt.messages[0].text, LoadResourceText(92));
  EXPECT_EQ(prompt.messages[0].icon, PromptIcon::Critical);
  EXPECT_EQ(prompt.messages[0].title, LoadResourceText(88));
  EXPECT_EQ(session.List.EntryCount(), 1);
  EXPECT_TRUE(session.ListModified);
}

TEST_F(ListCommandsTest, AppendingKeepsTheCaptionAndMarksTheListModified) {
  session.List.Append().FileName = "/a/1.dwg";
  session.Caption = Session::CaptionFor("/lists/current.qx3");
  prompt.ThenChoose(SavedList("more.qx3", "/m/1.dwg"));
  ASSERT_TRUE(AppendList(session, prompt));
  EXPECT_EQ(prompt.dialogs[0].title, LoadResourceText(96));
  EXPECT_EQ(session.List.EntryCount(), 2);
  EXPECT_EQ(session.Caption, Session::CaptionFor("/lists/current.qx3"));
  EXPECT_TRUE(session.ListModified);
}

TEST_F(ListCommandsTest, SavingRefusesABadNameAndAsksAgainThenWritesAQx3File) {
  session.List.Append().FileName = "/a/1.dwg";
  session.ListModified = true;
  prompt.ThenChoose(".qx3").ThenChoose(folder.File("north"));
  ASSERT_TRUE(SaveList(session, prompt));
  ASSERT_EQ(prompt.messages.size(), 1u);
  EXPECT_EQ(prompt.messages[0].text, LoadResourceText(307));
  EXPECT_EQ(prompt.messages[0].icon, PromptIcon::Exclamation);
  ASSERT_EQ(prompt.dialogs.size(), 2u);
  EXPECT_EQ(prompt.kinds[0], "save");
  EXPECT_TRUE(prompt.dialogs[0].confirmOverwrite);
  EXPECT_EQ(prompt.dialogs[1].fileName, "");  // cleared after the refusal
  EXPECT_EQ(session.ListName, folder.File("north.qx3"));
  EXPECT_FALSE(session.ListModified);
  EXPECT_FALSE(TempFolder::Read(folder.File("north.qx3")).empty());
}

TEST_F(ListCommandsTest, SavingAnEmptyListShowsMessage89) {
  prompt.ThenChoose(folder.File("empty.qx3"));
  EXPECT_FALSE(SaveList(session, prompt));
  ASSERT_EQ(prompt.messages.size(), 1u);
  EXPECT_EQ(prompt.messages[0].text, LoadResourceText(89));
}

TEST_F(ListCommandsTest, ANewListWhoseSaveFailsIsNotStarted) {
  session.List.Append().FileName = "/a/1.dwg";
  session.Log.ErrorHeader = "mine";
  prompt.ThenAnswer(PromptAnswer::Yes).ThenChoose(folder.File("no/such/dir/x.qx3"));
  EXPECT_FALSE(NewList(session, prompt));
  EXPECT_EQ(prompt.Texts().back(), LoadResourceText(98));
  EXPECT_EQ(session.List.EntryCount(), 1);

  prompt.ThenAnswer(PromptAnswer::No);
  ASSERT_TRUE(NewList(session, prompt));
  EXPECT_TRUE(session.List.Empty());
  EXPECT_EQ(session.Log, DefaultLogSettings("/logs"));
  EXPECT_EQ(session.ListName, "");
  EXPECT_EQ(session.Caption, LoadResourceText(31));
}

}  // namespace
}  // namespace sheafwork
