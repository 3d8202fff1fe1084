#pragma once
// The journal and error logs of one run. A line is written as the caller's
// text in Windows-1252 followed by CR LF, in one write of its own, so that
// nothing is lost if the program dies and lines of two writers appending to
// one file never mix. A log that fails is closed and stays closed for the rest
// of the run, remembering why; no failure to write a line stops a run.
//
// A log is locked while it is open (file_lock.h): a second run that wants
// the same file waits a few seconds (SHEAFWORK_LOG_LOCK_WAIT, in
// milliseconds, for tests) and then gives up, naming the process that holds
// it, before emptying or writing anything.

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "log/log_settings.h"

namespace sheafwork {

/// The bytes a log holds for one line: `text` in Windows-1252, then CR LF.
std::string LogLineBytes(std::string_view text);

/// How long a run waits for a log another run holds: SHEAFWORK_LOG_LOCK_WAIT
/// milliseconds when set, else five seconds.
std::chrono::milliseconds LogLockWait();

/// One log file of a run; closed (not written to) unless Open succeeded.
class LogFile {
 public:
  /// Whether Open takes the file's lock. `Shared` is for a file this process
  /// already holds under another LogFile (both logs of a run in one file).
  enum class Locking { Exclusive, Shared };

  LogFile() = default;
  LogFile(LogFile&& other) noexcept;
  LogFile& operator=(LogFile&& other) noexcept;
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;
  ~LogFile();

  /// Opens `path` for appending or, with append false, creates or empties it,
  /// once its lock is held. False (and closed) when the file cannot be opened
  /// or another process held it for all of `LogLockWait()`; errno and
  /// Failure() say why, LockHolder() who.
  bool Open(const std::string& path, bool append, Locking locking = Locking::Exclusive);

  bool IsOpen() const { return fd_ >= 0; }

  /// Writes `text` and CR LF. A closed log accepts the line and ignores it
  /// (true). A failed write closes the log, ignoring any error of the close,
  /// and returns false.
  bool WriteLogLine(std::string_view text);

  /// Closes the log; false when the close reported an error.
  bool Close();

  /// Open succeeded, whatever came after.
  bool Opened() const { return opened_; }
  /// The path last given to Open.
  const std::string& Path() const { return path_; }
  /// True when `path` names the file this open log writes.
  bool IsFile(const std::string& path) const;
  /// Why the last Open, a write or the close failed, in the system's words;
  /// empty while nothing failed. A failed log stays failed until reopened.
  const std::string& Failure() const { return failure_; }
  /// The bytes of the lines written to the file since Open, CR LF included.
  std::uint64_t BytesWritten() const { return written_; }
  /// Another process held the file: Open gave up waiting.
  bool Busy() const { return busy_; }
  /// The process that held the file when Open gave up, 0 when not known.
  int LockHolder() const { return holder_; }

  /// Also hands every line written from now on to `echo`, whether the log
  /// is open or not (the command line prints a failed row's reasons).
  void SetEcho(std::function<void(std::string_view)> echo) { echo_ = std::move(echo); }

 private:
  void Fail(int error);

  int fd_ = -1;
  bool opened_ = false;
  std::string path_;
  std::string failure_;
  bool busy_ = false;
  int holder_ = 0;
  std::uint64_t written_ = 0;
  std::function<void(std::string_view)> echo_;
};

/// Writes a journal line; when the journal fails, string 99 goes to the error
/// log. The failed journal is closed, so the message comes at most once a run.
void WriteJournalLine(LogFile& journal, LogFile& errorLog, std::string_view text);

/// The two logs of a run, opened and closed by the rules of the log settings.
struct RunLogs {
  LogFile journal;
  LogFile errorLog;
};

/// Opens the error log first (skipped when it cannot be opened) and writes
/// its header, then the journal with its header and user comment; a journal
/// that cannot be opened is reported in the error log (string 123 and the
/// file name). A log whose name is empty or that is switched off stays
/// closed. False when another process holds one of the logs: the run must not
/// go on (both logs are closed again, and the busy one says by whom).
bool OpenLogFiles(const LogSettings& settings, RunLogs& logs);

/// Closes the journal (a failure is reported like a failed open) and then the
/// error log (errors ignored).
void CloseLogFiles(const LogSettings& settings, RunLogs& logs);

}  // namespace sheafwork
