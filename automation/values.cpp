#include "automation/values.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "automation/arrays.hpp"
#include "automation/failure.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21::automation {
namespace {

constexpr int kGreatestDepth = 8;  // of references to variants, and of arrays in arrays
constexpr double kCurrencyUnits = 10000;

char16_t Separator() {
  return Platform::Native().GetLocale().DecimalSeparator();
}

template <typename T>
const T& At(const void* place) {
  return *static_cast<const T*>(place);
}

/// A double when 32 bits do not hold the integer.
template <typename Integer>
Variant FromInteger(const void* place) {
  const Integer value = At<Integer>(place);
  if (std::in_range<std::int32_t>(value)) return static_cast<std::int32_t>(value);
  return static_cast<double>(value);
}

/// The digits of a 96-bit integer.
std::string DigitsOf(const DECIMAL& decimal) {
  std::array<std::uint32_t, 3> parts{decimal.Hi32, decimal.Mid32, decimal.Lo32};
  std::string digits;
  while (parts != std::array<std::uint32_t, 3>{}) {
    std::uint64_t remainder = 0;
    for (std::uint32_t& part : parts) {
      const std::uint64_t dividend = remainder << 32 | part;
      part = static_cast<std::uint32_t>(dividend / 10);
      remainder = dividend % 10;
    }
    digits.insert(digits.begin(), static_cast<char>('0' + remainder));
  }
  return digits.empty() ? "0" : digits;
}

/// The nearest double.
double FromDecimal(const DECIMAL& decimal) {
  const std::string number = DigitsOf(decimal) + "e-" + std::to_string(decimal.scale);
  double value = 0;
  std::from_chars(number.data(), number.data() + number.size(), value);
  return decimal.sign == 0 ? value : -value;
}

Variant FromArray(SAFEARRAY* array, int depth) {
  if (array == nullptr) return BoundedArray<Variant>();
  switch (ElementType(*array)) {
    case VT_R8:
      return LoadArray<double>(array);
    case VT_BSTR:
      return LoadArray<Text>(array);
    default:
      return LoadArray<Variant>(array, Shape::kAny, depth + 1);
  }
}

/// The integer that the value rounds to, half to even; error 6 outside the range of T.
template <typename T>
T RoundedTo(const Variant& value) {
  const double rounded = std::nearbyint(ToDouble(value, Separator()));
  constexpr T kHalfBeyond = std::numeric_limits<T>::max() / 2 + 1;
  constexpr double kBeyond = 2.0 * kHalfBeyond;
  if (!(rounded >= static_cast<double>(std::numeric_limits<T>::min()) && rounded < kBeyond)) Raise(kOverflow);
  return static_cast<T>(rounded);
}

CY ToCurrency(const Variant& value) {
  CY currency;
  currency.int64 = RoundedTo<long long>(ToDouble(value, Separator()) * kCurrencyUnits);
  return currency;
}

template <typename T>
void Put(void* place, T value) {
  *static_cast<T*>(place) = value;
}

void PutText(void* place, const Variant& value) {
  AssignText(*static_cast<BSTR*>(place), ToText(value, Separator()));
}

void PutVariant(void* place, const Variant& value) {
  OwnedVariant old;
  static_cast<VARIANT&>(old) = std::exchange(*static_cast<VARIANT*>(place), ToHost(value));
}

void PutObject(VARTYPE type, void* place, const Variant& value) {
  const ObjectReference& object = value.As<ObjectReference>();
  Reference<IUnknown> unknown(static_cast<IUnknown*>(object.get()));
  if (type == VT_DISPATCH) unknown = Reference<IUnknown>(DispatchOf(object).Get());
  Reference<IUnknown>::Adopt(std::exchange(*static_cast<IUnknown**>(place), unknown.Detach()));
}

VARIANT HostVariant(VARTYPE type) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = type;
  return variant;
}

template <typename T>
VARIANT HostArray(VARTYPE type, const BoundedArray<T>& array) {
  VARIANT variant = HostVariant(static_cast<VARTYPE>(VT_ARRAY | type));
  variant.parray = NewArray(type, array);
  return variant;
}

VARIANT HostObject(const ObjectReference& object) {
  VARIANT variant = HostVariant(VT_DISPATCH);
  auto* const unknown = static_cast<IUnknown*>(object.get());
  if (unknown == nullptr ||
      SUCCEEDED(unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&variant.pdispVal)))) {
    return variant;
  }
  variant.vt = VT_UNKNOWN;
  variant.punkVal = unknown;
  unknown->AddRef();
  return variant;
}

}  // namespace

TextView ViewOf(BSTR text) noexcept {
  return {reinterpret_cast<const char16_t*>(text), text == nullptr ? 0 : SysStringLen(text)};
}

BSTR NewText(TextView text) {
  if (text.size() > std::numeric_limits<UINT>::max() / sizeof(char16_t)) Raise(kOutOfMemory);
  BSTR copy =
      SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
  if (copy == nullptr) Raise(kOutOfMemory);
  return copy;
}

void AssignText(BSTR& variable, TextView text) {
  if (ViewOf(variable) == text) return;
  SysFreeString(std::exchange(variable, NewText(text)));
}

VARIANT OwnedVariant::Detach() noexcept {
  const VARIANT value = *this;
  VariantInit(this);
  return value;
}

VARIANT& Resolved(VARIANT& variant) {
  VARIANT* resolved = &variant;
  for (int depth = 0; resolved->vt == (VT_BYREF | VT_VARIANT); ++depth) {
    if (depth == kGreatestDepth) Raise(kTypeMismatch);
    resolved = Checked(resolved->pvarVal);
  }
  return *resolved;
}

bool IsLeftOut(const VARIANT& variant) noexcept {
  return variant.vt == VT_ERROR && variant.scode == DISP_E_PARAMNOTFOUND;
}

Variant FromHost(const VARIANT& variant, int depth) {
  if (depth > kGreatestDepth) Raise(kTypeMismatch);
  if ((variant.vt & VT_BYREF) != 0) {
    return FromPlace(static_cast<VARTYPE>(variant.vt & ~VT_BYREF), Checked(variant.byref), depth);
  }
  if (variant.vt == VT_DECIMAL) return FromDecimal(variant.decVal);
  return FromPlace(variant.vt, &variant.byref, depth);
}

Variant FromPlace(VARTYPE type, const void* place, int depth) {
  if ((type & VT_ARRAY) != 0) return FromArray(At<SAFEARRAY*>(place), depth);
  switch (type) {
    case VT_EMPTY:
      return {};
    case VT_ERROR:
      if (At<SCODE>(place) == DISP_E_PARAMNOTFOUND) return Missing{};
      break;
    case VT_BOOL:
      return At<VARIANT_BOOL>(place) != VARIANT_FALSE;
    case VT_I1:
      return FromInteger<signed char>(place);
    case VT_UI1:
      return FromInteger<unsigned char>(place);
    case VT_I2:
      return FromInteger<short>(place);
    case VT_UI2:
      return FromInteger<unsigned short>(place);
    case VT_I4:
    case VT_INT:
      return FromInteger<int>(place);
    case VT_UI4:
    case VT_UINT:
      return FromInteger<unsigned>(place);
    case VT_I8:
      return FromInteger<long long>(place);
    case VT_UI8:
      return FromInteger<unsigned long long>(place);
    case VT_R4:
      return static_cast<double>(At<float>(place));
    case VT_R8:
    case VT_DATE:
      return At<double>(place);
    case VT_CY:
      return static_cast<double>(At<CY>(place).int64) / kCurrencyUnits;
    case VT_DECIMAL:
      return FromDecimal(At<DECIMAL>(place));
    case VT_BSTR:
      return ViewOf(At<BSTR>(place));
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return ReferenceTo(At<IUnknown*>(place));
    case VT_VARIANT:
      return FromHost(At<VARIANT>(place), depth + 1);
    default:
      break;
  }
  Raise(kTypeMismatch);
}

VARIANT ToHost(const Variant& value) {
  if (value.IsEmpty()) return HostVariant(VT_EMPTY);
  if (const auto* array = value.If<BoundedArray<double>>()) return HostArray(VT_R8, *array);
  if (const auto* array = value.If<BoundedArray<Text>>()) return HostArray(VT_BSTR, *array);
  if (const auto* array = value.If<BoundedArray<Variant>>()) return HostArray(VT_VARIANT, *array);
  if (const auto* object = value.If<ObjectReference>()) return HostObject(*object);
  VARIANT variant = HostVariant(VT_ERROR);
  variant.scode = DISP_E_PARAMNOTFOUND;
  if (const bool* boolean = value.If<bool>()) {
    variant.vt = VT_BOOL;
    variant.boolVal = *boolean ? VARIANT_TRUE : VARIANT_FALSE;
  } else if (const std::int32_t* integer = value.If<std::int32_t>()) {
    variant.vt = VT_I4;
    variant.lVal = *integer;
  } else if (const double* number = value.If<double>()) {
    variant.vt = VT_R8;
    variant.dblVal = *number;
  } else if (const Text* text = value.If<Text>()) {
    variant.bstrVal = NewText(*text);
    variant.vt = VT_BSTR;
  }
  return variant;
}

template <>
double ConvertedTo<double>(const Variant& value) {
  if (const double* number = value.If<double>()) return *number;
  return ToDouble(value, Separator());
}

template <>
std::int32_t ConvertedTo<std::int32_t>(const Variant& value) {
  if (const std::int32_t* number = value.If<std::int32_t>()) return *number;
  return ToInt32(value, Separator());
}

template <>
bool ConvertedTo<bool>(const Variant& value) {
  if (const bool* boolean = value.If<bool>()) return *boolean;
  if (const Text* text = value.If<Text>()) {
    if (EqualIgnoringCase(*text, u"True")) return true;
    if (EqualIgnoringCase(*text, u"False")) return false;
  }
  return ToDouble(value, Separator()) != 0;
}

template <>
Text ConvertedTo<Text>(const Variant& value) {
  return ToText(value, Separator());
}

template <>
Variant ConvertedTo<Variant>(const Variant& value) {
  return value;
}

void StoreAs(VARTYPE type, void* place, const Variant& value) {
  switch (type) {
    case VT_BOOL:
      return Put<VARIANT_BOOL>(place, ConvertedTo<bool>(value) ? VARIANT_TRUE : VARIANT_FALSE);
    case VT_I1:
      return Put(place, RoundedTo<signed char>(value));
    case VT_UI1:
      return Put(place, RoundedTo<unsigned char>(value));
    case VT_I2:
      return Put(place, RoundedTo<short>(value));
    case VT_UI2:
      return Put(place, RoundedTo<unsigned short>(value));
    case VT_I4:
    case VT_INT:
      return Put(place, RoundedTo<int>(value));
    case VT_UI4:
    case VT_UINT:
      return Put(place, RoundedTo<unsigned>(value));
    case VT_I8:
      return Put(place, RoundedTo<long long>(value));
    case VT_UI8:
      return Put(place, RoundedTo<unsigned long long>(value));
    case VT_R4:
      return Put(place, ToSingle(value, Separator()));
    case VT_R8:
    case VT_DATE:
      return Put(place, ConvertedTo<double>(value));
    case VT_CY:
      return Put(place, ToCurrency(value));
    case VT_BSTR:
      return PutText(place, value);
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return PutObject(type, place, value);
    case VT_VARIANT:
      return PutVariant(place, value);
    default:
      Raise(kTypeMismatch);
  }
}

ObjectReference ReferenceTo(IUnknown* unknown) {
  Reference<IUnknown> held(unknown);
  return {held.Detach(), [](IUnknown* object) {
            if (object != nullptr) object->Release();
          }};
}

Reference<IDispatch> DispatchOf(const ObjectReference& object) {
  Reference<IDispatch> dispatch;
  if (object == nullptr) return dispatch;
  auto* const unknown = static_cast<IUnknown*>(object.get());
  const HRESULT result = unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(dispatch.Receive()));
  if (FAILED(result)) Raise(kTypeMismatch);
  return dispatch;
}

}  // namespace vorquill21::automation
