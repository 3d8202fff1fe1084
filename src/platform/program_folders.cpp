#include "platform/program_folders.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/install_layout.h"

namespace sheafwork {

namespace fs = std::filesystem;

namespace {

// Whether `folder` is a data folder: it has the plotters every run needs.
bool HoldsData(const fs::path& folder) {
  std::error_code ec;
  return fs::is_directory(folder / "plotters", ec);
}

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

ProgramLayout FindProgramLayout(const std::string& programFolder) {
  ProgramLayout layout;
  if (programFolder.empty()) return layout;
  const fs::path program(programFolder);
  const struct {
    fs::path data;
    fs::path module;
  } candidates[] = {
      {program, program},
      {(program / kInstalledDataFromProgram).lexically_normal(),
       (program / kInstalledModuleFromProgram).lexically_normal()},
  };
  for (const auto& [data, module] : candidates) {
    std::string shown = data.string();
    if (shown.size() > 1 && shown.back() == '/') shown.pop_back();
    layout.searched.push_back(shown);
    if (HoldsData(data)) {
      layout.dataFolder = shown;
      layout.moduleFolder = module.string();
      return layout;
    }
  }
  layout.moduleFolder = programFolder;
  return layout;
}

const ProgramLayout& RunningProgramLayout() {
  static const ProgramLayout layout = FindProgramLayout(ProgramFolder());
  return layout;
}

std::string ProgramDataFolder() { return RunningProgramLayout().dataFolder; }

}  // namespace sheafwork
