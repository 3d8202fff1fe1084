#include "fake_dispatch.h"

namespace sheafwork::testing {

void FakeDispatch::Add(const std::wstring& name, Member member) {
  names_.push_back(name);
  members_.push_back(std::move(member));
}

int FakeDispatch::Lookups(const std::wstring& name) const {
  const auto it = lookups_.find(name);
  return it == lookups_.end() ? 0 : it->second;
}

HRESULT FakeDispatch::QueryInterface(REFIID iid, void** out) {
  if (iid == IID_IUnknown || iid == IID_IDispatch) {
    *out = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

HRESULT FakeDispatch::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT FakeDispatch::GetTypeInfo(UINT, LCID, ITypeInfo**) { return E_NOTIMPL; }

HRESULT FakeDispatch::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (count != 1) return E_INVALIDARG;
  ++lookups_[names[0]];
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (_wcsicmp(names_[i].c_str(), names[0]) == 0) {
      ids[0] = static_cast<DISPID>(i + 1);
      return S_OK;
    }
  }
  ids[0] = DISPID_UNKNOWN;
  return DISP_E_UNKNOWNNAME;
}

HRESULT FakeDispatch::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                             VARIANT* result, EXCEPINFO* info, UINT*) {
  if (id < 1 || static_cast<std::size_t>(id) > members_.size()) return DISP_E_MEMBERNOTFOUND;
  lastFlags = flags;
  lastWasNamedPut = params->cNamedArgs == 1 && params->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
  std::vector<VARIANT> args(params->rgvarg, params->rgvarg + params->cArgs);
  std::vector<VARIANT> leftToRight(args.rbegin(), args.rend());
  return members_[static_cast<std::size_t>(id - 1)](leftToRight, result, info);
}

}  // namespace sheafwork::testing
