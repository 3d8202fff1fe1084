#include "platform/program_folders.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/install_layout.h"

#ifdef _WIN32
#include <windows.h>

#include "platform/windows_text.h"
#endif

namespace sheafwork {

namespace fs = std::filesystem;

namespace {

// Whether `folder` is a data folder: it has the plotters every run needs.
bool HoldsData(const fs::path& folder) {
  std::error_code ec;
  return fs::is_directory(folder / "plotters", ec);
}

#ifdef _WIN32

// A folder from a UTF-16 environment variable, as UTF-8; empty when unset.
std::string WideEnvironmentFolder(const wchar_t* variable) {
  const wchar_t* value = _wgetenv(variable);
  return value && *value ? Utf8FromWide(value) : std::string();
}

std::string TemporaryFolder() {
  wchar_t buffer[MAX_PATH + 1];
  const DWORD size = GetTempPathW(MAX_PATH + 1, buffer);
  if (size == 0 || size > MAX_PATH) return {};
  std::wstring folder(buffer, size);
  while (!folder.empty() && folder.back() == L'\\') folder.pop_back();
  return Utf8FromWide(folder);
}

#else

// $variable when it is an absolute path, else `underHome` in the home folder
// (the temporary folder without one).
fs::path XdgFolder(const char* variable, const fs::path& underHome) {
  if (const char* xdg = std::getenv(variable); xdg && *xdg == '/') return xdg;
  if (const char* home = std::getenv("HOME"); home && *home) return fs::path(home) / underHome;
  return fs::temp_directory_path();
}

#endif

}  // namespace

#ifdef _WIN32

// %LOCALAPPDATA%, else the temporary folder.
std::string UserDataHome() {
  std::string folder = WideEnvironmentFolder(L"LOCALAPPDATA");
  return folder.empty() ? TemporaryFolder() : folder;
}

// The two logs and the scratch drawing go to the program's folder on Windows.
std::string UserDataFolder() { return ProgramFolder(); }

std::string UserCacheFolder() { return UserDataHome() + "\\sheafwork\\cache"; }

std::string ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (size == 0) return {};
    if (size < path.size()) {
      path.resize(size);
      break;
    }
    path.resize(path.size() * 2);
  }
  const std::size_t slash = path.find_last_of(L"\\/");
  return slash == std::wstring::npos ? std::string() : Utf8FromWide(path.substr(0, slash));
}

#else

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

#endif

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
