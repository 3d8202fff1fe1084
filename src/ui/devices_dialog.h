#pragma once
// The plot devices dialog: the device of every selected row, chosen among the
// system's printers and the plotter configuration files along the host's
// search path.
#include <QDialog>
#include <vector>

#include "batch/session.h"
#include "host/host_session.h"
#include "platform/printers.h"
#include "prompt/prompt.h"

class QCheckBox;
class QLabel;
class QListWidget;
class QPlainTextEdit;

namespace sheafwork::ui {

class HelpViewer;

class DevicesDialog : public QDialog {
  Q_OBJECT

 public:
  /// The rows edited are those of the session's selection cache.
  /// `printers` may be null (the system's are read); `host` may be null (no
  /// plotter configuration folder then).
  DevicesDialog(Session& session, PrinterCatalog* printers, HostSession* host, Prompt& prompt,
                HelpViewer* help, QWidget* parent = nullptr);

  /// Writes the chosen device into every selected row.
  void accept() override;

 public slots:
  /// Adds a plotter configuration file chosen in a file dialog.
  void Browse();

 private:
  void Describe();

  Session& session_;
  Prompt& prompt_;
  std::vector<PrinterInfo> printers_;
  QListWidget* list_ = nullptr;
  QCheckBox* showDescription_ = nullptr;
  QLabel* descriptionLabel_ = nullptr;
  QPlainTextEdit* description_ = nullptr;
};

}  // namespace sheafwork::ui
