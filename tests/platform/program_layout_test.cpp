// Where the program finds its data and its Qt module: beside the executable
// in a build, in the installed share/ and lib/ folders otherwise, and which
// folders it names when neither holds the data.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "fakes/temp_folder.h"
#include "platform/install_layout.h"
#include "platform/program_folders.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;

// Without a data folder the program names both places it looked; a build's
// plotters folder beside it is taken as the data.
TEST(ProgramLayoutTest, FindsTheDataAndTheModuleOrNamesWhereItLooked) {
  testing::TempFolder root;
  const fs::path bin = root.path() / "bin";
  const fs::path data = (bin / kInstalledDataFromProgram).lexically_normal();
  fs::create_directories(bin / "help");
  ProgramLayout layout = FindProgramLayout(bin.string());
  EXPECT_EQ(layout.dataFolder, "");
  EXPECT_EQ(layout.moduleFolder, bin.string());
  EXPECT_EQ(layout.searched, (std::vector<std::string>{bin.string(), data.string()}));

  fs::create_directories(bin / "plotters");
  layout = FindProgramLayout(bin.string());
  EXPECT_EQ(layout.dataFolder, bin.string());
  EXPECT_EQ(layout.moduleFolder, bin.string());
  EXPECT_EQ(layout.searched, std::vector<std::string>{bin.string()});
}

}  // namespace
}  // namespace sheafwork
