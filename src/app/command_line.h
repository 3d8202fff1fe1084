#pragma once
// The `sheafwork` command line: parses the arguments and runs the command.

#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "host/registry.h"
#include "platform/clock.h"
#include "platform/fonts.h"
#include "platform/printers.h"

namespace sheafwork {

/// Exit statuses of the command line.
enum ExitStatus : int {
  kExitOk = 0,        ///< done
  kExitFailed = 1,    ///< a run went through but some row failed or it ended early
  kExitBadInput = 2,  ///< unusable input: bad arguments, unreadable or invalid files
};

/// What the commands need from outside. Members left empty are taken from
/// the system.
struct CommandEnvironment {
  /// Where the logs go unless a list says otherwise, and where the program
  /// writes its scratch files.
  std::string defaultLogFolder;
  /// The program's shipped files (help file, template drawing). Empty when
  /// they are missing: `plot` and `check` then refuse to start, naming the
  /// folders in `dataSearched`.
  std::string dataFolder;
  std::vector<std::string> dataSearched;
  /// The hosts `plot` and `check` can drive.
  const HostRegistry* hosts = nullptr;
  PrinterCatalog* printers = nullptr;
  FontFolders* fonts = nullptr;
  Clock clock;
  /// Where `plot -` reads its list; null: standard input.
  std::istream* input = nullptr;
};

/// The name under which the embedded host is registered.
inline constexpr const char* kEmbeddedHostName = "embarque";

/// The hosts built into the program.
HostRegistry& ProgramHosts();

/// True when the arguments ask for the desktop application: none at all, or
/// only the name of a list file (a file that exists, or a name ending in
/// ".qx3"). Anything else is for the command line, which refuses an unknown
/// command.
bool WantsDesktop(int argc, const char* const* argv);

/// Runs the command line; output on `out`, messages on `err`. Returns the
/// exit status.
int RunCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err);
int RunCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                   const CommandEnvironment& env);

}  // namespace sheafwork
