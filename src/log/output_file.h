#pragma once
// A file written beside its target under a temporary name and renamed into
// place only when complete: until Commit() a file already at the target stays
// as it was, and an abandoned file leaves nothing behind.
//
// The temporary file is "<target>.sheafwork-<n>.tmp", locked while it is
// written (file_lock.h). One that no one holds was left by a run that died;
// it is taken over or removed before the target is written again, while one
// that another writer holds is left alone. A target that is a symbolic link
// is written through to the file it names; the file put in place keeps the
// mode (and, where the system lets us, the owner) of the file it replaces.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace sheafwork {

class OutputFile {
 public:
  /// `Durable` files are the user's own work (list files): the new content
  /// is on the disk before it takes the old one's place, and its folder is
  /// written out after. Plots can be made again and are not waited for.
  enum class Durability { Ordinary, Durable };

  /// Creates the temporary file in the folder of the file the target names;
  /// IsOpen() says whether that worked.
  explicit OutputFile(std::string target, Durability durability = Durability::Ordinary);
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

  bool CreateTemporary();
  bool Finish();
  /// Closes the file; `done` unless the close failed.
  bool Close(bool done);

  std::string target_;
  std::string placed_;  ///< the target with its links followed
  std::string temp_;
  Durability durability_;
  std::unique_ptr<std::FILE, Closer> file_;
  std::uint64_t offset_ = 0;
  bool failed_ = false;
  std::string failure_;
};

}  // namespace sheafwork
