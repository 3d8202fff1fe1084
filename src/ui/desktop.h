#pragma once
// The desktop application's start and end: one instance per user, the splash
// while the host starts, the main window, and the host put back at the end.
#include <string>

#include "host/registry.h"
#include "prompt/prompt.h"

namespace sheafwork::ui {

class ProgressDialog;

struct DesktopOptions {
  /// The hosts the program can drive; the default one is started.
  const HostRegistry* hosts = nullptr;
  /// A list file named on the command line, or empty.
  std::string listName;
  /// The program's shipped files (help, template drawing).
  std::string dataFolder;
  /// Where the program writes by default (logs, scratch drawing).
  std::string userFolder;
  /// The default host's progress display, when it is the desktop's own:
  /// the main window takes the reasons of failed plots from it.
  ProgressDialog* progress = nullptr;
};

/// Runs the desktop application until its window closes; returns the exit
/// status (0 after a normal close, 1 when it cannot run, 2 without a display).
int RunDesktop(int& argc, char** argv, const DesktopOptions& options);

/// The desktop application in a Qt application that already exists: the
/// single-instance lock, the host, the main window and the event loop. It
/// returns when the main window has closed, however many other windows
/// (help, results) are still open; they close with it and the lock is
/// released. Messages go through `prompt`.
int RunDesktopSession(const DesktopOptions& options, Prompt& prompt);

}  // namespace sheafwork::ui
