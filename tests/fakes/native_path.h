#pragma once
// Paths in tests, as this system writes them (UTF-8 text to and from a
// std::filesystem::path: FsPath and PathText, log/wide_path.h).

#include <string>
#include <string_view>

namespace sheafwork::testing {

/// An absolute path a test writes the POSIX way ("/p/a.dwg"), as this system
/// writes it: unchanged on POSIX, on drive C: with "\" on Windows
/// ("C:\p\a.dwg"). A relative path only has its separators changed.
inline std::string NativePath(std::string_view posix) {
#ifdef _WIN32
  std::string path = posix.starts_with('/') ? "C:" : "";
  for (char c : posix) path += c == '/' ? '\\' : c;
  return path;
#else
  return std::string(posix);
#endif
}

}  // namespace sheafwork::testing
