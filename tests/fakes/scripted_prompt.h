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
  /// The next question gets `answer`. Unscripted, an OK box gets OK and any
  /// other question throws, failing the test.
  ScriptedPrompt& ThenAnswer(PromptAnswer answer);
  /// The next file dialog returns `name` (nullopt: cancelled). Unscripted
  /// dialogs are cancelled.
  ScriptedPrompt& ThenChoose(std::optional<std::string> name);

  PromptAnswer Ask(const PromptMessage& message) override;
  std::optional<std::string> OpenFileName(const FileDialogRequest& request) override;
  std::optional<std::string> SaveFileName(const FileDialogRequest& request) override;

  struct Dialog {
    bool save;
    FileDialogRequest request;
  };
  std::vector<PromptMessage> messages;
  std::vector<Dialog> dialogs;

 private:
  std::optional<std::string> Choose(bool save, const FileDialogRequest& request);
  std::deque<PromptAnswer> answers_;
  std::deque<std::optional<std::string>> names_;
};

}  // namespace sheafwork::testing
