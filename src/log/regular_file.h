#pragma once
// Reading a whole input file (a list, a drawing, a plotter configuration, a
// plot style table) without being led astray by what is not one: a folder,
// a FIFO that would block, a device that never ends, or a file far larger
// than any real one of its kind.

#include <cstdint>
#include <string>

namespace sheafwork {

/// No size limit, for drawings: a real one can be very large.
inline constexpr std::uint64_t kNoSizeLimit = UINT64_MAX;
/// The limit for list files and plotter configurations: far above any real
/// one (a full list is a few megabytes).
inline constexpr std::uint64_t kTextInputLimit = 64u << 20;

struct RegularFileRead {
  bool ok = false;
  std::string bytes;   ///< the whole file, when ok
  std::string reason;  ///< in French, when not ok: the system's or ours
};

/// Reads the whole of `path` when it is a regular file of at most `limit`
/// bytes. The file is opened without waiting (a FIFO does not block) and
/// tested once open, so it cannot be swapped between test and read.
RegularFileRead ReadRegularFile(const std::string& path, std::uint64_t limit);

}  // namespace sheafwork
