#include "comserver/served_object.h"

#include <oleauto.h>

#include <cstdlib>
#include <map>
#include <new>
#include <set>

#include "host/error.h"
#include "platform/windows_text.h"

namespace sheafwork::comserver {

namespace {

constexpr std::int32_t kArgumentMissing = 449;  // argument not optional

struct FailRule {
  std::string member;
  std::string text;
  host::Error error;
};

struct DieRule {
  std::string member;
  int at = 0;
};

struct Faults {
  std::vector<FailRule> failures;
  std::vector<DieRule> deaths;
  std::map<std::string, int> calls;
};

Faults& TheFaults() {
  static Faults faults;
  return faults;
}

std::function<void()>& Listener() {
  static std::function<void()> listener;
  return listener;
}

// The live objects, to know our own objects when they come back.
std::set<ServedObject*>& Live() {
  static std::set<ServedObject*> live;
  return live;
}

// Applies the rules to a call of `member`: ends the process or throws.
void ApplyFaults(std::string_view member, const ServedCall& call) {
  Faults& faults = TheFaults();
  const int count = ++faults.calls[std::string(member)];
  for (const DieRule& rule : faults.deaths) {
    if (rule.member == member && rule.at == count) std::_Exit(3);  // no goodbye
  }
  for (const FailRule& rule : faults.failures) {
    if (rule.member != member) continue;
    for (std::size_t i = 0; i < call.Count(); ++i) {
      if (!call.Has(i) || call.Arg(i).raw().vt != VT_BSTR) continue;
      if (call.Arg(i).AsString().find(rule.text) != std::string::npos) throw rule.error;
    }
  }
}

// How the server reports an error: the number in a FACILITY_CONTROL scode
// when it fits there, the description as it stands.
void FillException(EXCEPINFO* info, const host::Error& error) {
  if (info == nullptr) return;
  *info = EXCEPINFO{};
  const std::int32_t number = error.number();
  info->scode = number > 0 && number < 0x10000
                    ? MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number)
                    : static_cast<SCODE>(number);
  const std::wstring description = WideFromUtf8(error.description());
  info->bstrDescription = SysAllocStringLen(description.data(), description.size());
  info->bstrSource = SysAllocString(L"Sheafwork.TestHost");
}

}  // namespace

std::vector<std::string> ControlFields(std::string_view line) {
  std::vector<std::string> fields;
  std::size_t start = 0;
  while (true) {
    const std::size_t end = line.find('|', start);
    fields.emplace_back(line.substr(start, end - start));
    if (end == std::string_view::npos) return fields;
    start = end + 1;
  }
}

bool AddFaultRule(std::string_view line) {
  const std::vector<std::string> parts = ControlFields(line);
  if (parts.size() == 5 && parts[0] == "fail") {
    TheFaults().failures.push_back(
        {parts[1], parts[2], host::Error(std::atoi(parts[3].c_str()), parts[4])});
    return true;
  }
  if (parts.size() == 3 && parts[0] == "die") {
    TheFaults().deaths.push_back({parts[1], std::atoi(parts[2].c_str())});
    return true;
  }
  return false;
}

void SetCallListener(std::function<void()> listener) { Listener() = std::move(listener); }

ServedCall::ServedCall(WORD flags, DISPPARAMS& params)
    : put_((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
  // The arguments come right to left.
  for (UINT i = params.cArgs; i > 0; --i) args_.push_back(&params.rgvarg[i - 1]);
}

bool ServedCall::Has(std::size_t i) const {
  if (i >= args_.size()) return false;
  const VARIANT& v = *args_[i];
  return !(v.vt == VT_ERROR && v.scode == DISP_E_PARAMNOTFOUND);
}

com::Variant ServedCall::Arg(std::size_t i) const {
  if (!Has(i)) throw host::Error(kArgumentMissing, "Argument non facultatif");
  com::Variant copy;
  if (FAILED(VariantCopyInd(copy.get(), args_[i]))) throw host::Error(13, "Type incompatible");
  return copy;
}

void ServedCall::SetOut(std::size_t i, const com::Variant& value) {
  if (i >= args_.size() || (args_[i]->vt & VT_BYREF) == 0) {
    throw host::Error(13, "Type incompatible: argument par référence attendu");
  }
  // A view of the caller's reference; it owns nothing of its own.
  com::Variant reference;
  *reference.get() = *args_[i];
  reference.Assign(value);
  VariantInit(reference.get());
}

com::ComRef<IDispatch> ServedObject::Make(std::shared_ptr<void> target, MemberTable members) {
  return com::ComRef<IDispatch>::Adopt(new ServedObject(std::move(target), std::move(members)));
}

std::shared_ptr<void> ServedObject::TargetOf(IDispatch* object) {
  auto* served = static_cast<ServedObject*>(object);
  return Live().count(served) != 0 ? served->target_ : nullptr;
}

ServedObject::ServedObject(std::shared_ptr<void> target, MemberTable members)
    : target_(std::move(target)), members_(std::move(members)) {
  Live().insert(this);
}

ServedObject::~ServedObject() { Live().erase(this); }

HRESULT ServedObject::QueryInterface(REFIID iid, void** out) {
  if (out == nullptr) return E_POINTER;
  if (iid == IID_IUnknown || iid == IID_IDispatch) {
    *out = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

ULONG ServedObject::AddRef() { return ++references_; }

ULONG ServedObject::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT ServedObject::GetTypeInfoCount(UINT* count) {
  if (count != nullptr) *count = 0;
  return S_OK;
}

HRESULT ServedObject::GetTypeInfo(UINT, LCID, ITypeInfo**) { return E_NOTIMPL; }

HRESULT ServedObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (count == 0 || names == nullptr || ids == nullptr) return E_INVALIDARG;
  const std::string name = Utf8FromWide(names[0]);
  for (UINT i = 1; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  for (std::size_t i = 0; i < members_.size(); ++i) {
    if (CompareStringA(LOCALE_INVARIANT, NORM_IGNORECASE, name.c_str(), -1,
                       members_[i].first.data(),
                       static_cast<int>(members_[i].first.size())) == CSTR_EQUAL) {
      ids[0] = static_cast<DISPID>(i + 1);
      return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
    }
  }
  ids[0] = DISPID_UNKNOWN;
  return DISP_E_UNKNOWNNAME;
}

HRESULT ServedObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                             VARIANT* result, EXCEPINFO* info, UINT* badArgument) {
  if (badArgument != nullptr) *badArgument = 0;
  if (id < 1 || static_cast<std::size_t>(id) > members_.size()) return DISP_E_MEMBERNOTFOUND;
  if (Listener()) Listener()();
  DISPPARAMS none{};
  ServedCall call(flags, params != nullptr ? *params : none);
  // Keeps this object alive through a call that drops the last reference.
  AddRef();
  HRESULT hr = S_OK;
  try {
    const auto& [name, handler] = members_[static_cast<std::size_t>(id - 1)];
    ApplyFaults(name, call);
    handler(call);
    if (result != nullptr && !call.IsPut()) {
      VariantInit(result);
      *result = *call.result.get();
      VariantInit(call.result.get());
    }
  } catch (const host::Error& error) {
    FillException(info, error);
    hr = DISP_E_EXCEPTION;
  } catch (const std::bad_alloc&) {
    hr = E_OUTOFMEMORY;
  } catch (const std::exception& error) {
    FillException(info, host::Error(51, error.what()));  // internal error
    hr = DISP_E_EXCEPTION;
  }
  Release();
  return hr;
}

}  // namespace sheafwork::comserver
