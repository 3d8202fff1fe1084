#pragma once
// What the embedded host shows while a batch of plots runs.

#include <memory>
#include <ostream>
#include <string>

namespace sheafwork::embedded {

/// The progress display that the host's StartBatchMode opens. The command
/// line shows a bar on a terminal; the desktop application a dialog with a
/// Cancel button.
class ProgressDisplay {
 public:
  virtual ~ProgressDisplay() = default;
  /// A batch of `total` plots begins.
  virtual void Start(int total) = 0;
  /// Plot `n` (from 1) of `total` begins: layout `layout` of `drawing` (the
  /// drawing's file name). `n` may pass `total` when the caller announced
  /// fewer plots than it makes.
  virtual void Step(const std::string& drawing, const std::string& layout, int n, int total) = 0;
  /// True once the user asked to stop; polled before and after each plot.
  virtual bool Cancelled() = 0;
  /// The batch is over; the display goes away.
  virtual void Finish() = 0;
  /// A plot failed, or a drawing that exists could not be opened; `reason`
  /// says why, in French.
  virtual void PlotFailed(const std::string& reason) { (void)reason; }
  /// Something the user should know about a plot that goes on (another
  /// device standing in for a missing one), in French. By default it goes
  /// to stderr as "sheafwork: <text>".
  virtual void Notice(const std::string& text);
};

/// The command line's display on `out`: with `terminal`, a bar redrawn in
/// place and a line per failure; otherwise only the failures, one line each
/// ("sheafwork: <reason>"). From Start to Finish it catches Ctrl+C, SIGTERM
/// and SIGHUP (`StopSignals`, platform/stop_request.h): the first one cancels
/// the batch, which stops after the plot under way, a second one ends the
/// program.
std::shared_ptr<ProgressDisplay> ConsoleProgressDisplay(std::ostream& out, bool terminal);

/// The command line's display on stderr, a bar only when stderr is a
/// terminal.
std::shared_ptr<ProgressDisplay> ConsoleProgressDisplay();

/// Where a console display without a bar of its own sends what it would
/// print: the command line's plot run shows the batch's progress itself.
class ConsoleReports {
 public:
  virtual ~ConsoleReports() = default;
  virtual void PlotFailed(const std::string& reason) = 0;
  virtual void Notice(const std::string& text) = 0;
  /// Whether the first stop signal is acknowledged on stderr; a worker of
  /// a parallel run, stopped by its run, keeps quiet.
  virtual bool AnnouncesStop() const { return true; }
};

/// The command line's display that draws nothing: failures and notices go
/// to `reports`, Ctrl+C is caught as by the others.
std::shared_ptr<ProgressDisplay> ConsoleProgressDisplay(std::shared_ptr<ConsoleReports> reports);

}  // namespace sheafwork::embedded
