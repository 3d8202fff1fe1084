#pragma once
// A Prompt for tests: answers from a script and records every question and
// dialog in the order asked.

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "prompt/prompt.h"

namespace sheafwork::testing {

class ScriptedPrompt : public Prompt {
 public:
  /// The next Ask answers `answer`. Without a scripted answer, Ask answers OK
  /// to an OK box and fails the test otherwise.
  ScriptedPrompt& ThenAnswer(PromptAnswer answer);
  /// The next file dialog returns `name`; nullopt means cancelled. Without a
  /// scripted name a dialog is cancelled.
  ScriptedPrompt& ThenChoose(std::optional<std::string> name);

  PromptAnswer Ask(const PromptMessage& message) override;
  std::optional<std::string> OpenFileName(const FileDialogRequest& request) override;
  std::optional<std::string> SaveFileName(const FileDialogRequest& request) override;

  /// Every message asked, in order.
  std::vector<PromptMessage> messages;
  /// Every dialog shown, in order, with "open" or "save" in `kinds`.
  std::vector<FileDialogRequest> dialogs;
  std::vector<std::string> kinds;

  /// The texts of the messages asked.
  std::vector<std::string> Texts() const;

 private:
  std::deque<PromptAnswer> answers_;
  std::deque<std::optional<std::string>> names_;
};

}  // namespace sheafwork::testing
