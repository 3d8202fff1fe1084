#pragma once
// COM for a run of the Windows program, from start-up to the end: the
// apartment, and the busy-host message filter that makes a call wait for a
// busy host (telling the user once) instead of failing.
#ifdef _WIN32

#include <ostream>

#include "app/console_prompt.h"
#include "com/attach.h"
#include "com/busy_filter.h"

namespace sheafwork {

class ComStartup {
 public:
  explicit ComStartup(std::ostream& err) : prompt_(err), filter_(prompt_), installed_(filter_) {}

 private:
  com::Apartment apartment_;
  ConsolePrompt prompt_;
  com::BusyHostFilter filter_;
  com::ScopedMessageFilter installed_;
};

}  // namespace sheafwork

#endif
