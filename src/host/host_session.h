#pragma once
// The program's hold on its host: the application object, the current
// document, the host's window size and the system variables the session
// changes and puts back.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "batch/session.h"
#include "host/automation.h"

namespace sheafwork {

/// The outcome of OpenDrawing. On failure `errorNumber` is the host's error
/// number (host::kFileNotFound when there is no file at the path) and
/// `description` its text.
struct OpenResult {
  bool ok = false;
  std::int32_t errorNumber = 0;
  std::string description;
  /// The host went away while opening: nothing more can be asked of it.
  bool hostGone = false;
};

class HostSession {
 public:
  /// `programFolder` is where the scratch drawing is written in the host's
  /// single-document mode.
  HostSession(std::shared_ptr<host::Application> app, std::string programFolder);

  host::Application& App() { return *objOrvaApp; }
  /// The current document: the active document as last taken by the session.
  host::Document& Doc() { return *objOrvaDoc; }

  std::shared_ptr<host::Application> objOrvaApp;
  std::shared_ptr<host::Document> objOrvaDoc;
  std::shared_ptr<host::State> objOrvaState;
  std::string HostPath;
  std::int32_t HostWidth = 0;
  std::int32_t HostHeight = 0;
  bool HostStarted = false;
  std::string ProgramFolder;

  /// The user's values of PROXYNOTICE and EXPERT; empty when not saved.
  std::optional<host::SysVarValue> SavedProxyNotice;
  std::optional<host::SysVarValue> SavedExpert;

  /// Saves PROXYNOTICE and EXPERT of the active document and sets them to 0
  /// and 2 so that the host stays quiet. A host error skips the rest
  /// silently, keeping what was saved.
  void SetMainAppSysvars();
  /// Puts back each saved value; errors are ignored.
  void RestoreMainAppSysvars();

  /// Makes the drawing at `path` the host's active document and the session's
  /// current one, also in the host's single-document mode. Never throws.
  OpenResult OpenDrawing(const std::string& path, bool readOnly = true);
  /// Closes the open document whose full name is `path` (letter case
  /// ignored), unless it is the only one. True when a document was closed.
  /// Never throws.
  bool CloseDrawing(const std::string& path);

  /// The scratch drawing's full path.
  std::string ScratchDrawing() const;
};

}  // namespace sheafwork
