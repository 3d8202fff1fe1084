#pragma once
// A VARIANT owned by the program: cleared when dropped, made from and read
// as the program's own types (texts in UTF-8).

#include <oaidl.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "com/com_ref.h"
#include "host/sysvar.h"

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
  /// A system variable's value, each kind as its own VARIANT type.
  explicit Variant(const host::SysVarValue& value);
  /// An optional argument left out (VT_ERROR, DISP_E_PARAMNOTFOUND).
  static Variant Missing();
  /// An array of texts (a SAFEARRAY of BSTR).
  static Variant Strings(const std::vector<std::string>& texts);
  /// An array of reals (a SAFEARRAY of doubles): how points travel.
  static Variant Doubles(const std::vector<double>& values);
  /// An argument passed by reference to `target`, which the server may
  /// change: a 16-bit integer or a real by its own type, anything else as a
  /// VARIANT. `target` must outlive the call and stay where it is.
  static Variant RefTo(Variant& target);

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
  /// The texts or reals of an array (of any element type that converts).
  std::vector<std::string> AsStrings() const;
  std::vector<double> AsDoubles() const;
  /// A system variable's value by its VARIANT type (texts, reals, 32-bit
  /// and 16-bit integers; other types as 16-bit integers).
  host::SysVarValue AsSysVar() const;
  /// The value itself when this holds a reference to one.
  Variant Dereferenced() const;
  /// Stores `value` where this reference points (or in this VARIANT when it
  /// is no reference), converted to the referenced type.
  void Assign(const Variant& value);

 private:
  VARIANT v_;
};

/// `wide` (a BSTR or any UTF-16 text) as UTF-8.
std::string Utf8FromBstr(const BSTR wide);

}  // namespace sheafwork::com
