#include "com/variant.h"

#include <oleauto.h>

#include <utility>

#include "host/error.h"
#include "platform/windows_text.h"

namespace sheafwork::com {

namespace {

inline constexpr std::int32_t kTypeMismatch = 13;

// `from` converted to `type` into `to`, or host::Error 13.
void Convert(VARIANT& to, const VARIANT& from, VARTYPE type) {
  // mingw declares the source non-const; it is only read.
  if (FAILED(VariantChangeType(&to, const_cast<VARIANT*>(&from), 0, type))) {
    throw host::Error(kTypeMismatch, "Type incompatible");
  }
}

}  // namespace

std::string Utf8FromBstr(const BSTR wide) {
  return wide ? Utf8FromWide(std::wstring_view(wide, SysStringLen(wide))) : std::string();
}

Variant::Variant(bool value) : Variant() {
  v_.vt = VT_BOOL;
  v_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}

Variant::Variant(std::int16_t value) : Variant() {
  v_.vt = VT_I2;
  v_.iVal = value;
}

Variant::Variant(std::int32_t value) : Variant() {
  v_.vt = VT_I4;
  v_.lVal = value;
}

Variant::Variant(double value) : Variant() {
  v_.vt = VT_R8;
  v_.dblVal = value;
}

Variant::Variant(std::string_view utf8) : Variant() {
  const std::wstring wide = WideFromUtf8(utf8);
  v_.vt = VT_BSTR;
  v_.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
}

Variant::Variant(const ComRef<IDispatch>& object) : Variant() {
  v_.vt = VT_DISPATCH;
  v_.pdispVal = object.get();
  if (v_.pdispVal != nullptr) v_.pdispVal->AddRef();
}

Variant Variant::Missing() {
  Variant v;
  v.v_.vt = VT_ERROR;
  v.v_.scode = DISP_E_PARAMNOTFOUND;
  return v;
}

Variant::Variant(Variant&& other) noexcept : v_(other.v_) { VariantInit(&other.v_); }

Variant& Variant::operator=(Variant&& other) noexcept {
  if (this != &other) {
    VariantClear(&v_);
    v_ = other.v_;
    VariantInit(&other.v_);
  }
  return *this;
}

std::string Variant::AsString() const {
  Variant text;
  Convert(text.v_, v_, VT_BSTR);
  return Utf8FromBstr(text.v_.bstrVal);
}

bool Variant::AsBool() const {
  Variant b;
  Convert(b.v_, v_, VT_BOOL);
  return b.v_.boolVal != VARIANT_FALSE;
}

std::int16_t Variant::AsInt16() const {
  Variant i;
  Convert(i.v_, v_, VT_I2);
  return i.v_.iVal;
}

std::int32_t Variant::AsInt32() const {
  Variant i;
  Convert(i.v_, v_, VT_I4);
  return i.v_.lVal;
}

double Variant::AsDouble() const {
  Variant d;
  Convert(d.v_, v_, VT_R8);
  return d.v_.dblVal;
}

ComRef<IDispatch> Variant::AsDispatch() const {
  if (v_.vt == VT_DISPATCH && v_.pdispVal != nullptr) return ComRef<IDispatch>::Share(v_.pdispVal);
  if (v_.vt == (VT_DISPATCH | VT_BYREF) && v_.ppdispVal != nullptr && *v_.ppdispVal != nullptr) {
    return ComRef<IDispatch>::Share(*v_.ppdispVal);
  }
  throw host::Error(kTypeMismatch, "Type incompatible: objet attendu");
}

}  // namespace sheafwork::com
