#pragma once
// The about box and the splash window shown while the host starts.
#include <QDialog>
#include <QWidget>
#include <functional>

#include "prompt/prompt.h"

namespace sheafwork::ui {

class AboutDialog : public QDialog {
  Q_OBJECT

 public:
  /// `startSysInfo` starts the system information tool and tells whether it
  /// could; by default a tool found on the PATH is started.
  explicit AboutDialog(Prompt& prompt, QWidget* parent = nullptr,
                       std::function<bool()> startSysInfo = {});

 public slots:
  /// Starts the system information tool, or says that there is none.
  void SystemInfo();

 private:
  Prompt& prompt_;
  std::function<bool()> startSysInfo_;
};

/// Starts the first system information tool found on the PATH.
bool StartSystemInfoTool();

/// The window shown while the host starts: the program's title and the
/// loading text.
class Splash : public QWidget {
  Q_OBJECT

 public:
  explicit Splash(QWidget* parent = nullptr);
};

}  // namespace sheafwork::ui
