#include "platform/program_folders.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace sheafwork {

namespace fs = std::filesystem;

namespace {

// $variable when it is an absolute path, else `underHome` in the home folder
// (the temporary folder without one).
fs::path XdgFolder(const char* variable, const fs::path& underHome) {
  if (const char* xdg = std::getenv(variable); xdg && *xdg == '/') return xdg;
  if (const char* home = std::getenv("HOME"); home && *home) return fs::path(home) / underHome;
  return fs::temp_directory_path();
}

}  // namespace

std::string UserDataHome() {
  return XdgFolder("XDG_DATA_HOME", fs::path(".local") / "share").string();
}

std::string UserDataFolder() { return (fs::path(UserDataHome()) / "sheafwork").string(); }

std::string UserCacheFolder() {
  return (XdgFolder("XDG_CACHE_HOME", ".cache") / "sheafwork").string();
}

std::string ProgramFolder() {
  std::error_code ec;
  const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : exe.parent_path().string();
}

}  // namespace sheafwork
