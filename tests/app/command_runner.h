#pragma once
// Runs the program's command line in-process and keeps what it printed.

#include <sstream>
#include <string>
#include <vector>

#include "app/command_line.h"

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

}  // namespace sheafwork::testing
