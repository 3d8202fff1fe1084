#include "log/file_replace.h"

#include <cstdio>
#include <filesystem>

#include "log/wide_path.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#endif

namespace sheafwork {

void PutInPlace(const std::string& from, const std::string& to, std::error_code& ec) {
  ec.clear();
#ifdef RENAME_EXCHANGE
  // Only a plain file is swapped out: a folder or a link at the target gets
  // what a rename does to it.
  struct stat target {};
  if (::lstat(to.c_str(), &target) == 0 && S_ISREG(target.st_mode) &&
      renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_EXCHANGE) == 0) {
    // `from` now names the old file; the target is already the new one.
    std::error_code ignored;
    std::filesystem::remove(from, ignored);
    return;
  }
  // No plain file there, or no swapping on this file system: a plain rename.
#endif
  std::filesystem::rename(FsPath(from), FsPath(to), ec);
}

}  // namespace sheafwork
