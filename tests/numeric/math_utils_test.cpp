#include "vorquill21/numeric/math_utils.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <ostream>
#include <random>
#include <utility>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/for_each_shortage.hpp"
#include "tests/support/raised_error.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/self_test.hpp"
#include "tests/support/short_of_memory.hpp"

namespace vorquill21 {

VORQUILL21_OPEN_SELF_TEST(CMathUtils);

namespace {

using test::ExpectNumberOrErrorSeven;
using test::RaisedNumber;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr std::int32_t kLeastInt32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMostInt32 = std::numeric_limits<std::int32_t>::max();

BoundedArray<double> Doubles(std::vector<double> elements, std::int32_t lower = 0) {
  return BoundedArray<double>(std::move(elements), lower);
}

BoundedArray<Variant> Variants(std::vector<Variant> elements, std::int32_t lower = 0) {
  return BoundedArray<Variant>(std::move(elements), lower);
}

class CMathUtilsTest : public testing::Test {
 protected:
  test::FakePlatform fake;
  CMathUtils utils{fake.platform};
};

// --- ArrayLocate -----------------------------------------------------------------------------------------

struct Located {
  bool found;
  std::int32_t index;
  friend bool operator==(const Located&, const Located&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Located& located) {
    return out << (located.found ? "inside, " : "outside, ") << located.index;
  }
};

class ArrayLocateTest : public CMathUtilsTest {
 protected:
  Located Locate(ArrayView<const double> table, double x) const {
    Located located{false, -77};
    located.found = utils.ArrayLocate(table, x, located.index);
    return located;
  }
};

TEST_F(ArrayLocateTest, FindsTheIntervalInAnAscendingTable) {
  const std::vector<double> table{0, 1, 2, 3, 4};
  struct Row {
    double x;
    Located expected;
  };
  const Row rows[] = {{0, {true, 0}},   {0.5, {true, 0}}, {1, {true, 0}},           {1.5, {true, 1}},
                      {2, {true, 2}},   {3, {true, 3}},   {3.5, {true, 3}},         {4, {true, 3}},
                      {-1, {false, 3}}, {5, {false, 0}},  {-kInfinity, {false, 3}}, {kInfinity, {false, 0}}};
  for (const Row& row : rows) EXPECT_EQ(Locate(table, row.x), row.expected) << row.x;
}

TEST_F(ArrayLocateTest, FindsTheIntervalInADescendingTable) {
  const std::vector<double> table{4, 3, 2, 1, 0};
  struct Row {
    double x;
    Located expected;
  };
  const Row rows[] = {{4, {true, 0}}, {3.5, {true, 0}}, {3, {true, 0}}, {2.5, {true, 1}}, {2, {true, 1}},
                      {1, {true, 2}}, {0.5, {true, 3}}, {0, {true, 3}}, {-1, {false, 3}}, {5, {false, 0}}};
  for (const Row& row : rows) EXPECT_EQ(Locate(table, row.x), row.expected) << row.x;
}

TEST_F(ArrayLocateTest, IndicesAreThoseOfTheArray) {
  EXPECT_EQ(Locate(Doubles({0, 1, 2, 3, 4}, 7), 3.5), (Located{true, 10}));
  EXPECT_EQ(Locate(Doubles({0, 1, 2, 3, 4}, 7), -1), (Located{false, 10}));
  EXPECT_EQ(Locate(Doubles({4, 3, 2, 1, 0}, 1), 2.5), (Located{true, 2}));
}

TEST_F(ArrayLocateTest, DeliberateSecondNodeBelongsToTheFirstInterval) {
  EXPECT_EQ(Locate(std::vector<double>{0, 1, 2}, 1), (Located{true, 0}));
  EXPECT_EQ(Locate(std::vector<double>{0, 1, 2, 3}, 2), (Located{true, 2}));
}

TEST_F(ArrayLocateTest, DeliberateValueOutsideIsSearchedAsInADescendingTable) {
  EXPECT_EQ(Locate(std::vector<double>{0, 1}, -1), (Located{false, 0}));
  EXPECT_EQ(Locate(std::vector<double>{0, 1, 2}, -1), (Located{false, 1}));
  EXPECT_EQ(Locate(std::vector<double>{0, 1, 2}, 3), (Located{false, 0}));
}

TEST_F(ArrayLocateTest, DeliberateSingleNodeThatEqualsTheValueIsOutOfRange) {
  EXPECT_EQ(RaisedNumber([&] { Locate(std::vector<double>{2}, 2); }), kSubscriptOutOfRange);
  EXPECT_EQ(Locate(std::vector<double>{2}, 1), (Located{false, 0}));
  EXPECT_EQ(Locate(Doubles({2}, 5), 3), (Located{false, 5}));
}

TEST_F(ArrayLocateTest, DeliberateNegativeBoundsRaiseAMisspeltErrorOfAMisnamedSource) {
  for (const auto& table : {Doubles({0, 1, 2}, -1), Doubles({0}, -5), BoundedArray<double>::Empty()}) {
    std::int32_t index = 42;
    EXPECT_EQ(test::ErrorRaisedBy([&] { utils.ArrayLocate(table, 1, index); }),
              (test::RaisedError{eErrMathUtilInvalidArrayLimts, u"Vorquill21MathUtils.ArrayLocate",
                                 u"One or more array bounds are below 0"}));
    EXPECT_EQ(index, 42);
  }
  EXPECT_EQ(std::int32_t{eErrMathUtilInvalidArrayLimts}, -2147220991);
}

TEST_F(ArrayLocateTest, AfterAnErrorTheIndexIsAsItWas) {
  const BoundedArray<double> tables[] = {Doubles({2}), Doubles({0, 1, 2, 3}, 1'500'000'000), {}};
  for (const BoundedArray<double>& table : tables) {
    std::int32_t index = 42;
    EXPECT_NE(RaisedNumber([&] { utils.ArrayLocate(table, 2, index); }), 0);
    EXPECT_EQ(index, 42);
  }
}

TEST_F(ArrayLocateTest, TwoNodesMayLieAtTheEndOfTheRange) {
  EXPECT_EQ(Locate(Doubles({1, 2}, kMostInt32 - 1), 1.5), (Located{true, kMostInt32 - 1}));
  EXPECT_EQ(Locate(Doubles({2, 1}, kMostInt32 - 1), 2), (Located{true, kMostInt32 - 1}));
  EXPECT_EQ(Locate(Doubles({1, 2}, kMostInt32 - 1), 3), (Located{false, kMostInt32 - 1}));
}

TEST_F(ArrayLocateTest, ZerosOfEitherSignAndSubnormalsAreNodes) {
  EXPECT_EQ(Locate(std::vector<double>{-0.0, 5e-324, 1e-323}, 0.0), (Located{true, 0}));
  EXPECT_EQ(Locate(std::vector<double>{-5e-324, 0.0, 5e-324, 1e-323}, 5e-324), (Located{true, 2}));
  EXPECT_EQ(Locate(std::vector<double>{5e-324, 0.0, -5e-324}, -0.0), (Located{true, 0}));
  EXPECT_EQ(Locate(std::vector<double>{5e-324, 0.0, -5e-324}, -5e-324), (Located{true, 1}));
}

TEST_F(ArrayLocateTest, ArraysOfOtherRanksAreOutOfRange) {
  EXPECT_EQ(RaisedNumber([&] { Locate(BoundedArray<double>(), 1); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] {
              Locate(BoundedArray<double>(Bounds{0, 2}, Bounds{0, 2}), 1);
            }),
            kSubscriptOutOfRange);
}

TEST_F(ArrayLocateTest, BoundsWhoseSumExceeds32BitsOverflow) {
  EXPECT_EQ(RaisedNumber([&] { Locate(Doubles({0, 1, 2, 3}, 1'500'000'000), 2.5); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { Locate(Doubles({2}, kMostInt32), 2); }), kOverflow);
  EXPECT_EQ(Locate(Doubles({0, 1, 2, 3}, 1'500'000'000), 0.5), (Located{true, 1'500'000'000}));
  EXPECT_EQ(Locate(Doubles({0, 1, 2, 3}, 1'500'000'000), 1), (Located{true, 1'500'000'000}));
  constexpr std::int32_t kBelowHalf = kMostInt32 / 2 - 2;  // the sum overflows only on the way up
  EXPECT_EQ(Locate(Doubles({0, 1, 2, 3, 4}, kBelowHalf), 1.5), (Located{true, kBelowHalf + 1}));
  EXPECT_EQ(RaisedNumber([&] { Locate(Doubles({0, 1, 2, 3, 4}, kBelowHalf), 3.5); }), kOverflow);
}

/// The steps as they are prescribed, one by one.
Located LocateStepByStep(const std::vector<double>& x, double value) {
  int lo = 0;
  int hi = static_cast<int>(x.size()) - 1;
  const int count = hi - lo + 1;
  const auto at = [&x](int i) { return x.at(static_cast<std::size_t>(i)); };
  bool found = false;
  bool ascending = false;
  if (at(lo) <= value && value <= at(hi)) {
    found = true;
    ascending = true;
  } else if (at(hi) <= value && value <= at(lo)) {
    found = true;
  }
  if (ascending && value <= at(lo + 1)) return {found, lo};
  for (int step = 1; step <= count; ++step) {
    if (hi - lo < 2) return {found, lo};
    const int mid = (lo + hi) / 2;
    if ((value >= at(mid)) == ascending) {
      lo = mid;
    } else {
      hi = mid;
    }
  }
  ADD_FAILURE() << "the steps did not end";
  return {};
}

TEST_F(ArrayLocateTest, FollowsTheStepsInTablesOfEveryKind) {
  std::mt19937 random(3);
  const double choices[] = {0, 1, 2, 3, 4, 5, -0.0, kNaN, kInfinity, -kInfinity, 2.5};
  const auto choice = [&] { return choices[random() % std::size(choices)]; };
  for (int round = 0; round < 20000; ++round) {
    std::vector<double> table(2 + random() % 12);
    std::ranges::generate(table, choice);
    if (round % 2 == 0) std::ranges::sort(table, [](double a, double b) { return a < b; });
    const double x = choice();
    ASSERT_EQ(Locate(table, x), LocateStepByStep(table, x));
  }
}

// --- CopyArray -------------------------------------------------------------------------------------------

TEST_F(CMathUtilsTest, CopyArrayConvertsEachElementAndKeepsTheBounds) {
  fake.locale.decimalSeparator = u',';
  BoundedArray<double> target;
  utils.CopyArray1D(target, Variants({1, 2.5, true, Variant(), u" 3,5 ", false}, -2));
  EXPECT_EQ(target, Doubles({1, 2.5, -1, 0, 3.5, 0}, -2));

  BoundedArray<Text> texts(Bounds{1, 2}, Bounds{5, 6});
  std::ranges::copy(std::vector<Text>{u"1", u"2", u"3", u"4e1"}, texts.Elements().begin());
  utils.CopyArray2D(target, texts);
  EXPECT_EQ(target.BoundsOf(1), (Bounds{1, 2}));
  EXPECT_EQ(target.BoundsOf(2), (Bounds{5, 6}));
  EXPECT_EQ(target(1, 5), 1);
  EXPECT_EQ(target(1, 6), 2);
  EXPECT_EQ(target(2, 5), 3);
  EXPECT_EQ(target(2, 6), 40);

  BoundedArray<Variant> cube(Bounds{0, 1}, Bounds{2, 3}, Bounds{-1, 0});
  cube(0, 2, 0) = 5;
  cube(1, 3, -1) = u"7";
  utils.CopyArray3D(target, cube);
  EXPECT_EQ(target.Rank(), 3);
  EXPECT_EQ(target.BoundsOf(3), (Bounds{-1, 0}));
  EXPECT_EQ(target(0, 2, 0), 5);
  EXPECT_EQ(target(1, 3, -1), 7);
  EXPECT_EQ(target(1, 2, 0), 0);
}

TEST_F(CMathUtilsTest, CopyArrayOfDoublesIsTheSameArray) {
  const BoundedArray<double> line = Doubles({1, kNaN, -0.0, kInfinity}, 3);
  BoundedArray<double> table(Bounds{0, 1}, Bounds{4, 5});
  table(1, 4) = 9;
  BoundedArray<double> cube(Bounds{0, 0}, Bounds{1, 1}, Bounds{2, 3});
  cube(0, 1, 3) = 8;

  BoundedArray<double> target;
  utils.CopyArray1D(target, line);
  EXPECT_EQ(target.BoundsOf(1), line.BoundsOf(1));
  EXPECT_TRUE(std::ranges::equal(target.Elements(), line.Elements(), {}, std::bit_cast<std::uint64_t, double>,
                                 std::bit_cast<std::uint64_t, double>));
  utils.CopyArray2D(target, table);
  EXPECT_EQ(target, table);
  utils.CopyArray3D(target, cube);
  EXPECT_EQ(target, cube);
}

TEST_F(CMathUtilsTest, CopyArrayOfItselfKeepsIt) {
  Variant value = Doubles({1, 2, 3}, 1);
  utils.CopyArray1D(value.As<BoundedArray<double>>(), value);
  EXPECT_EQ(value, Variant(Doubles({1, 2, 3}, 1)));
}

TEST_F(CMathUtilsTest, DeliberateCopyArrayOfEmptyIsASingleZero) {
  BoundedArray<double> target = Doubles({1, 2, 3});
  utils.CopyArray1D(target, Variant());
  EXPECT_EQ(target, BoundedArray<double>(Bounds{0, 0}));
  utils.CopyArray2D(target, Variant());
  EXPECT_EQ(target, BoundedArray<double>(Bounds{0, 0}, Bounds{0, 0}));
  utils.CopyArray3D(target, Variant());
  EXPECT_EQ(target, BoundedArray<double>(Bounds{0, 0}, Bounds{0, 0}, Bounds{0, 0}));
}

TEST_F(CMathUtilsTest, CopyArrayOfOtherDimensionsIsOutOfRangeAndLeavesTheTarget) {
  const BoundedArray<double> before = Doubles({1, 2, 3});
  const Variant line = Doubles({1, 2});
  const Variant table = BoundedArray<Variant>(Bounds{0, 1}, Bounds{0, 1});
  const Variant noElements = BoundedArray<double>::Empty();
  const Variant neverDimensioned = BoundedArray<Text>();
  for (const Variant& source : {table, noElements, neverDimensioned}) {
    BoundedArray<double> target = before;
    EXPECT_EQ(RaisedNumber([&] { utils.CopyArray1D(target, source); }), kSubscriptOutOfRange);
    EXPECT_EQ(target, before);
  }
  for (const Variant& source : {line, noElements, neverDimensioned}) {
    BoundedArray<double> target = before;
    EXPECT_EQ(RaisedNumber([&] { utils.CopyArray2D(target, source); }), kSubscriptOutOfRange);
    EXPECT_EQ(target, before);
  }
  for (const Variant& source : {line, table, noElements, neverDimensioned}) {
    BoundedArray<double> target = before;
    EXPECT_EQ(RaisedNumber([&] { utils.CopyArray3D(target, source); }), kSubscriptOutOfRange);
    EXPECT_EQ(target, before);
  }
}

TEST_F(CMathUtilsTest, CopyArrayOfWhatIsNoArrayIsATypeMismatchAndLeavesTheTarget) {
  const BoundedArray<double> before = Doubles({1, 2, 3});
  for (const Variant& source : {Variant(1.0), Variant(u"1"), Variant(true), Variant(Missing{})}) {
    BoundedArray<double> target = before;
    EXPECT_EQ(RaisedNumber([&] { utils.CopyArray1D(target, source); }), kTypeMismatch);
    EXPECT_EQ(RaisedNumber([&] { utils.CopyArray2D(target, source); }), kTypeMismatch);
    EXPECT_EQ(RaisedNumber([&] { utils.CopyArray3D(target, source); }), kTypeMismatch);
    EXPECT_EQ(target, before);
  }
}

TEST_F(CMathUtilsTest, CopyArrayStopsAtAnElementThatIsNoNumber) {
  for (const Variant& bad : {Variant(u"1,5"), Variant(u""), Variant(Missing{}), Variant(Doubles({1}))}) {
    BoundedArray<double> target;
    EXPECT_EQ(RaisedNumber([&] { utils.CopyArray1D(target, Variants({1, 2, bad, 4}, 1)); }), kTypeMismatch);
    EXPECT_EQ(target, Doubles({1, 2, 0, 0}, 1));
  }
}

TEST_F(CMathUtilsTest, CopyArrayOfTablesAndCubesKeepsTheElementsBeforeOneThatIsNoNumber) {
  BoundedArray<Variant> table(Bounds{1, 2}, Bounds{-1, 1});
  std::ranges::copy(std::vector<Variant>{1, 2, 3, 4, u"x", 6}, table.Elements().begin());
  BoundedArray<double> target;
  EXPECT_EQ(RaisedNumber([&] { utils.CopyArray2D(target, table); }), kTypeMismatch);
  BoundedArray<double> copied(Bounds{1, 2}, Bounds{-1, 1});
  std::ranges::copy(std::vector<double>{1, 2, 3, 4}, copied.Elements().begin());
  EXPECT_EQ(target, copied);

  BoundedArray<Variant> cube(Bounds{0, 1}, Bounds{0, 1}, Bounds{0, 1});
  std::ranges::copy(std::vector<Variant>{1, 2, 3, Missing{}, 5, 6, 7, 8}, cube.Elements().begin());
  EXPECT_EQ(RaisedNumber([&] { utils.CopyArray3D(target, cube); }), kTypeMismatch);
  copied.ReDim({0, 1}, {0, 1}, {0, 1});
  std::ranges::copy(std::vector<double>{1, 2, 3}, copied.Elements().begin());
  EXPECT_EQ(target, copied);
}

TEST_F(CMathUtilsTest, CopyArrayReachesTheEndsOfTheRangeOfIndices) {
  const Bounds first{kLeastInt32, kLeastInt32 + 1};
  const Bounds last{kMostInt32 - 1, kMostInt32};
  BoundedArray<double> target;
  utils.CopyArray1D(target, Variants({7, u"8"}, kMostInt32 - 1));
  EXPECT_EQ(target, Doubles({7, 8}, kMostInt32 - 1));
  BoundedArray<Variant> table(first, last);
  table(kLeastInt32 + 1, kMostInt32) = 5;
  utils.CopyArray2D(target, table);
  EXPECT_EQ(target.BoundsOf(1), first);
  EXPECT_EQ(target.BoundsOf(2), last);
  EXPECT_EQ(target(kLeastInt32 + 1, kMostInt32), 5);
  EXPECT_EQ(target(kLeastInt32, kMostInt32 - 1), 0);
}

// --- Words -----------------------------------------------------------------------------------------------

TEST_F(CMathUtilsTest, DWordsAreTakenApartIntoSignedWords) {
  struct Row {
    std::int32_t dWord;
    std::int32_t high;
    std::int32_t low;
  };
  const Row rows[] = {{0, 0, 0},
                      {507248979, 7740, 339},
                      {2621445, 40, 5},
                      {65535, 0, -1},
                      {-1, -1, -1},
                      {65536, 1, 0},
                      {32767, 0, 32767},
                      {32768, 0, -32768},
                      {static_cast<std::int32_t>(0xFFFF0000), -1, 0},
                      {kLeastInt32, -32768, 0},
                      {kMostInt32, 32767, -1}};
  for (const Row& row : rows) {
    EXPECT_EQ(utils.DWordGetHighWord(row.dWord), row.high);
    EXPECT_EQ(utils.DWordGetLowWord(row.dWord), row.low);
    EXPECT_EQ(utils.DWordMake(row.high, row.low), row.dWord);
  }
}

TEST_F(CMathUtilsTest, WordsOutside16BitsOverflow) {
  for (const std::int32_t word : {32768, -32769, 65535, kMostInt32, kLeastInt32}) {
    EXPECT_EQ(RaisedNumber([&] { utils.DWordMake(word, 0); }), kOverflow);
    EXPECT_EQ(RaisedNumber([&] { utils.DWordMake(0, word); }), kOverflow);
  }
}

// --- NumbersAreEqual -------------------------------------------------------------------------------------

TEST_F(CMathUtilsTest, NumbersAreEqualWithinTheLastDecimalPlace) {
  EXPECT_TRUE(utils.NumbersAreEqual(10, 10.004, 2));
  EXPECT_FALSE(utils.NumbersAreEqual(10, 10.02, 2));
  EXPECT_TRUE(utils.NumbersAreEqual(10, 11, 0));
  EXPECT_FALSE(utils.NumbersAreEqual(10, 11.0001, 0));
  EXPECT_TRUE(utils.NumbersAreEqual(-5, 5, -1));
  EXPECT_FALSE(utils.NumbersAreEqual(-5, 5.001, -1));
  EXPECT_TRUE(utils.NumbersAreEqual(0.125, 0.125, 300));
}

TEST_F(CMathUtilsTest, DeliberateADifferenceOfExactlyTheToleranceIsEqual) {
  EXPECT_TRUE(utils.NumbersAreEqual(0.0, 0.01, 2));
  EXPECT_FALSE(utils.NumbersAreEqual(0.0, std::nextafter(0.01, 1.0), 2));
  EXPECT_TRUE(utils.NumbersAreEqual(0x1.c25c268497682p-44, 0.0, 13));  // 1E-13
  EXPECT_FALSE(utils.NumbersAreEqual(0x1.c25c268497683p-44, 0.0, 13));
}

TEST_F(CMathUtilsTest, NumbersAreEqualFollowsTheArithmeticOfVariants) {
  EXPECT_TRUE(utils.NumbersAreEqual(true, -1, 5));
  EXPECT_TRUE(utils.NumbersAreEqual(Variant(), 0.0, 5));
  EXPECT_TRUE(utils.NumbersAreEqual(u"1.5", 1.5, 5));
  EXPECT_TRUE(utils.NumbersAreEqual(kLeastInt32, kMostInt32, -10));
  EXPECT_FALSE(utils.NumbersAreEqual(kLeastInt32, kMostInt32, -9));
  EXPECT_FALSE(utils.NumbersAreEqual(kLeastInt32, 0, 0));
  EXPECT_FALSE(utils.NumbersAreEqual(kNaN, kNaN, 0));
  EXPECT_FALSE(utils.NumbersAreEqual(kInfinity, kInfinity, 0));
  fake.locale.decimalSeparator = u',';
  EXPECT_TRUE(utils.NumbersAreEqual(u"1,5", 1.5, 5));
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(u"1.5", 1.5, 5); }), kTypeMismatch);
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(1, Missing{}, 5); }), kTypeMismatch);
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(Doubles({1}), 1, 5); }), kTypeMismatch);
}

TEST_F(CMathUtilsTest, FloatingFaultsOfNumbersAreEqualAreErrors) {
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(kLargest, -kLargest, 0); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(1, 1, 400); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(1, 1, 309); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(1, 1, kMostInt32); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(1, 1, -309); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(1, 1, -323); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(1, 1, -324); }), kDivisionByZero);
  EXPECT_EQ(RaisedNumber([&] { utils.NumbersAreEqual(1, 1, kLeastInt32); }), kDivisionByZero);
  EXPECT_TRUE(utils.NumbersAreEqual(1, 1, 308));
  EXPECT_TRUE(utils.NumbersAreEqual(1, 1E300, -308));
}

// --- ArraysAreEqual --------------------------------------------------------------------------------------

TEST_F(CMathUtilsTest, ArraysAreEqualComparesElementByElement) {
  const Variant doubles = Doubles({1, 2, 3});
  EXPECT_TRUE(utils.ArraysAreEqual(doubles, Doubles({1.5, 2.5, 2}), 1));
  EXPECT_FALSE(utils.ArraysAreEqual(doubles, Doubles({1.5, 2.5, 1.9}), 1));
  EXPECT_TRUE(utils.ArraysAreEqual(doubles, Doubles({1.004, 2, 3}), 1, 2));
  EXPECT_FALSE(utils.ArraysAreEqual(doubles, Doubles({1.02, 2, 3}), 1, 2));
  EXPECT_TRUE(utils.ArraysAreEqual(doubles, Variants({1, u"2", 3.0}), 1, 9));
  EXPECT_TRUE(utils.ArraysAreEqual(Variants({true, Variant()}), Doubles({-1, 0}), 1, 9));
}

TEST_F(CMathUtilsTest, DeliberateALongerSecondArrayIsEqualAndAShorterOneIsNot) {
  EXPECT_TRUE(utils.ArraysAreEqual(Doubles({1, 2}), Doubles({1, 2, 3}), 1, 9));
  EXPECT_FALSE(utils.ArraysAreEqual(Doubles({1, 2, 3}), Doubles({1, 2}), 1, 9));
  EXPECT_TRUE(utils.ArraysAreEqual(Variants({1, 2}), Variants({1, 2, 3}), 1, 9));
  EXPECT_FALSE(utils.ArraysAreEqual(Variants({1, 2, 3}), Variants({1, 2}), 1, 9));
}

TEST_F(CMathUtilsTest, LowerBoundsOfComparedDimensionsMustMatch) {
  EXPECT_FALSE(utils.ArraysAreEqual(Doubles({1, 2}), Doubles({1, 2}, 1), 1));
  const Bounds first{0, 1};
  const Bounds moved{1, 2};
  const Variant table = BoundedArray<double>(first, first);
  EXPECT_TRUE(utils.ArraysAreEqual(table, BoundedArray<double>(first, first), 2));
  EXPECT_FALSE(utils.ArraysAreEqual(table, BoundedArray<double>(moved, first), 2));
  EXPECT_FALSE(utils.ArraysAreEqual(table, BoundedArray<double>(first, moved), 2));
  const Variant cube = BoundedArray<double>(first, first, first);
  EXPECT_TRUE(utils.ArraysAreEqual(cube, BoundedArray<Variant>(first, first, first), 3));
  EXPECT_FALSE(utils.ArraysAreEqual(cube, BoundedArray<double>(moved, first, first), 3));
  EXPECT_FALSE(utils.ArraysAreEqual(cube, BoundedArray<double>(first, moved, first), 3));
  EXPECT_FALSE(utils.ArraysAreEqual(cube, BoundedArray<double>(first, first, moved), 3));
}

TEST_F(CMathUtilsTest, EveryElementOfTablesAndCubesIsCompared) {
  const Bounds rows{2, 3};
  const Bounds columns{-1, 1};
  for (std::size_t changed = 0; changed < 6; ++changed) {
    const BoundedArray<double> table(rows, columns);
    BoundedArray<double> other = table;
    other.Elements()[changed] = 2;
    EXPECT_FALSE(utils.ArraysAreEqual(table, other, 2));
  }
  for (std::size_t changed = 0; changed < 12; ++changed) {
    const BoundedArray<double> cube(rows, columns, rows);
    BoundedArray<Variant> other(rows, columns, rows);
    EXPECT_TRUE(utils.ArraysAreEqual(cube, other, 3));
    other.Elements()[changed] = 2;
    EXPECT_FALSE(utils.ArraysAreEqual(cube, other, 3));
  }
}

TEST_F(CMathUtilsTest, DeliberateAnyOtherOrderIsEqual) {
  for (const std::int32_t order : {4, 0, -1, kMostInt32, kLeastInt32}) {
    EXPECT_TRUE(utils.ArraysAreEqual(Doubles({1}), u"no array", order, 400));
  }
}

TEST_F(CMathUtilsTest, ErrorsOfArraysAreEqualAreFalse) {
  const Variant line = Doubles({1, 2});
  const Variant table = BoundedArray<double>(Bounds{0, 1}, Bounds{0, 1});
  EXPECT_FALSE(utils.ArraysAreEqual(u"no array", u"no array", 1));
  EXPECT_FALSE(utils.ArraysAreEqual(Variant(), Variant(), 1));
  EXPECT_FALSE(utils.ArraysAreEqual(line, Variant(), 1));
  EXPECT_FALSE(utils.ArraysAreEqual(line, line, 2));
  EXPECT_FALSE(utils.ArraysAreEqual(table, table, 1));
  EXPECT_FALSE(utils.ArraysAreEqual(table, table, 3));
  EXPECT_FALSE(utils.ArraysAreEqual(BoundedArray<double>(), BoundedArray<double>(), 1));
  EXPECT_FALSE(utils.ArraysAreEqual(Variants({u"a"}), Variants({u"a"}), 1));
  EXPECT_FALSE(utils.ArraysAreEqual(line, line, 1, 400));
  EXPECT_FALSE(utils.ArraysAreEqual(line, line, 1, -400));
  EXPECT_FALSE(utils.ArraysAreEqual(Doubles({kLargest}), Doubles({-kLargest}), 1));
  EXPECT_FALSE(utils.ArraysAreEqual(Doubles({kNaN}), Doubles({kNaN}), 1));
}

TEST_F(CMathUtilsTest, ASecondArrayThatIsShorterInOneDimensionIsNotEqual) {
  const Bounds whole{0, 3};
  const Bounds cut{0, 2};
  const Variant cube = BoundedArray<double>(whole, whole, whole);
  EXPECT_FALSE(utils.ArraysAreEqual(cube, BoundedArray<double>(cut, whole, whole), 3));
  EXPECT_FALSE(utils.ArraysAreEqual(cube, BoundedArray<double>(whole, cut, whole), 3));
  EXPECT_FALSE(utils.ArraysAreEqual(cube, BoundedArray<double>(whole, whole, cut), 3));
  EXPECT_TRUE(utils.ArraysAreEqual(BoundedArray<double>(cut, cut, cut), cube, 3));
  const Variant table = BoundedArray<double>(whole, whole);
  EXPECT_FALSE(utils.ArraysAreEqual(table, BoundedArray<double>(cut, whole), 2));
  EXPECT_FALSE(utils.ArraysAreEqual(table, BoundedArray<double>(whole, cut), 2));
  EXPECT_TRUE(utils.ArraysAreEqual(BoundedArray<double>(cut, cut), table, 2));
}

TEST_F(CMathUtilsTest, ArraysAtTheEndsOfTheRangeOfIndicesAreCompared) {
  for (const std::int32_t lower : {kLeastInt32, -2, kMostInt32 - 1}) {
    EXPECT_TRUE(utils.ArraysAreEqual(Doubles({1, 2}, lower), Variants({1, 2}, lower), 1, 9));
    EXPECT_FALSE(utils.ArraysAreEqual(Doubles({1, 2}, lower), Doubles({1, 3}, lower), 1, 9));
    EXPECT_FALSE(utils.ArraysAreEqual(Doubles({1, 2}, lower), Doubles({1}, lower), 1, 9));
  }
}

TEST_F(CMathUtilsTest, TextsInComparedArraysHaveTheDecimalSeparatorOfThePlatform) {
  const Variant texts = BoundedArray<Text>(std::vector<Text>{u"0,5", u"1,5"});
  EXPECT_FALSE(utils.ArraysAreEqual(texts, Doubles({0.5, 1.5}), 1, 9));
  EXPECT_EQ(RaisedNumber([&] { utils.ArrayIsMonotonic1D(texts, emsPositive, u""); }), kTypeMismatch);
  fake.locale.decimalSeparator = u',';
  EXPECT_TRUE(utils.ArraysAreEqual(texts, Doubles({0.5, 1.5}), 1, 9));
  EXPECT_TRUE(utils.ArrayIsMonotonic1D(texts, emsPositive, u""));
}

TEST_F(CMathUtilsTest, ArraysWithoutElementsAreEqual) {
  const Variant none = BoundedArray<double>::Empty();
  EXPECT_TRUE(utils.ArraysAreEqual(none, none, 1));
  EXPECT_TRUE(utils.ArraysAreEqual(none, Doubles({1}), 1, 400));
  EXPECT_FALSE(utils.ArraysAreEqual(none, Doubles({1}, 1), 1));
}

// --- ArrayIsMonotonic1D ----------------------------------------------------------------------------------

class ArrayIsMonotonic1DTest : public CMathUtilsTest {
 protected:
  /// Whether an array is monotonic; what the status text says then is in `status`.
  bool IsMonotonic(const Variant& array, EMonotonicScale scaleType) {
    status = u"untouched";
    const bool withStatus = utils.ArrayIsMonotonic1D(array, scaleType, u"Speed", &status);
    EXPECT_EQ(utils.ArrayIsMonotonic1D(array, scaleType, u"Speed"), withStatus);
    return withStatus;
  }

  Text status;
};

TEST_F(ArrayIsMonotonic1DTest, IsStrict) {
  struct Row {
    std::vector<double> elements;
    bool rises;
    bool falls;
  };
  const Row rows[] = {{{0, 1, 2}, true, false},  {{2, 1, 0}, false, true},  {{0, 1, 1}, false, false},
                      {{1, 1, 0}, false, false}, {{0, 2, 1}, false, false}, {{2}, true, true}};
  for (const Row& row : rows) {
    for (const std::int32_t lower : {-1, 0, 4}) {
      const BoundedArray<double> doubles = Doubles(row.elements, lower);
      const BoundedArray<Variant> variants =
          Variants(std::vector<Variant>(row.elements.begin(), row.elements.end()), lower);
      for (const Variant& array : {Variant(doubles), Variant(variants)}) {
        EXPECT_EQ(IsMonotonic(array, emsPositive), row.rises);
        EXPECT_EQ(status, row.rises ? u"untouched" : u"Speed must be monotonic positive");
        EXPECT_EQ(IsMonotonic(array, emsNegative), row.falls);
        EXPECT_EQ(status, row.falls ? u"untouched" : u"Speed must be monotonic negative");
      }
    }
  }
}

TEST_F(ArrayIsMonotonic1DTest, ElementsFollowTheArithmeticOfVariants) {
  EXPECT_TRUE(IsMonotonic(Variants({true, Variant(), u"0.5", 1}), emsPositive));
  EXPECT_TRUE(IsMonotonic(Variants({kMostInt32, kLeastInt32}), emsNegative));
  EXPECT_TRUE(IsMonotonic(BoundedArray<Text>(std::vector<Text>{u"1", u"20", u"3E1"}), emsPositive));
}

TEST_F(ArrayIsMonotonic1DTest, NoElementsAreMonotonic) {
  EXPECT_TRUE(IsMonotonic(BoundedArray<double>::Empty(), emsPositive));
  EXPECT_TRUE(IsMonotonic(Doubles({1}, kMostInt32), emsNegative));
  EXPECT_TRUE(IsMonotonic(Variants({u"no number"}), emsNegative));
}

TEST_F(ArrayIsMonotonic1DTest, OneRowOfAMatrixIsMonotonicAsNoElementIsLookedAt) {
  EXPECT_TRUE(IsMonotonic(BoundedArray<double>(Bounds{4, 4}, Bounds{0, 2}), emsPositive));
  EXPECT_TRUE(IsMonotonic(BoundedArray<Variant>(Bounds{4, 4}, Bounds{0, 2}, Bounds{0, 2}), emsNegative));
  EXPECT_EQ(RaisedNumber([&] {
              IsMonotonic(BoundedArray<double>(Bounds{4, 5}, Bounds{0, 0}), emsPositive);
            }),
            kSubscriptOutOfRange);
}

TEST_F(ArrayIsMonotonic1DTest, SubnormalStepsCountAndZerosOfEitherSignAreEqual) {
  EXPECT_TRUE(IsMonotonic(Doubles({-5e-324, -0.0, 5e-324, 1e-323}, kMostInt32 - 3), emsPositive));
  EXPECT_TRUE(IsMonotonic(Doubles({5e-324, 0.0, -5e-324}, kLeastInt32), emsNegative));
  for (const EMonotonicScale scaleType : {emsPositive, emsNegative}) {
    EXPECT_FALSE(IsMonotonic(Doubles({-0.0, 0.0}), scaleType));
    EXPECT_FALSE(IsMonotonic(Doubles({0.0, -0.0}), scaleType));
  }
}

TEST_F(ArrayIsMonotonic1DTest, TheNameMayBeTheStatusItself) {
  Text text = u"A name that is too long for a text without memory of its own";
  const Text expected = text + u" must be monotonic positive";
  EXPECT_FALSE(utils.ArrayIsMonotonic1D(Doubles({1, 1}), emsPositive, text, &text));
  EXPECT_EQ(text, expected);
}

TEST_F(ArrayIsMonotonic1DTest, DeliberateOtherScaleTypesDemandNothing) {
  for (const std::int32_t scaleType : {2, -1, kMostInt32}) {
    EXPECT_TRUE(IsMonotonic(Doubles({0, 2, 1, 1}), static_cast<EMonotonicScale>(scaleType)));
    EXPECT_EQ(status, u"untouched");
  }
  EXPECT_EQ(RaisedNumber([&] {
              IsMonotonic(Variants({1, u"x"}), static_cast<EMonotonicScale>(2));
            }),
            kTypeMismatch);
}

TEST_F(ArrayIsMonotonic1DTest, NaNsDoNotFail) {
  EXPECT_TRUE(IsMonotonic(Doubles({0, kNaN, 0}), emsPositive));
  EXPECT_TRUE(IsMonotonic(Doubles({-kInfinity, 0, kInfinity}), emsPositive));
}

TEST_F(ArrayIsMonotonic1DTest, ErrorsPass) {
  EXPECT_EQ(RaisedNumber([&] { IsMonotonic(1.0, emsPositive); }), kTypeMismatch);
  EXPECT_EQ(RaisedNumber([&] { IsMonotonic(Variant(), emsPositive); }), kTypeMismatch);
  EXPECT_EQ(RaisedNumber([&] { IsMonotonic(Variants({1, u"x"}), emsPositive); }), kTypeMismatch);
  EXPECT_EQ(RaisedNumber([&] { IsMonotonic(BoundedArray<double>(), emsPositive); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] {
              IsMonotonic(BoundedArray<double>(Bounds{0, 1}, Bounds{0, 1}), emsPositive);
            }),
            kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { IsMonotonic(Doubles({-kLargest, kLargest}), emsPositive); }), kOverflow);
  EXPECT_EQ(status, u"untouched");
  EXPECT_FALSE(IsMonotonic(Variants({2, 1, u"x"}), emsPositive)) << "the first failure ends the scan";
}

// --- IsInBounds ------------------------------------------------------------------------------------------

class IsInBoundsTest : public CMathUtilsTest {
 protected:
  static constexpr TextView kUntouched = u"untouched";

  /// The status text: as it was when the value is inside.
  Text Status(const Variant& value, std::int32_t mode, const Variant& first,
              const Variant& second = Missing{}) {
    Text status(kUntouched);
    const bool inside =
        utils.IsInBounds(value, u"X", status, static_cast<EBoundsChecks>(mode), first, second);
    EXPECT_EQ(inside, status == kUntouched);
    return status;
  }
};

TEST_F(IsInBoundsTest, FlagsHaveTheirValuesAndCombine) {
  EXPECT_EQ(evcGreaterThan, 1);
  EXPECT_EQ(evcLessThan, 2);
  EXPECT_EQ(evcBetween, 4);
  EXPECT_EQ(evcInclusive, 8);
  EXPECT_EQ(evcNotEqual, 16);
  for (const EBoundsChecks check : {evcGreaterThan, evcLessThan, evcBetween}) {
    EXPECT_EQ(check | evcInclusive, check + 8);
    EXPECT_EQ(check | check, check);
  }
  EXPECT_EQ(emsPositive, 0);
  EXPECT_EQ(emsNegative, 1);
}

TEST_F(IsInBoundsTest, DeliberateInclusiveModesUseTheWordsOfTheExclusiveOnes) {
  EXPECT_EQ(Status(10, 1, 11), u"X must be greater than 11");
  EXPECT_EQ(Status(10.1, 1, 10.2), u"X must be greater than 10.2");
  EXPECT_EQ(Status(10, 2, 9), u"X must be less than 9");
  EXPECT_EQ(Status(13, 4, 10, 12), u"X must be greater than 10 and less than 12");
  EXPECT_EQ(Status(9, 9, 10), u"X must be greater than 10");
  EXPECT_EQ(Status(11, 10, 10), u"X must be less than 10");
  EXPECT_EQ(Status(10.6, 16, 10.6), u"X must not equal 10.6");
}

TEST_F(IsInBoundsTest, DeliberateNoBlankBeforeTheSecondLimit) {
  EXPECT_EQ(Status(10, 12, 1, 5), u"X must be equal to or between 1 and5");
}

TEST_F(IsInBoundsTest, DeliberateMessageAboutTheEmptyTextEndsInABlank) {
  EXPECT_EQ(Status(u"", 16, u""), u"X must not be empty ");
}

TEST_F(IsInBoundsTest, LimitsAreInsideOnlyWhenInclusive) {
  struct Row {
    std::int32_t mode;
    bool below, atFirst, between, atSecond, above;  // whether 0, 1, 2, 3, 4 are inside the limits 1 and 3
  };
  const Row rows[] = {{1, false, false, true, true, true},   {2, true, false, false, false, false},
                      {4, false, false, true, false, false}, {9, false, true, true, true, true},
                      {10, true, true, false, false, false}, {12, false, true, true, true, false},
                      {16, true, false, true, true, true}};
  for (const Row& row : rows) {
    const bool inside[] = {row.below, row.atFirst, row.between, row.atSecond, row.above};
    for (std::int32_t value = 0; value < 5; ++value) {
      EXPECT_EQ(Status(value, row.mode, 1, 3) == kUntouched, inside[value]) << row.mode << ", " << value;
    }
  }
}

TEST_F(IsInBoundsTest, DeliberateOtherModesNeverFail) {
  for (const std::int32_t mode : {3, 5, 6, 7, 8, 11, 13, 14, 15, 0, -1, 17, 24, kMostInt32, kLeastInt32}) {
    EXPECT_EQ(Status(10, mode, 10, 10), kUntouched) << mode;
    EXPECT_EQ(Status(Missing{}, mode, BoundedArray<double>()), kUntouched) << mode;
  }
}

TEST_F(IsInBoundsTest, NumericTextsAreComparedAsNumbers) {
  EXPECT_EQ(Status(u"10", 1, u"9"), kUntouched);
  EXPECT_EQ(Status(u"8", 1, u" 9.50 "), u"X must be greater than 9.5");
  EXPECT_EQ(Status(u"1E1", 16, 10), u"X must not equal 10");
  fake.locale.decimalSeparator = u',';
  EXPECT_EQ(Status(u"9,25", 1, u"9,5"), u"X must be greater than 9,5");
  EXPECT_EQ(Status(5, 12, 6.5, 7.5), u"X must be equal to or between 6,5 and7,5");
}

TEST_F(IsInBoundsTest, BooleansAndEmptiesCountAsNumbers) {
  EXPECT_EQ(Status(-2, 1, true), u"X must be greater than -1");
  EXPECT_EQ(Status(Variant(), 16, Variant()), u"X must not equal 0");
  EXPECT_EQ(Status(u"", 16, Variant()), kUntouched);
  EXPECT_EQ(Status(-1, 4, -2, true), u"X must be greater than -2 and less than True");
  EXPECT_EQ(Status(0, 4, -2, Variant()), u"X must be greater than -2 and less than ");
}

TEST_F(IsInBoundsTest, TextsAreGreaterThanNumbersAndCompareByCode) {
  EXPECT_EQ(Status(10, 1, u"abc"), u"X must be greater than abc");
  EXPECT_EQ(Status(u"abc", 1, 10), kUntouched);
  EXPECT_EQ(Status(u"abd", 1, u"abc"), kUntouched);
  EXPECT_EQ(Status(u"B", 1, u"a"), u"X must be greater than a");
  EXPECT_EQ(Status(u"abc", 16, u"abc"), u"X must not equal abc");
  EXPECT_EQ(Status(u"abc", 16, u"ABC"), kUntouched);
  EXPECT_EQ(Status(u"abc", 16, u""), kUntouched);
}

TEST_F(IsInBoundsTest, DeliberateATextAsSecondLimitIsNotConverted) {
  EXPECT_EQ(Status(10, 4, 1, u"5"), kUntouched);
  EXPECT_EQ(Status(10, 12, 1, u"5"), kUntouched);
  EXPECT_EQ(Status(0, 12, 1, u"5"), u"X must be equal to or between 1 and5");
}

TEST_F(IsInBoundsTest, NaNsAreNeverOutside) {
  for (const std::int32_t mode : {1, 2, 4, 9, 10, 12, 16}) EXPECT_EQ(Status(kNaN, mode, 1, 2), kUntouched);
}

TEST_F(IsInBoundsTest, TheNameMayBeTheStatusItself) {
  Text text = u"A name that is too long for a text without memory of its own";
  const Text expected = text + u" must be equal to or between 1 and5";
  EXPECT_FALSE(utils.IsInBounds(10, text, text, evcBetween | evcInclusive, 1, 5));
  EXPECT_EQ(text, expected);
}

TEST_F(IsInBoundsTest, AfterAnErrorTheStatusIsAsItWas) {
  for (const EBoundsChecks mode : {evcBetween, evcBetween | evcInclusive}) {
    for (const std::int32_t value : {0, 2}) {
      Text status(kUntouched);
      EXPECT_EQ(RaisedNumber([&] { utils.IsInBounds(value, u"X", status, mode, 1); }), kTypeMismatch);
      EXPECT_EQ(status, kUntouched);
    }
  }
  Text status(kUntouched);
  EXPECT_EQ(RaisedNumber([&] { utils.IsInBounds(Missing{}, u"X", status, evcLessThan, 1); }), kTypeMismatch);
  EXPECT_EQ(status, kUntouched);
}

TEST_F(IsInBoundsTest, LimitsAreShownWithFifteenDigits) {
  EXPECT_EQ(Status(0, 1, 0.1 + 0.2), u"X must be greater than 0.3");
  EXPECT_EQ(Status(0, 1, 5e-324), u"X must be greater than 4.94065645841247E-324");
  EXPECT_EQ(Status(-1, 12, -0.0, 1e15), u"X must be equal to or between 0 and1E+15");
  EXPECT_EQ(Status(0.3, 16, 0.1 + 0.2), kUntouched) << "what looks equal need not be";
  EXPECT_EQ(Status(0.0, 16, -0.0), u"X must not equal 0");
}

TEST_F(IsInBoundsTest, ValuesThatCannotBeComparedAreATypeMismatch) {
  for (const Variant& bad : {Variant(Missing{}), Variant(Doubles({1})), Variant(ObjectReference())}) {
    for (const std::int32_t mode : {1, 2, 4, 9, 10, 12, 16}) {
      EXPECT_EQ(RaisedNumber([&] { Status(bad, mode, 1, 2); }), kTypeMismatch);
      EXPECT_EQ(RaisedNumber([&] { Status(1, mode, bad, 2); }), kTypeMismatch);
    }
    for (const std::int32_t mode : {4, 12}) {
      EXPECT_EQ(RaisedNumber([&] { Status(2, mode, 1, bad); }), kTypeMismatch);
      EXPECT_EQ(RaisedNumber([&] { Status(0, mode, 1, bad); }), kTypeMismatch);
    }
    EXPECT_EQ(Status(2, 1, 1, bad), kUntouched);
  }
}

// --- Memory ----------------------------------------------------------------------------------------------

TEST_F(CMathUtilsTest, AShortageOfMemoryRaisesErrorSevenAndNothingElse) {
  const Variant texts = BoundedArray<Text>(std::vector<Text>{u"1", u"2"});
  const Variant words = BoundedArray<Text>(std::vector<Text>{u"no number", u"another word"});
  const Variant limit = u"a limit that needs memory";
  const BoundedArray<double> belowZero = Doubles({0, 1}, -1);
  std::int32_t index = 0;
  BoundedArray<double> target;
  Text status;
  ExpectNumberOrErrorSeven(eErrMathUtilInvalidArrayLimts, [&] { utils.ArrayLocate(belowZero, 1, index); });
  ExpectNumberOrErrorSeven(kSubscriptOutOfRange, [&] { utils.ArrayLocate({&kLargest, 1}, kLargest, index); });
  ExpectNumberOrErrorSeven(0, [&] { utils.CopyArray1D(target, texts); });
  ExpectNumberOrErrorSeven(kTypeMismatch, [&] { utils.CopyArray1D(target, words); });
  ExpectNumberOrErrorSeven(kSubscriptOutOfRange, [&] { utils.CopyArray2D(target, texts); });
  ExpectNumberOrErrorSeven(kOverflow, [&] { utils.DWordMake(70000, 0); });
  ExpectNumberOrErrorSeven(kTypeMismatch, [&] { utils.NumbersAreEqual(limit, limit, 2); });
  ExpectNumberOrErrorSeven(0, [&] { utils.NumbersAreEqual(1, 2, kLeastInt32 / 10'000'000); });
  ExpectNumberOrErrorSeven(0, [&] { utils.ArraysAreEqual(texts, words, 1); });
  ExpectNumberOrErrorSeven(
      0, [&] { utils.ArrayIsMonotonic1D(texts, emsNegative, u"a name of length", &status); });
  ExpectNumberOrErrorSeven(kTypeMismatch, [&] { utils.ArrayIsMonotonic1D(words, emsPositive, u"name"); });
  ExpectNumberOrErrorSeven(0, [&] { utils.IsInBounds(limit, u"name", status, evcNotEqual, limit); });
  ExpectNumberOrErrorSeven(kTypeMismatch,
                           [&] { utils.IsInBounds(texts, u"name", status, evcLessThan, limit); });
}

// --- Self-test -------------------------------------------------------------------------------------------

TEST_F(CMathUtilsTest, SelfTestPasses) {
  EXPECT_EQ(SelfTest(utils), FailedTests{});
}

/// Gets every answer wrong.
class WrongMathUtils : public CMathUtils {
 public:
  using CMathUtils::CMathUtils;
  bool ArraysAreEqual(const Variant&, const Variant&, std::int32_t, std::int32_t) const override {
    return true;
  }
  bool ArrayIsMonotonic1D(const Variant&, EMonotonicScale, TextView, Text*) const override { return true; }
  bool IsInBounds(const Variant&, TextView, Text&, EBoundsChecks, const Variant&,
                  const Variant&) const override {
    return true;
  }
};

TEST_F(CMathUtilsTest, SelfTestNamesTheChecksThatFailAndHonoursADerivedClass) {
  EXPECT_EQ(SelfTest(WrongMathUtils(fake.platform)),
            (FailedTests{u"SelfTest_IsInBounds", u"SelfTest_ArrayIsMonotonic", u"SelfTest_ArraysAreEqual"}));
}

/// Keeps what it is asked.
class AskedMathUtils : public CMathUtils {
 public:
  using CMathUtils::CMathUtils;

  struct Limits {
    Variant value;
    std::int32_t mode;
    Variant first;
    Variant second;
    friend bool operator==(const Limits&, const Limits&) = default;
  };
  struct Arrays {
    Variant array1;
    Variant array2;
    std::int32_t order;
    friend bool operator==(const Arrays&, const Arrays&) = default;
  };

  bool IsInBounds(const Variant& value, TextView name, Text& status, EBoundsChecks mode, const Variant& first,
                  const Variant& second) const override {
    EXPECT_EQ(name, u"");
    limits.push_back({value, mode, first, second});
    return CMathUtils::IsInBounds(value, name, status, mode, first, second);
  }
  bool ArrayIsMonotonic1D(const Variant& array, EMonotonicScale scaleType, TextView name,
                          Text* status) const override {
    EXPECT_EQ(name, u"test");
    scales.emplace_back(array, scaleType);
    return CMathUtils::ArrayIsMonotonic1D(array, scaleType, name, status);
  }
  bool ArraysAreEqual(const Variant& array1, const Variant& array2, std::int32_t order,
                      std::int32_t decimalPlaces) const override {
    EXPECT_EQ(decimalPlaces, 0);
    arrays.push_back({array1, array2, order});
    return CMathUtils::ArraysAreEqual(array1, array2, order, decimalPlaces);
  }

  mutable std::vector<Limits> limits;
  mutable std::vector<std::pair<Variant, EMonotonicScale>> scales;
  mutable std::vector<Arrays> arrays;
};

TEST_F(CMathUtilsTest, SelfTestAsksForEachOfItsRows) {
  const AskedMathUtils asked(fake.platform);
  EXPECT_EQ(SelfTest(asked), FailedTests{});

  const Variant none = Missing{};
  EXPECT_EQ(asked.limits, (std::vector<AskedMathUtils::Limits>{{10, 1, 9, none},
                                                               {10.1, 1, 10, none},
                                                               {11, 4, 10, 12},
                                                               {10.5, 4, 10.4, 10.6},
                                                               {10.4, 12, 10.4, 10.6},
                                                               {10.6, 12, 10.4, 10.6},
                                                               {10.6, 2, 10.7, none},
                                                               {10.6, 16, 10.7, none},
                                                               {10, 1, 11, none},
                                                               {10.1, 1, 10.2, none},
                                                               {13, 4, 10, 12},
                                                               {10.7, 4, 10.4, 10.6},
                                                               {10.39, 12, 10.4, 10.6},
                                                               {10.61, 12, 10.4, 10.6},
                                                               {10.8, 2, 10.7, none},
                                                               {10.6, 16, 10.6, none}}));

  const Variant rising = Doubles({0, 1, 2});
  EXPECT_EQ(asked.scales, (std::vector<std::pair<Variant, EMonotonicScale>>{
                              {rising, emsPositive}, {rising, emsNegative}, {Doubles({2}), emsPositive}}));

  using Array = BoundedArray<double>;
  const Bounds whole{0, 3};
  const Bounds cut{0, 2};
  const Variant cube = Array(whole, whole, whole);
  const Variant table = Array(whole, whole);
  EXPECT_EQ(asked.arrays, (std::vector<AskedMathUtils::Arrays>{{cube, Array(cut, whole, whole), 3},
                                                               {cube, Array(whole, cut, whole), 3},
                                                               {cube, Array(whole, whole, cut), 3},
                                                               {table, Array(cut, whole), 2},
                                                               {table, Array(whole, cut), 2},
                                                               {Array(whole), Array(cut), 1}}));
}

/// Gets one answer wrong, the first being number 1.
class MathUtilsWrongOnce : public CMathUtils {
 public:
  MathUtilsWrongOnce(Platform& platform, int answer) : CMathUtils(platform), answer_(answer) {}

  bool ArraysAreEqual(const Variant& array1, const Variant& array2, std::int32_t order,
                      std::int32_t decimalPlaces) const override {
    return Answer(CMathUtils::ArraysAreEqual(array1, array2, order, decimalPlaces));
  }
  bool ArrayIsMonotonic1D(const Variant& array, EMonotonicScale scaleType, TextView name,
                          Text* status) const override {
    return Answer(CMathUtils::ArrayIsMonotonic1D(array, scaleType, name, status));
  }
  bool IsInBounds(const Variant& value, TextView name, Text& status, EBoundsChecks mode, const Variant& first,
                  const Variant& second) const override {
    return Answer(CMathUtils::IsInBounds(value, name, status, mode, first, second));
  }

  int Answers() const { return answers_; }

 private:
  bool Answer(bool right) const { return (++answers_ == answer_) != right; }

  int answer_;
  mutable int answers_ = 0;
};

TEST_F(CMathUtilsTest, EveryWrongAnswerFailsItsCheckOfTheSelfTestAndNoOther) {
  struct Row {
    TextView name;
    int answers;
  };
  const Row rows[] = {
      {u"SelfTest_IsInBounds", 16}, {u"SelfTest_ArrayIsMonotonic", 3}, {u"SelfTest_ArraysAreEqual", 6}};
  int answer = 0;
  for (const Row& row : rows) {
    for (int i = 0; i < row.answers; ++i) {
      ++answer;
      EXPECT_EQ(SelfTest(MathUtilsWrongOnce(fake.platform, answer)), FailedTests{Text(row.name)}) << answer;
    }
  }
  const MathUtilsWrongOnce right(fake.platform, 0);
  EXPECT_EQ(SelfTest(right), FailedTests{});
  EXPECT_EQ(right.Answers(), answer);
}

}  // namespace
}  // namespace vorquill21
