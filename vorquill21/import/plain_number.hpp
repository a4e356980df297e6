#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "vorquill21/frame/types/nearest_double.hpp"

namespace vorquill21 {

namespace plain_number_detail {

/// Eight characters, the first in the lowest byte. Digits are bytes from 0 to 9.
using EightBytes = std::uint64_t;

inline constexpr std::size_t kEight = 8;
inline constexpr std::size_t kMostCharacters = 2 * kEight;
inline constexpr EightBytes kOnes = 0x0101010101010101;

inline EightBytes LoadDigits(const char* at) noexcept {
  EightBytes bytes;
  std::memcpy(&bytes, at, sizeof bytes);
  return bytes ^ kOnes * '0';
}

/// The first `count` (1 to 8) of the characters at `at`, with zeros in front of them.
inline EightBytes LoadFirstDigits(const char* at, std::size_t count) noexcept {
  return LoadDigits(at) << 8 * (kEight - count);
}

/// 80 in bytes that are no digits; 0 when all are. The lowest of these bytes is certain, those above it are
/// not.
inline EightBytes FindOthers(EightBytes bytes) noexcept {
  return ((bytes + kOnes * (0x80 - 10)) | bytes) & kOnes * 0x80;
}

/// Takes the point out, which is the lowest of `others`, moves the digits before it into its place, and
/// counts those behind it; false when it is no point or another byte is no digit.
inline bool TakePointOut(EightBytes& bytes, EightBytes others, unsigned& decimals) noexcept {
  const EightBytes lowest = others & (0 - others);
  const EightBytes one = lowest >> 7;
  bytes ^= one * ('.' ^ '0');
  if ((bytes & one * 0xFF) != 0) return false;
  const EightBytes before = bytes & (one - 1);
  bytes += (before << 8) - before;
  decimals = static_cast<unsigned>(std::countl_zero(lowest)) / 8;
  return FindOthers(bytes) == 0;
}

/// The number that eight digits spell: neighbours are joined to pairs, and four pairs at once.
inline std::uint64_t NumberOf(EightBytes digits) noexcept {
  constexpr std::uint64_t kPairs = 0x000000FF000000FF;
  constexpr std::uint64_t kFirstAndThird = 100 | std::uint64_t{1'000'000} << 32;
  constexpr std::uint64_t kSecondAndFourth = 1 | std::uint64_t{10'000} << 32;
  const std::uint64_t pairs = digits * 10 + (digits >> 8);
  return ((pairs & kPairs) * kFirstAndThird + (pairs >> 16 & kPairs) * kSecondAndFourth) >> 32;
}

/// number / 10 ^ decimals.
struct Decimal {
  std::uint64_t number;
  unsigned decimals = 0;
};

/// Digits with at most one point, 1 to 8 characters in all; false when `at` has others.
inline bool ReadShort(const char* at, std::size_t length, Decimal& decimal) noexcept {
  EightBytes bytes = LoadFirstDigits(at, length);
  const EightBytes others = FindOthers(bytes);
  if (others != 0 && (length == 1 || !TakePointOut(bytes, others, decimal.decimals))) return false;
  decimal.number = NumberOf(bytes);
  return true;
}

/// The same for 9 to 16 characters.
inline bool ReadLong(const char* at, std::size_t length, Decimal& decimal) noexcept {
  EightBytes head = LoadFirstDigits(at, length - kEight);
  EightBytes tail = LoadDigits(at + length - kEight);
  const EightBytes headOthers = FindOthers(head);
  const EightBytes tailOthers = FindOthers(tail);
  std::uint64_t tenToTheTail = 100'000'000;
  if (headOthers != 0) {
    if (tailOthers != 0 || !TakePointOut(head, headOthers, decimal.decimals)) return false;
    decimal.decimals += kEight;
  } else if (tailOthers != 0) {
    if (!TakePointOut(tail, tailOthers, decimal.decimals)) return false;
    tenToTheTail = 10'000'000;
  }
  decimal.number = NumberOf(head) * tenToTheTail + NumberOf(tail);
  return true;
}

inline bool ReadDecimal(const char* at, std::size_t length, Decimal& decimal) noexcept {
  if (length - 1 < kEight) return ReadShort(at, length, decimal);
  if (length - 1 < kMostCharacters) return ReadLong(at, length, decimal);
  return false;
}

/// A decimal, "E" or "e", a sign and two digits.
inline bool ReadScientific(const char* at, std::size_t length, double& size) noexcept {
  constexpr std::size_t kExponentLength = 4;
  if (length <= kExponentLength) return false;
  const char* const mark = at + length - kExponentLength;
  const auto tens = static_cast<unsigned>(mark[2] - '0');
  const auto ones = static_cast<unsigned>(mark[3] - '0');
  const bool hasExponent =
      (*mark == 'E' || *mark == 'e') && (mark[1] == '+' || mark[1] == '-') && tens < 10 && ones < 10;
  Decimal decimal;
  if (!hasExponent || !ReadDecimal(at, length - kExponentLength, decimal)) return false;
  const auto exponent = static_cast<int>(10 * tens + ones);
  const auto decimals = static_cast<int>(decimal.decimals);
  return NearestDouble(decimal.number, (mark[1] == '-' ? -exponent : exponent) - decimals, size);
}

/// By which a number is divided, and that for its negative.
inline constexpr double kDivisors[2][kMostCharacters] = {
    {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15},
    {-1e0, -1e1, -1e2, -1e3, -1e4, -1e5, -1e6, -1e7, -1e8, -1e9, -1e10, -1e11, -1e12, -1e13, -1e14, -1e15}};

}  // namespace plain_number_detail

/// Sets `value` to the number that the whole of `field` spells (the double nearest to it, a half to even)
/// when it has the usual form, within a text that goes on up to `textEnd`: an optional "-" and up to 16
/// digits, or 15 and a point, and perhaps "E" or "e", a sign and two digits. False, and `value` is anything,
/// when it has not, and for a few fields that have: in the last bytes of the text, and numbers that are hard
/// to round.
inline bool ReadPlainNumber(std::string_view field, const char* textEnd, double& value) noexcept {
  using namespace plain_number_detail;
  if constexpr (std::endian::native != std::endian::little) return false;
  const std::size_t isNegative = field.starts_with('-') ? 1 : 0;
  const char* const at = field.data() + isNegative;
  const std::size_t length = field.size() - isNegative;
  if (textEnd - at < std::ptrdiff_t{kEight}) return false;
  Decimal decimal;
  if (ReadDecimal(at, length, decimal)) {
    // Up to 15 digits and the power are exact, 16 digits have no decimals: a single rounding is left.
    value = static_cast<double>(static_cast<std::int64_t>(decimal.number)) /
            kDivisors[isNegative][decimal.decimals];
    return true;
  }
  if (!ReadScientific(at, length, value)) return false;
  if (isNegative != 0) value = -value;
  return true;
}

}  // namespace vorquill21
