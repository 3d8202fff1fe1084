#include "log/log_file.h"

#include <cerrno>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include "log/wide_path.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/windows1252.h"

namespace sheafwork {

namespace {

// Opens a file named in UTF-8 for appending or, with `append` false, emptied.
std::FILE* OpenFile(const std::string& path, bool append) {
#ifdef _WIN32
  const auto wide = WidePath(path);
  if (!wide) {
    errno = EINVAL;
    return nullptr;
  }
  return _wfopen(wide->c_str(), append ? L"ab" : L"wb");
#else
  if (append) return std::fopen(path.c_str(), "ab");
  // ext4 writes out what is written to a file it saw emptied as soon as the
  // file is closed, and the next run's emptying waits for it: the two logs
  // cost more than plotting a small drawing. Closed at once while still
  // empty, the file is reopened as any other. A pipe or a device is kept
  // open: closing it would end what reads it.
  int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (fd < 0) return nullptr;
  struct stat status {};
  if (::fstat(fd, &status) == 0 && S_ISREG(status.st_mode)) {
    ::close(fd);
    fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) return nullptr;
  }
  std::FILE* file = ::fdopen(fd, "wb");
  if (file == nullptr) {
    const int reason = errno;
    ::close(fd);
    errno = reason;
  }
  return file;
#endif
}

// The bytes of one log line: the text in Windows-1252 and CR LF.
std::string LineBytes(std::string_view text) {
  std::string bytes = Utf8ToWindows1252(text).bytes;
  bytes += "\r\n";
  return bytes;
}

// Writes and flushes; false when any part of it failed.
bool WriteAndFlush(std::FILE* file, const std::string& bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && std::fflush(file) == 0;
}

}  // namespace

void LogFile::Closer::operator()(std::FILE* f) const { std::fclose(f); }

LogFile::~LogFile() = default;

bool LogFile::Open(const std::string& path, bool append) {
  file_.reset();
  file_.reset(OpenFile(path, append));
  return IsOpen();
}

bool LogFile::WriteLogLine(std::string_view text) {
  if (echo_) echo_(text);
  if (!file_) return true;
  if (WriteAndFlush(file_.get(), LineBytes(text))) return true;
  const int reason = errno;  // the write's, for callers that report it
  file_.reset();             // closes; an error of the close changes nothing now
  errno = reason;
  return false;
}

bool LogFile::Close() {
  if (!file_) return true;
  return std::fclose(file_.release()) == 0;
}

void WriteJournalLine(LogFile& journal, LogFile& errorLog, std::string_view text) {
  if (!journal.WriteLogLine(text) && errorLog.IsOpen()) {
    errorLog.WriteLogLine(LoadResourceText(ids::kJournalWriteProblem));
  }
}

void OpenLogFiles(const LogSettings& settings, RunLogs& logs) {
  logs.journal.Close();
  logs.errorLog.Close();

  if (!settings.ErrorLogFileName.empty() && settings.ErrorLogOn &&
      logs.errorLog.Open(settings.ErrorLogFileName, settings.ErrorAppend)) {
    logs.errorLog.WriteLogLine(settings.ErrorHeader);
  }

  if (settings.JournalLogFileName.empty() || !settings.JournalLogOn) return;
  if (logs.journal.Open(settings.JournalLogFileName, settings.JournalAppend)) {
    WriteJournalLine(logs.journal, logs.errorLog, settings.JournalHeader);
    WriteJournalLine(logs.journal, logs.errorLog, settings.JournalUserComment);
  } else {
    logs.errorLog.WriteLogLine(LoadResourceText(ids::kJournalNotAccessible) +
                               settings.JournalLogFileName);
  }
}

void CloseLogFiles(const LogSettings& settings, RunLogs& logs) {
  if (logs.journal.IsOpen() && !logs.journal.Close()) {
    logs.errorLog.WriteLogLine(LoadResourceText(ids::kJournalNotAccessible) +
                               settings.JournalLogFileName);
  }
  logs.errorLog.Close();
}

}  // namespace sheafwork
