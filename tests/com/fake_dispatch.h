#pragma once
// An automation object in the test's own process, scripted by member name:
// what a server returns, the errors it raises (with or without deferred
// fill-in), a server that has gone away. It counts the name lookups.

#include <oaidl.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace sheafwork::testing {

class FakeDispatch : public IDispatch {
 public:
  /// A member: receives the arguments left to right, fills the result;
  /// returns the HRESULT of the call (and may fill the EXCEPINFO).
  using Member =
      std::function<HRESULT(const std::vector<VARIANT>& args, VARIANT* result, EXCEPINFO* info)>;
  void Add(const std::wstring& name, Member member);

  /// How many times `name` was looked up.
  int Lookups(const std::wstring& name) const;

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }
  // IDispatch
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* info, UINT* badArgument) override;

  /// The flags and named arguments of the last call.
  WORD lastFlags = 0;
  bool lastWasNamedPut = false;

 private:
  ULONG references_ = 1;  // owned by the test, never freed through Release
  std::vector<std::wstring> names_;
  std::vector<Member> members_;
  std::map<std::wstring, int> lookups_;
};

}  // namespace sheafwork::testing
