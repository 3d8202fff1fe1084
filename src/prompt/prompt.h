#pragma once
// How the core asks a person something: message boxes and file dialogs. The
// desktop application answers with real dialogs, the command line with a
// non-interactive console version that takes the safe answer, and the tests
// with a scripted version that records what was asked.

#include <optional>
#include <string>

namespace sheafwork {

enum class PromptIcon { None, Information, Question, Exclamation, Critical };
enum class PromptButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class PromptAnswer { Ok, Cancel, Yes, No };

/// A message box: its text, title, icon and buttons.
struct PromptMessage {
  std::string text;
  std::string title;
  PromptIcon icon = PromptIcon::None;
  PromptButtons buttons = PromptButtons::Ok;
};

/// An open or save file dialog. `filter` is in the "description|pattern|..."
/// form of the string table.
struct FileDialogRequest {
  std::string title;
  std::string filter;
  std::string fileName;           ///< the name shown when the dialog opens
  bool mustExist = false;         ///< open: only an existing file may be chosen
  bool confirmOverwrite = false;  ///< save: ask before an existing file is chosen
};

class Prompt {
 public:
  virtual ~Prompt() = default;

  /// Shows a message box and returns the button pressed.
  virtual PromptAnswer Ask(const PromptMessage& message) = 0;

  /// Shows an open dialog; nullopt when the person cancelled.
  virtual std::optional<std::string> OpenFileName(const FileDialogRequest& request) = 0;

  /// Shows a save dialog; nullopt when the person cancelled.
  virtual std::optional<std::string> SaveFileName(const FileDialogRequest& request) = 0;
};

}  // namespace sheafwork
