#pragma once

#include <span>

#include "automation/type_library.hpp"
#include "automation/values.hpp"

namespace vorquill21::automation {

/// An argument of a call by name on its way into the declared type of a parameter and back.
class PassedArgument {
 public:
  /// Takes what the host passed.
  void Take(const Parameter& parameter, VARIANT& given);

  /// Takes the default of a parameter, nothing where it has none.
  void TakeDefault(const Parameter& parameter);

  /// Takes all of them as the elements of one array; the last one stands first.
  void TakeAll(std::span<VARIANT> reversed);

  VARTYPE PassedType() const noexcept { return passedType_; }
  VARIANT* Passed() noexcept { return passed_; }

  /// Writes what the member changed into the host's variable.
  void GiveBack();

 private:
  void TakeValue(const Parameter& parameter, const Variant& value);
  void TakeScalar(const Parameter& parameter, VARIANT& source);
  void TakeArray(const Parameter& parameter, VARIANT& source);
  void TakeObject(const Parameter& parameter, VARIANT& source);
  void Pass(VARTYPE type, VARIANT& place);
  void PassReference(VARTYPE type, void* place);
  void GiveBackArray();
  bool HasChanged() const;

  OwnedVariant value_;             // of the declared type, where the host's could not be passed itself
  VARIANT reference_{};            // to what is passed by reference
  VARTYPE passedType_ = VT_EMPTY;  // of *passed_
  VARIANT* passed_ = nullptr;
  VARIANT* variable_ = nullptr;  // what is written to in the end, if anything
  VARIANT before_{};             // the bits of value_ before the call
};

}  // namespace vorquill21::automation
