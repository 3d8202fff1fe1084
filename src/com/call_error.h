#pragma once
// What a failed automation call becomes: host::Error with the server's own
// number and description, or host::HostGone when the server has gone away.

#include <oaidl.h>

#include <string_view>

#include "host/error.h"

namespace sheafwork::com {

/// Whether `hr` says the server's process is gone (disconnected, no longer
/// available, or the call failed while it was ending).
bool IsServerGone(HRESULT hr);

/// The error a server raised: its deferred fill-in called first, then the
/// number from wCode when set, else from scode (the low word of a
/// FACILITY_CONTROL scode, the scode itself otherwise), and the description.
/// The EXCEPINFO's texts are freed.
host::Error ErrorFromException(EXCEPINFO& info);

/// Throws for a call of `member` that failed with `hr` (`info` filled when
/// hr is DISP_E_EXCEPTION).
[[noreturn]] void ThrowCallFailed(HRESULT hr, EXCEPINFO& info, std::string_view member);

/// "0x800706BA": how an HRESULT is named in a message.
std::string HresultText(HRESULT hr);

}  // namespace sheafwork::com
