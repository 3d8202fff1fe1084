#include "platform/fontconfig_library.h"

#include "platform/shared_library.h"

namespace sheafwork {

const FontconfigLibrary* Fontconfig() {
  static const FontconfigLibrary* const library = []() -> const FontconfigLibrary* {
    void* handle = OpenSharedLibrary("libfontconfig.so.1");
    if (handle == nullptr) return nullptr;
    static FontconfigLibrary found;
    bool complete = true;
#define SHEAFWORK_FONTCONFIG_FIND(name) \
  complete = FindFunction(handle, #name, found.name) && complete;
    SHEAFWORK_FONTCONFIG_FUNCTIONS(SHEAFWORK_FONTCONFIG_FIND)
#undef SHEAFWORK_FONTCONFIG_FIND
    return complete ? &found : nullptr;
  }();
  return library;
}

}  // namespace sheafwork
