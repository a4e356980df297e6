#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "vorquill21/frame/types/digits.hpp"
#include "vorquill21/frame/types/number_text.hpp"
#include "vorquill21/frame/types/powers_of_ten.hpp"

namespace vorquill21 {
namespace {

constexpr int kSignificantDigits = 15;
constexpr std::uint64_t kTenToThe14 = 100'000'000'000'000;
constexpr std::uint64_t kTenToThe15 = 10 * kTenToThe14;

// From which decimal exponents on numbers are written with "E".
constexpr int kLeastPlainExponent = -4;
constexpr int kGreatestPlainExponent = kSignificantDigits - 1;

/// A number rounded to 15 significant digits: digits / 10^14 * 10^exponent, 10^14 <= digits < 10^15.
struct RoundedDecimal {
  std::uint64_t digits;
  int exponent;
};

/// Exact for every positive double, by way of the standard library.
RoundedDecimal RoundExactly(double value) noexcept {
  char text[32];
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, kSignificantDigits - 1)
          .ptr;
  RoundedDecimal rounded{0, 0};
  const char* at = text;
  for (; *at != 'e'; ++at) {
    if (*at != '.') rounded.digits = rounded.digits * 10 + static_cast<std::uint64_t>(*at - '0');
  }
  ++at;
  if (*at == '+') ++at;
  std::from_chars(at, end, rounded.exponent);
  return rounded;
}

/// The same for any positive double. The number is multiplied by the power of ten that brings 15 digits
/// before the point. The product of its significand and the leading 64 bits of that power tells the fraction
/// behind the point to within two units of the product's upper half; where the fraction is closer than that
/// to one half, the exact way is taken.
RoundedDecimal Round(double value) noexcept {
  constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << 52;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int biasedExponent = static_cast<int>(bits >> 52);
  if (biasedExponent == 0) return RoundExactly(value);
  const std::uint64_t significand = ((bits & (kHiddenBit - 1)) | kHiddenBit) << 11;
  const int binaryExponent = biasedExponent - 1023;

  int exponent = FloorLog10OfPowerOfTwo(binaryExponent);
  const bool reachesNextPower = FloorLog2OfPowerOfTen(exponent + 1) == binaryExponent &&
                                significand >= LeadingBitsOfPowerOfTen(exponent + 1).high;
  exponent += reachesNextPower ? 1 : 0;

  const int scale = kSignificantDigits - 1 - exponent;
  const std::uint64_t product = Multiply(significand, LeadingBitsOfPowerOfTen(scale).high).high;
  const int fractionBits = 62 - binaryExponent - FloorLog2OfPowerOfTen(scale);
  const std::uint64_t half = std::uint64_t{1} << (fractionBits - 1);
  const std::uint64_t fraction = product & (2 * half - 1);
  if (fraction + 1 - half <= 1) return RoundExactly(value);
  const std::uint64_t digits = (product >> fractionBits) + (fraction > half ? 1 : 0);
  if (digits == kTenToThe15) return {kTenToThe14, exponent + 1};
  return {digits, exponent};
}

/// The 15 digits, with a zero behind them.
SixteenDigits DigitsOf(const RoundedDecimal& number) noexcept {
  constexpr std::uint64_t kSevenDigits = 10'000'000;
  const std::uint64_t first = number.digits / kSevenDigits;
  const std::uint64_t last = number.digits % kSevenDigits;
  return {EightDigitsOf(static_cast<std::uint32_t>(first)),
          EightDigitsOf(static_cast<std::uint32_t>(last * 10))};
}

/// How many digits are left without trailing zeros; the first one is not zero.
int CountWithoutTrailingZeros(const SixteenDigits& digits) noexcept {
  if (digits.second != 0) return 16 - std::countl_zero(digits.second) / 8;
  return 8 - std::countl_zero(digits.first) / 8;
}

/// Writes the digits with the separator after the first `countBefore` (1 to 15) of them.
char16_t* WritePlain(const SixteenDigits& digits, int count, int countBefore, char16_t separator,
                     char16_t* out) noexcept {
  WriteDigits(digits, out);
  if (count <= countBefore) return out + countBefore;
  out[countBefore] = separator;
  WriteDigits(digits.Without(static_cast<unsigned>(countBefore)), out + countBefore + 1);
  return out + count + 1;
}

char16_t* WriteExponent(int exponent, char16_t* out) noexcept {
  *out++ = u'E';
  *out++ = exponent < 0 ? u'-' : u'+';
  const auto size = static_cast<unsigned>(exponent < 0 ? -exponent : exponent);
  if (size >= 100) *out++ = static_cast<char16_t>(u'0' + size / 100);
  *out++ = static_cast<char16_t>(u'0' + size / 10 % 10);
  *out++ = static_cast<char16_t>(u'0' + size % 10);
  return out;
}

char16_t* WriteWord(std::u16string_view word, char16_t* out) noexcept {
  std::memcpy(out, word.data(), word.size() * sizeof(char16_t));
  return out + word.size();
}

}  // namespace

char16_t* WriteNumber(double value, char16_t decimalSeparator, char16_t* out) noexcept {
  if (value == 0.0) return WriteWord(u"0", out);
  if (std::isnan(value)) return WriteWord(u"NAN", out);
  if (value < 0.0) {
    *out++ = u'-';
    value = -value;
  }
  if (std::isinf(value)) return WriteWord(u"INF", out);

  const RoundedDecimal rounded = Round(value);
  const SixteenDigits digits = DigitsOf(rounded);
  const int count = CountWithoutTrailingZeros(digits);
  if (rounded.exponent < kLeastPlainExponent || rounded.exponent > kGreatestPlainExponent) {
    return WriteExponent(rounded.exponent, WritePlain(digits, count, 1, decimalSeparator, out));
  }
  if (rounded.exponent >= 0) return WritePlain(digits, count, rounded.exponent + 1, decimalSeparator, out);
  const int zerosBehindSeparator = -rounded.exponent - 1;
  WriteWord(u"00000", out);
  out[1] = decimalSeparator;
  out += 2 + zerosBehindSeparator;
  WriteDigits(digits, out);
  return out + count;
}

Text NumberToText(double value, char16_t decimalSeparator) {
  char16_t units[kNumberTextCapacity];
  return Text(units, WriteNumber(value, decimalSeparator, units));
}

Text NumberToText(std::int32_t value) {
  char digits[12];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return Text(digits, end);
}

}  // namespace vorquill21
