#pragma once
// A VARIANT owned by the program: cleared when dropped, made from and read
// as the program's own types (texts in UTF-8).

#include <oaidl.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "com/com_ref.h"

namespace sheafwork::com {

class Variant {
 public:
  Variant() { VariantInit(&v_); }
  explicit Variant(bool value);
  explicit Variant(std::int16_t value);
  explicit Variant(std::int32_t value);
  explicit Variant(double value);
  explicit Variant(std::string_view utf8);
  explicit Variant(const ComRef<IDispatch>& object);
  /// An optional argument left out (VT_ERROR, DISP_E_PARAMNOTFOUND).
  static Variant Missing();

  ~Variant() { VariantClear(&v_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  Variant(Variant&& other) noexcept;
  Variant& operator=(Variant&& other) noexcept;

  VARIANT* get() { return &v_; }
  const VARIANT& raw() const { return v_; }

  // Each reading converts as automation does; a value that does not convert
  // throws host::Error 13 (type mismatch).
  std::string AsString() const;
  bool AsBool() const;
  std::int16_t AsInt16() const;
  std::int32_t AsInt32() const;
  double AsDouble() const;
  /// The object it holds; throws host::Error 13 when it holds none.
  ComRef<IDispatch> AsDispatch() const;

 private:
  VARIANT v_;
};

/// `wide` (a BSTR or any UTF-16 text) as UTF-8.
std::string Utf8FromBstr(const BSTR wide);

}  // namespace sheafwork::com
