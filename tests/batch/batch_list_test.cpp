#include <gtest/gtest.h>

#include <numeric>
#include <tuple>
#include <vector>

#include "batch/list_commands.h"
#include "batch/list_row.h"
#include "batch/session.h"
#include "fakes/native_path.h"
#include "fakes/scripted_prompt.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using testing::NativePath;

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
