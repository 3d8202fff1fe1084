#pragma once
// Runs the program's command line in-process and keeps what it printed; the
// two settings the command tests share: list commands alone, and runs with
// the scripted host registered as the program's host.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "app/command_line.h"
#include "fakes/fake_host.h"
#include "fakes/temp_folder.h"

namespace sheafwork::testing {

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

/// `sheafwork args...` with `env`.
inline Outcome RunSheafwork(std::vector<std::string> args, CommandEnvironment& env) {
  args.insert(args.begin(), "sheafwork");
  std::vector<const char*> argv;
  for (const auto& a : args) argv.push_back(a.c_str());
  std::ostringstream out, err;
  const int status = RunCommandLine(static_cast<int>(argv.size()), argv.data(), out, err, env);
  return {status, out.str(), err.str()};
}

/// A command refused: status 2, and `said` in what it printed on stderr.
inline void ExpectRefused(const Outcome& o, const std::string& said) {
  EXPECT_EQ(o.status, 2) << o.err;
  EXPECT_THAT(o.err, ::testing::HasSubstr(said));
}

/// `sheafwork list ...` commands, logs defaulting to /logs.
class ListCommandTest : public ::testing::Test {
 protected:
  ListCommandTest() { env.defaultLogFolder = "/logs"; }
  Outcome Run(std::vector<std::string> args) { return RunSheafwork(args, env); }
  /// What `list show --json` gives of `list`.
  nlohmann::json Show(const std::string& list) {
    const Outcome o = Run({"list", "show", "--json", list});
    EXPECT_EQ(o.status, 0) << o.err;
    return nlohmann::json::parse(o.out);
  }
  CommandEnvironment env;
  TempFolder folder;
};

/// Runs on the scripted host, registered as "essai", serving Plan.dwg with a
/// layout "Vue A"; the logs go to `home`/sheafwork and the clock stands still.
class HostCommandTest : public ::testing::Test {
 protected:
  HostCommandTest() {
    hosts.Register("essai", [this] { return host.App(); });
    env.defaultLogFolder = (home.path() / "sheafwork").string();
    env.dataFolder = home.path().string();
    env.hosts = &hosts;
    env.clock = [] { return LocalTime{2026, 11, 22, 23, 5, 9}; };
    plan = host.AddDrawing("Plan.dwg").path;
    host.Drawing(plan).AddLayout("Vue A");
    list = home.File("lot.qx3");
  }
  Outcome Run(std::vector<std::string> args) { return RunSheafwork(args, env); }

  FakeHost host;
  TempFolder home;
  HostRegistry hosts;
  CommandEnvironment env;
  std::string plan;
  std::string list;
};

}  // namespace sheafwork::testing
