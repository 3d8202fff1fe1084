#pragma once
// Starting and ending the session with the host: attaching to it, the files
// beside the program, the host window's size and system variables, and what
// is asked when the program closes.

#include <memory>
#include <string>

#include "batch/session.h"
#include "host/host_session.h"
#include "host/registry.h"
#include "prompt/prompt.h"

namespace sheafwork {

/// Where the program's own files are.
struct ProgramFiles {
  /// The shipped files: the help file and the template drawing "QUIRERUN.DWG".
  std::string dataFolder;
  /// Where the program writes: the scratch drawing.
  std::string writeFolder;
};

struct AttachResult {
  /// The session; present as soon as the host was created, even when a
  /// later step failed, so that it can be ended properly.
  std::unique_ptr<HostSession> host;
  bool ok = false;
  std::string helpFilePath;
};

/// Creates the host with `factory`, makes it visible, takes its folder and
/// active document, finds the help file (the host's "Help" folder first),
/// opens the template drawing when the program ships one, records the host
/// window's size and quiets the host's system variables. Any failure shows
/// message 125 and gives ok false.
AttachResult AttachHost(const HostFactory& factory, const ProgramFiles& files, Prompt& prompt);

/// Loads the list file named on the command line when it is an existing file
/// whose name ends in "qx3" (letter case ignored); anything else is ignored
/// without a message. True when a list was loaded.
bool LoadCommandLineList(Session& session, Prompt& prompt, const std::string& name);

/// Asks whether to quit (message 126, OK/Cancel). True when the program may
/// close; a forced exit is never asked.
bool ConfirmExit(Prompt& prompt, bool forcedExit);

/// Ends the session: offers to save a modified list that holds entries
/// (message 90, Yes/No), puts the host's system variables and window size
/// back, and closes the host when the program started it. `host` may be null
/// when no host was attached.
void EndSession(Session& session, HostSession* host, Prompt& prompt);

}  // namespace sheafwork
