#pragma once
// The plot run: every row of the list, in order, plotted in the host.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "batch/session.h"
#include "host/host_session.h"
#include "platform/clock.h"
#include "prompt/prompt.h"

namespace sheafwork {

/// The status icon of a row in the list view.
enum class RowStatus { NotPlotted = 0, Plotted = 1, Failed = 2 };

/// Follows a run row by row (the list view's icons, a terminal's progress).
class RunObserver {
 public:
  virtual ~RunObserver() = default;
  /// Every row's status went back to not plotted.
  virtual void RowsCleared() {}
  /// Row `row` (from 1) of `count` is about to be plotted.
  virtual void RowStarted(int row, int count, const BatchEntry& entry) {
    (void)row, (void)count, (void)entry;
  }
  /// A sheet of row `row` was plotted (one per layout).
  virtual void SheetPlotted(int row) { (void)row; }
  /// A line went to the run's error log (whether the log is on or not).
  virtual void ErrorLogged(const std::string& line) { (void)line; }
  /// Row `row` was plotted or failed.
  virtual void RowFinished(int row, RowStatus status) { (void)row, (void)status; }
  /// The user stopped the run while row `row` was being plotted; its status
  /// stays as it was.
  virtual void RowCancelled(int row) { (void)row; }
  /// The host's reason for a failed plot (`failure`) or its notice about a
  /// plot that goes on, passed on from a worker process; a host that plots
  /// in this process tells its own display.
  virtual void HostReported(const std::string& text, bool failure) { (void)text, (void)failure; }
};

struct RunServices {
  Clock clock = LocalTimeNow;
  RunObserver* observer = nullptr;
  /// Asked only when a paper-size line can be written to no error log at all.
  Prompt* prompt = nullptr;
  /// The plot style table every sheet of the run plots with, as the host
  /// finds tables; empty: each layout's own.
  std::string plotStyle;
  /// The rows (from 1) the run counts and plots; empty: every row. The
  /// others are left as they are, as if they were not in the list.
  std::function<bool(int row)> plotsRow;
  /// How many worker processes plot the rows (worker_process.h); 1: this
  /// process plots them itself.
  int jobs = 1;
  /// The command that starts a worker, the program's path first; the
  /// worker calls ServeRows. Needed when `jobs` is above 1.
  std::vector<std::string> workerCommand;
  /// Puts in its place, when the run writes the row (in row order), a file
  /// a worker's host wrote for it (the event's text says which and where).
  std::function<void(const std::string& file)> placeWorkerFile;
};

/// What the plotting pass wrote to each log for one row, in bytes (whole
/// lines with their CR LF): the row's share of each file.
struct RowLogBytes {
  int row = 0;
  std::uint64_t journal = 0;
  std::uint64_t errorLog = 0;
};

/// How a run went.
struct RunResult {
  int plotted = 0;  ///< rows marked plotted
  int failed = 0;   ///< rows marked failed
  /// The run stopped before the last row: a drawing could not be opened while
  /// counting, the host failed, or the user cancelled.
  bool endedEarly = false;
  bool cancelled = false;
  std::int16_t totalPlots = 0;  ///< layouts announced to the host
  /// The logs asked for that hold the whole run.
  bool journalWritten = false;
  bool errorLogWritten = false;
  /// One French line per log asked for that was not written whole, or that
  /// another run held so that this one did not start (then nothing was
  /// plotted and `endedEarly` is set): "<file>: <what> <system's reason>".
  std::vector<std::string> logProblems;
  /// The bytes each log got before the first row of the plotting pass (its
  /// header lines), then from each row the pass went through, in order.
  RowLogBytes logBytesBeforeRows;
  std::vector<RowLogBytes> rowLogBytes;
};

/// Plots every row of the session's list and writes the journal and the error
/// log by the session's log settings. Never throws.
RunResult PlotAllEntries(Session& session, HostSession& host, const RunServices& services);

class RowSource;
class RowRecorder;

/// A worker's side of a parallel run: plots each row `rows` hands it, as
/// PlotAllEntries would, and writes its record (row_record.h) to
/// `recordsFd`. The session holds the run's list; `services.observer` is
/// ignored, `recorder` gathers the rows. Returns when the rows end, the run
/// is stopped or the host fails; false when a record could not be written.
bool ServeRows(Session& session, HostSession& host, const RunServices& services,
               std::int16_t totalPlots, RowSource& rows, int recordsFd, RowRecorder& recorder);

/// The list as a worker reads it first (RowSource::ReadBlock).
std::string ListForWorkers(const Session& session);

/// The elapsed time between two times of day, as the journal writes it.
/// Hours count whole hours; the minutes and seconds are those of the
/// difference less the number of hours (not of hours times 3600), so 3700
/// seconds read 01:61:39. A run across midnight gives a negative time.
std::string FormatElapsedTime(const LocalTime& start, const LocalTime& end);

}  // namespace sheafwork
