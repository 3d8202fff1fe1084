#pragma once
// The test server's side of automation: an IDispatch that serves an object
// of the host automation interface by member name. Names become DISPIDs in
// the order of the object's table; a call runs the member's handler; a
// host::Error becomes an exception with the error's number and description,
// as a host reports it.

#include <oaidl.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "com/com_ref.h"
#include "com/variant.h"

namespace sheafwork::comserver {

/// One call being served: its arguments left to right, as they came.
class ServedCall {
 public:
  ServedCall(WORD flags, DISPPARAMS& params);
  bool IsPut() const { return put_; }
  std::size_t Count() const { return args_.size(); }
  /// Whether argument `i` was given (not left out).
  bool Has(std::size_t i) const;
  /// Argument `i`'s value (by reference or not); host::Error 449 when it
  /// was not given.
  com::Variant Arg(std::size_t i) const;
  /// Stores `value` into argument `i`, given by reference.
  void SetOut(std::size_t i, const com::Variant& value);
  /// The value of a property put (its last argument).
  com::Variant PutValue() const { return Arg(args_.size() - 1); }

  com::Variant result;

 private:
  bool put_ = false;
  std::vector<VARIANT*> args_;
};

using MemberHandler = std::function<void(ServedCall&)>;
using MemberTable = std::vector<std::pair<std::string_view, MemberHandler>>;

/// A served object keeps `target` (the interface's object) alive and
/// answers by `members`.
class ServedObject final : public IDispatch {
 public:
  static com::ComRef<IDispatch> Make(std::shared_ptr<void> target, MemberTable members);
  /// The target of an object this server handed out, or null for another.
  static std::shared_ptr<void> TargetOf(IDispatch* object);

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  // IDispatch
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* info, UINT* badArgument) override;

 private:
  ServedObject(std::shared_ptr<void> target, MemberTable members);
  ~ServedObject();

  ULONG references_ = 1;
  std::shared_ptr<void> target_;
  MemberTable members_;
};

/// What the server is told to do wrong, for the tests: raise a chosen error
/// when a member is called with a given text among its arguments, or end the
/// process at the Nth call of a member. One rule a line:
///   fail|<member>|<text in an argument>|<number>|<description>
///   die|<member>|<N>
/// Returns false for a line it does not read.
bool AddFaultRule(std::string_view line);

/// The fields of a control line, split at "|".
std::vector<std::string> ControlFields(std::string_view line);

/// Called whenever a call is served (the server's idle clock).
void SetCallListener(std::function<void()> listener);

}  // namespace sheafwork::comserver
