#include "com/variant.h"

#include <oleauto.h>

#include <variant>

#include <type_traits>
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

Variant::Variant(const host::SysVarValue& value) : Variant() {
  std::visit(
      [this](const auto& held) {
        using T = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<T, std::string>) {
          *this = Variant(std::string_view(held));
        } else {
          *this = Variant(held);
        }
      },
      value);
}

namespace {

// A one-dimensional array of `count` elements of `type`, indexed from 0.
SAFEARRAY* NewArray(VARTYPE type, std::size_t count) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(count), 0};
  return SafeArrayCreate(type, 1, &bound);
}

// The elements of the array `v` holds, each as a VARIANT; host::Error 13
// when it holds no array.
template <typename Read>
void ForEachElement(const VARIANT& v, Read read) {
  SAFEARRAY* array = nullptr;
  if ((v.vt & VT_ARRAY) != 0) array = (v.vt & VT_BYREF) != 0 ? *v.pparray : v.parray;
  if (array == nullptr || SafeArrayGetDim(array) != 1) {
    throw host::Error(kTypeMismatch, "Type incompatible: tableau attendu");
  }
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(array, &type);
  LONG low = 0;
  LONG high = -1;
  SafeArrayGetLBound(array, 1, &low);
  SafeArrayGetUBound(array, 1, &high);
  for (LONG i = low; i <= high; ++i) {
    Variant element;
    if (type == VT_VARIANT) {
      SafeArrayGetElement(array, &i, element.get());
    } else {
      // Read through a VARIANT of the element's own type.
      element.get()->vt = type;
      SafeArrayGetElement(array, &i, &element.get()->lVal);
    }
    read(element);
  }
}

}  // namespace

Variant Variant::Strings(const std::vector<std::string>& texts) {
  Variant v;
  SAFEARRAY* array = NewArray(VT_BSTR, texts.size());
  for (LONG i = 0; i < static_cast<LONG>(texts.size()); ++i) {
    const std::wstring wide = WideFromUtf8(texts[i]);
    BSTR text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    SafeArrayPutElement(array, &i, text);  // copies the text
    SysFreeString(text);
  }
  v.v_.vt = VT_ARRAY | VT_BSTR;
  v.v_.parray = array;
  return v;
}

Variant Variant::Doubles(const std::vector<double>& values) {
  Variant v;
  SAFEARRAY* array = NewArray(VT_R8, values.size());
  for (LONG i = 0; i < static_cast<LONG>(values.size()); ++i) {
    double value = values[i];
    SafeArrayPutElement(array, &i, &value);
  }
  v.v_.vt = VT_ARRAY | VT_R8;
  v.v_.parray = array;
  return v;
}

Variant Variant::RefTo(Variant& target) {
  Variant v;
  switch (target.v_.vt) {
    case VT_I2:
      v.v_.vt = VT_BYREF | VT_I2;
      v.v_.piVal = &target.v_.iVal;
      break;
    case VT_R8:
      v.v_.vt = VT_BYREF | VT_R8;
      v.v_.pdblVal = &target.v_.dblVal;
      break;
    default:
      v.v_.vt = VT_BYREF | VT_VARIANT;
      v.v_.pvarVal = &target.v_;
  }
  return v;
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

std::vector<std::string> Variant::AsStrings() const {
  std::vector<std::string> texts;
  ForEachElement(v_, [&](const Variant& element) { texts.push_back(element.AsString()); });
  return texts;
}

std::vector<double> Variant::AsDoubles() const {
  std::vector<double> values;
  ForEachElement(v_, [&](const Variant& element) { values.push_back(element.AsDouble()); });
  return values;
}

host::SysVarValue Variant::AsSysVar() const {
  const Variant value = Dereferenced();
  switch (value.v_.vt) {
    case VT_BSTR:
      return value.AsString();
    case VT_R4:
    case VT_R8:
      return value.AsDouble();
    case VT_I4:
    case VT_UI4:
    case VT_INT:
      return value.AsInt32();
    default:
      return value.AsInt16();
  }
}

Variant Variant::Dereferenced() const {
  Variant copy;
  if (FAILED(VariantCopyInd(copy.get(), const_cast<VARIANT*>(&v_)))) {
    throw host::Error(kTypeMismatch, "Type incompatible");
  }
  return copy;
}

void Variant::Assign(const Variant& value) {
  VARIANT* where = v_.vt == (VT_BYREF | VT_VARIANT) ? v_.pvarVal : &v_;
  if ((where->vt & VT_BYREF) == 0) {
    Variant copy;
    VariantCopy(copy.get(), const_cast<VARIANT*>(&value.v_));
    VariantClear(where);
    *where = copy.v_;
    VariantInit(copy.get());
    return;
  }
  switch (where->vt & ~VT_BYREF) {
    case VT_I2:
      *where->piVal = value.AsInt16();
      break;
    case VT_I4:
      *where->plVal = value.AsInt32();
      break;
    case VT_R8:
      *where->pdblVal = value.AsDouble();
      break;
    case VT_BOOL:
      *where->pboolVal = value.AsBool() ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    default:
      throw host::Error(kTypeMismatch, "Type incompatible");
  }
}

}  // namespace sheafwork::com
