// The built program as a script sees it: which stream its words go to and
// the status it ends with.

#include <gtest/gtest.h>

#include <string>

#include "e2e/program.h"

namespace sheafwork::e2e {
namespace {

TEST(ExitStatus, HelpAndVersionGoToStdoutWith0AndErrorsToStderrWith2) {
  testing::TempFolder folder;
  const ProgramRun help = Sheafwork("list add --help", folder);
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("--scale-lineweights"), std::string::npos);
  const ProgramRun version = Sheafwork("--version", folder);
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out.rfind("sheafwork ", 0), 0u);

  const std::string bad = folder.Write("bad.qx3", "not a list\r\n");
  const ProgramRun run = Sheafwork("list show " + Quoted(bad), folder);
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err.rfind("sheafwork: " + bad + ": ", 0), 0u) << run.err;
  EXPECT_EQ(Sheafwork("--no-such-option", folder).status, 2);
  // Without arguments the desktop application starts; with no display it
  // cannot, and says so.
  const ProgramRun noDisplay = Sheafwork("", folder, "-u QT_QPA_PLATFORM");
  EXPECT_EQ(noDisplay.status, 2);
  EXPECT_NE(noDisplay.err.find("aucun écran"), std::string::npos) << noDisplay.err;
}

}  // namespace
}  // namespace sheafwork::e2e
