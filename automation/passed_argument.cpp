#include "automation/passed_argument.hpp"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

#include "automation/arrays.hpp"
#include "automation/failure.hpp"

namespace vorquill21::automation {
namespace {

constexpr VARTYPE ReferenceTo(VARTYPE type) {
  return static_cast<VARTYPE>(VT_BYREF | type);
}
constexpr VARTYPE ArrayOf(VARTYPE type) {
  return static_cast<VARTYPE>(VT_ARRAY | type);
}
constexpr VARTYPE kReferenceToArray = VT_BYREF | VT_ARRAY;

VARTYPE ElementTypeOf(const VARIANT& variant) {
  return static_cast<VARTYPE>(variant.vt & ~kReferenceToArray);
}

/// Where the array of a variant stands, if it holds one or refers to one.
SAFEARRAY** ArrayPlace(VARIANT& variant) {
  if ((variant.vt & VT_ARRAY) == 0) return nullptr;
  return (variant.vt & VT_BYREF) != 0 ? Checked(variant.pparray) : &variant.parray;
}

SAFEARRAY* CopyOf(SAFEARRAY* array) {
  SAFEARRAY* copy = nullptr;
  const HRESULT result = SafeArrayCopy(array, &copy);
  if (FAILED(result)) throw SystemFailure(result);
  return copy;
}

}  // namespace

void PassedArgument::Take(const Parameter& parameter, VARIANT& given) {
  VARIANT& source = Resolved(given);
  if (parameter.type == VT_VARIANT) {
    return parameter.isReference ? PassReference(VT_VARIANT, &source) : Pass(VT_VARIANT, source);
  }
  if (IsLeftOut(source)) return TakeDefault(parameter);
  if (parameter.isReference && (given.vt & VT_BYREF) != 0) variable_ = &source;
  switch (parameter.type) {
    case VT_ARRAY:
      return TakeArray(parameter, source);
    case VT_DISPATCH:
      return TakeObject(parameter, source);
    default:
      return TakeScalar(parameter, source);
  }
}

void PassedArgument::TakeDefault(const Parameter& parameter) {
  if (parameter.type == VT_VARIANT) {
    value_.vt = VT_ERROR;
    value_.scode = DISP_E_PARAMNOTFOUND;
    return parameter.isReference ? PassReference(VT_VARIANT, static_cast<VARIANT*>(&value_))
                                 : Pass(VT_VARIANT, value_);
  }
  TakeValue(parameter, parameter.defaultValue == nullptr ? Variant() : FromHost(*parameter.defaultValue));
}

void PassedArgument::TakeAll(std::span<VARIANT> reversed) {
  std::vector<Variant> values;
  std::transform(reversed.rbegin(), reversed.rend(), std::back_inserter(values),
                 [](const VARIANT& given) { return FromHost(given); });
  value_.parray = NewArray(VT_VARIANT, BoundedArray<Variant>(std::move(values)));
  value_.vt = ArrayOf(VT_VARIANT);
  PassReference(VT_ARRAY, &value_.parray);
}

void PassedArgument::TakeScalar(const Parameter& parameter, VARIANT& source) {
  if (!parameter.isReference && source.vt == parameter.type) return Pass(parameter.type, source);
  if (parameter.isReference && source.vt == ReferenceTo(parameter.type)) {
    variable_ = nullptr;
    return PassReference(parameter.type, source.byref);
  }
  TakeValue(parameter, FromHost(source));
}

void PassedArgument::TakeValue(const Parameter& parameter, const Variant& value) {
  value_.llVal = 0;
  StoreAs(parameter.type, &value_.byref, value);
  value_.vt = parameter.type;
  if (!parameter.isReference) return Pass(parameter.type, value_);
  before_ = value_;
  PassReference(parameter.type, &value_.byref);
}

void PassedArgument::TakeArray(const Parameter& parameter, VARIANT& source) {
  SAFEARRAY** const place = ArrayPlace(source);
  if (place == nullptr && source.vt != VT_EMPTY) Raise(kTypeMismatch);
  const bool holdsArray = place != nullptr && *place != nullptr;
  if (holdsArray && variable_ != nullptr) {
    variable_ = nullptr;  // the member itself writes into it
    return PassReference(VT_ARRAY, place);
  }
  value_.parray = holdsArray ? CopyOf(*place) : nullptr;
  value_.vt = ArrayOf(parameter.elementType);
  PassReference(VT_ARRAY, &value_.parray);
}

void PassedArgument::TakeObject(const Parameter& parameter, VARIANT& source) {
  variable_ = nullptr;
  TakeValue(parameter, FromHost(source));
}

void PassedArgument::Pass(VARTYPE type, VARIANT& place) {
  passedType_ = type;
  passed_ = &place;
}

void PassedArgument::PassReference(VARTYPE type, void* place) {
  passedType_ = ReferenceTo(type);
  reference_.vt = passedType_;
  reference_.byref = place;
  passed_ = &reference_;
}

bool PassedArgument::HasChanged() const {
  return variable_->vt == VT_EMPTY || std::memcmp(&value_.byref, &before_.byref, sizeof(value_.llVal)) != 0;
}

void PassedArgument::GiveBack() {
  if (variable_ == nullptr) return;
  if ((value_.vt & VT_ARRAY) != 0) return GiveBackArray();
  if (!HasChanged()) return;
  const Variant value = FromHost(value_);
  if ((variable_->vt & VT_BYREF) != 0) {
    StoreAs(static_cast<VARTYPE>(variable_->vt & ~VT_BYREF), Checked(variable_->byref), value);
  } else {
    StoreAs(VT_VARIANT, variable_, value);
  }
}

void PassedArgument::GiveBackArray() {
  if (value_.parray == nullptr) return;
  const auto elements = LoadArray<Variant>(value_.parray);
  if (SAFEARRAY** const place = ArrayPlace(*variable_)) {
    *place = NewArray(ElementTypeOf(*variable_), elements);
  } else {
    StoreAs(VT_VARIANT, variable_, elements);
  }
}

}  // namespace vorquill21::automation
