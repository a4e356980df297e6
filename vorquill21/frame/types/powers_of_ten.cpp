#include "vorquill21/frame/types/powers_of_ten.hpp"

#include <array>
#include <cstddef>

namespace vorquill21 {
namespace {

constexpr std::size_t kZeroth = -kLeastPowerOfTen;

/// A number between 1 and 2 in 320 bits, the first of them before the binary point. What is cut off from step
/// to step of 342 stays far below the 128th bit.
class Significand {
 public:
  constexpr void MultiplyByTen() {
    std::uint64_t carry = 0;
    for (std::size_t i = words_.size(); i-- > 0;) {
      carry += std::uint64_t{words_[i]} * 10;
      words_[i] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    while (carry != 0) {
      ShiftDown(static_cast<std::uint32_t>(carry & 1));
      carry >>= 1;
    }
  }

  constexpr void DivideByTen() {
    std::uint64_t rest = 0;
    for (std::uint32_t& word : words_) {
      rest = rest << 32 | word;
      word = static_cast<std::uint32_t>(rest / 10);
      rest %= 10;
    }
    // The bits that come free at the end are those of the quotient's next word.
    std::uint64_t next = (rest << 32) / 10;
    while ((words_[0] >> 31) == 0) {
      ShiftUp(static_cast<std::uint32_t>(next >> 31 & 1));
      next <<= 1;
    }
  }

  constexpr std::uint64_t Word(std::size_t i) const {
    return std::uint64_t{words_[2 * i]} << 32 | words_[2 * i + 1];
  }

 private:
  constexpr void ShiftDown(std::uint32_t entering) {
    for (std::uint32_t& word : words_) {
      const std::uint32_t leaving = word & 1;
      word = word >> 1 | entering << 31;
      entering = leaving;
    }
  }

  constexpr void ShiftUp(std::uint32_t entering) {
    for (std::size_t i = words_.size(); i-- > 0;) {
      const std::uint32_t leaving = words_[i] >> 31;
      words_[i] = words_[i] << 1 | entering;
      entering = leaving;
    }
  }

  std::array<std::uint32_t, 10> words_{0x80000000};
};

constexpr PowersOfTen MakePowersOfTen() {
  PowersOfTen powers;
  Significand rising;
  for (std::size_t i = kZeroth; i < kPowersOfTen; ++i, rising.MultiplyByTen()) {
    powers.high[i] = rising.Word(0);
    powers.low[i] = rising.Word(1);
  }
  Significand falling;
  for (std::size_t i = kZeroth; i-- > 0;) {
    falling.DivideByTen();
    powers.high[i] = falling.Word(0);
    powers.low[i] = falling.Word(1);
  }
  return powers;
}

}  // namespace

constinit const PowersOfTen kLeadingBits = MakePowersOfTen();

}  // namespace vorquill21
