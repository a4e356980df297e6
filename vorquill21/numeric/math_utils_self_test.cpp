#include <algorithm>
#include <vector>

#include "vorquill21/numeric/math_utils.hpp"

namespace vorquill21 {
namespace {

bool MakesDWords(const CMathUtils& /*utils*/, Platform& platform) {
  struct Row {
    std::int32_t high;
    std::int32_t low;
  };
  constexpr Row kRows[] = {{7740, 339}, {40, 5}};
  const CMathUtils utils(platform);
  return std::ranges::all_of(kRows, [&utils](const Row& row) {
    const std::int32_t dWord = utils.DWordMake(row.high, row.low);
    return utils.DWordGetHighWord(dWord) == row.high && utils.DWordGetLowWord(dWord) == row.low;
  });
}

bool ChecksBounds(const CMathUtils& utils, Platform&) {
  struct Row {
    bool expected;
    Variant value;
    EBoundsChecks mode;
    Variant first;
    Variant second = Missing{};
  };
  constexpr EBoundsChecks kBetweenInclusive = evcBetween | evcInclusive;
  const Row rows[] = {
      {true, 10, evcGreaterThan, 9},
      {true, 10.1, evcGreaterThan, 10},
      {true, 11, evcBetween, 10, 12},
      {true, 10.5, evcBetween, 10.4, 10.6},
      {true, 10.4, kBetweenInclusive, 10.4, 10.6},
      {true, 10.6, kBetweenInclusive, 10.4, 10.6},
      {true, 10.6, evcLessThan, 10.7},
      {true, 10.6, evcNotEqual, 10.7},
      {false, 10, evcGreaterThan, 11},
      {false, 10.1, evcGreaterThan, 10.2},
      {false, 13, evcBetween, 10, 12},
      {false, 10.7, evcBetween, 10.4, 10.6},
      {false, 10.39, kBetweenInclusive, 10.4, 10.6},
      {false, 10.61, kBetweenInclusive, 10.4, 10.6},
      {false, 10.8, evcLessThan, 10.7},
      {false, 10.6, evcNotEqual, 10.6},
  };
  return std::ranges::all_of(rows, [&utils](const Row& row) {
    Text status;
    return utils.IsInBounds(row.value, u"", status, row.mode, row.first, row.second) == row.expected;
  });
}

bool SeesMonotonicArrays(const CMathUtils& utils, Platform&) {
  const Variant rising = BoundedArray<double>(std::vector<double>{0, 1, 2});
  const Variant single = BoundedArray<double>(std::vector<double>{2});
  return utils.ArrayIsMonotonic1D(rising, emsPositive, u"test") &&
         !utils.ArrayIsMonotonic1D(rising, emsNegative, u"test") &&
         utils.ArrayIsMonotonic1D(single, emsPositive, u"test");
}

bool TellsShorterArraysApart(const CMathUtils& utils, Platform&) {
  constexpr Bounds kWhole{0, 3};
  constexpr Bounds kShort{0, 2};
  struct Row {
    std::int32_t order;
    BoundedArray<double> array1;
    BoundedArray<double> array2;
  };
  const Row rows[] = {
      {3, {kWhole, kWhole, kWhole}, {kShort, kWhole, kWhole}},
      {3, {kWhole, kWhole, kWhole}, {kWhole, kShort, kWhole}},
      {3, {kWhole, kWhole, kWhole}, {kWhole, kWhole, kShort}},
      {2, {kWhole, kWhole}, {kShort, kWhole}},
      {2, {kWhole, kWhole}, {kWhole, kShort}},
      {1, BoundedArray<double>(kWhole), BoundedArray<double>(kShort)},
  };
  return std::ranges::none_of(
      rows, [&utils](const Row& row) { return utils.ArraysAreEqual(row.array1, row.array2, row.order); });
}

struct Check {
  TextView nameOnFailure;
  bool (*passes)(const CMathUtils&, Platform&);
};

constexpr Check kChecks[] = {
    {u"MakeDWord", MakesDWords},
    {u"SelfTest_IsInBounds", ChecksBounds},
    {u"SelfTest_ArrayIsMonotonic", SeesMonotonicArrays},
    {u"SelfTest_ArraysAreEqual", TellsShorterArraysApart},
};

}  // namespace

void CMathUtils::SelfTest_Main(FailedTests& aoFailedTests) const {
  for (const Check& check : kChecks) {
    if (!check.passes(*this, platform_)) aoFailedTests.emplace_back(check.nameOnFailure);
  }
}

}  // namespace vorquill21
