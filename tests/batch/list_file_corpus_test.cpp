// Replays the fuzzer's seed list files through the reader, so that every seed
// keeps meaning what its name says.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "batch/list_file.h"
#include "batch/session.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;

struct Expected {
  ListFileStatus status;
  int line;     // for Malformed and WrongFirstLine
  int entries;  // entries the file adds (read before the fault, if any)
  std::string firstFile;
  std::function<void(const Session&)> check;  // more checks after a replacing read
};

const std::map<std::string, Expected>& Seeds() {
  static const std::map<std::string, Expected> seeds = {
      {"valid_full.qx3",
       {ListFileStatus::Done, 0, 2, R"(C:\plans\level1.dwg)",
        [](const Session& s) {
          EXPECT_EQ(s.ListName, R"(C:\lists\north.qx3)");
          EXPECT_EQ(s.Log.JournalUserComment, "first issue");
          EXPECT_FALSE(s.Log.JournalAppend);
          EXPECT_TRUE(s.Log.ErrorAppend);
          EXPECT_EQ(s.WinSize, "1024,768");
          const BatchEntry& e = s.List.Entry(2);
          EXPECT_EQ(e.Layout, "Sheet A1");
          EXPECT_EQ(e.PlotScale, "1:50");
          EXPECT_TRUE(e.ScaleCustom);
          EXPECT_FALSE(e.ScaleLW);
          EXPECT_EQ(e.PlotFile, R"(C:\out\level2.plt)");
        }}},
      {"r15_magic_lower_case.qx3",
       {ListFileStatus::Done, 0, 1, R"(C:\plans\site.dwg)",
        [](const Session& s) {
          EXPECT_FALSE(s.Log.JournalLogOn);
          EXPECT_EQ(s.WinSize, "800,600");
          EXPECT_TRUE(s.List.Entry(1).ScaleCustom);
        }}},
      {"entries_before_count.qx3",
       {ListFileStatus::Done, 0, 3, R"(C:\plans\a.dwg)",
        [](const Session& s) {
          EXPECT_EQ(s.List.Entry(2).FileName, R"(C:\plans\b.dwg)");
          EXPECT_EQ(s.List.Entry(3).FileName, R"(C:\plans\c.dwg)");
        }}},
      {"unknown_key.qx3", {ListFileStatus::Done, 0, 1, R"(C:\plans\a.dwg)", nullptr}},
      {"windows1252.qx3",
       {ListFileStatus::Done, 0, 1, R"(C:\plans\élévation.dwg)",
        [](const Session& s) { EXPECT_EQ(s.Log.JournalHeader, "Lot été"); }}},
      {"malformed_line.qx3", {ListFileStatus::Malformed, 4, 2, R"(C:\plans\a.dwg)", nullptr}},
      {"wrong_first_line.qx3", {ListFileStatus::WrongFirstLine, 1, 0, "", nullptr}},
      {"empty.qx3", {ListFileStatus::WrongFirstLine, 1, 0, "", nullptr}},
  };
  return seeds;
}

// A session that already holds one entry and its own settings.
Session Prepared() {
  Session session("/logs/");
  session.List.Append().FileName = "kept.dwg";
  session.Log.JournalHeader = "kept";
  return session;
}

TEST(ListFileCorpusTest, EverySeedReadsAsExpected) {
  const fs::path folder = fs::path(SHEAFWORK_SOURCE_DIR) / "fuzz" / "corpus" / "list_file";
  int replayed = 0;
  for (const auto& file : fs::directory_iterator(folder)) {
    const std::string name = file.path().filename().string();
    SCOPED_TRACE(name);
    const auto it = Seeds().find(name);
    ASSERT_NE(it, Seeds().end()) << "a seed without expectations";
    const Expected& want = it->second;
    const bool rejected = want.status == ListFileStatus::WrongFirstLine;
    ++replayed;

    Session replaced = Prepared();
    const ListFileResult r = ReadListFile(replaced, file.path().string(), false);
    EXPECT_EQ(r.status, want.status);
    EXPECT_EQ(r.line, want.line);
    EXPECT_EQ(replaced.List.EntryCount(), rejected ? 1 : want.entries);
    EXPECT_EQ(replaced.Log.JournalHeader == "kept", rejected);
    if (replaced.List.EntryCount() > 0 && !rejected) {
      EXPECT_EQ(replaced.List.Entry(1).FileName, want.firstFile);
    }
    if (want.check && r.ok()) want.check(replaced);

    Session appended = Prepared();
    const ListFileResult a = ReadListFile(appended, file.path().string(), true);
    EXPECT_EQ(a.status, want.status);
    EXPECT_EQ(a.line, want.line);
    ASSERT_EQ(appended.List.EntryCount(), 1 + want.entries);
    EXPECT_EQ(appended.List.Entry(1).FileName, "kept.dwg");
    EXPECT_EQ(appended.Log.JournalHeader, "kept");
    if (want.entries > 0) {
      EXPECT_EQ(appended.List.Entry(2).FileName, want.firstFile);
    }
  }
  EXPECT_EQ(replayed, static_cast<int>(Seeds().size())) << "a seed is missing from " << folder;
}

}  // namespace
}  // namespace sheafwork
