#include "app/console_prompt.h"

namespace sheafwork {

PromptAnswer ConsolePrompt::Ask(const PromptMessage& message) {
  err_ << "sheafwork: " << message.text << '\n';
  switch (message.buttons) {
    case PromptButtons::Ok:
      return PromptAnswer::Ok;
    case PromptButtons::YesNo:
      return PromptAnswer::No;
    case PromptButtons::OkCancel:
    case PromptButtons::YesNoCancel:
      return PromptAnswer::Cancel;
  }
  return PromptAnswer::Cancel;
}

std::optional<std::string> ConsolePrompt::OpenFileName(const FileDialogRequest&) {
  return std::nullopt;
}

std::optional<std::string> ConsolePrompt::SaveFileName(const FileDialogRequest&) {
  return std::nullopt;
}

}  // namespace sheafwork
