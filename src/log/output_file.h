#pragma once
// A file written beside its target under a temporary name and renamed into
// place only when complete: until Commit() a file already at the target stays
// as it was, and an abandoned file leaves nothing behind.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace sheafwork {

class OutputFile {
 public:
  /// Creates the temporary file in the target's folder; IsOpen() says
  /// whether that worked.
  explicit OutputFile(std::string target);
  /// Abandons the file unless it was committed.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  bool IsOpen() const { return file_ != nullptr; }
  /// Appends bytes; false once any write has failed.
  bool Write(std::string_view bytes);
  /// Bytes written so far: the offset of the next byte.
  std::uint64_t Offset() const { return offset_; }
  /// Flushes, closes and renames the file onto the target. False (and the
  /// temporary file removed) when any of that, or an earlier write, failed.
  bool Commit();
  /// Closes and removes the temporary file.
  void Abandon();

  const std::string& Target() const { return target_; }
  /// Why the file could not be opened, written or put in place, in the
  /// system's words; empty while nothing failed.
  const std::string& Failure() const { return failure_; }

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::string target_;
  std::string temp_;
  std::unique_ptr<std::FILE, Closer> file_;
  std::uint64_t offset_ = 0;
  bool failed_ = false;
  std::string failure_;
};

}  // namespace sheafwork
