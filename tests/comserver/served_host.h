#pragma once
// The host automation interface served by name: the mirror image of the COM
// host, by the same tables of names (com/member_names.h); and the
// application served, the embedded host when the build has it, else the
// scripted fake host of the tests.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "com/com_ref.h"
#include "host/automation.h"

namespace sheafwork::comserver {

class ServedApplication {
 public:
  virtual ~ServedApplication() = default;
  virtual std::shared_ptr<host::Application> App() = 0;
  /// "fake" or "embarque": which host is served, for checks that hold for
  /// one of them only.
  virtual std::string Kind() const = 0;
  /// Reads a control line meant for this application; false when it is
  /// none of its own. The fake host reads
  ///   drawing|<full path>|<layout>|<layout>...
  /// (a drawing it serves, with its paper-space layouts); the embedded host
  /// takes such lines and ignores them, since it reads the files.
  virtual bool Configure(std::string_view line) = 0;
};

std::unique_ptr<ServedApplication> MakeServedApplication();

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
