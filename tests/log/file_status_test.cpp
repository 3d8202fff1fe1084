#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "log/paths.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;

class FileStatusTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("sheafwork-status-" + std::to_string(::getpid()) + "-" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(dir_ / "sub.dwg");
    for (const char* name :
         {"plan.dwg", "Plan2.DWG", "été.dxf", ".hidden.dwg", "[a].txt", "banana.txt"}) {
      std::ofstream(dir_ / name) << "x";
    }
    fs::create_symlink(dir_ / "missing", dir_ / "dangling.bak");
  }
  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }
  std::string In(const std::string& rel) const { return dir_.string() + "/" + rel; }

  fs::path dir_;
};

TEST_F(FileStatusTest, MatchesOrdinaryFilesOnly) {
  const std::pair<std::string, int> cases[] = {
      {"plan.dwg", kFileFound},
      {"missing.dwg", kFileNotFound},
      {"sub.dwg", kFileNotFound},
      {"sub.dwg/", kFileNotFound},
      {".hidden.dwg", kFileNotFound},
      {"dangling.bak", kFileNotFound},
      {"*", kFileFound},
      {"*.dwg", kFileFound},
      {"*.DWG", kFileFound},
      {"*.Dwg", kFileNotFound},
      {"p?an.dwg", kFileFound},
      {"plan?.dwg", kFileNotFound},
      {"plan*.dwg", kFileFound},
      {"?t?.dxf", kFileFound},
      {"??t??.dxf", kFileNotFound},
      {"*hidden*", kFileNotFound},
      {"sub*", kFileNotFound},
      {"*.bak", kFileNotFound},
      {"[a].txt", kFileFound},
      {"[ab].txt", kFileNotFound},
      {"*an*na.t?t", kFileFound},
      {"b*n*a*a*a.txt", kFileNotFound},
      {"*a", kFileNotFound},
      {"missing/*.dwg", kFileNotFound},
      {"missing/plan.dwg", kFileNotFound},
      {"plan.dwg/x", kFileStatusError},
      {"plan.dwg/*", kFileStatusError},
      {std::string(300, 'n'), kFileStatusError},
      {std::string(300, 'n') + "/*", kFileStatusError},
  };
  for (const auto& [rel, expected] : cases) {
    EXPECT_EQ(GetFileStatus(In(rel)), expected) << rel;
  }
  EXPECT_EQ(GetFileStatus(""), kFileNotFound);
}

TEST_F(FileStatusTest, PatternWithoutFolderSearchesTheWorkingFolder) {
  const fs::path previous = fs::current_path();
  fs::current_path(dir_);
  const int found = GetFileStatus("*.dxf");
  const int notFound = GetFileStatus("*.pdf");
  fs::current_path(previous);
  EXPECT_EQ(found, kFileFound);
  EXPECT_EQ(notFound, kFileNotFound);
}

}  // namespace
}  // namespace sheafwork
