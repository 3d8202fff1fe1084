#pragma once
// The desktop application's answer to the core's questions: message boxes and
// file dialogs in French.
#include <QPointer>
#include <QWidget>

#include "prompt/prompt.h"

namespace sheafwork::ui {

class QtPrompt : public Prompt {
 public:
  explicit QtPrompt(QWidget* parent = nullptr) : parent_(parent) {}
  /// The window the boxes and dialogs are centred on.
  void SetParent(QWidget* parent) { parent_ = parent; }

  PromptAnswer Ask(const PromptMessage& message) override;
  std::optional<std::string> OpenFileName(const FileDialogRequest& request) override;
  std::optional<std::string> SaveFileName(const FileDialogRequest& request) override;

  /// Several files at once (the add-drawing command); empty when cancelled.
  std::vector<std::string> OpenFileNames(const FileDialogRequest& request);

 private:
  QPointer<QWidget> parent_;
};

}  // namespace sheafwork::ui
