#pragma once
// The COM host: the host automation interface over the host's automation
// server, every member a late-bound call by its automation name
// (com/member_names.h). Objects the server returns come back as the
// interface's objects; each keeps the DISPIDs it looked up.

#include <memory>
#include <string_view>

#include "com/dispatch.h"
#include "host/automation.h"

namespace sheafwork::com {

/// The application object of a server already attached (AttachServer).
std::shared_ptr<host::Application> MakeComApplication(ComRef<IDispatch> server);

/// Attaches to the server of `progId` (the running one, else a new one) and
/// returns its application. Throws host::Error naming the ProgID when it
/// cannot.
std::shared_ptr<host::Application> AttachComHost(std::string_view progId);

}  // namespace sheafwork::com
