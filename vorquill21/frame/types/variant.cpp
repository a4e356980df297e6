#include "vorquill21/frame/types/variant.hpp"

#include <cmath>
#include <limits>
#include <optional>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

/// Booleans, integers and empties as the integer that they count as.
std::optional<std::int32_t> AsInteger(const Variant& value) {
  if (value.IsEmpty()) return 0;
  if (const bool* flag = value.If<bool>()) return *flag ? -1 : 0;
  if (const std::int32_t* integer = value.If<std::int32_t>()) return *integer;
  return std::nullopt;
}

/// What needs no conversion from text to be a number.
std::optional<double> AsNumber(const Variant& value) {
  if (const double* number = value.If<double>()) return *number;
  return AsInteger(value);
}

template <typename Visitor>
auto VisitArray(const Variant& value, const Visitor& visitor) {
  if (const auto* doubles = value.If<BoundedArray<double>>()) return visitor(*doubles);
  if (const auto* texts = value.If<BoundedArray<Text>>()) return visitor(*texts);
  return visitor(value.As<BoundedArray<Variant>>());
}

template <typename... Index>
Variant Element(const Variant& value, Index... indices) {
  return VisitArray(value, [&](const auto& array) { return Variant(array(indices...)); });
}

}  // namespace

double ToDouble(const Variant& value, char16_t decimalSeparator) {
  if (const auto number = AsNumber(value)) return *number;
  if (const auto number = TextToNumber(value.As<Text>(), decimalSeparator)) return *number;
  throw LibraryError(kTypeMismatch);
}

float ToSingle(const Variant& value, char16_t decimalSeparator) {
  const double number = ToDouble(value, decimalSeparator);
  const auto single = static_cast<float>(number);
  if (std::isinf(single) && std::isfinite(number)) throw LibraryError(kOverflow);
  return single;
}

std::int32_t ToInt32(const Variant& value, char16_t decimalSeparator) {
  return RoundedInt32(ToDouble(value, decimalSeparator));
}

Text ToText(const Variant& value, char16_t decimalSeparator) {
  if (value.IsEmpty()) return {};
  if (const bool* flag = value.If<bool>()) return *flag ? u"True" : u"False";
  if (const std::int32_t* integer = value.If<std::int32_t>()) return NumberToText(*integer);
  if (const double* number = value.If<double>()) return NumberToText(*number, decimalSeparator);
  return value.As<Text>();
}

bool IsNumeric(const Variant& value, char16_t decimalSeparator) noexcept {
  if (const Text* text = value.If<Text>()) return TextToNumber(*text, decimalSeparator).has_value();
  return AsNumber(value).has_value();
}

Variant Subtract(const Variant& left, const Variant& right, char16_t decimalSeparator) {
  const auto leftInteger = AsInteger(left);
  const auto rightInteger = AsInteger(right);
  if (leftInteger && rightInteger) {
    const std::int64_t difference = std::int64_t{*leftInteger} - *rightInteger;
    const auto narrow = static_cast<std::int32_t>(difference);
    if (narrow == difference) return narrow;
    return static_cast<double>(difference);
  }
  const double minuend = ToDouble(left, decimalSeparator);
  const double subtrahend = ToDouble(right, decimalSeparator);
  return Checked(minuend - subtrahend, minuend, subtrahend);
}

std::partial_ordering Compare(const Variant& left, const Variant& right) {
  const Text* leftText = left.If<Text>();
  const Text* rightText = right.If<Text>();
  if (leftText && rightText) return *leftText <=> *rightText;
  if (leftText && right.IsEmpty()) return *leftText <=> Text();
  if (left.IsEmpty() && rightText) return Text() <=> *rightText;
  const auto leftNumber = AsNumber(left);
  const auto rightNumber = AsNumber(right);
  if (!(leftText || leftNumber) || !(rightText || rightNumber)) throw LibraryError(kTypeMismatch);
  if (rightText) return std::partial_ordering::less;
  if (leftText) return std::partial_ordering::greater;
  return *leftNumber <=> *rightNumber;
}

Bounds ArrayBounds(const Variant& value, int dimension) {
  return VisitArray(value, [dimension](const auto& array) { return array.BoundsOf(dimension); });
}

int ArrayRank(const Variant& value) {
  return VisitArray(value, [](const auto& array) { return array.Rank(); });
}

Variant ArrayElement(const Variant& value, std::int32_t i) {
  return Element(value, i);
}

Variant ArrayElement(const Variant& value, std::int32_t i, std::int32_t j) {
  return Element(value, i, j);
}

Variant ArrayElement(const Variant& value, std::int32_t i, std::int32_t j, std::int32_t k) {
  return Element(value, i, j, k);
}

}  // namespace vorquill21
