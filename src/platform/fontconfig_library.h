#pragma once
// libfontconfig, opened the first time fonts are looked up rather than when
// the program starts: with what it brings (FreeType, expat, PNG, brotli) it
// is several libraries whose loading a run without TrueType text would pay
// for nothing. It stays open for the rest of the program.

#include <fontconfig/fontconfig.h>

#include <memory>

namespace sheafwork {

// The functions the program calls, each a member of the same name.
#define SHEAFWORK_FONTCONFIG_FUNCTIONS(X)                                                          \
  X(FcConfigBuildFonts)                                                                            \
  X(FcConfigCreate)                                                                                \
  X(FcConfigDestroy)                                                                               \
  X(FcConfigGetFontDirs) X(FcConfigParseAndLoadFromMemory) X(FcConfigReference)                    \
      X(FcDefaultSubstitute) X(FcFontList) X(FcFontMatch) X(FcFontSetDestroy) X(FcInit)            \
          X(FcInitLoadConfigAndFonts) X(FcObjectSetAdd) X(FcObjectSetCreate) X(FcObjectSetDestroy) \
              X(FcPatternAddInteger) X(FcPatternAddString) X(FcPatternCreate) X(FcPatternDestroy)  \
                  X(FcPatternGetInteger) X(FcPatternGetString) X(FcStrListDone) X(FcStrListNext)

struct FontconfigLibrary {
#define SHEAFWORK_FONTCONFIG_MEMBER(name) decltype(&::name) name = nullptr;
  SHEAFWORK_FONTCONFIG_FUNCTIONS(SHEAFWORK_FONTCONFIG_MEMBER)
#undef SHEAFWORK_FONTCONFIG_MEMBER
};

/// The library with every function above; null when the system has no
/// usable libfontconfig (then no font is found).
const FontconfigLibrary* Fontconfig();

namespace fontconfig {

/// Frees what fontconfig hands out; used only once Fontconfig() was found.
struct Deleter {
  void operator()(FcConfig* p) const { Fontconfig()->FcConfigDestroy(p); }
  void operator()(FcPattern* p) const { Fontconfig()->FcPatternDestroy(p); }
  void operator()(FcObjectSet* p) const { Fontconfig()->FcObjectSetDestroy(p); }
  void operator()(FcFontSet* p) const { Fontconfig()->FcFontSetDestroy(p); }
  void operator()(FcStrList* p) const { Fontconfig()->FcStrListDone(p); }
};
using ConfigPtr = std::unique_ptr<FcConfig, Deleter>;
using PatternPtr = std::unique_ptr<FcPattern, Deleter>;
using ObjectSetPtr = std::unique_ptr<FcObjectSet, Deleter>;
using FontSetPtr = std::unique_ptr<FcFontSet, Deleter>;
using StrListPtr = std::unique_ptr<FcStrList, Deleter>;

}  // namespace fontconfig

}  // namespace sheafwork
