#pragma once
// Finding the host's automation server by its ProgID.

#include <objbase.h>

#include <string>
#include <string_view>

#include "com/com_ref.h"

namespace sheafwork::com {

/// The ProgID the host is registered under unless told otherwise.
inline constexpr std::string_view kDefaultProgId = "Orvane.Application.15";

/// The environment variable that names another ProgID (another release, a
/// test server).
inline constexpr const wchar_t* kProgIdVariable = L"SHEAFWORK_PROGID";

/// The ProgID to attach to: `chosen` when not empty (the command line),
/// else the environment variable's value when set, else kDefaultProgId.
std::string ChooseProgId(std::string_view chosen);

/// Whether a server is registered under `progId`.
bool IsProgIdRegistered(std::string_view progId);

/// The running server of `progId` (the running object table) when there is
/// one, else a new one started from its registration. Throws host::Error
/// naming the ProgID and the reason when neither works.
ComRef<IDispatch> AttachServer(std::string_view progId);

/// COM for the calling thread, for as long as it lives (single-threaded
/// apartment: calls to a server come back on this thread).
class Apartment {
 public:
  Apartment();
  ~Apartment();
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  bool ok() const { return ok_; }

 private:
  bool ok_ = false;
};

}  // namespace sheafwork::com
