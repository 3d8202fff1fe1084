#include "platform/program_folders.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace sheafwork {

namespace fs = std::filesystem;

namespace {

// $variable when it is an absolute path, else `underHome` in the home folder
// (the temporary folder without one), with our folder in it.
std::string XdgFolder(const char* variable, const fs::path& underHome) {
  fs::path base;
  if (const char* xdg = std::getenv(variable); xdg && *xdg == '/') {
    base = xdg;
  } else if (const char* home = std::getenv("HOME"); home && *home) {
    base = fs::path(home) / underHome;
  } else {
    base = fs::temp_directory_path();
  }
  return (base / "sheafwork").string();
}

}  // namespace

std::string UserDataFolder() { return XdgFolder("XDG_DATA_HOME", fs::path(".local") / "share"); }

std::string UserCacheFolder() { return XdgFolder("XDG_CACHE_HOME", ".cache"); }

std::string ProgramFolder() {
  std::error_code ec;
  const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : exe.parent_path().string();
}

}  // namespace sheafwork
