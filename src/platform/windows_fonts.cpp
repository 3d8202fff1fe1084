// The Windows folder's FONTS, listed once per process.
#include "platform/fonts.h"

#include <windows.h>

#include <mutex>
#include <string>
#include <vector>

#include "platform/windows_text.h"
#include "text/strings.h"

namespace sheafwork {

namespace {

class WindowsFontFolders final : public FontFolders {
 public:
  bool HasFontFile(std::string_view fileName) override {
    std::call_once(listed_, [this] { List(); });
    for (const std::string& name : names_) {
      if (EqualsIgnoreCase(name, fileName)) return true;
    }
    return false;
  }

 private:
  void List() { names_ = WindowsFontFileNames(); }

  std::once_flag listed_;
  std::vector<std::string> names_;
};

}  // namespace

std::string WindowsFontsFolder() {
  wchar_t windows[MAX_PATH];
  const UINT size = GetWindowsDirectoryW(windows, MAX_PATH);
  if (size == 0 || size >= MAX_PATH) return {};
  return Utf8FromWide(std::wstring_view(windows, size)) + "\\Fonts";
}

std::vector<std::string> WindowsFontFileNames() {
  std::vector<std::string> names;
  const std::wstring folder = WideFromUtf8(WindowsFontsFolder());
  if (folder.empty()) return names;
  WIN32_FIND_DATAW data;
  HANDLE find = FindFirstFileW((folder + L"\\*").c_str(), &data);
  if (find == INVALID_HANDLE_VALUE) return names;
  do {
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
      names.push_back(Utf8FromWide(data.cFileName));
  } while (FindNextFileW(find, &data));
  FindClose(find);
  return names;
}

std::unique_ptr<FontFolders> SystemFontFolders() { return std::make_unique<WindowsFontFolders>(); }

}  // namespace sheafwork
