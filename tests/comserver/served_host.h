#pragma once
// The host automation interface served by name: the mirror image of the COM
// host, by the same tables of names (com/member_names.h).

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "com/com_ref.h"
#include "host/automation.h"

namespace sheafwork::comserver {

struct ServerHooks {
  /// A line of TestControl that is no fault rule: the served application
  /// may read it (the fake host's drawings); false when it does not.
  std::function<bool(std::string_view line)> configure;
  /// Called after the application's Quit.
  std::function<void()> quit;
  /// Which host is served (ServedApplication::Kind).
  std::string kind;
};

/// The application object, with two members of the test server's own:
/// TestControl(text), the lines of which are fault rules (AddFaultRule) or
/// lines for `hooks.configure`, and TestHostKind (`hooks.kind`).
com::ComRef<IDispatch> ServeApplication(std::shared_ptr<host::Application> app, ServerHooks hooks);

}  // namespace sheafwork::comserver
