#include "log/log_file.h"

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <utility>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include "log/file_lock.h"
#include "log/wide_path.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/windows1252.h"

namespace sheafwork {

namespace {

#ifdef _WIN32
int OpenDescriptor(const std::string& path, bool append) {
  const auto wide = WidePath(path);
  if (!wide) {
    errno = EINVAL;
    return -1;
  }
  // Not emptied here: an overwritten log is emptied once its lock is held
  // (LogFile::Open), so that a run waiting for another leaves its lines alone.
  return _wopen(wide->c_str(), _O_WRONLY | _O_CREAT | _O_BINARY | (append ? _O_APPEND : 0),
                _S_IREAD | _S_IWRITE);
}
int WriteSome(int fd, const char* bytes, std::size_t size) {
  return _write(fd, bytes, static_cast<unsigned>(size));
}
int CloseDescriptor(int fd) { return _close(fd); }
bool IsDiskFile(int fd) {
  return GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(fd))) == FILE_TYPE_DISK;
}
bool Empty(int fd, const std::string&) { return _chsize_s(fd, 0) == 0; }
#else
// Opened without emptying: an overwritten log is emptied only once its lock is
// held, so that a run waiting for another leaves the other's lines alone.
int OpenDescriptor(const std::string& path, bool append) {
  return ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | (append ? O_APPEND : 0), 0666);
}
ssize_t WriteSome(int fd, const char* bytes, std::size_t size) { return ::write(fd, bytes, size); }
int CloseDescriptor(int fd) { return ::close(fd); }
bool IsDiskFile(int fd) {
  struct stat status {};
  return ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
}

// Empties a locked log. ext4 writes out what is written to a file it saw
// emptied as soon as the file is closed, and the next run's emptying waits for
// it: the two logs cost more than plotting a small drawing. Another descriptor
// of the file closed while it is still empty settles that at no cost (closing
// it does not drop the lock, which belongs to the first one).
bool Empty(int fd, const std::string& path) {
  if (::ftruncate(fd, 0) != 0) return false;
  const int other = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (other >= 0) ::close(other);
  return true;
}
#endif

// One write for the whole line where the system takes it whole (always, for a
// file appended to, short of a full disk); the rest follows when it does not.
bool WriteAll(int fd, const std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const auto written = WriteSome(fd, bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      if (written == 0) errno = EIO;
      return false;
    }
    done += static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace

std::string LogLineBytes(std::string_view text) {
  std::string bytes = Utf8ToWindows1252(text).bytes;
  bytes += "\r\n";
  return bytes;
}

std::chrono::milliseconds LogLockWait() {
  constexpr std::chrono::milliseconds kDefault{5000};
  const char* text = std::getenv("SHEAFWORK_LOG_LOCK_WAIT");
  if (!text) return kDefault;
  long value = 0;
  const char* end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, value);
  if (error != std::errc() || stop != end || value < 0) return kDefault;
  return std::chrono::milliseconds(value);
}

LogFile::LogFile(LogFile&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)),
      opened_(other.opened_),
      path_(std::move(other.path_)),
      failure_(std::move(other.failure_)),
      busy_(other.busy_),
      holder_(other.holder_),
      written_(other.written_) {}

LogFile& LogFile::operator=(LogFile&& other) noexcept {
  if (this != &other) {
    if (fd_ >= 0) CloseDescriptor(fd_);
    fd_ = std::exchange(other.fd_, -1);
    opened_ = other.opened_;
    path_ = std::move(other.path_);
    failure_ = std::move(other.failure_);
    busy_ = other.busy_;
    holder_ = other.holder_;
    written_ = other.written_;
  }
  return *this;
}

LogFile::~LogFile() {
  if (fd_ >= 0) CloseDescriptor(fd_);
}

void LogFile::Fail(int error) {
  failure_ = std::strerror(error);
  if (fd_ >= 0) CloseDescriptor(fd_);  // an error of the close changes nothing now
  fd_ = -1;
  errno = error;  // the first failure's, for callers that report it
}

bool LogFile::Open(const std::string& path, bool append, Locking locking) {
  if (fd_ >= 0) CloseDescriptor(fd_);
  fd_ = -1;
  opened_ = false;
  path_ = path;
  failure_.clear();
  busy_ = false;
  holder_ = 0;
  written_ = 0;
  fd_ = OpenDescriptor(path, append);
  if (fd_ < 0) {
    Fail(errno);
    return false;
  }
  opened_ = true;
  // Pipes and devices are shared by nature (two runs may well both log to
  // /dev/null or NUL); only a file on disk is locked and emptied.
  if (!IsDiskFile(fd_)) return true;
  if (locking == Locking::Exclusive) {
    const FileLock lock = LockFileWaiting(fd_, LogLockWait());
    if (lock.busy) {
      opened_ = false;
      busy_ = true;
      holder_ = lock.holder;
      Fail(EAGAIN);
      return false;
    }
  }
  if (!append && !Empty(fd_, path)) {
    opened_ = false;
    Fail(errno);
    return false;
  }
  if (locking == Locking::Exclusive) MarkLockHolder(fd_);
  return true;
}

bool LogFile::IsFile(const std::string& path) const {
#ifndef _WIN32
  struct stat open {};
  struct stat named {};
  return fd_ >= 0 && ::fstat(fd_, &open) == 0 && ::stat(path.c_str(), &named) == 0 &&
         open.st_dev == named.st_dev && open.st_ino == named.st_ino;
#else
  return fd_ >= 0 && path == path_;
#endif
}

bool LogFile::WriteLogLine(std::string_view text) {
  if (echo_) echo_(text);
  if (fd_ < 0) return true;
  const std::string bytes = LogLineBytes(text);
  if (WriteAll(fd_, bytes)) {
    written_ += bytes.size();
    return true;
  }
  Fail(errno);
  return false;
}

bool LogFile::Close() {
  if (fd_ < 0) return true;
  const int result = CloseDescriptor(std::exchange(fd_, -1));
  if (result == 0) return true;
  failure_ = std::strerror(errno);
  return false;
}

void WriteJournalLine(LogFile& journal, LogFile& errorLog, std::string_view text) {
  if (!journal.WriteLogLine(text) && errorLog.IsOpen()) {
    errorLog.WriteLogLine(LoadResourceText(ids::kJournalWriteProblem));
  }
}

bool OpenLogFiles(const LogSettings& settings, RunLogs& logs) {
  logs.journal.Close();
  logs.errorLog.Close();

  if (!settings.ErrorLogFileName.empty() && settings.ErrorLogOn) {
    if (logs.errorLog.Open(settings.ErrorLogFileName, settings.ErrorAppend)) {
      logs.errorLog.WriteLogLine(settings.ErrorHeader);
    } else if (logs.errorLog.Busy()) {
      return false;
    }
  }

  if (settings.JournalLogFileName.empty() || !settings.JournalLogOn) return true;
  // Both logs in one file: this run already holds it.
  const auto locking = logs.errorLog.IsFile(settings.JournalLogFileName)
                           ? LogFile::Locking::Shared
                           : LogFile::Locking::Exclusive;
  if (logs.journal.Open(settings.JournalLogFileName, settings.JournalAppend, locking)) {
    WriteJournalLine(logs.journal, logs.errorLog, settings.JournalHeader);
    WriteJournalLine(logs.journal, logs.errorLog, settings.JournalUserComment);
  } else if (logs.journal.Busy()) {
    logs.errorLog.Close();
    return false;
  } else {
    logs.errorLog.WriteLogLine(LoadResourceText(ids::kJournalNotAccessible) +
                               settings.JournalLogFileName);
  }
  return true;
}

void CloseLogFiles(const LogSettings& settings, RunLogs& logs) {
  if (logs.journal.IsOpen() && !logs.journal.Close()) {
    logs.errorLog.WriteLogLine(LoadResourceText(ids::kJournalNotAccessible) +
                               settings.JournalLogFileName);
  }
  logs.errorLog.Close();
}

}  // namespace sheafwork
