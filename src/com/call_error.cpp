#include "com/call_error.h"

#include <winerror.h>

#include <cstdio>
#include <string>

#include "com/variant.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::com {

bool IsServerGone(HRESULT hr) {
  return hr == RPC_E_DISCONNECTED || hr == HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE) ||
         hr == HRESULT_FROM_WIN32(RPC_S_CALL_FAILED) || hr == RPC_E_SERVER_DIED ||
         hr == RPC_E_SERVER_DIED_DNE || hr == CO_E_OBJNOTCONNECTED;
}

std::string HresultText(HRESULT hr) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(hr));
  return text;
}

host::Error ErrorFromException(EXCEPINFO& info) {
  if (info.pfnDeferredFillIn != nullptr) info.pfnDeferredFillIn(&info);
  std::int32_t number = info.wCode;
  if (number == 0) {
    number = HRESULT_FACILITY(info.scode) == FACILITY_CONTROL
                 ? HRESULT_CODE(info.scode)
                 : static_cast<std::int32_t>(info.scode);
  }
  std::string description = Utf8FromBstr(info.bstrDescription);
  SysFreeString(info.bstrDescription);
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrHelpFile);
  info.bstrDescription = info.bstrSource = info.bstrHelpFile = nullptr;
  return host::Error(number, std::move(description));
}

void ThrowCallFailed(HRESULT hr, EXCEPINFO& info, std::string_view member) {
  if (hr == DISP_E_EXCEPTION) {
    host::Error error = ErrorFromException(info);
    if (IsServerGone(static_cast<HRESULT>(info.scode))) {
      throw host::HostGone(error.number(), error.description());
    }
    throw error;
  }
  const std::string where = std::string(member) + ", " + HresultText(hr);
  if (IsServerGone(hr)) {
    throw host::HostGone(static_cast<std::int32_t>(hr),
                         LoadResourceText(ids::kComHostGone) + where);
  }
  throw host::Error(static_cast<std::int32_t>(hr), LoadResourceText(ids::kComCallFailed) + where);
}

}  // namespace sheafwork::com
