#pragma once
// Windows file calls take UTF-16 names; the program's paths are UTF-8.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace sheafwork {

/// The file-system path of a UTF-8 path. A path made from a narrow string
/// would read it in the local code page on Windows; on POSIX both are the
/// same bytes.
inline std::filesystem::path FsPath(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

/// The path as the program's UTF-8 text (`.string()` gives the local code
/// page on Windows).
inline std::string PathText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

}  // namespace sheafwork

#ifdef _WIN32
namespace sheafwork {

/// The UTF-16 form of a UTF-8 path; nullopt when the path cannot be converted.
inline std::optional<std::wstring> WidePath(std::string_view utf8) {
  try {
    return FsPath(utf8).wstring();
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace sheafwork
#endif
