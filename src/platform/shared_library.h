#pragma once
// System libraries opened while the program runs rather than when it starts:
// each is one the program does without until a run needs it (printers,
// fonts). They stay open for the rest of the program.

#include <dlfcn.h>

namespace sheafwork {

/// The system library `soname`, opened once it is needed; null when the
/// system does not have it.
inline void* OpenSharedLibrary(const char* soname) {
  return dlopen(soname, RTLD_LAZY | RTLD_LOCAL);
}

/// Sets `function` to the function `name` of `library`; false when the
/// library has none.
template <typename Function>
bool FindFunction(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

}  // namespace sheafwork
