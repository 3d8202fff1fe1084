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
  if (!answers_.empty()) {
    const PromptAnswer answer = answers_.front();
    answers_.pop_front();
    return answer;
  }
  if (message.buttons == PromptButtons::Ok) return PromptAnswer::Ok;
  throw std::logic_error("unscripted question: " + message.text);
}

std::optional<std::string> ScriptedPrompt::OpenFileName(const FileDialogRequest& request) {
  dialogs.push_back(request);
  kinds.emplace_back("open");
  if (names_.empty()) return std::nullopt;
  auto name = names_.front();
  names_.pop_front();
  return name;
}

std::optional<std::string> ScriptedPrompt::SaveFileName(const FileDialogRequest& request) {
  dialogs.push_back(request);
  kinds.emplace_back("save");
  if (names_.empty()) return std::nullopt;
  auto name = names_.front();
  names_.pop_front();
  return name;
}

std::vector<std::string> ScriptedPrompt::Texts() const {
  std::vector<std::string> texts;
  for (const auto& m : messages) texts.push_back(m.text);
  return texts;
}

}  // namespace sheafwork::testing
