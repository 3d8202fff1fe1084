#pragma once
// The desktop application's start and end: one instance per user, the splash
// while the host starts, the main window, and the host put back at the end.
#include <string>

#include "host/registry.h"

namespace sheafwork::ui {

struct DesktopOptions {
  /// The hosts the program can drive; the default one is started.
  const HostRegistry* hosts = nullptr;
  /// A list file named on the command line, or empty.
  std::string listName;
  /// The program's shipped files (help, template drawing).
  std::string dataFolder;
  /// Where the program writes by default (logs, scratch drawing).
  std::string userFolder;
};

/// Runs the desktop application until its window closes; returns the exit
/// status (0 after a normal close, 1 when it cannot run, 2 without a display).
int RunDesktop(int& argc, char** argv, const DesktopOptions& options);

}  // namespace sheafwork::ui
