#include "embedded/fonts/font_files.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "embedded/fonts/lookup_cache.h"
#include "log/paths.h"
#include "platform/fontconfig_library.h"
#include "platform/program_folders.h"
#include "text/strings.h"

namespace sheafwork::embedded {

namespace {

using fontconfig::ConfigPtr;
using fontconfig::FontSetPtr;
using fontconfig::ObjectSetPtr;
using fontconfig::PatternPtr;
using fontconfig::StrListPtr;

// The standard font folders and fontconfig's caches of them. The system's
// whole configuration (some fifty files of rules) takes several
// milliseconds to read, more than a small plot takes; we only need which
// family lives in which file. Someone who points FONTCONFIG_FILE or
// FONTCONFIG_PATH elsewhere gets that configuration instead.
constexpr const char* kFontFolders = R"(<?xml version="1.0"?>
<fontconfig>
  <dir>/usr/share/fonts</dir>
  <dir>/usr/local/share/fonts</dir>
  <dir prefix="xdg">fonts</dir>
  <dir>~/.fonts</dir>
  <cachedir>/var/cache/fontconfig</cachedir>
  <cachedir prefix="xdg">fontconfig</cachedir>
</fontconfig>
)";

bool SystemConfiguration() {
  return std::getenv("FONTCONFIG_FILE") != nullptr || std::getenv("FONTCONFIG_PATH") != nullptr;
}

FcConfig* Config() {
  static std::once_flag once;
  static ConfigPtr config;
  std::call_once(once, [] {
    const FontconfigLibrary* fc = Fontconfig();
    if (fc == nullptr) return;  // no fontconfig here: no font
    if (SystemConfiguration()) {
      config.reset(fc->FcInitLoadConfigAndFonts());
      return;
    }
    ConfigPtr made(fc->FcConfigCreate());
    if (!made) return;
    const auto* xml = reinterpret_cast<const FcChar8*>(kFontFolders);
    if (fc->FcConfigParseAndLoadFromMemory(made.get(), xml, FcFalse) &&
        fc->FcConfigBuildFonts(made.get()))
      config = std::move(made);
  });
  return config.get();
}

// fontconfig's objects are not safe to use from several threads at once.
std::mutex& Lock() {
  static std::mutex mutex;
  return mutex;
}

std::string_view AsView(const FcChar8* s) { return reinterpret_cast<const char*>(s); }

FaceFile ToFaceFile(FcPattern* font) {
  FaceFile face;
  FcChar8* file = nullptr;
  if (Fontconfig()->FcPatternGetString(font, FC_FILE, 0, &file) == FcResultMatch && file != nullptr)
    face.path = AsView(file);
  Fontconfig()->FcPatternGetInteger(font, FC_INDEX, 0, &face.index);
  int slant = FC_SLANT_ROMAN, weight = FC_WEIGHT_REGULAR;
  Fontconfig()->FcPatternGetInteger(font, FC_SLANT, 0, &slant);
  Fontconfig()->FcPatternGetInteger(font, FC_WEIGHT, 0, &weight);
  face.italic = slant != FC_SLANT_ROMAN;
  face.bold = weight >= FC_WEIGHT_DEMIBOLD;
  return face;
}

FontSetPtr List(FcConfig* config, FcPattern* pattern) {
  const ObjectSetPtr objects(Fontconfig()->FcObjectSetCreate());
  if (!objects) return nullptr;
  for (const char* object : {FC_FILE, FC_INDEX, FC_SLANT, FC_WEIGHT})
    Fontconfig()->FcObjectSetAdd(objects.get(), object);
  return FontSetPtr(Fontconfig()->FcFontList(config, pattern, objects.get()));
}

// The font of `pattern` (family and style asked) closest to what it asks.
std::optional<FaceFile> Match(FcConfig* config, FcPattern* pattern) {
  Fontconfig()->FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  const PatternPtr match(Fontconfig()->FcFontMatch(config, pattern, &result));
  if (!match || result != FcResultMatch) return std::nullopt;
  FaceFile face = ToFaceFile(match.get());
  if (face.path.empty()) return std::nullopt;
  return face;
}

std::optional<FaceFile> AskFamily(std::string_view family, bool bold, bool italic) {
  FcConfig* config = Config();
  if (config == nullptr) return std::nullopt;
  const std::string name(family);
  const PatternPtr pattern(Fontconfig()->FcPatternCreate());
  if (!pattern) return std::nullopt;
  Fontconfig()->FcPatternAddString(pattern.get(), FC_FAMILY,
                                   reinterpret_cast<const FcChar8*>(name.c_str()));
  // Matching alone would hand out a font of another family when the system
  // lacks this one.
  const FontSetPtr faces = List(config, pattern.get());
  if (!faces || faces->nfont == 0) return std::nullopt;
  Fontconfig()->FcPatternAddInteger(pattern.get(), FC_WEIGHT,
                                    bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  Fontconfig()->FcPatternAddInteger(pattern.get(), FC_SLANT,
                                    italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  return Match(config, pattern.get());
}

std::optional<FaceFile> AskFontFile(std::string_view wanted) {
  FcConfig* config = Config();
  if (config == nullptr) return std::nullopt;
  const PatternPtr everything(Fontconfig()->FcPatternCreate());
  if (!everything) return std::nullopt;
  const FontSetPtr fonts = List(config, everything.get());
  if (!fonts) return std::nullopt;
  std::optional<FaceFile> found;
  for (int i = 0; i < fonts->nfont; ++i) {
    FaceFile face = ToFaceFile(fonts->fonts[i]);
    if (!EqualsIgnoreCase(LastPathPart(face.path), wanted)) continue;
    // A collection's first face, whatever order the index lists them in.
    if (!found || face.index < found->index) found = std::move(face);
  }
  return found;
}

std::optional<FaceFile> AskAnyFace() {
  FcConfig* config = Config();
  if (config == nullptr) return std::nullopt;
  const PatternPtr pattern(Fontconfig()->FcPatternCreate());
  if (!pattern) return std::nullopt;
  Fontconfig()->FcPatternAddString(pattern.get(), FC_FAMILY,
                                   reinterpret_cast<const FcChar8*>("sans-serif"));
  return Match(config, pattern.get());
}

// The folders fonts may be put in (those of kFontFolders), there or not.
std::vector<std::string> RootFolders() {
  std::vector<std::string> folders = {"/usr/share/fonts", "/usr/local/share/fonts",
                                      UserDataHome() + "/fonts"};
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/')
    folders.push_back(std::string(home) + "/.fonts");
  return folders;
}

// The font folders the answers depend on: the roots and every folder
// fontconfig found under them.
std::vector<std::string> FontFolders() {
  std::vector<std::string> folders = RootFolders();
  if (FcConfig* config = Config()) {
    const StrListPtr dirs(Fontconfig()->FcConfigGetFontDirs(config));
    while (const FcChar8* dir = dirs ? Fontconfig()->FcStrListNext(dirs.get()) : nullptr) {
      std::string path(AsView(dir));
      if (std::find(folders.begin(), folders.end(), path) == folders.end())
        folders.push_back(std::move(path));
    }
  }
  return folders;
}

// Answers from earlier runs, unless fontconfig's own configuration is asked
// for, whose folders we do not know.
LookupCache& Cache() {
  static LookupCache cache =
      SystemConfiguration() ? LookupCache()
                            : LookupCache::Load(UserCacheFolder() + "/fonts.cache", RootFolders());
  return cache;
}

// The answer to `key`: remembered, else asked and remembered when
// fontconfig could answer.
template <typename Ask>
std::optional<FaceFile> Answer(std::string key, Ask ask) {
  const std::lock_guard lock(Lock());
  if (const std::optional<FaceFile>* known = Cache().Find(key)) return *known;
  std::optional<FaceFile> answer = ask();
  if (Config() != nullptr) Cache().Remember(std::move(key), answer, FontFolders);
  return answer;
}

}  // namespace

std::optional<FaceFile> FindFamily(std::string_view family, bool bold, bool italic) {
  if (family.empty()) return std::nullopt;
  std::string key = "family:";
  key += family;
  key += bold ? ":b" : ":";
  key += italic ? "i" : "";
  return Answer(std::move(key), [&] { return AskFamily(family, bold, italic); });
}

std::optional<FaceFile> FindFontFile(std::string_view fileName) {
  const std::string_view wanted = LastPathPart(fileName);
  if (wanted.empty()) return std::nullopt;
  std::string key = "file:";
  key += wanted;
  return Answer(std::move(key), [&] { return AskFontFile(wanted); });
}

std::optional<FaceFile> FindAnyFace() {
  return Answer("any", [] { return AskAnyFace(); });
}

}  // namespace sheafwork::embedded
