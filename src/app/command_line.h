#pragma once
// The `sheafwork` command line: parses the arguments and runs the command.

#include <ostream>
#include <string>

namespace sheafwork {

/// Exit statuses of the command line.
enum ExitStatus : int {
  kExitOk = 0,        ///< done
  kExitFailed = 1,    ///< a run went through but some row failed or it ended early
  kExitBadInput = 2,  ///< unusable input: bad arguments, unreadable or invalid files
};

/// What the list commands need from outside: where default log files go.
struct CommandEnvironment {
  std::string defaultLogFolder;
};

/// Runs the command line; output on `out`, messages on `err`. Returns the
/// exit status.
int RunCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err);
int RunCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                   const CommandEnvironment& env);

}  // namespace sheafwork
