#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <iterator>
#include <limits>
#include <ostream>
#include <random>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/ulps.hpp"

namespace vorquill21::test {

/// Holds operations, with random numbers, to the steps that are promised of them: each result looked at where
/// it arises, and nothing done in any other order. `Result` consists of the doubles that an operation sets.
template <typename Result>
class PromisedStepsTest : public testing::Test {
 protected:
  /// One number of `numbersForAnOddOne` is odd.
  PromisedStepsTest(std::uint64_t seed, std::size_t numbersForAnOddOne)
      : random_(seed), numbersForAnOddOne_(numbersForAnOddOne) {}

  /// Plain numbers mostly, often a few of them equal. With the odd ones a difference, a product, a square or
  /// its sum leaves the range, or did so before.
  double Number() {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kOdd[] = {0.0,       -0.0,       1.0,       -1.0,       0x1p-1074, 0x1p-540,
                               0x1p-300,  1e-30,      0x1p500,   1e200,      -1e200,    0x1p1023,
                               -0x1p1023, 0x1.8p1023, kInfinity, -kInfinity, kNaN};
    if (Below(numbersForAnOddOne_) == 0) return kOdd[Below(std::size(kOdd))];
    if (Below(5) < 2) return static_cast<double>(Below(9)) - 4.0;
    return normal_(random_);
  }

  std::size_t Below(std::size_t count) { return static_cast<std::size_t>(random_() % count); }

  /// Whether `operation(result)` comes to what `steps(result)` come to, to the bit, and raises what they
  /// raise.
  template <typename Operation, typename Steps>
  testing::AssertionResult Agree(Operation operation, Steps steps) {
    const Outcome actual = OutcomeOf(operation);
    const Outcome expected = OutcomeOf(steps);
    faults_ += expected.raised != 0 ? 1 : 0;
    if (actual == expected) return testing::AssertionSuccess();
    return testing::AssertionFailure() << actual << " instead of " << expected;
  }

  /// How often steps raised an error until now.
  int Faults() const { return faults_; }

  FakePlatform fake_;

 private:
  /// What a call leaves: the number that it raised, and its results.
  struct Outcome {
    std::int32_t raised = 0;
    std::array<std::uint64_t, sizeof(Result) / sizeof(double)> bits{};

    friend bool operator==(const Outcome&, const Outcome&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
      out << std::hexfloat;
      for (const std::uint64_t bits : outcome.bits) out << std::bit_cast<double>(bits) << ' ';
      return out << "raised " << outcome.raised;
    }
  };

  template <typename Operation>
  static Outcome OutcomeOf(Operation operation) {
    Result result{};
    Outcome outcome;
    outcome.raised = RaisedNumber([&] { operation(result); });
    using Numbers = std::array<double, sizeof(Result) / sizeof(double)>;
    std::ranges::transform(std::bit_cast<Numbers>(result), outcome.bits.begin(), BitsOrNaN);
    return outcome;
  }

  std::mt19937_64 random_;
  std::size_t numbersForAnOddOne_;
  std::normal_distribution<double> normal_;
  int faults_ = 0;
};

}  // namespace vorquill21::test
