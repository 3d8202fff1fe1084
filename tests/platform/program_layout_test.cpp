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

enum class Found { Beside, Nowhere };

struct LayoutCase {
  const char* name;
  std::vector<const char*> folders;  ///< made under the root; the program is in bin/
  Found expected;
};

class ProgramLayoutTest : public ::testing::TestWithParam<LayoutCase> {};

TEST_P(ProgramLayoutTest, FindsTheDataAndTheModuleOrNamesWhereItLooked) {
  const LayoutCase& c = GetParam();
  testing::TempFolder root;
  const fs::path bin = root.path() / "bin";
  const fs::path data = (bin / kInstalledDataFromProgram).lexically_normal();
  fs::create_directories(bin);
  for (const char* folder : c.folders) fs::create_directories(bin / folder);
  const ProgramLayout layout = FindProgramLayout(bin.string());
  switch (c.expected) {
    case Found::Beside:
      EXPECT_EQ(layout.dataFolder, bin.string());
      EXPECT_EQ(layout.moduleFolder, bin.string());
      EXPECT_EQ(layout.searched, std::vector<std::string>{bin.string()});
      break;
    case Found::Nowhere:
      EXPECT_EQ(layout.dataFolder, "");
      EXPECT_EQ(layout.moduleFolder, bin.string());
      EXPECT_EQ(layout.searched, (std::vector<std::string>{bin.string(), data.string()}));
      break;
  }
}

INSTANTIATE_TEST_SUITE_P(Layouts, ProgramLayoutTest,
                         ::testing::Values(LayoutCase{"Build", {"plotters", "help"}, Found::Beside},
                                           LayoutCase{"NoData", {}, Found::Nowhere}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace sheafwork
