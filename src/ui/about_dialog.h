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
  /// `startSysInfo` shows the system information and tells whether it
  /// could; by default the program's own window shows what it knows
  /// without a host.
  explicit AboutDialog(Prompt& prompt, QWidget* parent = nullptr,
                       std::function<bool()> startSysInfo = {});

 public slots:
  /// Starts the system information tool, or says that there is none.
  void SystemInfo();

 private:
  Prompt& prompt_;
  std::function<bool()> startSysInfo_;
};

/// The window shown while the host starts: the program's title and the
/// loading text.
class Splash : public QWidget {
  Q_OBJECT

 public:
  explicit Splash(QWidget* parent = nullptr);
};

}  // namespace sheafwork::ui
