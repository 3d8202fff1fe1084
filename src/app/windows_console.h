#pragma once
// The Windows console: the program's UTF-8 text shown with its accents.

#ifdef _WIN32
#include <string>
#include <vector>

namespace sheafwork {

/// While it lives, a console the program writes to shows UTF-8 (its output
/// code page switched to UTF-8, and back when it ends). Output redirected
/// to a file or a pipe is untouched: the bytes go as they are.
class Utf8Console {
 public:
  Utf8Console();
  ~Utf8Console();
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  unsigned previous_ = 0;  ///< 0: not switched
};

/// The program's arguments (UTF-16, as Windows gives them) in UTF-8.
std::vector<std::string> Utf8Arguments(int argc, const wchar_t* const* argv);

}  // namespace sheafwork
#endif
