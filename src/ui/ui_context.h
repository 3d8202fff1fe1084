#pragma once
// What the main window and its dialogs work on: the session, the host (when
// one is attached), the person (through the prompt) and the system services.
#include <functional>
#include <string>

#include "batch/session.h"
#include "host/host_session.h"
#include "platform/clock.h"
#include "platform/fonts.h"
#include "platform/printers.h"
#include "prompt/prompt.h"

namespace sheafwork::ui {

class HelpViewer;
class ProgressDialog;

struct UiContext {
  Session* session = nullptr;
  Prompt* prompt = nullptr;
  /// The host; null when none is attached (commands that need it say so).
  HostSession* host = nullptr;
  PrinterCatalog* printers = nullptr;
  FontFolders* fonts = nullptr;
  HelpViewer* help = nullptr;
  /// The host's progress display, which hears why plots failed; null when
  /// the host has its own.
  ProgressDialog* progress = nullptr;
  Clock clock = LocalTimeNow;
  /// What "Infos système" names besides the system itself.
  std::string dataFolder;
  std::string userFolder;
  std::string hostName;
  /// Keep the window's size and place between runs (off in tests).
  bool rememberGeometry = false;
};

}  // namespace sheafwork::ui
