#pragma once
// Where the program reads its shipped files from and writes its own files to.

#include <string>
#include <vector>

namespace sheafwork {

/// The base of every program's per-user data: $XDG_DATA_HOME, else
/// ~/.local/share (the temporary folder without a home).
std::string UserDataHome();

/// The per-user folder for the files the program writes by default (the two
/// logs, the scratch drawing): $XDG_DATA_HOME/sheafwork, else
/// ~/.local/share/sheafwork. Only the name: whoever writes there first
/// creates it.
std::string UserDataFolder();

/// The per-user folder for what the program keeps only to go faster (it may
/// be deleted at any time): $XDG_CACHE_HOME/sheafwork, else
/// ~/.cache/sheafwork. Only the name, as above.
std::string UserCacheFolder();

/// The folder of the running program's executable; empty when the system
/// cannot tell.
std::string ProgramFolder();

/// Where a program keeps its shipped files (plotters, plot styles, help, the
/// DWG converter) and its Qt module.
struct ProgramLayout {
  /// The data folder; empty when none of `searched` holds the data.
  std::string dataFolder;
  /// The folder the Qt module is loaded from.
  std::string moduleFolder;
  /// The folders looked at for the data, in the order they were tried.
  std::vector<std::string> searched;
};

/// The layout around an executable in `programFolder`. A build keeps the
/// data and the module beside the executable; an installed program keeps
/// them in its share/sheafwork and lib/sheafwork folders, found from its bin
/// folder. A folder holds the data when it has a `plotters` folder. Without
/// data, the module is looked for beside the executable.
ProgramLayout FindProgramLayout(const std::string& programFolder);

/// The running program's layout (FindProgramLayout(ProgramFolder())), found
/// once.
const ProgramLayout& RunningProgramLayout();

/// The running program's data folder; empty when it is missing.
std::string ProgramDataFolder();

}  // namespace sheafwork
