#include "log/file_replace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "fakes/native_path.h"
#include "fakes/temp_folder.h"
#include "log/output_file.h"
#include "log/paths.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;
using testing::TempFolder;

std::vector<std::string> Names(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(testing::Utf8Path(entry.path().filename()));
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

// A folder named with accents and a character outside Windows-1252: the
// file is written there under its own name, found, and replaced again.
TEST(OutputFileTest, WritesIntoAFolderNamedOutsideTheLocalCodePage) {
  TempFolder folder;
  const std::string plans = folder.File("Plans été Ω");
  fs::create_directory(testing::PathFromUtf8(plans));
  const std::string target = folder.File(testing::NativePath("Plans été Ω/liste été.qx3"));
  for (const char* text : {"première", "seconde"}) {
    OutputFile out(target);
    ASSERT_TRUE(out.IsOpen()) << out.Failure();
    ASSERT_TRUE(out.Write(text));
    ASSERT_TRUE(out.Commit()) << out.Failure();
    EXPECT_EQ(TempFolder::Read(target), text);
  }
  EXPECT_EQ(GetFileStatus(target), kFileFound);
  EXPECT_EQ(Names(testing::PathFromUtf8(plans)), std::vector<std::string>{"liste été.qx3"});
}

}  // namespace
}  // namespace sheafwork
