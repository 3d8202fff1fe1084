// The program copied without its data: the commands that plot, and the
// desktop application, refuse to start and name the folders they looked in.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "e2e/program.h"
#include "platform/install_layout.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::e2e {
namespace {

namespace fs = std::filesystem;

class WithoutData : public ExampleListTest {
 protected:
  WithoutData() {
    const fs::path bin = folder_.path() / "seul" / "bin";
    fs::create_directories(bin);
    fs::copy_file(SHEAFWORK_EXE, bin / "sheafwork");
    exe_ = (bin / "sheafwork").string();
    searched_ = bin.string() + ", " + (bin / kInstalledDataFromProgram).lexically_normal().string();
  }

  std::string exe_, searched_;
};

TEST_F(WithoutData, PlotCheckAndTheDesktopSayWhereTheyLooked) {
  const std::string pdf = Out("rdc.pdf");
  AddRow(Plan("rez-de-chaussee.dxf"), " --layout 'Plan A3' --plot-file " + Quoted(pdf));
  const std::string message =
      "sheafwork: " + LoadResourceText(ids::kDataFolderMissing) + searched_ + "\n";
  const std::string runs[] = {"plot " + Quoted(list_), "check " + Quoted(list_), ""};
  for (const std::string& args : runs) {
    SCOPED_TRACE(args);
    const ProgramRun run = Sheafwork(args, folder_, "", exe_);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, message);
  }
  EXPECT_TRUE(PlotOutput(pdf).empty());
  // The list commands need no data.
  EXPECT_EQ(RunList("list show", "", "", exe_).status, 0);
}

}  // namespace
}  // namespace sheafwork::e2e
