#pragma once
// Paths in tests, as this system writes them. The program's paths are UTF-8
// text; a std::filesystem::path made from a narrow string reads it in the
// local code page on Windows, so tests go through u8string both ways.

#include <filesystem>
#include <string>
#include <string_view>

namespace sheafwork::testing {

/// The path of the UTF-8 text `utf8`.
inline std::filesystem::path PathFromUtf8(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

/// The UTF-8 text of `path`.
inline std::string Utf8Path(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

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
