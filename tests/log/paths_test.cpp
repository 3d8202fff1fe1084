#include "log/paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "log/wide_path.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;

constexpr auto kWin = PathStyle::Windows;
constexpr auto kPosix = PathStyle::Posix;

// Windows file names ignore letter case; POSIX ones do not.
#ifdef _WIN32
constexpr int kOtherCase = kFileFound;
#else
constexpr int kOtherCase = kFileNotFound;
#endif

TEST(PathsTest, IsValidFileName) {
  const std::string ascii255 = std::string(251, 'a') + ".log";
  std::string accented255;
  for (int i = 0; i < 251; ++i) accented255 += "é";
  accented255 += ".log";
  struct Case {
    std::string name;
    bool windows, posix;
  };
  const Case cases[] = {
      {"  " + ascii255 + "  ", true, true},  // length counts after trimming
      {"a" + ascii255, false, false},
      {accented255, true, true},  // and in characters, not bytes
      {"é" + accented255, false, false},
      {R"(é:\a:b.log)", true, true},  // only the first colon counts: a drive's is fine
      {"xy:z.log", false, true},
      {"C:/logs/", false, false},
      {R"(C:\logs\)", false, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsValidFileName(c.name, kWin), c.windows) << "Windows " << c.name.substr(0, 40);
    EXPECT_EQ(IsValidFileName(c.name, kPosix), c.posix) << "POSIX " << c.name.substr(0, 40);
  }
  for (const char bad : std::string("?*<>|")) {
    EXPECT_FALSE(IsValidFileName(std::string("a") + bad + ".log", kPosix)) << bad;
  }
}

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
