#include "platform/fontconfig_library.h"

#include <dlfcn.h>

namespace sheafwork {

const FontconfigLibrary* Fontconfig() {
  static const FontconfigLibrary* const library = []() -> const FontconfigLibrary* {
    void* handle = dlopen("libfontconfig.so.1", RTLD_LAZY | RTLD_LOCAL);
    if (handle == nullptr) return nullptr;
    static FontconfigLibrary found;
    bool complete = true;
#define SHEAFWORK_FONTCONFIG_FIND(name)                                      \
  found.name = reinterpret_cast<decltype(found.name)>(dlsym(handle, #name)); \
  complete = complete && found.name != nullptr;
    SHEAFWORK_FONTCONFIG_FUNCTIONS(SHEAFWORK_FONTCONFIG_FIND)
#undef SHEAFWORK_FONTCONFIG_FIND
    return complete ? &found : nullptr;
  }();
  return library;
}

}  // namespace sheafwork
