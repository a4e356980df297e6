#include "vorquill21/frame/types/number_text.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {
namespace {

constexpr int kSignificantDigits = 15;

template <typename Unit>
constexpr bool IsDigit(Unit unit) {
  return unit >= '0' && unit <= '9';
}

template <typename Unit>
constexpr bool IsWhiteSpace(Unit unit) {
  return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
}

template <typename Unit>
constexpr bool IsExponentMark(Unit unit) {
  return unit == 'E' || unit == 'e' || unit == 'D' || unit == 'd';
}

struct Scanned {
  std::string digits;  // in the notation of std::from_chars
  std::size_t length = 0;
};

/// The longest prefix of `text` that is a number.
template <typename Unit>
Scanned ScanNumber(std::basic_string_view<Unit> text, Unit decimalSeparator) {
  Scanned scanned;
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
    if (text[at] == '-') scanned.digits += '-';
    ++at;
  }
  bool hasDigit = false;
  bool hasSeparator = false;
  for (; at < text.size(); ++at) {
    if (IsDigit(text[at])) {
      hasDigit = true;
      scanned.digits += static_cast<char>(text[at]);
    } else if (text[at] == decimalSeparator && !hasSeparator) {
      hasSeparator = true;
      scanned.digits += '.';
    } else {
      break;
    }
  }
  if (!hasDigit) return {};
  scanned.length = at;
  if (at == text.size() || !IsExponentMark(text[at])) return scanned;
  std::string exponent = "e";
  ++at;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) exponent += static_cast<char>(text[at++]);
  if (at == text.size() || !IsDigit(text[at])) return scanned;
  while (at < text.size() && IsDigit(text[at])) exponent += static_cast<char>(text[at++]);
  scanned.digits += exponent;
  scanned.length = at;
  return scanned;
}

double Convert(const std::string& digits) {
  return std::strtod(digits.c_str(), nullptr);
}

template <typename Unit>
std::optional<double> WholeTextToNumber(std::basic_string_view<Unit> text, Unit decimalSeparator) {
  while (!text.empty() && IsWhiteSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsWhiteSpace(text.back())) text.remove_suffix(1);
  const Scanned scanned = ScanNumber(text, decimalSeparator);
  if (scanned.length == 0 || scanned.length != text.size()) return std::nullopt;
  const double value = Convert(scanned.digits);
  if (std::isinf(value)) return std::nullopt;
  return value;
}

template <typename Unit>
double LeadingNumberOf(std::basic_string_view<Unit> text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  const Scanned scanned = ScanNumber(text, static_cast<Unit>('.'));
  if (scanned.length == 0) return 0.0;
  const double value = Convert(scanned.digits);
  if (std::isinf(value)) throw LibraryError(kOverflow);
  return value;
}

}  // namespace

char16_t* WriteNumber(double value, char16_t decimalSeparator, char16_t* out) noexcept {
  if (value == 0.0) value = 0.0 * 0.0;
  char digits[32];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, kSignificantDigits)
          .ptr;
  return std::transform(digits, end, out, [decimalSeparator](char c) -> char16_t {
    if (c == '.') return decimalSeparator;
    return static_cast<char16_t>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  });
}

Text NumberToText(double value, char16_t decimalSeparator) {
  char16_t units[kNumberTextCapacity];
  return Text(units, WriteNumber(value == 0.0 ? 0.0 : value, decimalSeparator, units));
}

Text NumberToText(std::int32_t value) {
  char digits[12];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return Text(digits, end);
}

std::optional<double> TextToNumber(TextView text, char16_t decimalSeparator) noexcept {
  return WholeTextToNumber(text, decimalSeparator);
}

std::optional<double> TextToNumber(std::string_view text, char decimalSeparator) noexcept {
  return WholeTextToNumber(text, decimalSeparator);
}

double LeadingNumber(TextView text) {
  return LeadingNumberOf(text);
}

double LeadingNumber(std::string_view text) {
  return LeadingNumberOf(text);
}

}  // namespace vorquill21
