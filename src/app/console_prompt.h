#pragma once
// The prompt of the command line: nobody is there to answer, so every message
// is printed on the error stream and the answer that changes nothing is taken.

#include <ostream>

#include "prompt/prompt.h"

namespace sheafwork {

class ConsolePrompt : public Prompt {
 public:
  explicit ConsolePrompt(std::ostream& err) : err_(err) {}

  /// Prints "sheafwork: <text>" and answers OK to a notice, Cancel to an
  /// OK/Cancel or Yes/No/Cancel question and No to a Yes/No question.
  PromptAnswer Ask(const PromptMessage& message) override;
  /// File dialogs are cancelled.
  std::optional<std::string> OpenFileName(const FileDialogRequest& request) override;
  std::optional<std::string> SaveFileName(const FileDialogRequest& request) override;

 private:
  std::ostream& err_;
};

}  // namespace sheafwork
