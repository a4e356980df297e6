#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <utility>
#include <variant>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// The value of an optional argument that the caller left out.
struct Missing {
  friend bool operator==(Missing, Missing) = default;
};

/// A reference to an object of the host; the library only passes it on.
using ObjectReference = std::shared_ptr<void>;

/// A tagged value: empty, missing, a boolean, a 32-bit integer, a double, a text, an object reference, or an
/// array of variants, doubles or texts.
class Variant {
 public:
  /// Empty.
  Variant() = default;

  // Implicit on purpose: a host passes what it has.
  Variant(Missing value) : value_(value) {}
  Variant(bool value) : value_(value) {}
  Variant(std::int32_t value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(Text value) : value_(std::move(value)) {}
  Variant(TextView value) : value_(Text(value)) {}
  Variant(const char16_t* value) : value_(Text(value)) {}
  Variant(ObjectReference value) : value_(std::move(value)) {}
  Variant(BoundedArray<Variant> value) : value_(std::move(value)) {}
  Variant(BoundedArray<double> value) : value_(std::move(value)) {}
  Variant(BoundedArray<Text> value) : value_(std::move(value)) {}
  template <typename T>
  Variant(const T*) = delete;  // a pointer would silently become True

  bool IsEmpty() const noexcept { return Holds<std::monostate>(); }
  bool IsMissing() const noexcept { return Holds<Missing>(); }
  bool IsArray() const noexcept {
    return Holds<BoundedArray<Variant>>() || Holds<BoundedArray<double>>() || Holds<BoundedArray<Text>>();
  }

  /// True when the value is of the kind T: bool, std::int32_t, double, Text, ObjectReference,
  /// BoundedArray<...>.
  template <typename T>
  bool Holds() const noexcept {
    return std::holds_alternative<T>(value_);
  }

  /// The value when it is of the kind T, otherwise null.
  template <typename T>
  const T* If() const noexcept {
    return std::get_if<T>(&value_);
  }
  template <typename T>
  T* If() noexcept {
    return std::get_if<T>(&value_);
  }

  /// The value, which must be of the kind T: error 13 otherwise.
  template <typename T>
  const T& As() const {
    if (const T* value = If<T>()) return *value;
    throw LibraryError(kTypeMismatch);
  }
  template <typename T>
  T& As() {
    return const_cast<T&>(std::as_const(*this).As<T>());
  }

  /// Same kind and same value; no conversion takes place.
  friend bool operator==(const Variant&, const Variant&) = default;

 private:
  std::variant<std::monostate, Missing, bool, std::int32_t, double, Text, ObjectReference,
               BoundedArray<Variant>, BoundedArray<double>, BoundedArray<Text>>
      value_;
};

// --- Conversion ------------------------------------------------------------------------------------------
// True counts as -1, False and empty as 0. A missing argument, an object or an array is error 13.

/// The value as a double; a text must be a number in the form of TextToNumber, otherwise error 13.
VORQUILL21_API double ToDouble(const Variant& value, char16_t decimalSeparator);

/// The value as a double rounded to single precision; error 6 when its magnitude exceeds single precision.
VORQUILL21_API float ToSingle(const Variant& value, char16_t decimalSeparator);

/// The value rounded to the nearest integer, a half to even; error 6 outside 32 bits.
VORQUILL21_API std::int32_t ToInt32(const Variant& value, char16_t decimalSeparator);

/// The value as text: numbers as NumberToText gives them, booleans "True" and "False", empty "".
VORQUILL21_API Text ToText(const Variant& value, char16_t decimalSeparator);

/// True for numbers, booleans, empty, and texts in the form of TextToNumber.
VORQUILL21_API bool IsNumeric(const Variant& value, char16_t decimalSeparator) noexcept;

// --- Arithmetic and comparison ---------------------------------------------------------------------------

/// left - right. Booleans, integers and empties stay integers, going on as doubles where 32 bits overflow;
/// otherwise doubles, a text being converted as by ToDouble. Overflow of finite doubles is error 6.
VORQUILL21_API Variant Subtract(const Variant& left, const Variant& right, char16_t decimalSeparator);

/// Order of two values: numbers (and booleans) by value, texts by the codes of their units, any number below
/// any text, empty equal to 0 and to "". Unordered when a NaN is compared. A missing argument, an object or
/// an array is error 13.
VORQUILL21_API std::partial_ordering Compare(const Variant& left, const Variant& right);

// --- Arrays of any kind ----------------------------------------------------------------------------------
// A value that is no array is error 13; indices and dimensions outside the bounds are error 9.

/// Bounds of one dimension of the array that `value` holds.
VORQUILL21_API Bounds ArrayBounds(const Variant& value, int dimension = 1);

/// Number of dimensions of the array that `value` holds, 0 when it was never dimensioned.
VORQUILL21_API int ArrayRank(const Variant& value);

/// The element of the array that `value` holds, as a variant.
VORQUILL21_API Variant ArrayElement(const Variant& value, std::int32_t i);
VORQUILL21_API Variant ArrayElement(const Variant& value, std::int32_t i, std::int32_t j);
VORQUILL21_API Variant ArrayElement(const Variant& value, std::int32_t i, std::int32_t j, std::int32_t k);

}  // namespace vorquill21
