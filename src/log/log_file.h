#pragma once
// The journal and error logs of one run. A line is written as the caller's
// text in Windows-1252 followed by CR LF, and flushed at once so that nothing
// is lost if the program dies. A log that fails is closed and stays closed for
// the rest of the run; no logging failure ever stops a run.

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "log/log_settings.h"

namespace sheafwork {

/// One log file of a run; closed (not written to) unless Open succeeded.
class LogFile {
 public:
  LogFile() = default;
  LogFile(LogFile&&) noexcept = default;
  LogFile& operator=(LogFile&&) noexcept = default;
  ~LogFile();

  /// Opens `path` for appending or, with append false, creates or empties it.
  /// False (and closed) when the file cannot be opened.
  bool Open(const std::string& path, bool append);

  bool IsOpen() const { return file_ != nullptr; }

  /// Writes `text` and CR LF. A closed log accepts the line and ignores it
  /// (true). A failed write closes the log, ignoring any error of the close,
  /// and returns false.
  bool WriteLogLine(std::string_view text);

  /// Closes the log; false when the close reported an error.
  bool Close();

  /// Also hands every line written from now on to `echo`, whether the log
  /// is open or not (the command line prints a failed row's reasons).
  void SetEcho(std::function<void(std::string_view)> echo) { echo_ = std::move(echo); }

 private:
  struct Closer {
    void operator()(std::FILE* f) const;
  };
  std::unique_ptr<std::FILE, Closer> file_;
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

/// Opens the error log first (silently skipped when it cannot be opened) and
/// writes its header, then the journal with its header and user comment; a
/// journal that cannot be opened is reported in the error log (string 123 and
/// the file name). A log whose name is empty or that is switched off stays
/// closed.
void OpenLogFiles(const LogSettings& settings, RunLogs& logs);

/// Closes the journal (a failure is reported like a failed open) and then the
/// error log (errors ignored).
void CloseLogFiles(const LogSettings& settings, RunLogs& logs);

}  // namespace sheafwork
