#include "platform/code_page_path.h"

#ifdef _WIN32
#include <windows.h>

#include "platform/windows_text.h"
#include "text/windows1252.h"
#endif

namespace sheafwork {

#ifdef _WIN32

namespace {

bool CodePageHolds(const std::string& text) { return Utf8ToWindows1252(text).replaced == 0; }

std::string ShortForm(const std::string& path) {
  const std::wstring wide = WideFromUtf8(path);
  const DWORD size = GetShortPathNameW(wide.c_str(), nullptr, 0);
  if (size == 0) return {};
  std::wstring shortPath(size, L'\0');
  const DWORD length = GetShortPathNameW(wide.c_str(), shortPath.data(), size);
  if (length == 0 || length >= size) return {};
  shortPath.resize(length);
  return Utf8FromWide(shortPath);
}

}  // namespace

std::string CodePagePath(const std::string& path) {
  if (CodePageHolds(path)) return path;
  // The folder's short form and the file's own name when the code page
  // holds it (it shows in the logs and names plot files); else the short
  // form of the whole path, which needs the file to be there.
  const std::size_t cut = path.find_last_of("\\/");
  std::string shortPath;
  if (cut != std::string::npos && CodePageHolds(path.substr(cut))) {
    const std::string folder = ShortForm(path.substr(0, cut));
    if (!folder.empty()) shortPath = folder + path.substr(cut);
  } else {
    shortPath = ShortForm(path);
  }
  return !shortPath.empty() && CodePageHolds(shortPath) ? shortPath : path;
}

#else

std::string CodePagePath(const std::string& path) { return path; }

#endif

}  // namespace sheafwork
