#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "fakes/native_path.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "log/paths.h"
#include "log/wide_path.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;

// Windows file names ignore letter case; POSIX ones do not.
#ifdef _WIN32
constexpr int kOtherCase = kFileFound;
#else
constexpr int kOtherCase = kFileNotFound;
#endif

TEST(FileStatusTest, MatchesOrdinaryVisibleFilesOnly) {
  const testing::TempFolder folder;
  const fs::path& dir = folder.path();
  fs::create_directories(dir / "sub.dwg");
  for (const char* name : {"plan.dwg", ".hidden.dwg", "été.dxf", "banana.txt"}) {
    std::ofstream(dir / FsPath(name)) << "x";
  }
  for (const auto& row : testing::ReadTestTable("paths/file_status.tsv")) {
    const int expected = row[1] == "found"        ? kFileFound
                         : row[1] == "other case" ? kOtherCase
                                                  : kFileNotFound;
    EXPECT_EQ(GetFileStatus(PathText(dir / FsPath(row[0]))), expected) << row.where;
  }
  const fs::path previous = fs::current_path();
  fs::current_path(dir);
  EXPECT_EQ(GetFileStatus("*.dxf"), kFileFound);  // a bare pattern searches the working folder
  fs::current_path(previous);
}

}  // namespace
}  // namespace sheafwork
