#pragma once
// UTF-16 text of Windows calls and the program's UTF-8, both ways.

#ifdef _WIN32
#include <string>
#include <string_view>

namespace sheafwork {

/// `wide` (UTF-16, a lone surrogate becomes U+FFFD) as UTF-8.
std::string Utf8FromWide(std::wstring_view wide);

/// `utf8` as UTF-16 (malformed bytes become U+FFFD).
std::wstring WideFromUtf8(std::string_view utf8);

/// Appends `argument` to a command line, after a blank unless it is the
/// first, quoted so that CommandLineToArgvW and the C runtime read it back
/// as it is.
void AppendCommandLineArgument(std::wstring& line, std::wstring_view argument);

/// A NUL-terminated UTF-16 string as UTF-8; empty for a null pointer.
inline std::string Utf8FromWide(const wchar_t* wide) {
  return wide ? Utf8FromWide(std::wstring_view(wide)) : std::string();
}

}  // namespace sheafwork
#endif
