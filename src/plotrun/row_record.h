#pragma once
// What a worker process did with one row of a run, in the order it happened:
// the lines it wrote to the journal and the error log, the host's reasons and
// notices, the sheets plotted and the row's status. The run replays a record
// in row order, so that its logs read as if it had plotted the row itself.

#include <string>
#include <string_view>
#include <vector>

#include "plotrun/plot_run.h"

namespace sheafwork {

struct RowEvent {
  enum Kind : char {
    ErrorLine = 'E',    ///< a line of the error log
    JournalLine = 'J',  ///< a line of the journal
    HostFailure = 'P',  ///< the host's reason for a failed plot
    HostNotice = 'N',   ///< the host's notice about a plot that goes on
    Sheet = 'S',        ///< a sheet was plotted
    Plotted = 'T',      ///< the row was marked plotted
    Failed = 'F',       ///< the row was marked failed
    Cancelled = 'C',    ///< the row was stopped by the user
    /// A file the worker's host wrote for the row that the run puts in its
    /// place when it writes the row (RunServices::placeWorkerFile).
    WorkerFile = 'W',
  };
  Kind kind;
  std::string text;
};

struct RowRecord {
  int row = 0;
  /// Not started: the run was being stopped when the row came.
  bool skipped = false;
  /// The run was stopped during the row.
  bool cancelled = false;
  /// The host failed so that no further row can be plotted.
  bool ended = false;
  std::vector<RowEvent> events;
};

/// Gathers what a worker does with its row: the run's observer in a worker,
/// and the host's reasons and notices handed to it.
class RowRecorder : public RunObserver {
 public:
  /// Starts the record of `row`.
  void Begin(int row);
  void Add(RowEvent::Kind kind, std::string text);
  /// The record so far, leaving an empty one.
  RowRecord Take();

  void SheetPlotted(int row) override;
  void ErrorLogged(const std::string& line) override;
  void RowFinished(int row, RowStatus status) override;
  void RowCancelled(int row) override;

 private:
  RowRecord record_;
};

/// The record as one block of text: a header line, a line per event (line
/// breaks and backslashes escaped), and a closing line.
std::string EncodeRecord(const RowRecord& record);

/// Gathers records from a stream of bytes that may arrive in pieces.
class RecordReader {
 public:
  /// Adds bytes read; every record completed by them is appended to `out`.
  /// False when the bytes are not records (the stream is then unusable).
  bool Feed(std::string_view bytes, std::vector<RowRecord>& out);

 private:
  bool TakeLine(std::string_view line, std::vector<RowRecord>& out);

  std::string pending_;
  RowRecord record_;
  bool inRecord_ = false;
};

}  // namespace sheafwork
