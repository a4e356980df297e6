#include <algorithm>
#include <array>
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
/// before the point. The leading 64 bits of that power, cut off, make the upper half of the product too small
/// by less than two; only where the fraction behind the point is closer to one half than that, the exact way
/// is taken.
RoundedDecimal Round(double value) noexcept {
  constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << 52;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int biasedExponent = static_cast<int>(bits >> 52);
  if (biasedExponent == 0) return RoundExactly(value);
  const std::uint64_t significand = ((bits & (kHiddenBit - 1)) | kHiddenBit) << 11;
  const int binaryExponent = biasedExponent - 1023;

  // Both looks are taken, as a branch would often be guessed wrong.
  int exponent = FloorLog10OfPowerOfTwo(binaryExponent);
  const auto isNextPowerNear = static_cast<int>(FloorLog2OfPowerOfTen(exponent + 1) == binaryExponent);
  const auto isAboveItsBits = static_cast<int>(significand >= LeadingBitsOfPowerOfTen(exponent + 1).high);
  exponent += isNextPowerNear & isAboveItsBits;

  const int scale = kSignificantDigits - 1 - exponent;
  const std::uint64_t product = Multiply(significand, LeadingBitsOfPowerOfTen(scale).high).high;
  const int fractionBits = 62 - binaryExponent - FloorLog2OfPowerOfTen(scale);
  const std::uint64_t half = std::uint64_t{1} << (fractionBits - 1);
  const std::uint64_t fraction = product & (2 * half - 1);
  if (fraction - (half - 1) <= 1) return RoundExactly(value);
  const std::uint64_t digits = (product >> fractionBits) + (fraction > half ? 1 : 0);
  if (digits == kTenToThe15) return {kTenToThe14, exponent + 1};
  return {digits, exponent};
}

/// The 15 decimal digits of a number, the first of them not 0.
class Digits {
 public:
#ifdef __SSE2__
  explicit Digits(std::uint64_t number) noexcept : digits_(DigitsOf(10 * number)) {}

  /// How many are left without trailing zeros.
  int Count() const noexcept {
    const unsigned areZeros = BitsOf(_mm_cmpeq_epi8(digits_, _mm_setzero_si128()));
    return 32 - std::countl_zero(0xFFFF ^ areZeros);
  }

  /// Writes sixteen units: them and a zero.
  void Write(char16_t* out) const noexcept {
    WriteBytes(Characters(), out);
  }

  /// The same with one unit more, of anything, after the first `before` (1 to 15); so the zero falls off.
  void WriteWithGap(int before, char16_t* out) const noexcept {
    const __m128i characters = Characters();
    WriteBytes(Select(FirstBytes(static_cast<unsigned>(before)), characters, _mm_slli_si128(characters, 1)),
               out);
  }

 private:
  __m128i Characters() const noexcept {
    return _mm_or_si128(digits_, _mm_set1_epi8('0'));
  }

  __m128i digits_;
#else
  explicit Digits(std::uint64_t number) noexcept {
    for (char16_t* unit = units_.end(); unit != units_.begin(); number /= 10) {
      *--unit = static_cast<char16_t>(u'0' + number % 10);
    }
  }

  int Count() const noexcept {
    const auto last =
        std::find_if(units_.rbegin(), units_.rend(), [](char16_t unit) { return unit != u'0'; });
    return static_cast<int>(units_.rend() - last);
  }

  void Write(char16_t* out) const noexcept {
    std::ranges::copy(units_, out);
  }

  void WriteWithGap(int before, char16_t* out) const noexcept {
    std::copy_n(units_.begin(), before, out);
    std::copy(units_.begin() + before, units_.end(), out + before + 1);
  }

 private:
  std::array<char16_t, kSignificantDigits> units_;
#endif
};

/// Writes the digits with the separator after the first `before` (1 to 15) of them.
char16_t* WritePlain(const Digits& digits, int before, char16_t separator, char16_t* out) noexcept {
  digits.WriteWithGap(before, out);
  out[before] = separator;
  const int count = digits.Count();
  return out + (count > before ? count + 1 : before);
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
  *out = u'-';
  out += value < 0.0 ? 1 : 0;
  value = std::abs(value);
  if (std::isinf(value)) return WriteWord(u"INF", out);

  const RoundedDecimal rounded = Round(value);
  const Digits digits(rounded.digits);
  if (rounded.exponent < kLeastPlainExponent || rounded.exponent > kGreatestPlainExponent) {
    return WriteExponent(rounded.exponent, WritePlain(digits, 1, decimalSeparator, out));
  }
  if (rounded.exponent >= 0) return WritePlain(digits, rounded.exponent + 1, decimalSeparator, out);
  WriteWord(u"00000", out);
  out[1] = decimalSeparator;
  out += 1 - rounded.exponent;
  digits.Write(out);
  return out + digits.Count();
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
