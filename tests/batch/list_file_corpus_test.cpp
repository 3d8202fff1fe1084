// Replays the fuzzer's seed list files through the reader, so that every seed
// keeps meaning what its name says.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "batch/list_file.h"
#include "batch/session.h"

namespace sheafwork {
namespace {

using S = ListFileStatus;

TEST(ListFileCorpusTest, EverySeedReadsAsExpected) {
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

}  // namespace
}  // namespace sheafwork
