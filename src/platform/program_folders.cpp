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

}  // namespace sheafwork
