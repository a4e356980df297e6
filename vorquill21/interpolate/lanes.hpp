#pragma once

#include <cstddef>

#include "vorquill21/numeric/double_double.hpp"

namespace vorquill21 {

/// How many points the fits work on side by side. Sums run in as many lanes, so the number is part of what
/// the results are to the last bit, the same on all systems. Not part of the interface.
constexpr std::size_t kLanes = 16;

/// A double-double for each point of a block.
struct Lanes {
  double high[kLanes] = {};
  double low[kLanes] = {};

  VORQUILL21_INLINED DoubleDouble operator[](std::size_t lane) const { return {high[lane], low[lane]}; }
  VORQUILL21_INLINED void Set(std::size_t lane, DoubleDouble value) {
    high[lane] = value.high;
    low[lane] = value.low;
  }
};

/// A sum of double-doubles in each lane. The lower halves are gathered in a double of their own, which after
/// n terms is precise to n units of 2^-106 of what was added up.
class LaneSums {
 public:
  VORQUILL21_INLINED void Add(std::size_t lane, DoubleDouble term) {
    const ErrorFree sum = TwoSum(lanes_.high[lane], term.high);
    lanes_.high[lane] = sum.value;
    lanes_.low[lane] += sum.error + term.low;
  }

  /// The sum of all lanes.
  VORQUILL21_INLINED DoubleDouble Total() const {
    DoubleDouble total;
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      const ErrorFree sum = TwoSum(lanes_.high[lane], lanes_.low[lane]);
      total = total + DoubleDouble{sum.value, sum.error};
    }
    return total;
  }

 private:
  Lanes lanes_;
};

}  // namespace vorquill21
