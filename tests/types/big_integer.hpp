#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vorquill21::test {

/// An integer of any size, not negative: slow, and plain enough to be believed.
class BigInteger {
 public:
  explicit BigInteger(std::uint64_t value) {
    for (; value != 0; value >>= 32) words_.push_back(static_cast<std::uint32_t>(value));
  }

  BigInteger& operator*=(std::uint32_t factor) {
    std::uint64_t carry = 0;
    for (std::uint32_t& word : words_) {
      carry += std::uint64_t{word} * factor;
      word = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    if (carry != 0) words_.push_back(static_cast<std::uint32_t>(carry));
    return *this;
  }

  BigInteger& MultiplyByPower(std::uint32_t base, int exponent) {
    for (; exponent > 0; --exponent) *this *= base;
    return *this;
  }

  BigInteger& operator+=(const BigInteger& other) {
    words_.resize(std::max(words_.size(), other.words_.size()) + 1);
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < words_.size(); ++i) {
      carry += std::uint64_t{words_[i]} + (i < other.words_.size() ? other.words_[i] : 0);
      words_[i] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    Trim();
    return *this;
  }

  std::strong_ordering operator<=>(const BigInteger& other) const {
    if (words_.size() != other.words_.size()) return words_.size() <=> other.words_.size();
    return std::lexicographical_compare_three_way(words_.rbegin(), words_.rend(), other.words_.rbegin(),
                                                  other.words_.rend());
  }

  bool operator==(const BigInteger&) const = default;

  std::string ToDecimal() const {
    std::string digits;
    for (BigInteger rest = *this; !rest.words_.empty();)
      digits += static_cast<char>('0' + rest.DivideByTen());
    std::ranges::reverse(digits);
    return digits.empty() ? "0" : digits;
  }

 private:
  /// Leaves the quotient and returns the remainder.
  std::uint32_t DivideByTen() {
    std::uint64_t remainder = 0;
    for (auto word = words_.rbegin(); word != words_.rend(); ++word) {
      remainder = remainder << 32 | *word;
      *word = static_cast<std::uint32_t>(remainder / 10);
      remainder %= 10;
    }
    Trim();
    return static_cast<std::uint32_t>(remainder);
  }

  void Trim() {
    while (!words_.empty() && words_.back() == 0) words_.pop_back();
  }

  std::vector<std::uint32_t> words_;  // the lowest first, the highest not 0
};

}  // namespace vorquill21::test
