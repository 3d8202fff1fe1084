#include "embedded/fonts/harfbuzz_library.h"

#include <dlfcn.h>

namespace sheafwork::embedded {

const HarfBuzzLibrary* HarfBuzz() {
  static const HarfBuzzLibrary* const library = []() -> const HarfBuzzLibrary* {
    void* handle = dlopen("libharfbuzz.so.0", RTLD_LAZY | RTLD_LOCAL);
    if (handle == nullptr) return nullptr;
    static HarfBuzzLibrary found;
    bool complete = true;
#define SHEAFWORK_HARFBUZZ_FIND(name)                                        \
  found.name = reinterpret_cast<decltype(found.name)>(dlsym(handle, #name)); \
  complete = complete && found.name != nullptr;
    SHEAFWORK_HARFBUZZ_FUNCTIONS(SHEAFWORK_HARFBUZZ_FIND)
#undef SHEAFWORK_HARFBUZZ_FIND
    return complete ? &found : nullptr;
  }();
  return library;
}

}  // namespace sheafwork::embedded
