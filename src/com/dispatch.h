#pragma once
// Late-bound calls by name on an automation object (IDispatch). A member's
// DISPID is looked up once per object and kept: across processes each
// lookup costs milliseconds.

#include <oaidl.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "com/com_ref.h"
#include "com/variant.h"

namespace sheafwork::com {

class Dispatch {
 public:
  explicit Dispatch(ComRef<IDispatch> object);

  /// Property get (or a method call that returns a value).
  Variant Get(std::string_view member, std::vector<Variant> args = {});
  /// Property put.
  void Put(std::string_view member, Variant value);
  /// Method call; its result, empty for none.
  Variant Call(std::string_view member, std::vector<Variant> args = {});

  const ComRef<IDispatch>& object() const { return object_; }

 private:
  DISPID Id(std::string_view member);
  Variant Invoke(std::string_view member, WORD flags, std::vector<Variant>& args);

  ComRef<IDispatch> object_;
  std::unordered_map<std::string, DISPID> ids_;
};

}  // namespace sheafwork::com
