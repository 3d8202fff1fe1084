#pragma once
// Advisory exclusive locks on open files, between runs of the program.
//
// The lock belongs to the open file (Linux's open-file-description locks),
// not to the process: closing another descriptor of the same file does not
// drop it, and two opens in one process exclude each other like two
// processes do. Such a lock does not say who holds it, so a holder may also
// leave its process id on a byte far beyond any content (a process lock, which
// the system reports with its owner's id); a process that waits for the file
// reads it there.
//
// On Windows the lock is a byte-range lock of the open handle (LockFileEx) on
// one byte far past any content, since such locks are mandatory where they
// lie; it goes with the handle's close. It does not say who holds it.

#include <chrono>

namespace sheafwork {

/// What became of an attempt to lock a file.
struct FileLock {
  bool held = false;  ///< the lock is ours until the descriptor is closed
  bool busy = false;  ///< another open file holds it
  int holder = 0;     ///< the holding process when it left its id, else 0
};

/// Takes the lock on `fd` (open for writing) at once or not at all. A file
/// system that has no locks gives neither `held` nor `busy`.
FileLock TryLockFile(int fd);

/// Tries until `wait` has passed, then says who holds the file.
FileLock LockFileWaiting(int fd, std::chrono::milliseconds wait);

/// Leaves this process's id on the locked file for those who wait for it.
/// Closing any descriptor of the file in this process takes it away again.
void MarkLockHolder(int fd);

}  // namespace sheafwork
