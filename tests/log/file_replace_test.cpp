#include "log/file_replace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "fakes/temp_folder.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;
using testing::TempFolder;

std::vector<std::string> Names(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

// The new file takes the target's place whether or not one was there, and
// nothing else is left in the folder.
TEST(PutInPlaceTest, ReplacesOrCreatesTheTargetAndLeavesNothingBehind) {
  TempFolder folder;
  const std::string target = folder.Write("plan.pdf", "ancien");
  std::error_code ec;
  PutInPlace(folder.Write("plan.tmp", "nouveau"), target, ec);
  EXPECT_FALSE(ec) << ec.message();
  EXPECT_EQ(TempFolder::Read(target), "nouveau");
  EXPECT_EQ(Names(folder.path()), std::vector<std::string>{"plan.pdf"});

  PutInPlace(folder.Write("autre.tmp", "premier"), folder.File("autre.pdf"), ec);
  EXPECT_FALSE(ec) << ec.message();
  EXPECT_EQ(TempFolder::Read(folder.File("autre.pdf")), "premier");
  EXPECT_EQ(Names(folder.path()), (std::vector<std::string>{"autre.pdf", "plan.pdf"}));

#ifndef _WIN32
  // A link at the target is replaced as a rename replaces it; what it
  // pointed to is left as it was. (Windows links need a privilege.)
  const std::string pointed = folder.Write("vise.pdf", "visé");
  fs::create_symlink(pointed, folder.File("lien.pdf"));
  PutInPlace(folder.Write("lien.tmp", "lien remplacé"), folder.File("lien.pdf"), ec);
  EXPECT_FALSE(ec) << ec.message();
  EXPECT_FALSE(fs::is_symlink(folder.File("lien.pdf")));
  EXPECT_EQ(TempFolder::Read(folder.File("lien.pdf")), "lien remplacé");
  EXPECT_EQ(TempFolder::Read(pointed), "visé");
#endif

  PutInPlace(folder.File("absent.tmp"), folder.File("x.pdf"), ec);
  EXPECT_TRUE(ec);
}

}  // namespace
}  // namespace sheafwork
