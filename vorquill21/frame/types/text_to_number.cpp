#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <system_error>

#include "vorquill21/frame/types/digits.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/frame/types/number_text.hpp"
#include "vorquill21/frame/types/powers_of_ten.hpp"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vorquill21 {
namespace {

template <typename Unit>
constexpr bool IsDigit(Unit unit) {
  return unit >= '0' && unit <= '9';
}

template <typename Unit>
constexpr bool IsSign(Unit unit) {
  return unit == '+' || unit == '-';
}

template <typename Unit>
constexpr bool IsWhiteSpace(Unit unit) {
  return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
}

template <typename Unit>
constexpr bool IsExponentMark(Unit unit) {
  return unit == 'E' || unit == 'e' || unit == 'D' || unit == 'd';
}

// --- From decimal to binary --------------------------------------------------------------------------------

/// digits * 10 ^ exponent, not negative.
struct Decimal {
  std::uint64_t digits = 0;
  int exponent = 0;
};

constexpr double kExactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// The nearest double, when it is sure. The significand is multiplied by the leading bits of the power of ten
/// (D. Lemire, "Number Parsing at a Gigabyte per Second", 2021). What was cut off makes the product too small
/// by less than two units of the last place that was computed; where this leaves open to which side the 53
/// bits are rounded, and outside the normal numbers, it is not sure.
bool RoundToDouble(const Decimal& decimal, double& value) noexcept {
  constexpr int kGreatestExactPower = 22;
  constexpr std::uint64_t kGreatestExactInteger = std::uint64_t{1} << 53;
  if (decimal.digits == 0) {
    value = 0.0;
    return true;
  }
  if (decimal.digits <= kGreatestExactInteger && std::abs(decimal.exponent) <= kGreatestExactPower) {
    // Both numbers are exact, so that a single rounding is left.
    const auto integer = static_cast<double>(decimal.digits);
    const double power = kExactPowers[std::abs(decimal.exponent)];
    value = decimal.exponent < 0 ? integer / power : integer * power;
    return true;
  }
  if (decimal.exponent < kLeastPowerOfTen || decimal.exponent > kGreatestPowerOfTen) return false;

  const int zeros = std::countl_zero(decimal.digits);
  const std::uint64_t significand = decimal.digits << zeros;
  const WideProduct power = LeadingBitsOfPowerOfTen(decimal.exponent);
  WideProduct product = Multiply(significand, power.high);
  const std::uint64_t carried = Multiply(significand, power.low).high;
  product.low += carried;
  product.high += product.low < carried ? 1 : 0;

  // The product has its first bit in place 63 or 62 of its upper half.
  const int excess = static_cast<int>(product.high >> 63);
  const int droppedBits = 10 + excess;
  const std::uint64_t half = std::uint64_t{1} << (droppedBits - 1);
  const std::uint64_t dropped = product.high & (2 * half - 1);
  constexpr std::uint64_t kNearlyOne = std::numeric_limits<std::uint64_t>::max() - 2;
  const bool mayReachHalf = dropped == half - 1 && product.low >= kNearlyOne;
  const bool mayBeHalf = dropped == half && product.low == 0;
  if (mayReachHalf || mayBeHalf) return false;
  const std::uint64_t rounded = (product.high >> droppedBits) + (dropped >= half ? 1 : 0);

  const int lastPlace = FloorLog2OfPowerOfTen(decimal.exponent) + 1 - zeros + droppedBits;
  constexpr int kLeastPlace = -1074 + 52;  // of a normal number, with a margin
  constexpr int kGreatestPlace = 1023 - 53;
  if (lastPlace < kLeastPlace || lastPlace > kGreatestPlace) return false;
  const auto scale = std::bit_cast<double>(static_cast<std::uint64_t>(lastPlace + 1023) << 52);
  value = static_cast<double>(rounded) * scale;
  return true;
}

/// The nearest double to the number that stands in [begin, end), in a form without sign, whatever its length:
/// by way of the standard library. Infinite beyond the largest double.
template <typename Unit>
double RoundExactly(const Unit* begin, const Unit* end, Unit decimalSeparator, int exponent) noexcept {
  // No double, nor the middle between two, has more significant digits; of what follows only counts whether
  // it is more than zero.
  constexpr std::size_t kMostDigits = 800;
  constexpr std::size_t kRoomForExponent = 24;
  char text[kMostDigits + 1 + kRoomForExponent];
  std::size_t count = 0;
  bool isBehindSeparator = false;
  bool restIsZero = true;
  std::int64_t scale = exponent;
  for (const Unit* at = begin; at != end && (IsDigit(*at) || *at == decimalSeparator); ++at) {
    if (!IsDigit(*at)) {
      isBehindSeparator = true;
      continue;
    }
    const bool isLeadingZero = count == 0 && *at == '0';
    const bool isKept = !isLeadingZero && count < kMostDigits;
    if (isKept) text[count++] = static_cast<char>(*at);
    if (!isKept && *at != '0') restIsZero = false;
    if (isBehindSeparator) --scale;
    if (!isKept && !isLeadingZero) ++scale;
  }
  if (count == 0) return 0.0;
  if (!restIsZero) {
    text[count++] = '1';
    --scale;
  }
  constexpr std::int64_t kBeyondAnyDouble = 100000;
  const std::int64_t magnitude = scale + static_cast<std::int64_t>(count);
  if (magnitude > kBeyondAnyDouble) return std::numeric_limits<double>::infinity();
  if (magnitude < -kBeyondAnyDouble) return 0.0;
  text[count] = 'e';
  char* const textEnd = std::to_chars(text + count + 1, text + sizeof text, scale).ptr;
  double value = 0.0;
  if (std::from_chars(text, textEnd, value).ec == std::errc::result_out_of_range) {
    return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  }
  return value;
}

// --- Digits ------------------------------------------------------------------------------------------------

constexpr unsigned kWindow = 16;

/// The first (up to sixteen) characters of a text.
struct Window {
  SixteenDigits digits;  // meaningful where the characters are digits
  unsigned others;       // bit i: character i is no digit, or lies behind the end; bit 16 is always set

  /// How many digits follow from the given position (up to 16) on.
  unsigned CountDigits(unsigned from) const noexcept {
    return static_cast<unsigned>(std::countr_zero(others >> from));
  }
};

#ifdef __SSE2__

// Characters of 8 bits; units beyond them become a character that is no digit.
__m128i LoadSixteen(const char16_t* units) noexcept {
  const auto* vectors = reinterpret_cast<const __m128i*>(units);
  return _mm_packus_epi16(_mm_loadu_si128(vectors), _mm_loadu_si128(vectors + 1));
}

__m128i LoadSixteen(const char* units) noexcept {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
}

std::uint64_t LoadEight(const char16_t* units) noexcept {
  const __m128i vector = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
  std::uint64_t characters;
  _mm_storel_epi64(reinterpret_cast<__m128i*>(&characters), _mm_packus_epi16(vector, vector));
  return characters;
}

std::uint64_t LoadFour(const char16_t* units) noexcept {
  const __m128i vector = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(units));
  return static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(vector, vector)));
}

std::uint64_t LoadEight(const char* units) noexcept {
  std::uint64_t characters;
  std::memcpy(&characters, units, sizeof characters);
  return characters;
}

std::uint64_t LoadFour(const char* units) noexcept {
  std::uint32_t characters;
  std::memcpy(&characters, units, sizeof characters);
  return characters;
}

/// Fewer than sixteen characters, zeros behind them; two loads that overlap cover all of them.
template <typename Unit>
__m128i LoadFew(const Unit* begin, std::size_t count) noexcept {
  std::uint64_t first = 0;
  std::uint64_t second = 0;
  if (count >= 8) {
    first = LoadEight(begin);
    second = LoadEight(begin + count - 8) >> 8 >> 8 * (15 - count);
  } else if (count >= 4) {
    first = LoadFour(begin) | LoadFour(begin + count - 4) << 8 * (count - 4);
  } else {
    for (std::size_t i = 0; i < count; ++i) {
      const bool isCharacter = begin[i] >= 0 && begin[i] <= 0x7F;
      first |= std::uint64_t{static_cast<unsigned char>(isCharacter ? begin[i] : 0)} << 8 * i;
    }
  }
  return _mm_set_epi64x(static_cast<long long>(second), static_cast<long long>(first));
}

template <typename Unit>
Window LoadWindow(const Unit* begin, const Unit* end) noexcept {
  const auto count = static_cast<std::size_t>(end - begin);
  const __m128i characters = count >= kWindow ? LoadSixteen(begin) : LoadFew(begin, count);
  const __m128i values = _mm_sub_epi8(characters, _mm_set1_epi8('0'));
  const __m128i areDigits = _mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values);
  Window window;
  std::memcpy(&window.digits, &values, sizeof values);
  window.others = ~static_cast<unsigned>(_mm_movemask_epi8(areDigits));
  return window;
}

#else

template <typename Unit>
Window LoadWindow(const Unit* begin, const Unit* end) noexcept {
  std::uint64_t halves[2] = {0, 0};
  Window window{{0, 0}, ~0u};
  const auto count = std::min<std::size_t>(static_cast<std::size_t>(end - begin), kWindow);
  for (std::size_t i = 0; i < count; ++i) {
    if (!IsDigit(begin[i])) continue;
    halves[i / 8] |= static_cast<std::uint64_t>(begin[i] - '0') << 8 * (i % 8);
    window.others &= ~(1u << i);
  }
  window.digits = {halves[0], halves[1]};
  return window;
}

#endif

/// The number that the first `count` (1 to 16) digits spell.
std::uint64_t NumberOfDigits(const SixteenDigits& digits, unsigned count) noexcept {
  const SixteenDigits aligned = digits.AfterZeros(kWindow - count);
  return std::uint64_t{NumberOfEightDigits(aligned.first)} * 100'000'000 +
         NumberOfEightDigits(aligned.second);
}

/// Digits with at most one separator among them.
template <typename Unit>
struct DigitRun {
  std::uint64_t number = 0;
  std::int64_t fractionCount = 0;  // digits behind the separator
  bool isEmpty = true;             // no digit
  bool isTooLong = false;          // 64 bits do not hold `number`
  const Unit* end = nullptr;
};

/// Goes on reading one by one where the window ended among digits.
template <typename Unit>
void ReadOn(DigitRun<Unit>& run, bool hasSeparator, const Unit* end, Unit separator) noexcept {
  constexpr std::uint64_t kMostBefore = (std::numeric_limits<std::uint64_t>::max() - 9) / 10;
  for (; run.end != end; ++run.end) {
    const Unit unit = *run.end;
    if (IsDigit(unit)) {
      if (run.number > kMostBefore) run.isTooLong = true;
      run.number = run.number * 10 + static_cast<std::uint64_t>(unit - '0');
      run.isEmpty = false;
      run.fractionCount += hasSeparator ? 1 : 0;
    } else if (unit == separator && !hasSeparator) {
      hasSeparator = true;
    } else {
      return;
    }
  }
}

template <typename Unit>
DigitRun<Unit> ReadDigits(const Unit* begin, const Unit* end, Unit separator) noexcept {
  DigitRun<Unit> run;
  const Window window = LoadWindow(begin, end);
  unsigned count = window.CountDigits(0);
  const bool hasSeparator = count < kWindow && begin + count != end && begin[count] == separator;
  unsigned length = count;
  SixteenDigits digits = window.digits;
  if (hasSeparator) {
    const unsigned fraction = window.CountDigits(count + 1);
    digits = digits.WithoutOne(count);
    length += 1 + fraction;
    count += fraction;
    run.fractionCount = fraction;
  }
  run.isEmpty = count == 0;
  if (!run.isEmpty) run.number = NumberOfDigits(digits, count);
  run.end = begin + length;
  if (length == kWindow) ReadOn(run, hasSeparator, end, separator);
  return run;
}

/// Reads an exponent at `at`, the mark first, and returns where it ends; `at` when there is none.
template <typename Unit>
const Unit* ReadExponent(const Unit* at, const Unit* end, int& exponent) noexcept {
  if (at == end || !IsExponentMark(*at)) return at;
  const Unit* digit = at + 1;
  const bool isNegative = digit != end && *digit == '-';
  if (digit != end && IsSign(*digit)) ++digit;
  if (digit == end || !IsDigit(*digit)) return at;
  constexpr int kBeyondAnyText = 1'000'000'000;
  int size = 0;
  for (; digit != end && IsDigit(*digit); ++digit) {
    size = std::min(size * 10 + static_cast<int>(*digit - '0'), kBeyondAnyText / 10);
  }
  exponent = isNegative ? -size : size;
  return digit;
}

// --- Numbers -----------------------------------------------------------------------------------------------

template <typename Unit>
ParsedNumber<Unit> Parse(const Unit* begin, const Unit* end, Unit decimalSeparator) noexcept {
  const Unit* at = begin;
  const bool isNegative = at != end && *at == '-';
  if (at != end && IsSign(*at)) ++at;

  const DigitRun<Unit> run = ReadDigits(at, end, decimalSeparator);
  if (run.isEmpty) return {0.0, begin};
  int exponent = 0;
  const Unit* const numberEnd = ReadExponent(run.end, end, exponent);

  double value = 0.0;
  const std::int64_t scale = exponent - run.fractionCount;
  const auto clamped = static_cast<int>(std::clamp<std::int64_t>(scale, -100'000, 100'000));
  if (run.isTooLong || !RoundToDouble({run.number, clamped}, value)) {
    value = RoundExactly(at, run.end, decimalSeparator, exponent);
  }
  return {isNegative ? -value : value, numberEnd};
}

template <typename Unit>
std::optional<double> WholeTextToNumber(std::basic_string_view<Unit> text, Unit decimalSeparator) noexcept {
  const Unit* begin = text.data();
  const Unit* end = begin + text.size();
  while (begin != end && IsWhiteSpace(*begin)) ++begin;
  const ParsedNumber<Unit> parsed = Parse(begin, end, decimalSeparator);
  const Unit* rest = parsed.end;
  while (rest != end && IsWhiteSpace(*rest)) ++rest;
  if (parsed.end == begin || rest != end || std::isinf(parsed.value)) return std::nullopt;
  return parsed.value;
}

template <typename Unit>
double LeadingNumberOf(std::basic_string_view<Unit> text) {
  const Unit* begin = text.data();
  const Unit* const end = begin + text.size();
  while (begin != end && *begin == ' ') ++begin;
  const double value = Parse(begin, end, static_cast<Unit>('.')).value;
  if (std::isinf(value)) throw LibraryError(kOverflow);
  return value;
}

}  // namespace

std::optional<double> TextToNumber(TextView text, char16_t decimalSeparator) noexcept {
  return WholeTextToNumber(text, decimalSeparator);
}

std::optional<double> TextToNumber(std::string_view text, char decimalSeparator) noexcept {
  return WholeTextToNumber(text, decimalSeparator);
}

ParsedNumber<char16_t> ParseNumber(const char16_t* begin, const char16_t* end,
                                   char16_t decimalSeparator) noexcept {
  return Parse(begin, end, decimalSeparator);
}

ParsedNumber<char> ParseNumber(const char* begin, const char* end, char decimalSeparator) noexcept {
  return Parse(begin, end, decimalSeparator);
}

double LeadingNumber(TextView text) {
  return LeadingNumberOf(text);
}

double LeadingNumber(std::string_view text) {
  return LeadingNumberOf(text);
}

}  // namespace vorquill21
