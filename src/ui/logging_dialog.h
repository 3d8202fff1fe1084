#pragma once
// The logging dialog: whether the journal and the error log are written, their
// files, append or overwrite, headers and the journal's comment.
#include <QDialog>

#include "log/log_settings.h"
#include "prompt/prompt.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace sheafwork::ui {

class HelpViewer;

class LoggingDialog : public QDialog {
  Q_OBJECT

 public:
  /// Edits `settings` in place when the person confirms.
  LoggingDialog(LogSettings& settings, Prompt& prompt, HelpViewer* help, QWidget* parent = nullptr);

  /// OK: validates the names of the groups switched on, then writes back.
  void accept() override;

 private:
  struct Group {
    QCheckBox* enable;
    QLabel* nameLabel;
    QLineEdit* name;
    QPushButton* browse;
    QRadioButton* overwrite;
    QRadioButton* append;
    QLabel* headerLabel;
    QLineEdit* header;
    QLabel* userLabel = nullptr;
    QLineEdit* user = nullptr;
  };
  void EnableGroup(const Group& group, bool on);
  void Browse(const Group& group, int titleId);

  LogSettings& settings_;
  Prompt& prompt_;
  Group journal_{};
  Group error_{};
};

}  // namespace sheafwork::ui
