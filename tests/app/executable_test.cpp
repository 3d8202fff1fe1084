// Runs the built `sheafwork` program as a script would: exit statuses, where
// the output goes, and the help.

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

// Runs the program with a shell command line appended; stdin is empty.
ProgramRun Sheafwork(const std::string& args) {
  const std::string command = std::string("'") + SHEAFWORK_EXE + "' " + args + " </dev/null";
  FILE* pipe = popen(command.c_str(), "r");
  ProgramRun run{-1, {}};
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
  const ProgramRun help = Sheafwork("--help 2>/dev/null");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("list"), std::string::npos);
  EXPECT_NE(help.out.find("Statut de sortie"), std::string::npos);

  const ProgramRun sub = Sheafwork("list add --help 2>/dev/null");
  EXPECT_EQ(sub.status, 0);
  EXPECT_NE(sub.out.find("--scale-lineweights"), std::string::npos);

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
  EXPECT_EQ(Sheafwork("2>/dev/null").status, 2);
}

TEST(Executable, BuildsAListFromAScript) {
  testing::TempFolder folder;
  const std::string list = folder.File("demo.qx3");
  const std::string env = "XDG_DATA_HOME='" + folder.File("data") + "' ";
  ASSERT_EQ(Sheafwork("list new '" + list + "' /p/a.dwg").status, 0);
  ASSERT_EQ(system((env + "'" + SHEAFWORK_EXE + "' list add '" + list + "' /p/b.dwg").c_str()), 0);
  const ProgramRun shown = Sheafwork("list show --json '" + list + "'");
  EXPECT_EQ(shown.status, 0);
  EXPECT_NE(shown.out.find("\"/p/b.dwg\""), std::string::npos);
}

}  // namespace
}  // namespace sheafwork
