#pragma once
// What `sheafwork plot` shows on stderr while the run goes: the rows as they
// are plotted, and the host's reasons for a failure and its notices.

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "embedded/automation/progress_display.h"
#include "plotrun/plot_run.h"

namespace sheafwork {

enum class ProgressStyle {
  /// Two lines a row ("ligne n/N : <drawing>", then "tracé" or "échec"), for
  /// logs and pipes.
  Lines,
  /// One line redrawn in place: row n/N, sheets plotted, time elapsed and an
  /// estimate of the time left, the drawing; failures and notices above it.
  Terminal,
  /// Only the rows that failed, with their reasons.
  Quiet,
};

/// Follows the run (row by row, and its error log) and the host (reasons and
/// notices). The reasons of a failed row, the host's and the error log's,
/// are printed once each after the row's line; those that come outside a
/// row at once.
class RunProgress : public RunObserver, public embedded::ConsoleReports {
 public:
  /// `seconds` tells the time in seconds from any fixed point; `width` is
  /// the terminal's width in characters (Terminal style).
  RunProgress(std::ostream& err, ProgressStyle style, std::function<double()> seconds,
              int width = 80);

  void RowStarted(int row, int count, const BatchEntry& entry) override;
  void SheetPlotted(int row) override;
  void ErrorLogged(const std::string& line) override;
  void RowFinished(int row, RowStatus status) override;
  void RowCancelled(int row) override;
  void HostReported(const std::string& text, bool failure) override;
  void PlotFailed(const std::string& reason) override;
  void Notice(const std::string& text) override;

  /// The run plots only `rows` of the list's rows (a shard): the time left
  /// is reckoned over those.
  void PlanRows(int rows) { planned_ = rows; }

  /// Takes the progress line away, before the run's summary.
  void Finish();

 private:
  std::string RowLabel() const;
  void Draw();
  void Clear();
  void PrintReason(const std::string& reason);
  void AddReason(const std::string& reason);

  std::ostream& err_;
  ProgressStyle style_;
  std::function<double()> seconds_;
  int width_;
  double start_ = 0;
  bool started_ = false;
  bool inRow_ = false;
  bool drawn_ = false;
  int row_ = 0;
  int count_ = 0;
  int planned_ = 0;  ///< rows the run plots, when not all of them
  int rowsDone_ = 0;
  int sheets_ = 0;
  std::string drawing_;
  std::vector<std::string> reasons_;
};

/// Minutes and seconds ("04:07"), with the hours in front from one hour on
/// ("1:02:03").
std::string FormatDuration(double seconds);

}  // namespace sheafwork
