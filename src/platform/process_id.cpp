#include "platform/process_id.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace sheafwork {

long CurrentProcessId() {
#ifdef _WIN32
  return static_cast<long>(GetCurrentProcessId());
#else
  return static_cast<long>(getpid());
#endif
}

}  // namespace sheafwork
