#include "log/output_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include "log/file_lock.h"
#include "log/file_replace.h"
#include "log/wide_path.h"

namespace sheafwork {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBufferBytes = 1 << 20;
// Temporaries of one target written at once, stale ones included.
constexpr int kSlots = 16;
// Links followed before giving up on a loop.
constexpr int kLinkDepth = 40;

// The file `path` names once its symbolic links are followed; a link to a
// file that does not exist yet names where that file will be.
std::string ThroughLinks(std::string path) {
  for (int depth = 0; depth < kLinkDepth; ++depth) {
    std::error_code ec;
    if (!fs::is_symlink(fs::symlink_status(FsPath(path), ec))) return path;
    const fs::path link = fs::read_symlink(FsPath(path), ec);
    if (ec) return path;
    path = PathText(link.is_absolute() ? link : FsPath(path).parent_path() / link);
  }
  return path;
}

std::string SlotName(const std::string& target, int slot) {
  return target + ".sheafwork-" + std::to_string(slot) + ".tmp";
}

#ifdef _WIN32
// Windows: the slots as on POSIX, each temporary locked while written
// (file_lock.h). A file open without sharing its deletion, as the C runtime
// opens them, cannot be removed while a writer has it: a stale temporary is
// removed once its lock is taken and the file closed, which fails if another
// writer has opened it meanwhile.
int OpenSlot(const std::string& name) {
  const auto wide = WidePath(name);
  if (!wide) {
    errno = EINVAL;
    return -1;
  }
  return _wopen(wide->c_str(), _O_WRONLY | _O_CREAT | _O_BINARY, _S_IREAD | _S_IWRITE);
}

// Opens the temporary `name` and locks it. -1 with errno when the folder
// refuses; -2 when another writer holds it.
int TakeSlot(const std::string& name) {
  const int fd = OpenSlot(name);
  if (fd < 0) return errno == EACCES && fs::exists(FsPath(name)) ? -2 : -1;
  const FileLock lock = TryLockFile(fd);
  if (lock.busy || _chsize_s(fd, 0) != 0) {
    _close(fd);
    return -2;
  }
  return fd;
}

// Removes the temporaries of `target` from slot `first` on that no live
// writer holds, up to the first free slot.
void RemoveStale(const std::string& target, int first) {
  for (int slot = first; slot < kSlots; ++slot) {
    const std::string name = SlotName(target, slot);
    std::error_code ec;
    if (!fs::exists(FsPath(name), ec)) return;
    const int fd = OpenSlot(name);
    if (fd < 0) continue;
    const bool stale = TryLockFile(fd).held;
    _close(fd);
    if (stale) fs::remove(FsPath(name), ec);
  }
}
#else

// True when `fd` is still the file named `path` (and `status` its status): a
// writer that removed a stale temporary between our open and our lock leaves
// us an unnamed file.
bool StillNamed(int fd, const std::string& path, struct stat& status) {
  struct stat named {};
  return ::fstat(fd, &status) == 0 && ::lstat(path.c_str(), &named) == 0 &&
         status.st_dev == named.st_dev && status.st_ino == named.st_ino;
}

// Opens the temporary `name` and locks it. -1 with errno when the folder
// refuses; -2 when another writer holds it.
int TakeSlot(const std::string& name) {
  for (int attempt = 0; attempt < 4; ++attempt) {
    const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0) return -1;
    if (TryLockFile(fd).busy) {
      ::close(fd);
      return -2;
    }
    // Without locks on this file system a temporary cannot be told from a
    // live one; it is taken as ours. A new one is not truncated: ext4 writes
    // out at the close what was written to a file it saw emptied (see
    // log_file.cpp), which cost every plot file a wait.
    struct stat status {};
    if (StillNamed(fd, name, status) && (status.st_size == 0 || ::ftruncate(fd, 0) == 0)) {
      return fd;
    }
    ::close(fd);
  }
  return -2;
}

// Removes the temporaries of `target` from slot `first` on that no live
// writer holds, up to the first free slot.
void RemoveStale(const std::string& target, int first) {
  for (int slot = first; slot < kSlots; ++slot) {
    const std::string name = SlotName(target, slot);
    const int fd = ::open(name.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) {
      if (errno == ENOENT) return;
      continue;
    }
    struct stat status {};
    if (TryLockFile(fd).held && StillNamed(fd, name, status)) ::unlink(name.c_str());
    ::close(fd);
  }
}

// The file's mode, and its owner where we may give it, from the file it
// replaces.
void TakeOverAttributes(int fd, const std::string& replaced) {
  struct stat old {};
  if (::stat(replaced.c_str(), &old) != 0 || !S_ISREG(old.st_mode)) return;
  struct stat now {};
  if (::fstat(fd, &now) != 0) return;
  if (now.st_uid != old.st_uid || now.st_gid != old.st_gid) {
    // Only root gives a file away; any owner may give it one of their groups.
    if (::fchown(fd, old.st_uid, old.st_gid) != 0) {
      [[maybe_unused]] const int ignored = ::fchown(fd, static_cast<uid_t>(-1), old.st_gid);
    }
  }
  // After the owner, which clears set-id bits; most often nothing to change.
  if ((now.st_mode & 07777) != (old.st_mode & 07777)) ::fchmod(fd, old.st_mode & 07777);
}

// Writes the folder's entry for a renamed file out to the disk.
bool SyncFolder(const std::string& file) {
  fs::path folder = fs::path(file).parent_path();
  if (folder.empty()) folder = ".";
  const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool synced = ::fsync(fd) == 0;
  ::close(fd);
  return synced;
}
#endif

}  // namespace

OutputFile::OutputFile(std::string target, Durability durability)
    : target_(std::move(target)), durability_(durability) {
  if (target_.empty()) {
    failure_ = std::strerror(ENOENT);
    return;
  }
  placed_ = ThroughLinks(target_);
  std::error_code ec;
  if (fs::is_directory(FsPath(placed_), ec)) {
    failure_ = std::strerror(EISDIR);
    return;
  }
  if (!CreateTemporary()) {
    failure_ = std::strerror(errno);
    temp_.clear();
    return;
  }
  std::setvbuf(file_.get(), nullptr, _IOFBF, kBufferBytes);
}

bool OutputFile::CreateTemporary() {
  for (int slot = 0; slot < kSlots; ++slot) {
    temp_ = SlotName(placed_, slot);
    const int fd = TakeSlot(temp_);
    if (fd == -1) return false;  // the folder refuses
    if (fd == -2) continue;      // another writer's
    RemoveStale(placed_, slot + 1);
#ifdef _WIN32
    file_.reset(_fdopen(fd, "wb"));
#else
    file_.reset(::fdopen(fd, "wb"));
#endif
    if (!file_) {
      const int error = errno;
#ifdef _WIN32
      _close(fd);
#else
      ::close(fd);
#endif
      std::error_code ec;
      fs::remove(FsPath(temp_), ec);
      errno = error;
      return false;
    }
    return true;
  }
  errno = EBUSY;
  return false;
}

OutputFile::~OutputFile() { Abandon(); }

bool OutputFile::Write(std::string_view bytes) {
  if (!file_ || failed_) return false;
  if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) {
    failure_ = std::strerror(errno);
    failed_ = true;
    return false;
  }
  offset_ += bytes.size();
  return true;
}

// Everything up to the rename, the temporary still open and locked so that no
// other writer takes it for a stale one.
bool OutputFile::Finish() {
  if (failed_) return false;
  if (std::fflush(file_.get()) != 0) return false;
#ifndef _WIN32
  const int fd = ::fileno(file_.get());
  if (durability_ == Durability::Durable && ::fsync(fd) != 0) return false;
  TakeOverAttributes(fd, placed_);
#endif
  return true;
}

bool OutputFile::Commit() {
  if (!file_) return false;
  bool done = Finish();
  if (!done && failure_.empty()) failure_ = std::strerror(errno);
#ifdef _WIN32
  done = Close(done);  // Windows renames and removes only closed files
#endif
  std::error_code ec;
  if (done) {
    PutInPlace(temp_, placed_, ec);
    if (ec) {
      failure_ = ec.message();
      done = false;
    }
  }
  // Removed while still locked, so that no other writer takes it meanwhile.
  if (!done) fs::remove(FsPath(temp_), ec);
  temp_.clear();
#ifndef _WIN32
  // Closing a flushed file reports only errors of the file systems that
  // write at the close, and then the file is in place with what it holds.
  done = Close(done);
  if (done && durability_ == Durability::Durable && !SyncFolder(placed_)) {
    failure_ = std::strerror(errno);
    done = false;
  }
#endif
  return done;
}

bool OutputFile::Close(bool done) {
  if (std::fclose(file_.release()) == 0 || !done) return done;
  failure_ = std::strerror(errno);
  return false;
}

void OutputFile::Abandon() {
#ifdef _WIN32
  file_.reset();
#endif
  if (!temp_.empty()) {
    std::error_code ec;
    fs::remove(FsPath(temp_), ec);  // while still locked, as in Commit
    temp_.clear();
  }
  file_.reset();
}

}  // namespace sheafwork
