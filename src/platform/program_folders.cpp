#include "platform/program_folders.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace sheafwork {

namespace fs = std::filesystem;

std::string UserDataFolder() {
  fs::path base;
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg == '/') {
    base = xdg;
  } else if (const char* home = std::getenv("HOME"); home && *home) {
    base = fs::path(home) / ".local" / "share";
  } else {
    base = fs::temp_directory_path();
  }
  return (base / "sheafwork").string();
}

std::string ProgramFolder() {
  std::error_code ec;
  const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : exe.parent_path().string();
}

}  // namespace sheafwork
