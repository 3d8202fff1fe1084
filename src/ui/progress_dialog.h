#pragma once
// The embedded host's progress display in the desktop application: a modal
// dialog with a bar and a Cancel button while a plot run goes on.
#include <QPointer>
#include <QProgressDialog>
#include <memory>

#include "embedded/automation/progress_display.h"
#include "host/automation.h"

namespace sheafwork::ui {

class ProgressDialog : public embedded::ProgressDisplay {
 public:
  ProgressDialog() = default;
  ~ProgressDialog() override;

  void Start(int total) override;
  void Step(const std::string& drawing, const std::string& layout, int n, int total) override;
  bool Cancelled() override;
  void Finish() override;
  void PlotFailed(const std::string& reason) override;

  /// The dialog while a batch runs; null otherwise.
  QProgressDialog* Dialog() const { return dialog_; }

 private:
  QPointer<QProgressDialog> dialog_;
  int failures_ = 0;
};

/// The embedded host as the desktop application starts it: with this dialog
/// as its progress display.
std::shared_ptr<host::Application> MakeDesktopEmbeddedHost();

}  // namespace sheafwork::ui
