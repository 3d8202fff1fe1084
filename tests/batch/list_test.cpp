// The list of a session: the list file read and written whole, its single
// values (the line syntax and its field types, the plot area and scale
// codes with their readable names), and the commands on the list (rows
// added and removed, lists opened, appended, saved and started anew).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <numeric>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

#include "batch/list_commands.h"
#include "batch/list_file.h"
#include "batch/list_line.h"
#include "batch/list_row.h"
#include "batch/plot_values.h"
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
using testing::ReadTestTable;
using testing::TempFolder;
using testing::TestData;
using ::testing::ThrowsMessage;

constexpr const char* kMagic = "Orvane 2000 Sheafwork List File\r\n";

// A host window that records what it was given and can refuse.
struct FakeWindow : HostWindow {
  std::int32_t width = 800, height = 600;
  bool refuse = false;
  std::int32_t Width() override { return width; }
  std::int32_t Height() override { return height; }
  void SetWidth(std::int32_t w) override { width = refuse ? throw std::runtime_error("no") : w; }
  void SetHeight(std::int32_t h) override { height = refuse ? throw std::runtime_error("no") : h; }
};

class ListFileTest : public ::testing::Test {
 protected:
  ListFileResult Read(Session& s, const std::string& body, bool append = false) {
    return ReadListFile(s, folder.Write("in.qx3", body), append);
  }
  TempFolder folder;
};

TEST_F(ListFileTest, ReadsBackWhatItWrote) {
  Session s("/logs");
  s.Log.JournalHeader = "Lot nord — été";
  s.Log.ErrorAppend = true;
  s.WinSize = "1280,1024";
  s.List.Append() = {"/plans/é.dwg", "Présentation1", "A3|Mise",   "PDF.pc3", "A 1", "3", "1:100",
                     true,           false,           "/out/x.pdf"};
  s.List.Append().FileName = "/plans/b.dwg";
  const std::string path = folder.File("list.qx3");
  ASSERT_TRUE(WriteListFile(s, path).ok());
  EXPECT_EQ(std::tuple(s.ListName, s.Caption, s.ListModified),
            std::tuple(path, Session::CaptionFor(path), false));

  Session back("/elsewhere");
  ASSERT_TRUE(ReadListFile(back, path, false).ok());
  EXPECT_EQ(std::tie(back.List, back.Log), std::tie(s.List, s.Log));
  EXPECT_EQ(std::tuple(back.ListName, back.WinSize), std::tuple(path, "1280,1024"));
}

TEST_F(ListFileTest, ReadsTolerantly) {
  Session s("/logs");
  s.Log.JournalLogOn = false;
  ASSERT_TRUE(ReadListFile(s, TestData("lists/tolerant.qx3"), false).ok());
  ASSERT_EQ(s.List.EntryCount(), 12);
  // The journal is back to the default before reading.
  EXPECT_EQ(std::tuple(s.List.Entry(12).Layout, s.List.Entry(2).FileName, s.Log.ErrorLogOn,
                       s.Log.JournalLogOn),
            std::tuple("Présentation €", "/p/b.dwg", false, true));
  EXPECT_EQ(s.List.Entry(1), BatchEntry{});

  // A file saved as UTF-8, with a byte-order mark, keeps its accents.
  ASSERT_TRUE(ReadListFile(s, TestData("lists/utf8_bom.qx3"), false).ok());
  EXPECT_EQ(s.List.Entry(1).Layout, "Été");
}

TEST_F(ListFileTest, AppendingAddsBehindTheCurrentEntriesAndKeepsTheSettings) {
  Session s("/logs");
  for (const char* name : {"/a/1.dwg", "/a/2.dwg", "/a/3.dwg"}) s.List.Append().FileName = name;
  s.ListName = "/lists/current.qx3";
  s.Log.JournalHeader = "mine";
  ASSERT_TRUE(ReadListFile(s, TestData("lists/append.qx3"), true).ok());
  ASSERT_EQ(s.List.EntryCount(), 5);
  // The window size applies in both modes.
  EXPECT_EQ(
      std::tuple(s.List.Entry(3).FileName, s.List.Entry(4).FileName, s.List.Entry(5).FileName,
                 s.ListName, s.Log.JournalHeader, s.WinSize),
      std::tuple("/a/3.dwg", "/b/1.dwg", "/b/2.dwg", "/lists/current.qx3", "mine", "640,480"));
}

TEST_F(ListFileTest, StopsAtAMalformedLineKeepingWhatCameBefore) {
  for (const auto& row : testing::ReadTestTable("lists/bad_lines.tsv")) {
    SCOPED_TRACE(row.where);
    Session s("/logs");
    const auto result = Read(s, std::string(kMagic) + "\"DWG#1FILENAME\",\"/a.dwg\"\r\n" + row[0] +
                                    "\r\n\"DWG#2FILENAME\",\"/b.dwg\"\r\n");
    EXPECT_EQ(result.status,
              row[1] == "malformed" ? ListFileStatus::Malformed : ListFileStatus::TooManyEntries);
    EXPECT_EQ(result.line, 3);
    ASSERT_EQ(s.List.EntryCount(), 1);
  }
  Session s("/logs");
  for (const std::string& path : {folder.File("missing.qx3"), folder.path().string()}) {
    const auto result = ReadListFile(s, path, false);
    EXPECT_EQ(result.status, ListFileStatus::CannotOpen) << path;
    EXPECT_FALSE(result.reason.empty());
  }
}

TEST_F(ListFileTest, TheWindowSizeGoesToAndComesFromTheHost) {
  FakeWindow window;
  Session s("/logs");
  s.Host = &window;
  ASSERT_TRUE(ReadListFile(s, TestData("lists/win_size.qx3"), false).ok());
  EXPECT_EQ(std::tuple(window.width, window.height), std::tuple(1280, 1024));
  // No comma, or a size the host refuses: ignored, reading goes on.
  window.refuse = true;
  ASSERT_TRUE(ReadListFile(s, TestData("lists/win_size_odd.qx3"), false).ok());
  EXPECT_EQ(window.width, 1280);
  EXPECT_EQ(s.List.EntryCount(), 1);

  window.width = 1600;
  window.height = 900;
  const std::string path = folder.File("out.qx3");
  ASSERT_TRUE(WriteListFile(s, path).ok());
  EXPECT_NE(TempFolder::Read(path).find("\"BATCH WIN SIZE\",\"1600,900\"\r\n"), std::string::npos);
}

TEST_F(ListFileTest, TheWindowSizeIsWrittenAsTwoNumbersWhateverTheListHeld) {
  for (const auto& row : testing::ReadTestTable("lists/win_sizes.tsv")) {
    SCOPED_TRACE(row.where);
    Session s("/logs");
    ASSERT_TRUE(Read(s, std::string(kMagic) + "\"BATCH WIN SIZE\",\"" + row[0] +
                            "\"\r\n\"DWG#1FILENAME\",\"/a.dwg\"\r\n")
                    .ok());
    const std::string path = folder.File("out.qx3");
    ASSERT_TRUE(WriteListFile(s, path).ok());
    EXPECT_NE(TempFolder::Read(path).find("\"BATCH WIN SIZE\",\"" + row[1] + "\"\r\n"),
              std::string::npos);
  }
}

TEST_F(ListFileTest, AFailedOrEmptyWriteLeavesThePreviousFileAlone) {
  const std::string path = folder.Write("keep.qx3", "previous content");
  FakeWindow window;
  window.width = 70000;  // does not fit the file's 16-bit width
  Session s("/logs");
  EXPECT_EQ(WriteListFile(s, path).status, ListFileStatus::EmptyList);
  s.Host = &window;
  s.List.Append().FileName = "/a/1.dwg";
  s.ListModified = true;
  const ListFileResult refused = WriteListFile(s, path);
  EXPECT_EQ(refused.status, ListFileStatus::CannotWrite);
  EXPECT_NE(refused.reason.find(LoadResourceText(ids::kWinSizeOutOfRange) + "70000,"),
            std::string::npos)
      << refused.reason;
  EXPECT_EQ(TempFolder::Read(path), "previous content");
  EXPECT_TRUE(s.ListModified);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

// Replays the fuzzer's seed list files through the reader, so that every seed
// keeps meaning what its name says.
TEST(ListFileCorpusTest, EverySeedReadsAsExpected) {
  using S = ListFileStatus;
  // Per seed: the status and the entries the file adds (those before the fault, if any).
  const std::map<std::string, std::pair<S, int>> seeds = {
      {"valid_full.qx3", {S::Done, 2}},
      {"r15_magic_lower_case.qx3", {S::Done, 1}},
      {"entries_before_count.qx3", {S::Done, 3}},
      {"unknown_key.qx3", {S::Done, 1}},
      {"windows1252.qx3", {S::Done, 1}},
      {"malformed_line.qx3", {S::Malformed, 2}},
      {"wrong_first_line.qx3", {S::WrongFirstLine, 0}},
      {"empty.qx3", {S::WrongFirstLine, 0}},
  };
  const auto folder = std::filesystem::path(SHEAFWORK_SOURCE_DIR) / "fuzz/corpus/list_file";
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    SCOPED_TRACE(file.path().filename().string());
    const auto it = seeds.find(file.path().filename().string());
    ASSERT_NE(it, seeds.end()) << "a seed without expectations";
    const auto [status, entries] = it->second;
    for (const bool append : {false, true}) {
      Session session("/logs/");
      session.List.Append().FileName = "kept.dwg";
      EXPECT_EQ(ReadListFile(session, file.path().string(), append).status, status);
      const bool kept = append || status == S::WrongFirstLine;
      EXPECT_EQ(session.List.EntryCount(), (kept ? 1 : 0) + entries) << "append " << append;
    }
  }
}

// Single values of a list file: the line syntax and its field types, and the
// plot area and scale codes with their readable names.
std::string KindName(ListValue::Kind kind) {
  switch (kind) {
    case ListValue::Kind::Quoted:
      return "quoted";
    case ListValue::Kind::Bare:
      return "bare";
    case ListValue::Kind::Boolean:
      return "boolean";
    case ListValue::Kind::Number:
      return "number";
  }
  return "?";
}

TEST(ListLine, ReadsAKeyAndAValueAndConvertsItToTheFieldTypes) {
  for (const auto& row : ReadTestTable("lists/list_lines.tsv")) {
    SCOPED_TRACE(row.where);
    const auto parsed = ParseListLine(row[0]);
    ASSERT_EQ(parsed.has_value(), row[1] != "refused");
    if (!parsed) continue;
    const ListValue& value = parsed->value;
    EXPECT_EQ(parsed->key, row[1]);
    EXPECT_EQ(KindName(value.kind), row[2]);
    EXPECT_EQ(value.text, row[3]);
    const auto boolean = ValueAsBoolean(value);
    EXPECT_EQ(boolean ? (*boolean ? "true" : "false") : "refused", row[4]);
    const auto integer = ValueAsInteger(value);
    EXPECT_EQ(integer ? std::to_string(*integer) : "refused", row[5]);
    EXPECT_EQ(ValueAsText(value), row[6]);
  }
}

TEST(ListLine, WritesEachFieldTypeInItsForm) {
  EXPECT_EQ(FormatListLine("K", R"(C:\a)"), R"("K","C:\a")");
  EXPECT_EQ(FormatListLine("K", false), R"("K",#FALSE#)");
  EXPECT_EQ(FormatListLine("K", 3), R"("K",3)");
}

TEST(PlotValues, AreaWordsAndCodes) {
  for (const auto& row : ReadTestTable("lists/plot_areas.tsv")) {
    SCOPED_TRACE(row.where);
    const auto code = PlotAreaCode(row[0]);
    EXPECT_EQ(code.value_or("refused"), row[1]);
  }
}

// What is stored is what the run applies without a fallback.
TEST(PlotValues, ScaleNamesRatiosAndCodes) {
  for (const auto& row : ReadTestTable("lists/plot_scales.tsv")) {
    SCOPED_TRACE(row.where);
    const auto code = PlotScaleCode(row[0], row[1] == "1");
    ASSERT_EQ(code ? code->plotScale : "refused", row[2]);
    if (!code) continue;
    EXPECT_EQ(code->custom, row[3] == "1" && !row[2].empty());
    EXPECT_TRUE(IsUsableScale(code->plotScale, code->custom));
  }
}

TEST(PlotValues, ReadableNamesOfCodes) {
  for (const auto& row : ReadTestTable("lists/plot_value_names.tsv")) {
    SCOPED_TRACE(row.where);
    if (row[1] != "-") {
      EXPECT_EQ(PlotScaleName(row[0], row[1] == "1"), row[2]);
      continue;
    }
    EXPECT_EQ(PlotAreaName(row[0]), row[2]);
    if (!row[2].empty()) {
      EXPECT_EQ(PlotAreaCode(row[2]), row[0]);
    }
  }
}

// The commands on the list: rows added and removed, lists opened, appended,
// saved and started anew.
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
