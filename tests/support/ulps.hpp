#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace vorquill21::test {

/// Number of doubles from one number to the other; both zeros are one place.
inline std::int64_t UlpsBetween(double left, double right) {
  const auto place = [](double number) {
    const auto bits = std::bit_cast<std::int64_t>(number);
    return bits < 0 ? INT64_MIN - bits : bits;
  };
  return std::abs(place(left) - place(right));
}

inline bool SameBits(double left, double right) {
  return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

/// The bits of a number; whatever is no number has the same.
inline std::uint64_t BitsOrNaN(double value) {
  return std::isnan(value) ? ~std::uint64_t{0} : std::bit_cast<std::uint64_t>(value);
}

}  // namespace vorquill21::test
