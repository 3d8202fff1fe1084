#pragma once
// What every command of the command line shares: its streams and
// environment, how it names a failure, and reading the list it works on.

#include <ostream>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "batch/list_file.h"
#include "batch/session.h"

namespace sheafwork {

/// Where the command's output and messages go, and its environment.
struct CommandIo {
  std::ostream& out;
  std::ostream& err;
  const CommandEnvironment& env;
};

/// Lists hold full paths: a name given relative to the working folder is
/// made absolute.
std::string FullPath(const std::string& name);

/// Prints "sheafwork: <file>: <message>" and returns kExitBadInput.
int Fail(const CommandIo& io, const std::string& file, const std::string& message);

/// Prints "sheafwork: <message>" and returns kExitBadInput.
int Refuse(const CommandIo& io, const std::string& message);

/// Fails with the message of a list-file result (with its line and reason).
int FailWith(const CommandIo& io, const std::string& file, const ListFileResult& result);

/// Why the program's data folder was not found, naming the folders looked at.
std::string MissingDataFolder(const std::vector<std::string>& searched);

/// Reads an existing list into `session`; false after reporting the failure
/// and setting `status`.
bool LoadList(Session& session, const std::string& path, const CommandIo& io, int& status);

}  // namespace sheafwork
