#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "batch/list_commands.h"
#include "batch/session.h"
#include "fakes/scripted_prompt.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using testing::ScriptedPrompt;

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
    session.View = &view;
    for (const char* name : {"/p/a.dwg", "/p/b.dwg", "/p/c.dwg"}) AddDrawingToList(session, name);
    session.ListModified = false;
    view.events.clear();
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& e : session.List) names.push_back(e.FileName);
    return names;
  }
  Session session;
  RecordingView view;
  ScriptedPrompt prompt;
};

TEST_F(BatchListTest, AddingSplitsThePathAndRefusesOneWithoutFolderOrName) {
  BatchEntry* entry = AddDrawingToList(session, "  /plans/x.dwg ");
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->FileName, "/plans/x.dwg");
  BatchEntry expected;
  expected.FileName = "/plans/x.dwg";
  EXPECT_EQ(*entry, expected);
  EXPECT_TRUE(session.ListModified);
  EXPECT_EQ(view.events, std::vector<std::string>{"append 4"});

  EXPECT_EQ(AddDrawingToList(session, "x.dwg"), nullptr);
  EXPECT_EQ(AddDrawingToList(session, "/plans/"), nullptr);
  EXPECT_EQ(session.List.EntryCount(), 4);
  // The same drawing twice is allowed.
  EXPECT_NE(AddDrawingToList(session, "/plans/x.dwg"), nullptr);
}

TEST_F(BatchListTest, RemovingTheMiddleEntryKeepsTheOthersInOrderWithoutAQuestion) {
  const int selected[] = {2};
  EXPECT_EQ(RemoveSelectedEntries(session, prompt, selected), 1);
  EXPECT_EQ(Names(), (std::vector<std::string>{"/p/a.dwg", "/p/c.dwg"}));
  EXPECT_TRUE(prompt.messages.empty());
  EXPECT_TRUE(session.ListModified);
  EXPECT_EQ(view.events, std::vector<std::string>{"remove 2"});
}

TEST_F(BatchListTest, RemovingSeveralAsksOnceAndWalksFromTheLast) {
  const int selected[] = {1, 3};
  prompt.ThenAnswer(PromptAnswer::No);
  EXPECT_EQ(RemoveSelectedEntries(session, prompt, selected), 0);
  EXPECT_EQ(session.List.EntryCount(), 3);

  prompt.ThenAnswer(PromptAnswer::Yes);
  EXPECT_EQ(RemoveSelectedEntries(session, prompt, selected), 2);
  EXPECT_EQ(Names(), std::vector<std::string>{"/p/b.dwg"});
  ASSERT_EQ(prompt.messages.size(), 2u);
  EXPECT_EQ(prompt.messages[1].text, LoadResourceText(87));
  EXPECT_EQ(prompt.messages[1].title, LoadResourceText(86));
  EXPECT_EQ(prompt.messages[1].icon, PromptIcon::Question);
  EXPECT_EQ(prompt.messages[1].buttons, PromptButtons::YesNo);
  EXPECT_EQ(view.events, (std::vector<std::string>{"remove 3", "remove 1"}));
}

TEST_F(BatchListTest, NothingSelectedRemovesNothing) {
  EXPECT_EQ(RemoveSelectedEntries(session, prompt, {}), 0);
  const int outside[] = {0, 9};
  EXPECT_EQ(RemoveSelectedEntries(session, prompt, outside), 0);
  EXPECT_EQ(session.List.EntryCount(), 3);
  EXPECT_FALSE(session.ListModified);
}

TEST(BatchList, ResizeKeepsWhatFitsAndClearsNewEntries) {
  BatchList list;
  list.Resize(2);
  list.Entry(2).Layout = "L";
  list.Entry(2).ScaleLW = true;
  list.Resize(1);
  list.Resize(3);
  EXPECT_EQ(list.Entry(2), BatchEntry{});
  EXPECT_THROW(list.Entry(0), std::out_of_range);
  EXPECT_THROW(list.Entry(4), std::out_of_range);
  EXPECT_THROW(list.Resize(BatchList::kMaxEntries + 1), std::length_error);
}

TEST(SelectionCache, HoldsTwoThousandPositionsAndStopsAtTheEndMark) {
  SelectionCache cache;
  std::vector<int> rows(2000);
  std::iota(rows.begin(), rows.end(), 1);
  EXPECT_EQ(cache.Fill(rows), 2000);
  EXPECT_TRUE(cache.FindEntryInArray(1));
  EXPECT_TRUE(cache.FindEntryInArray(2000));
  EXPECT_FALSE(cache.FindEntryInArray(2001));

  // A smaller selection afterwards: the old positions behind the end mark
  // no longer count.
  const int few[] = {7, 3};
  EXPECT_EQ(cache.Fill(few), 2);
  EXPECT_TRUE(cache.FindEntryInArray(3));
  EXPECT_TRUE(cache.FindEntryInArray(7));
  EXPECT_FALSE(cache.FindEntryInArray(1000));

  rows.push_back(2001);
  EXPECT_THROW(cache.Fill(rows), SelectionTooLarge);
}

}  // namespace
}  // namespace sheafwork
