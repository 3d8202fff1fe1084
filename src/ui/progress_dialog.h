#pragma once
// The embedded host's progress display in the desktop application: a modal
// dialog with a bar and a Cancel button while a plot run goes on.
#include <QPointer>
#include <QProgressDialog>
#include <functional>
#include <memory>
#include <string>

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
  /// A sheet of `drawing` was plotted by a worker process of the run (the
  /// run's own host, which shows Step, plots nothing then): the bar moves
  /// on by one.
  void SheetPlotted(const std::string& drawing);

  /// The dialog while a batch runs; null otherwise.
  QProgressDialog* Dialog() const { return dialog_; }

  /// From now on `listener` hears the reason of every failed plot, the text
  /// the command line prints on stderr (an empty function: nobody).
  void SetFailureListener(std::function<void(const std::string&)> listener) {
    failureListener_ = std::move(listener);
  }

 private:
  QPointer<QProgressDialog> dialog_;
  int failures_ = 0;
  int total_ = 0;
  int sheets_ = 0;  ///< plotted by workers
  std::function<void(const std::string&)> failureListener_;
};

/// The embedded host as the desktop application starts it: with `progress`
/// as its progress display.
std::shared_ptr<host::Application> MakeDesktopEmbeddedHost(
    std::shared_ptr<ProgressDialog> progress);

}  // namespace sheafwork::ui
