#pragma once
// UTF-16 text from Windows calls back into the program's UTF-8.

#ifdef _WIN32
#include <string>
#include <string_view>

namespace sheafwork {

/// `wide` (UTF-16, a lone surrogate becomes U+FFFD) as UTF-8.
std::string Utf8FromWide(std::wstring_view wide);

/// A NUL-terminated UTF-16 string as UTF-8; empty for a null pointer.
inline std::string Utf8FromWide(const wchar_t* wide) {
  return wide ? Utf8FromWide(std::wstring_view(wide)) : std::string();
}

}  // namespace sheafwork
#endif
