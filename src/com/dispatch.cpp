#include "com/dispatch.h"

#include <algorithm>
#include <utility>

#include "com/call_error.h"
#include "platform/windows_text.h"

namespace sheafwork::com {

Dispatch::Dispatch(ComRef<IDispatch> object) : object_(std::move(object)) {}

DISPID Dispatch::Id(std::string_view member) {
  const std::string key(member);
  if (const auto found = ids_.find(key); found != ids_.end()) return found->second;
  std::wstring wide = WideFromUtf8(member);
  LPOLESTR name = wide.data();
  DISPID id = DISPID_UNKNOWN;
  const HRESULT hr = object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(hr)) {
    EXCEPINFO none{};
    ThrowCallFailed(hr, none, member);
  }
  ids_.emplace(key, id);
  return id;
}

Variant Dispatch::Invoke(std::string_view member, WORD flags, std::vector<Variant>& args) {
  const DISPID id = Id(member);
  // Arguments go right to left.
  std::vector<VARIANT> reversed;
  reversed.reserve(args.size());
  for (auto it = args.rbegin(); it != args.rend(); ++it) reversed.push_back(it->raw());
  DISPID putId = DISPID_PROPERTYPUT;
  DISPPARAMS params{};
  params.rgvarg = reversed.empty() ? nullptr : reversed.data();
  params.cArgs = static_cast<UINT>(reversed.size());
  if (flags == DISPATCH_PROPERTYPUT) {
    params.rgdispidNamedArgs = &putId;
    params.cNamedArgs = 1;
  }
  Variant result;
  EXCEPINFO info{};
  UINT badArgument = 0;
  const HRESULT hr =
      object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                      flags == DISPATCH_PROPERTYPUT ? nullptr : result.get(), &info, &badArgument);
  if (FAILED(hr)) ThrowCallFailed(hr, info, member);
  return result;
}

Variant Dispatch::Get(std::string_view member, std::vector<Variant> args) {
  return Invoke(member, DISPATCH_PROPERTYGET | DISPATCH_METHOD, args);
}

void Dispatch::Put(std::string_view member, Variant value) {
  std::vector<Variant> args;
  args.push_back(std::move(value));
  Invoke(member, DISPATCH_PROPERTYPUT, args);
}

Variant Dispatch::Call(std::string_view member, std::vector<Variant> args) {
  return Invoke(member, DISPATCH_METHOD, args);
}

}  // namespace sheafwork::com
