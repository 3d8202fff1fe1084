#pragma once
// The system's font folders.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sheafwork {

class FontFolders {
 public:
  virtual ~FontFolders() = default;
  /// Whether a font file of this name (a file name without folder, such as
  /// "arial.ttf") is in one of the system's font folders; the letter case of
  /// the name is ignored. False when the system has no font folder.
  virtual bool HasFontFile(std::string_view fileName) = 0;
};

/// The system's font folders (the Windows folder's FONTS on Windows, the
/// fontconfig folders on POSIX).
std::unique_ptr<FontFolders> SystemFontFolders();

#ifdef _WIN32
/// The Windows folder's FONTS (UTF-8); empty when Windows does not say
/// where it is.
std::string WindowsFontsFolder();
/// The names of the files in it (no folders), UTF-8.
std::vector<std::string> WindowsFontFileNames();
#endif

}  // namespace sheafwork
