#include "log/file_lock.h"

#include <cerrno>
#include <thread>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace sheafwork {

namespace {

#ifndef _WIN32
// The byte a holder's process lock covers: past any file a log could reach,
// and outside the range the exclusive lock covers.
constexpr off_t kHolderByte = off_t{1} << 62;

struct flock Range(short type, off_t start, off_t length) {
  struct flock range {};
  range.l_type = type;
  range.l_whence = SEEK_SET;
  range.l_start = start;
  range.l_len = length;
  return range;
}

int HolderOf(int fd) {
  struct flock probe = Range(F_WRLCK, kHolderByte, 1);
  if (::fcntl(fd, F_GETLK, &probe) != 0 || probe.l_type == F_UNLCK || probe.l_pid <= 0) return 0;
  return probe.l_pid;
}
#endif

}  // namespace

FileLock TryLockFile(int fd) {
  FileLock lock;
#ifndef _WIN32
#ifdef F_OFD_SETLK
  struct flock range = Range(F_WRLCK, 0, kHolderByte);
  if (::fcntl(fd, F_OFD_SETLK, &range) == 0) {
    lock.held = true;
    return lock;
  }
  if (errno == EAGAIN || errno == EACCES) {
    lock.busy = true;
    return lock;
  }
  if (errno != EINVAL) return lock;  // no locks on this file system
#endif
  // Systems without open-file locks: flock's locks also belong to the open file.
  if (::flock(fd, LOCK_EX | LOCK_NB) == 0) {
    lock.held = true;
  } else if (errno == EWOULDBLOCK) {
    lock.busy = true;
  }
#else
  // Windows: a byte-range lock of the open handle. Such locks are mandatory
  // where they lie, so the byte is one far past any content: reads and
  // writes of the file are never in its way. Another handle, in this process
  // or another, cannot take it while this one holds it; it goes with the
  // handle's close or the process's end.
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(fd));
  if (handle == INVALID_HANDLE_VALUE) return lock;
  OVERLAPPED at{};
  at.OffsetHigh = 0x40000000;  // byte 2^62
  if (LockFileEx(handle, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &at)) {
    lock.held = true;
  } else if (const DWORD error = GetLastError();
             error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING) {
    lock.busy = true;
  }
#endif
  return lock;
}

FileLock LockFileWaiting(int fd, std::chrono::milliseconds wait) {
  const auto deadline = std::chrono::steady_clock::now() + wait;
  for (;;) {
    FileLock lock = TryLockFile(fd);
    if (!lock.busy) return lock;
    if (std::chrono::steady_clock::now() >= deadline) {
#ifndef _WIN32
      lock.holder = HolderOf(fd);
#endif
      return lock;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
}

void MarkLockHolder(int fd) {
#ifndef _WIN32
  struct flock mark = Range(F_WRLCK, kHolderByte, 1);
  ::fcntl(fd, F_SETLK, &mark);  // without it the waiting process names nobody
#else
  (void)fd;
#endif
}

}  // namespace sheafwork
