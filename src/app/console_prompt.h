#pragma once
// The prompt of the command line: nobody is there to answer, so every message
// is printed on the error stream and the answer that changes nothing is taken.

#include <ostream>

#include "prompt/prompt.h"

namespace sheafwork {

class ConsolePrompt : public Prompt {
 public:
  explicit ConsolePrompt(std::ostream& err) : err_(err) {}

  /// Prints "sheafwork: <text>" and answers OK to a notice, Cancel where there
  /// is a Cancel button, and No to a yes/no question.
  PromptAnswer Ask(const PromptMessage& message) override;

  /// No file can be chosen without a person: always cancelled.
  std::optional<std::string> OpenFileName(const FileDialogRequest& request) override;
  std::optional<std::string> SaveFileName(const FileDialogRequest& request) override;

 private:
  std::ostream& err_;
};

}  // namespace sheafwork
