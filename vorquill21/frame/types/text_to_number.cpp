#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>
#include <type_traits>

#include "vorquill21/frame/types/digits.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/frame/types/nearest_double.hpp"
#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

template <typename Unit>
constexpr bool IsDigit(Unit unit) noexcept {
  return unit >= '0' && unit <= '9';
}

template <typename Unit>
constexpr bool IsWhiteSpace(Unit unit) noexcept {
  return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
}

template <typename Unit>
constexpr bool IsExponentMark(Unit unit) noexcept {
  return unit == 'E' || unit == 'e' || unit == 'D' || unit == 'd';
}

/// 1 for a sign, 0 for any other unit.
template <typename Unit>
constexpr int LengthOfSign(Unit unit) noexcept {
  return static_cast<int>(unit == '-') | static_cast<int>(unit == '+');
}

double WithSign(double size, bool isNegative) noexcept {
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(size) | std::uint64_t{isNegative} << 63);
}

/// An exponent as far as it is read.
template <typename Unit>
struct Exponent {
  const Unit* end;
  std::int64_t value = 0;
};

/// Reads an exponent at `at`, the mark first; it ends there when there is none. An exponent greater than the
/// length of any text is cut to one that is so too.
template <typename Unit>
[[gnu::always_inline]] inline Exponent<Unit> ReadExponent(const Unit* at, const Unit* end) noexcept {
  if (at == end || !IsExponentMark(*at)) return {at};
  const Unit* digit = at + 1;
  if (digit == end) return {at};
  const bool isNegative = *digit == '-';
  digit += LengthOfSign(*digit);
  if (digit == end || !IsDigit(*digit)) return {at};
  constexpr std::int64_t kBeyondAnyText = 100'000'000'000'000'000;
  std::int64_t size = 0;
  for (; digit != end && IsDigit(*digit); ++digit) {
    size = std::min(size * 10 + static_cast<std::int64_t>(*digit - '0'), kBeyondAnyText);
  }
  return {digit, isNegative ? -size : size};
}

// --- Any number --------------------------------------------------------------------------------------------

/// Digits with at most one separator among them, as far as they are read: number * 10 ^ scale.
template <typename Unit>
struct DigitRun {
  const Unit* end;
  std::uint64_t number = 0;
  std::int64_t scale = 0;
  bool hasSeparator = false;
};

/// Goes on with the digits that follow at once, as far as 64 bits hold the number.
template <typename Unit>
[[gnu::always_inline]] inline void AppendDigits(DigitRun<Unit>& run, const Unit* end) noexcept {
  constexpr std::uint64_t kMostBefore = (std::numeric_limits<std::uint64_t>::max() - 9) / 10;
  for (; run.end != end && IsDigit(*run.end) && run.number <= kMostBefore; ++run.end) {
    run.number = run.number * 10 + static_cast<std::uint64_t>(*run.end - '0');
    run.scale -= run.hasSeparator ? 1 : 0;
  }
}

/// The double nearest to the digits (and separator) from `begin` to `end`, however many, times 10 ^
/// `exponent`: by way of the standard library. Infinite beyond the largest double.
template <typename Unit>
double RoundLongNumber(const Unit* begin, const Unit* end, std::int64_t exponent) noexcept {
  // No double, nor the middle between two, has more significant digits; of what follows only counts whether
  // it is more than zero.
  constexpr std::size_t kMostDigits = 800;
  constexpr std::size_t kRoomForExponent = 24;
  char text[kMostDigits + 1 + kRoomForExponent];
  std::size_t count = 0;
  std::int64_t scale = exponent;
  bool isBehindSeparator = false;
  bool restIsZero = true;
  for (const Unit* at = begin; at != end; ++at) {
    if (!IsDigit(*at)) {
      isBehindSeparator = true;
      continue;
    }
    if (isBehindSeparator) --scale;
    if (count == 0 && *at == '0') continue;
    if (count < kMostDigits) {
      text[count++] = static_cast<char>(*at);
    } else {
      restIsZero &= *at == '0';
      ++scale;
    }
  }
  if (count == 0) return 0.0;
  if (!restIsZero) {
    text[count++] = '1';
    --scale;
  }

  constexpr std::int64_t kBeyondAnyDouble = 2000;
  const std::int64_t magnitude = scale + static_cast<std::int64_t>(count);
  if (magnitude > kBeyondAnyDouble) return std::numeric_limits<double>::infinity();
  if (magnitude < -kBeyondAnyDouble) return 0.0;
  text[count] = 'e';
  const char* const textEnd = std::to_chars(text + count + 1, text + sizeof text, scale).ptr;
  double value = 0.0;
  if (std::from_chars(text, textEnd, value).ec == std::errc::result_out_of_range) {
    return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  }
  return value;
}

/// The number at `begin`, which is not the end, read one unit after the other.
template <typename Unit>
[[gnu::noinline]] ParsedNumber<Unit> ParseSlowly(const Unit* begin, const Unit* end,
                                                 Unit separator) noexcept {
  const Unit* const digits = begin + LengthOfSign(*begin);
  DigitRun<Unit> run{digits};
  const auto skipDigits = [&run, end] { run.end = std::find_if_not(run.end, end, IsDigit<Unit>); };
  AppendDigits(run, end);
  bool isTooLong = run.end != end && IsDigit(*run.end);
  if (isTooLong) skipDigits();
  if (run.end != end && *run.end == separator) {
    run.hasSeparator = true;
    ++run.end;
    if (!isTooLong) AppendDigits(run, end);
    isTooLong = isTooLong || (run.end != end && IsDigit(*run.end));
    if (isTooLong) skipDigits();
  }
  const std::ptrdiff_t digitCount = run.end - digits - (run.hasSeparator ? 1 : 0);
  if (digitCount == 0) return {0.0, begin};

  const Exponent<Unit> exponent = ReadExponent(run.end, end);
  double size = 0.0;
  if (isTooLong || !NearestDouble(run.number, run.scale + exponent.value, size)) {
    size = RoundLongNumber(digits, run.end, exponent.value);
  }
  return {WithSign(size, *begin == '-'), exponent.end};
}

#ifdef __SSE2__

// --- Most numbers ------------------------------------------------------------------------------------------

// Units as bytes: those from 1 to FE are themselves, and no others become one of these.

constexpr std::uint32_t ByteOf(char16_t unit) noexcept {
  return unit <= 0xFF ? unit : 0xFF;
}

constexpr std::uint32_t ByteOf(char unit) noexcept {
  return static_cast<unsigned char>(unit);
}

template <typename Unit>
constexpr bool IsItselfAsByte(Unit unit) noexcept {
  return std::uint32_t{static_cast<std::make_unsigned_t<Unit>>(unit)} - 1 < 0xFE;
}

SixteenBytes LoadSixteen(const char16_t* units) noexcept {
  const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
  const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + 8));
  return _mm_packus_epi16(first, second);
}

SixteenBytes LoadSixteen(const char* units) noexcept {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
}

SixteenBytes LoadEight(const char16_t* units) noexcept {
  return _mm_packus_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(units)), _mm_setzero_si128());
}

SixteenBytes LoadEight(const char* units) noexcept {
  return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(units));
}

SixteenBytes LoadFour(const char16_t* units) noexcept {
  return _mm_packus_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(units)), _mm_setzero_si128());
}

SixteenBytes LoadFour(const char* units) noexcept {
  std::uint32_t word;
  std::memcpy(&word, units, sizeof word);
  return _mm_cvtsi32_si128(static_cast<int>(word));
}

/// The same for fewer than sixteen units, with zeros behind them. Nothing else is touched: they are put
/// together from those at the beginning and those at the end, which may overlap.
template <typename Unit>
SixteenBytes LoadFewer(const Unit* begin, const Unit* end) noexcept {
  const auto count = static_cast<int>(end - begin);
  if (count >= 8) {
    const __m128i known = _mm_cvtsi32_si128(8 * (16 - count));
    return _mm_unpacklo_epi64(LoadEight(begin), _mm_srl_epi64(LoadEight(end - 8), known));
  }
  if (count >= 4) {
    const __m128i known = _mm_cvtsi32_si128(8 * (8 - count));
    return _mm_unpacklo_epi32(LoadFour(begin), _mm_srl_epi64(LoadFour(end - 4), known));
  }
  if (count == 0) return _mm_setzero_si128();
  const int middle = count / 2;
  const std::uint32_t word =
      ByteOf(begin[0]) | ByteOf(begin[middle]) << 8 * middle | ByteOf(end[-1]) << 8 * (count - 1);
  return _mm_cvtsi32_si128(static_cast<int>(word));
}

constexpr unsigned kWindow = 16;
constexpr unsigned kMostDigits = kWindow - 1;

/// What fifteen digits are divided by, by the number of those that stand before the separator.
constexpr double kDivisors[kWindow] = {1e15, 1e14, 1e13, 1e12, 1e11, 1e10, 1e9, 1e8,
                                       1e7,  1e6,  1e5,  1e4,  1e3,  1e2,  1e1, 1e0};

/// The lowest bit that is not set, of at most sixteen that are.
constexpr unsigned LowestGap(unsigned bits) noexcept {
  return ~bits & (bits + 1);
}

/// The position of a single bit, at most kWindow.
constexpr unsigned PositionOf(unsigned bit) noexcept {
  constexpr unsigned kNeverZero = 2u << kWindow;  // spares a look at whether there is a bit
  return static_cast<unsigned>(std::countr_zero(bit | kNeverZero));
}

/// The number at `begin`, of which `run` holds digits and separator up to the fifteenth digit.
template <typename Unit>
[[gnu::noinline]] ParsedNumber<Unit> ParseRest(const Unit* begin, const Unit* end, Unit separator,
                                               const Unit* at, std::uint64_t number, int scale) noexcept {
  DigitRun<Unit> run{at, number, scale, true};
  AppendDigits(run, end);
  const bool isTooLong = run.end != end && IsDigit(*run.end);
  if (isTooLong) return ParseSlowly(begin, end, separator);
  const Exponent<Unit> exponent = ReadExponent(run.end, end);
  double size;
  if (!NearestDouble(run.number, run.scale + exponent.value, size)) return ParseSlowly(begin, end, separator);
  return {WithSign(size, *begin == '-'), exponent.end};
}

/// The number at `begin`. Its first sixteen units are read at once, and nothing branches on them: digits and
/// separators are found as bits, the digits before the separator are moved by one so that it is gone, and all
/// are converted together, as fifteen digits. Most numbers end there.
template <typename Unit>
ParsedNumber<Unit> Parse(const Unit* begin, const Unit* end, Unit separator) noexcept {
  if (begin == end) return {0.0, begin};
  if (!IsItselfAsByte(separator)) return ParseSlowly(begin, end, separator);
  const Unit* const digits = begin + LengthOfSign(*begin);
  const SixteenBytes bytes =
      end - digits >= std::ptrdiff_t{kWindow} ? LoadSixteen(digits) : LoadFewer(digits, end);
  const SixteenBytes values = _mm_sub_epi8(bytes, _mm_set1_epi8('0'));
  const unsigned areDigits = BitsOf(_mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values));
  const unsigned areSeparators = BitsOf(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(separator))));

  const unsigned afterInteger = LowestGap(areDigits);
  const unsigned afterDigits = LowestGap(areDigits | (areSeparators & afterInteger));
  const unsigned before = PositionOf(afterInteger);
  const unsigned length = PositionOf(afterDigits);
  const bool isEmpty = (areDigits & (afterDigits - 1)) == 0;
  if (isEmpty || before > kMostDigits) return ParseSlowly(begin, end, separator);

  const SixteenBytes kept = _mm_and_si128(values, FirstBytes(length));
  const SixteenBytes joined = Select(FirstBytes(before + 1), _mm_slli_si128(kept, 1), kept);
  const std::uint64_t number = NumberOf(joined);
  const Unit* const next = digits + length;
  if (next != end && (IsDigit(*next) || IsExponentMark(*next))) {
    const auto scale = static_cast<int>(before) - static_cast<int>(kMostDigits);
    return ParseRest(begin, end, separator, next, number, scale);
  }
  // The number and the power are exact, so that a single rounding is left.
  const double size = static_cast<double>(static_cast<std::int64_t>(number)) / kDivisors[before];
  return {WithSign(size, *begin == '-'), next};
}

#else

template <typename Unit>
ParsedNumber<Unit> Parse(const Unit* begin, const Unit* end, Unit separator) noexcept {
  if (begin == end) return {0.0, begin};
  return ParseSlowly(begin, end, separator);
}

#endif

// --- Whole texts -------------------------------------------------------------------------------------------

template <typename Unit>
std::optional<double> WholeTextToNumber(std::basic_string_view<Unit> text, Unit separator) noexcept {
  const Unit* begin = text.data();
  const Unit* const end = begin + text.size();
  while (begin != end && IsWhiteSpace(*begin)) ++begin;
  const ParsedNumber<Unit> parsed = ParseNumber(begin, end, separator);
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
  const double value = ParseNumber(begin, end, static_cast<Unit>('.')).value;
  if (std::isinf(value)) throw LibraryError(kOverflow);
  return value;
}

}  // namespace

ParsedNumber<char16_t> ParseNumber(const char16_t* begin, const char16_t* end,
                                   char16_t decimalSeparator) noexcept {
  return Parse(begin, end, decimalSeparator);
}

ParsedNumber<char> ParseNumber(const char* begin, const char* end, char decimalSeparator) noexcept {
  return Parse(begin, end, decimalSeparator);
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
