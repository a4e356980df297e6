#include "vorquill21/frame/types/bounded_array.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <new>
#include <numeric>
#include <utility>
#include <vector>

#include "tests/support/raised_number.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {
namespace {

using test::RaisedNumber;

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

/// 0, 1, 2, ... in storage order.
template <typename... AllBounds>
BoundedArray<double> Numbered(AllBounds... bounds) {
  BoundedArray<double> array(bounds...);
  std::iota(array.Elements().begin(), array.Elements().end(), 0.0);
  return array;
}

TEST(BoundsTest, CountsAllIndices) {
  EXPECT_EQ((Bounds{}.Count()), 0);
  EXPECT_EQ((Bounds{0, -1}.Count()), 0);
  EXPECT_EQ((Bounds{5, 5}.Count()), 1);
  EXPECT_EQ((Bounds{-3, 3}.Count()), 7);
  EXPECT_EQ((Bounds{kLeast, kMost}.Count()), std::int64_t{1} << 32);
}

TEST(BoundedArrayTest, ANewArrayWasNeverDimensioned) {
  BoundedArray<double> array;
  EXPECT_EQ(array.Rank(), 0);
  EXPECT_TRUE(array.Elements().empty());
  for (const int dimension : {-1, 0, 1, 2, 3, 4}) {
    EXPECT_EQ(RaisedNumber([&] { array.LowerBound(dimension); }), kSubscriptOutOfRange) << dimension;
    EXPECT_EQ(RaisedNumber([&] { array.UpperBound(dimension); }), kSubscriptOutOfRange) << dimension;
    EXPECT_EQ(RaisedNumber([&] { array.BoundsOf(dimension); }), kSubscriptOutOfRange) << dimension;
  }
  EXPECT_EQ(RaisedNumber([&] { array(0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { array(0, 0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { array(0, 0, 0); }), kSubscriptOutOfRange);
}

TEST(BoundedArrayTest, BoundsArePartOfTheValue) {
  const BoundedArray<double> one(Bounds{2, 4});
  EXPECT_EQ(one.Rank(), 1);
  EXPECT_EQ(one.LowerBound(), 2);
  EXPECT_EQ(one.UpperBound(), 4);

  const BoundedArray<double> three({-1, 1}, {5, 5}, {0, 9});
  EXPECT_EQ(three.Rank(), 3);
  EXPECT_EQ(three.BoundsOf(1), (Bounds{-1, 1}));
  EXPECT_EQ(three.BoundsOf(2), (Bounds{5, 5}));
  EXPECT_EQ(three.BoundsOf(3), (Bounds{0, 9}));
  EXPECT_EQ(three.LowerBound(2), 5);
  EXPECT_EQ(three.UpperBound(3), 9);
  EXPECT_EQ(three.Elements().size(), 30u);
  for (const int dimension : {-1, 0, 4}) {
    EXPECT_EQ(RaisedNumber([&] { three.BoundsOf(dimension); }), kSubscriptOutOfRange) << dimension;
  }
}

TEST(BoundedArrayTest, NewElementsAreDefaultValues) {
  const BoundedArray<double> numbers({0, 1}, {0, 1});
  for (const double element : numbers.Elements()) EXPECT_EQ(element, 0.0);
  const BoundedArray<Text> texts({1, 3});
  for (const Text& element : texts.Elements()) EXPECT_EQ(element, u"");
}

TEST(BoundedArrayTest, TheLastIndexRunsFastest) {
  const auto two = Numbered(Bounds{1, 2}, Bounds{-1, 1});
  EXPECT_EQ(two(1, -1), 0);
  EXPECT_EQ(two(1, 1), 2);
  EXPECT_EQ(two(2, -1), 3);
  EXPECT_EQ(two(2, 1), 5);

  const auto three = Numbered(Bounds{0, 1}, Bounds{0, 2}, Bounds{0, 3});
  double expected = 0;
  for (std::int32_t i = 0; i <= 1; ++i) {
    for (std::int32_t j = 0; j <= 2; ++j) {
      for (std::int32_t k = 0; k <= 3; ++k) EXPECT_EQ(three(i, j, k), expected++);
    }
  }
}

TEST(BoundedArrayTest, ElementsCanBeChanged) {
  BoundedArray<double> one(Bounds{1, 2});
  one(2) = 5;
  BoundedArray<double> two({1, 2}, {1, 2});
  two(2, 1) = 6;
  BoundedArray<double> three({1, 2}, {1, 2}, {1, 2});
  three(2, 1, 2) = 7;
  three.Elements()[0] = 8;
  EXPECT_EQ(one(2), 5);
  EXPECT_EQ(two(2, 1), 6);
  EXPECT_EQ(three(2, 1, 2), 7);
  EXPECT_EQ(three(1, 1, 1), 8);
}

TEST(BoundedArrayTest, EveryAccessChecksItsIndices) {
  const BoundedArray<double> one(Bounds{-2, 2});
  for (const std::int32_t i : {kLeast, -3, 3, kMost}) {
    EXPECT_EQ(RaisedNumber([&] { one(i); }), kSubscriptOutOfRange) << i;
  }
  const BoundedArray<double> two({0, 1}, {0, 2});
  EXPECT_EQ(RaisedNumber([&] { two(0, 3); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { two(2, 0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { two(-1, 2); }), kSubscriptOutOfRange);
  const BoundedArray<double> three({0, 1}, {0, 1}, {0, 1});
  EXPECT_EQ(RaisedNumber([&] { three(0, 0, 2); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { three(0, 2, 0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { three(2, 0, 0); }), kSubscriptOutOfRange);
}

TEST(BoundedArrayTest, AWrongNumberOfIndicesIsASubscriptError) {
  const BoundedArray<double> one(Bounds{0, 1});
  const BoundedArray<double> two({0, 1}, {0, 1});
  const BoundedArray<double> three({0, 1}, {0, 1}, {0, 1});
  EXPECT_EQ(RaisedNumber([&] { one(0, 0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { one(0, 0, 0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { two(0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { two(0, 0, 0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { three(0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { three(0, 0); }), kSubscriptOutOfRange);
}

TEST(BoundedArrayTest, BoundsMayLieAtTheEndsOfTheRange) {
  BoundedArray<double> low(Bounds{kLeast, kLeast + 1});
  low(kLeast) = 1;
  low(kLeast + 1) = 2;
  EXPECT_EQ(low.Elements()[1], 2);
  EXPECT_EQ(RaisedNumber([&] { low(kMost); }), kSubscriptOutOfRange);

  BoundedArray<double> high(Bounds{kMost, kMost});
  high(kMost) = 3;
  EXPECT_EQ(high.Elements()[0], 3);
  EXPECT_EQ(RaisedNumber([&] { high(kLeast); }), kSubscriptOutOfRange);
}

TEST(BoundedArrayTest, AnUpperBoundBelowTheLowerIsASubscriptError) {
  for (const Bounds bounds : {Bounds{0, -1}, Bounds{1, 0}, Bounds{kMost, kLeast}}) {
    EXPECT_EQ(RaisedNumber([&] { BoundedArray<double> array(bounds); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { BoundedArray<double> array({0, 1}, bounds); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] {
                BoundedArray<double> array({0, 1}, {0, 1}, bounds);
              }),
              kSubscriptOutOfRange);
  }
}

TEST(BoundedArrayTest, MoreElementsThanMemoryHoldsIsAMemoryError) {
  const Bounds all{kLeast, kMost};
  EXPECT_EQ(RaisedNumber([&] { BoundedArray<double> array(all, all); }), kOutOfMemory);
  EXPECT_EQ(RaisedNumber([&] { BoundedArray<double> array(all, all, all); }), kOutOfMemory);
  EXPECT_EQ(RaisedNumber([&] { BoundedArray<double> array(all, {0, 1 << 29}); }), kOutOfMemory);
}

TEST(BoundedArrayTest, TheEmptyArrayHasTheBoundsZeroToMinusOne) {
  const auto empty = BoundedArray<Text>::Empty();
  EXPECT_EQ(empty.Rank(), 1);
  EXPECT_EQ(empty.LowerBound(), 0);
  EXPECT_EQ(empty.UpperBound(), -1);
  EXPECT_TRUE(empty.Elements().empty());
  EXPECT_EQ(RaisedNumber([&] { empty(0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { empty(-1); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { empty.BoundsOf(2); }), kSubscriptOutOfRange);
  EXPECT_NE(empty, BoundedArray<Text>());
}

TEST(BoundedArrayTest, TakesOverTheElementsOfAVector) {
  std::vector<double> elements{1, 2, 3};
  const double* const data = elements.data();
  const BoundedArray<double> array(std::move(elements), -1);
  EXPECT_EQ(array.BoundsOf(1), (Bounds{-1, 1}));
  EXPECT_EQ(array(1), 3);
  EXPECT_EQ(array.Elements().data(), data);
  EXPECT_EQ(BoundedArray<double>(std::vector<double>(), 7), BoundedArray<double>::Empty());
}

TEST(BoundedArrayTest, AVectorMayReachTheEndsOfTheRangeButNotBeyond) {
  EXPECT_EQ(BoundedArray<double>(std::vector<double>{1, 2}, kMost - 1).UpperBound(), kMost);
  EXPECT_EQ(BoundedArray<double>(std::vector<double>{1, 2}, kLeast).UpperBound(), kLeast + 1);
  EXPECT_EQ(RaisedNumber([&] {
              BoundedArray<double> array(std::vector<double>{1, 2}, kMost);
            }),
            kSubscriptOutOfRange);
}

TEST(BoundedArrayTest, ReDimGivesNewBoundsAndNewElements) {
  BoundedArray<double> array(Bounds{0, 1});
  array(0) = 5;
  array.ReDim({0, 1});
  EXPECT_EQ(array(0), 0);
  array.ReDim({1, 2}, {3, 4});
  EXPECT_EQ(array.Rank(), 2);
  EXPECT_EQ(array.BoundsOf(2), (Bounds{3, 4}));
  array.ReDim({1, 1}, {2, 2}, {3, 3});
  EXPECT_EQ(array.Rank(), 3);
  EXPECT_EQ(array.Elements().size(), 1u);
  array.ReDim({4, 6});
  EXPECT_EQ(array, BoundedArray<double>(Bounds{4, 6}));
}

TEST(BoundedArrayTest, AfterAFailedReDimTheArrayIsAsItWas) {
  auto array = Numbered(Bounds{1, 2}, Bounds{1, 2});
  const auto before = array;
  const Bounds all{kLeast, kMost};
  EXPECT_EQ(RaisedNumber([&] { array.ReDim({0, -1}); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { array.ReDim({0, 1}, {1, 0}); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { array.ReDim(all, all); }), kOutOfMemory);
  EXPECT_EQ(array, before);
}

TEST(BoundedArrayTest, ReDimPreserveMovesTheEnd) {
  auto array = Numbered(Bounds{2, 4});
  array.ReDimPreserve(6);
  EXPECT_EQ(array.BoundsOf(1), (Bounds{2, 6}));
  EXPECT_EQ(array(4), 2);
  EXPECT_EQ(array(6), 0);
  array.ReDimPreserve(2);
  EXPECT_EQ(array.BoundsOf(1), (Bounds{2, 2}));
  EXPECT_EQ(array(2), 0);
  array.ReDimPreserve(3);
  EXPECT_EQ(array(3), 0);
}

TEST(BoundedArrayTest, ReDimPreserveDimensionsANewArrayFromZero) {
  BoundedArray<double> array;
  array.ReDimPreserve(3);
  EXPECT_EQ(array, BoundedArray<double>(Bounds{0, 3}));
  auto empty = BoundedArray<double>::Empty();
  empty.ReDimPreserve(0);
  EXPECT_EQ(empty, BoundedArray<double>(Bounds{0, 0}));
}

TEST(BoundedArrayTest, AfterAFailedReDimPreserveTheArrayIsAsItWas) {
  BoundedArray<double> never;
  EXPECT_EQ(RaisedNumber([&] { never.ReDimPreserve(-1); }), kSubscriptOutOfRange);
  EXPECT_EQ(never.Rank(), 0);

  auto one = Numbered(Bounds{2, 4});
  const auto before = one;
  EXPECT_EQ(RaisedNumber([&] { one.ReDimPreserve(1); }), kSubscriptOutOfRange);
  EXPECT_EQ(one, before);

  auto two = Numbered(Bounds{0, 1}, Bounds{0, 1});
  EXPECT_EQ(RaisedNumber([&] { two.ReDimPreserve(5); }), kSubscriptOutOfRange);
  EXPECT_EQ(two, Numbered(Bounds{0, 1}, Bounds{0, 1}));
}

/// An element of which only a few can be made.
struct ScarceElement {
  static inline int left = 0;
  ScarceElement() {
    if (left == 0) throw std::bad_alloc();
    --left;
  }
};

TEST(BoundedArrayTest, MemoryThatRunsOutIsAMemoryErrorAndLeavesTheArrayAsItWas) {
  ScarceElement::left = 5;
  BoundedArray<ScarceElement> array({1, 2});
  EXPECT_EQ(RaisedNumber([&] { array.ReDim({0, 9}); }), kOutOfMemory);
  ScarceElement::left = 2;
  EXPECT_EQ(RaisedNumber([&] { array.ReDimPreserve(9); }), kOutOfMemory);
  EXPECT_EQ(array.BoundsOf(1), (Bounds{1, 2}));
  EXPECT_EQ(array.Elements().size(), 2u);
}

TEST(BoundedArrayTest, ReDimPreserveBeyondMemoryIsAMemoryError) {
  BoundedArray<std::array<char, PTRDIFF_MAX / 65536>> array;
  EXPECT_EQ(RaisedNumber([&] { array.ReDimPreserve(kMost); }), kOutOfMemory);
  EXPECT_EQ(array.Rank(), 0);
}

TEST(BoundedArrayTest, EqualMeansSameRankBoundsAndElements) {
  EXPECT_EQ(Numbered(Bounds{0, 2}), Numbered(Bounds{0, 2}));
  EXPECT_NE(Numbered(Bounds{0, 2}), Numbered(Bounds{1, 3}));
  EXPECT_NE(Numbered(Bounds{0, 2}), BoundedArray<double>(Bounds{0, 2}));
  EXPECT_NE(Numbered(Bounds{0, 3}), Numbered(Bounds{0, 1}, Bounds{0, 1}));
  EXPECT_NE(Numbered(Bounds{0, 1}, Bounds{0, 0}), Numbered(Bounds{0, 0}, Bounds{0, 1}));
  EXPECT_EQ(BoundedArray<double>(), BoundedArray<double>());
}

TEST(BoundedArrayTest, AReDimensionedArrayEqualsOneOfTheSameBounds) {
  BoundedArray<double> array({1, 2}, {3, 4}, {5, 6});
  array.ReDim({1, 2});
  EXPECT_EQ(array, BoundedArray<double>(Bounds{1, 2}));
  EXPECT_EQ(BoundedArray<double>(std::vector<double>{0, 0}, 1), array);
}

TEST(BoundedArrayTest, AnArrayThatWasMovedFromWasNeverDimensioned) {
  auto array = Numbered(Bounds{1, 2}, Bounds{3, 4});
  const double* const data = array.Elements().data();
  BoundedArray<double> moved(std::move(array));
  EXPECT_EQ(array, BoundedArray<double>());
  EXPECT_EQ(RaisedNumber([&] { array(1, 3); }), kSubscriptOutOfRange);
  EXPECT_EQ(moved, Numbered(Bounds{1, 2}, Bounds{3, 4}));
  EXPECT_EQ(moved.Elements().data(), data);

  array = Numbered(Bounds{0, 5});
  array = std::move(moved);
  EXPECT_EQ(moved, BoundedArray<double>());
  EXPECT_EQ(array, Numbered(Bounds{1, 2}, Bounds{3, 4}));
  EXPECT_EQ(array.Elements().data(), data);

  BoundedArray<double>& itself = array;
  array = std::move(itself);
  EXPECT_EQ(array, Numbered(Bounds{1, 2}, Bounds{3, 4}));
}

TEST(BoundedArrayTest, ACopyIsIndependent) {
  auto array = Numbered(Bounds{0, 1});
  auto copy = array;
  copy(0) = 9;
  EXPECT_EQ(array(0), 0);
}

}  // namespace
}  // namespace vorquill21
