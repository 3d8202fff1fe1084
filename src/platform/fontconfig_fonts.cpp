#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_set>

#include "platform/fontconfig_library.h"
#include "platform/fonts.h"

namespace sheafwork {

namespace {

namespace fs = std::filesystem;
using fontconfig::ConfigPtr;
using fontconfig::FontSetPtr;
using fontconfig::ObjectSetPtr;
using fontconfig::PatternPtr;
using fontconfig::StrListPtr;

// Font file names are compared ASCII-blind: fontconfig hands out bytes, and
// the names the drawings ask for ("arial.ttf", "romans.shx") are ASCII.
std::string FoldAscii(std::string_view s) {
  std::string folded(s);
  for (char& c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return folded;
}

std::string_view BaseName(std::string_view path) {
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view AsView(const FcChar8* s) { return reinterpret_cast<const char*>(s); }

// Every font file fontconfig has indexed.
void AddIndexedFiles(FcConfig* config, std::unordered_set<std::string>& names) {
  const FontconfigLibrary& fc = *Fontconfig();
  const PatternPtr everything(fc.FcPatternCreate());
  const ObjectSetPtr fileOnly(fc.FcObjectSetCreate());
  if (fileOnly) fc.FcObjectSetAdd(fileOnly.get(), FC_FILE);
  if (!everything || !fileOnly) return;
  const FontSetPtr fonts(fc.FcFontList(config, everything.get(), fileOnly.get()));
  if (!fonts) return;
  for (int i = 0; i < fonts->nfont; ++i) {
    FcChar8* file = nullptr;
    if (fc.FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &file) == FcResultMatch && file) {
      names.insert(FoldAscii(BaseName(AsView(file))));
    }
  }
}

// Every file directly in one of the configured font folders (fontconfig lists
// their subfolders as folders of their own), including those fontconfig does
// not index, such as shape fonts.
void AddFolderFiles(FcConfig* config, std::unordered_set<std::string>& names) {
  const FontconfigLibrary& fc = *Fontconfig();
  const StrListPtr dirs(fc.FcConfigGetFontDirs(config));
  if (!dirs) return;
  while (const FcChar8* dir = fc.FcStrListNext(dirs.get())) {
    std::error_code ec;
    for (fs::directory_iterator it(fs::path(AsView(dir)), ec), end; !ec && it != end;
         it.increment(ec)) {
      std::error_code typeError;
      if (it->is_regular_file(typeError)) {
        names.insert(FoldAscii(it->path().filename().string()));
      }
    }
  }
}

std::unordered_set<std::string> ListFontFileNames() {
  std::unordered_set<std::string> names;
  const FontconfigLibrary* fc = Fontconfig();
  if (fc == nullptr || !fc->FcInit()) return names;
  // A reference of our own on the current configuration, so that it stays
  // alive while we read it even if someone reloads fontconfig meanwhile.
  const ConfigPtr config(fc->FcConfigReference(nullptr));
  if (!config) return names;
  AddIndexedFiles(config.get(), names);
  AddFolderFiles(config.get(), names);
  return names;
}

// Read once per process, on first use: the font folders do not change while
// a run plots, and a run asks for every text style of every drawing.
const std::unordered_set<std::string>& KnownFontFileNames() {
  static const std::unordered_set<std::string> names = ListFontFileNames();
  return names;
}

class FontconfigFolders final : public FontFolders {
 public:
  bool HasFontFile(std::string_view fileName) override {
    if (fileName.empty()) return false;
    return KnownFontFileNames().contains(FoldAscii(fileName));
  }
};

}  // namespace

std::unique_ptr<FontFolders> SystemFontFolders() { return std::make_unique<FontconfigFolders>(); }

}  // namespace sheafwork

// fontconfig 2.14 loses one pattern while parsing the <rejectfont> rule of
// Debian's 70-no-bitmaps.conf, so every process that loads the system
// configuration "leaks" 288 bytes once. LeakSanitizer cannot see past
// fontconfig's frames (it is built without frame pointers), so the
// suppression has to name the whole library. It is compiled in only in
// sanitizer builds, and only into programs that look up fonts.
#if defined(__SANITIZE_ADDRESS__)
#define SHEAFWORK_LEAK_CHECKED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(leak_sanitizer)
#define SHEAFWORK_LEAK_CHECKED 1
#endif
#endif

#ifdef SHEAFWORK_LEAK_CHECKED
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }
#endif
