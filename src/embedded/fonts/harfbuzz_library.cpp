#include "embedded/fonts/harfbuzz_library.h"

#include "platform/shared_library.h"

namespace sheafwork::embedded {

const HarfBuzzLibrary* HarfBuzz() {
  static const HarfBuzzLibrary* const library = []() -> const HarfBuzzLibrary* {
    void* handle = OpenSharedLibrary("libharfbuzz.so.0");
    if (handle == nullptr) return nullptr;
    static HarfBuzzLibrary found;
    bool complete = true;
#define SHEAFWORK_HARFBUZZ_FIND(name) \
  complete = FindFunction(handle, #name, found.name) && complete;
    SHEAFWORK_HARFBUZZ_FUNCTIONS(SHEAFWORK_HARFBUZZ_FIND)
#undef SHEAFWORK_HARFBUZZ_FIND
    return complete ? &found : nullptr;
  }();
  return library;
}

}  // namespace sheafwork::embedded
