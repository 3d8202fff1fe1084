// Runs the built `sheafwork` program as a script would: exit statuses and
// which stream the output goes to.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

#include <sys/wait.h>

#include "fakes/temp_folder.h"

namespace sheafwork {
namespace {

struct ProgramRun {
  int status;
  std::string out;
};

// Runs the program with `args` (shell words and redirections) after the
// environment words `env`; stdin is empty.
ProgramRun Sheafwork(const std::string& args, const std::string& env = "") {
  const std::string command =
      (env.empty() ? "" : "env " + env + " ") + "'" + SHEAFWORK_EXE + "' " + args + " </dev/null";
  ProgramRun run{-1, {}};
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return run;
  std::array<char, 4096> buffer{};
  while (const std::size_t n = fread(buffer.data(), 1, buffer.size(), pipe)) {
    run.out.append(buffer.data(), n);
  }
  const int raw = pclose(pipe);
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  return run;
}

TEST(Executable, HelpAndVersionGoToStdoutWithStatus0) {
  const ProgramRun help = Sheafwork("list add --help 2>/dev/null");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("--scale-lineweights"), std::string::npos);
  const ProgramRun version = Sheafwork("--version 2>/dev/null");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out.rfind("sheafwork ", 0), 0u);
}

TEST(Executable, ErrorsGoToStderrWithStatus2) {
  testing::TempFolder folder;
  const std::string bad = folder.Write("bad.qx3", "not a list\r\n");
  const ProgramRun run = Sheafwork("list show '" + bad + "' 2>&1 >/dev/null");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out.rfind("sheafwork: " + bad + ": ", 0), 0u);
  EXPECT_EQ(Sheafwork("--no-such-option 2>/dev/null").status, 2);
  // Without arguments the desktop application starts; with no display it
  // cannot, and says so.
  const ProgramRun noDisplay =
      Sheafwork("2>&1", "-u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM");
  EXPECT_EQ(noDisplay.status, 2);
  EXPECT_NE(noDisplay.out.find("aucun écran"), std::string::npos) << noDisplay.out;
}

}  // namespace
}  // namespace sheafwork
