#include "com/attach.h"

#include <oleauto.h>

#include <cstdlib>

#include "com/call_error.h"
#include "host/error.h"
#include "platform/windows_text.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::com {

std::string ChooseProgId(std::string_view chosen) {
  if (!chosen.empty()) return std::string(chosen);
  if (const wchar_t* named = _wgetenv(kProgIdVariable); named != nullptr && *named != L'\0') {
    return Utf8FromWide(named);
  }
  return std::string(kDefaultProgId);
}

bool IsProgIdRegistered(std::string_view progId) {
  CLSID clsid;
  return SUCCEEDED(CLSIDFromProgID(WideFromUtf8(progId).c_str(), &clsid));
}

ComRef<IDispatch> AttachServer(std::string_view progId) {
  CLSID clsid;
  const HRESULT found = CLSIDFromProgID(WideFromUtf8(progId).c_str(), &clsid);
  if (FAILED(found)) {
    throw host::Error(static_cast<std::int32_t>(found), LoadResourceText(ids::kComServerNotFound) +
                                                            std::string(progId) + ", " +
                                                            HresultText(found));
  }
  ComRef<IUnknown> running;
  if (SUCCEEDED(GetActiveObject(clsid, nullptr, running.Out())) && running) {
    ComRef<IDispatch> object;
    if (SUCCEEDED(running->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(object.Out())))) {
      return object;
    }
  }
  ComRef<IDispatch> object;
  const HRESULT created =
      CoCreateInstance(clsid, nullptr, CLSCTX_LOCAL_SERVER | CLSCTX_INPROC_SERVER, IID_IDispatch,
                       reinterpret_cast<void**>(object.Out()));
  if (FAILED(created)) {
    throw host::Error(static_cast<std::int32_t>(created),
                      LoadResourceText(ids::kComServerNotStarted) + std::string(progId) + ", " +
                          HresultText(created));
  }
  return object;
}

Apartment::Apartment() { ok_ = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }

Apartment::~Apartment() {
  if (ok_) CoUninitialize();
}

}  // namespace sheafwork::com
