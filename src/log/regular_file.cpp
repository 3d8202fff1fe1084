#include "log/regular_file.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include "res/string_ids.h"
#include "res/string_table.h"

#ifdef _WIN32
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace sheafwork {

namespace {

std::string TooLarge(std::uint64_t limit) {
  return LoadResourceText(ids::kFileTooLarge) + std::to_string(limit >> 20) + " Mo)";
}

RegularFileRead Failed(std::string reason) {
  RegularFileRead read;
  read.reason = std::move(reason);
  return read;
}

}  // namespace

#ifdef _WIN32

RegularFileRead ReadRegularFile(const std::string& path, std::uint64_t limit) {
  namespace fs = std::filesystem;
  const fs::path file(std::u8string(path.begin(), path.end()));
  std::error_code ec;
  const fs::file_status status = fs::status(file, ec);
  if (ec) return Failed(ec.message());
  if (!fs::is_regular_file(status)) return Failed(LoadResourceText(ids::kNotRegularFile));
  const std::uintmax_t size = fs::file_size(file, ec);
  if (!ec && size > limit) return Failed(TooLarge(limit));
  std::ifstream in(file, std::ios::binary);
  if (!in) return Failed(std::strerror(errno));
  RegularFileRead read;
  try {
    read.bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  } catch (const std::bad_alloc&) {
    return Failed(LoadResourceText(ids::kOutOfMemory));
  }
  if (in.bad()) return Failed(std::strerror(errno));
  if (read.bytes.size() > limit) return Failed(TooLarge(limit));
  read.ok = true;
  return read;
}

#else

namespace {

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }

 private:
  int fd_;
};

}  // namespace

RegularFileRead ReadRegularFile(const std::string& path, std::uint64_t limit) {
  // O_NONBLOCK: opening a FIFO without a writer returns at once; the test of
  // the open file below then refuses it.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (file.get() < 0) return Failed(std::strerror(errno));
  struct stat info {};
  if (::fstat(file.get(), &info) != 0) return Failed(std::strerror(errno));
  if (S_ISDIR(info.st_mode)) return Failed(std::strerror(EISDIR));
  if (!S_ISREG(info.st_mode)) return Failed(LoadResourceText(ids::kNotRegularFile));
  const auto size = static_cast<std::uint64_t>(info.st_size);
  if (size > limit) return Failed(TooLarge(limit));
  // A regular file reads the same with or without O_NONBLOCK. One that grew
  // since it was measured is read on, up to the limit.
  RegularFileRead read;
  try {
    read.bytes.resize(static_cast<std::size_t>(size));
    std::size_t done = 0;
    while (true) {
      char probe[4096];
      const bool full = done == read.bytes.size();
      const ssize_t n =
          full ? ::read(file.get(), probe, sizeof probe)
               : ::read(file.get(), read.bytes.data() + done, read.bytes.size() - done);
      if (n < 0) {
        if (errno == EINTR) continue;
        return Failed(std::strerror(errno));
      }
      if (n == 0) break;
      if (full) {
        if (done + static_cast<std::uint64_t>(n) > limit) return Failed(TooLarge(limit));
        read.bytes.append(probe, static_cast<std::size_t>(n));
      }
      done += static_cast<std::size_t>(n);
    }
    read.bytes.resize(done);
  } catch (const std::bad_alloc&) {
    return Failed(LoadResourceText(ids::kOutOfMemory));
  } catch (const std::length_error&) {
    return Failed(LoadResourceText(ids::kOutOfMemory));
  }
  read.ok = true;
  return read;
}

#endif

}  // namespace sheafwork
