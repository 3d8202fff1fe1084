#pragma once
// The layouts dialogs: which layout a row plots. For one row the drawing's
// own layouts are offered (read through the host); for several rows the
// choices every drawing has.
#include <QDialog>

#include "batch/session.h"
#include "host/host_session.h"
#include "prompt/prompt.h"

class QCheckBox;
class QComboBox;
class QListWidget;
class QRadioButton;

namespace sheafwork::ui {

class HelpViewer;

class LayoutsSingleDialog : public QDialog {
  Q_OBJECT

 public:
  /// Edits entry `row` (from 1). `host` may be null: only the choices every
  /// drawing has are offered then.
  LayoutsSingleDialog(Session& session, int row, HostSession* host, Prompt& prompt,
                      HelpViewer* help, QWidget* parent = nullptr);
  void accept() override;

 private:
  void Fill();

  Session& session_;
  Prompt& prompt_;
  int row_;
  std::vector<std::string> drawingLayouts_;  ///< the drawing's paper-space layouts
  QRadioButton* all_ = nullptr;
  QRadioButton* selected_ = nullptr;
  QCheckBox* showAll_ = nullptr;
  QListWidget* list_ = nullptr;
};

class LayoutsMultiDialog : public QDialog {
  Q_OBJECT

 public:
  /// Edits every row of the session's selection cache.
  LayoutsMultiDialog(Session& session, Prompt& prompt, HelpViewer* help, QWidget* parent = nullptr);
  void accept() override;

 private:
  Session& session_;
  Prompt& prompt_;
  QComboBox* choice_ = nullptr;
};

/// The four choices every drawing has, as the Layout field stores them.
std::vector<std::string> CommonLayoutChoices();

}  // namespace sheafwork::ui
