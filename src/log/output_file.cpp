#include "log/output_file.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "log/file_replace.h"
#include "log/wide_path.h"

namespace sheafwork {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBufferBytes = 1 << 20;
constexpr int kNameAttempts = 16;

// A name no other writer in this or another process is likely to pick; the
// exclusive open below settles the rest.
std::string TemporaryName(const std::string& target) {
  static std::atomic<unsigned> counter{0};
  const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
  return target + ".sheafwork-" + std::to_string(ticks % 1000000007) + "-" +
         std::to_string(counter.fetch_add(1)) + ".tmp";
}

}  // namespace

OutputFile::OutputFile(std::string target) : target_(std::move(target)) {
  if (target_.empty()) {
    failure_ = std::strerror(ENOENT);
    return;
  }
  std::error_code ec;
  if (fs::is_directory(FsPath(target_), ec)) {
    failure_ = std::strerror(EISDIR);
    return;
  }
  int error = 0;
  for (int attempt = 0; attempt < kNameAttempts && !file_; ++attempt) {
    temp_ = TemporaryName(target_);
    // "x": fails rather than reuse a file that is already there.
#ifdef _WIN32
    // The C runtime Windows ships has no "x": a leftover temporary file of
    // the same name is written over.
    const auto wide = WidePath(temp_);
    file_.reset(wide ? _wfopen(wide->c_str(), L"wb") : nullptr);
#else
    file_.reset(std::fopen(temp_.c_str(), "wbx"));
#endif
    error = errno;
    if (!file_ && !fs::exists(FsPath(temp_), ec)) break;  // not a name clash: the folder refuses
  }
  if (!file_) {
    failure_ = std::strerror(error);
    temp_.clear();
    return;
  }
  std::setvbuf(file_.get(), nullptr, _IOFBF, kBufferBytes);
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

bool OutputFile::Commit() {
  if (!file_) return false;
  const bool flushed = !failed_ && std::fflush(file_.get()) == 0;
  if (!flushed && failure_.empty()) failure_ = std::strerror(errno);
  const bool closed = std::fclose(file_.release()) == 0;
  if (!closed && failure_.empty()) failure_ = std::strerror(errno);
  std::error_code ec;
  if (flushed && closed) {
    PutInPlace(temp_, target_, ec);
    if (!ec) {
      temp_.clear();
      return true;
    }
    failure_ = ec.message();
  }
  fs::remove(FsPath(temp_), ec);
  temp_.clear();
  return false;
}

void OutputFile::Abandon() {
  file_.reset();
  if (temp_.empty()) return;
  std::error_code ec;
  fs::remove(FsPath(temp_), ec);
  temp_.clear();
}

}  // namespace sheafwork
