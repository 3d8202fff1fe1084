#pragma once
// One worker process of a parallel run: the program started again with a
// command that plots the rows it is sent (one "<row>\n" line each) and
// answers each with a row record (row_record.h). Rows go in on the worker's
// descriptor 3, records come out on its descriptor 4; its standard error is
// the run's. The worker has a process group of its own, so that a Ctrl+C at
// the terminal reaches only the run, which passes it on once.

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "plotrun/row_record.h"

namespace sheafwork {

/// The hidden command of the program that a parallel run starts its
/// workers with.
inline constexpr const char* kPlotWorkerCommand = "plot-worker";

/// The command of a worker: the running program with kPlotWorkerCommand,
/// the run's plot style table (may be empty) and the folder its processes
/// keep DWG conversions in.
std::vector<std::string> WorkerCommand(const std::string& plotStyle,
                                       const std::string& conversionFolder);

class WorkerProcess {
 public:
  /// Starts `command` (the program's path first) and sends it `greeting`.
  /// Null with `error` set when it cannot be started.
  static std::unique_ptr<WorkerProcess> Start(const std::vector<std::string>& command,
                                              std::string_view greeting, std::string& error);
  ~WorkerProcess();
  WorkerProcess(const WorkerProcess&) = delete;
  WorkerProcess& operator=(const WorkerProcess&) = delete;

  /// Hands the worker a row, which is its own from then on (a worker that
  /// died fails it); false when the worker can no longer take one.
  bool SendRow(int row);
  /// The descriptor to wait on for records.
  int RecordsFd() const { return records_; }
  /// Reads what the worker wrote and appends each completed record to
  /// `out`; false once the worker closed its end or wrote something that is
  /// not a record.
  bool ReadRecords(std::vector<RowRecord>& out);
  /// Asks the worker to stop after its sheet: SIGINT, as Ctrl+C (once).
  void Stop();
  /// Waits for the worker to end; why it ended, as a French sentence, or
  /// empty when it ended normally.
  std::string WaitForEnd();

  /// The rows sent and not yet answered, oldest first.
  std::deque<int> rows;

 private:
  WorkerProcess() = default;

  int pid_ = -1;
  int rowsFd_ = -1;
  int records_ = -1;
  bool stopped_ = false;
  RecordReader reader_;
};

/// While it lives, writing to a worker that died fails with EPIPE instead of
/// ending the program with SIGPIPE.
class PipeSignalIgnored {
 public:
  PipeSignalIgnored();
  ~PipeSignalIgnored();
  PipeSignalIgnored(const PipeSignalIgnored&) = delete;
  PipeSignalIgnored& operator=(const PipeSignalIgnored&) = delete;

 private:
  void (*previous_)(int) = nullptr;
};

/// Waits until one of `fds` can be read or `timeoutMs` passes; the
/// descriptors ready, in the order given.
std::vector<int> WaitForReadable(const std::vector<int>& fds, int timeoutMs);

/// Reads rows sent to a worker, one a line, from descriptor `fd`: the next
/// row, or 0 at the end of the stream.
class RowSource {
 public:
  explicit RowSource(int fd) : fd_(fd) {}
  /// A block of bytes the run sent as "<size>\n<bytes>" (the list, first).
  bool ReadBlock(std::string& block);
  int NextRow();

 private:
  bool ReadLine(std::string& line);

  int fd_;
  std::string buffer_;
};

/// Writes all of `bytes` to `fd`; false on failure.
bool WriteAllTo(int fd, std::string_view bytes);

/// `bytes` as a block RowSource::ReadBlock reads.
std::string Block(std::string_view bytes);

}  // namespace sheafwork
