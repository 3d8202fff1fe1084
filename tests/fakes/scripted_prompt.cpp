#include "fakes/scripted_prompt.h"

#include <stdexcept>

namespace sheafwork::testing {

ScriptedPrompt& ScriptedPrompt::ThenAnswer(PromptAnswer answer) {
  answers_.push_back(answer);
  return *this;
}

ScriptedPrompt& ScriptedPrompt::ThenChoose(std::optional<std::string> name) {
  names_.push_back(std::move(name));
  return *this;
}

PromptAnswer ScriptedPrompt::Ask(const PromptMessage& message) {
  messages.push_back(message);
  if (answers_.empty()) {
    if (message.buttons == PromptButtons::Ok) return PromptAnswer::Ok;
    throw std::logic_error("unscripted question: " + message.text);
  }
  const PromptAnswer answer = answers_.front();
  answers_.pop_front();
  return answer;
}

std::optional<std::string> ScriptedPrompt::OpenFileName(const FileDialogRequest& request) {
  return Choose(false, request);
}

std::optional<std::string> ScriptedPrompt::SaveFileName(const FileDialogRequest& request) {
  return Choose(true, request);
}

std::optional<std::string> ScriptedPrompt::Choose(bool save, const FileDialogRequest& request) {
  dialogs.push_back({save, request});
  if (names_.empty()) return std::nullopt;
  auto name = names_.front();
  names_.pop_front();
  return name;
}

}  // namespace sheafwork::testing
