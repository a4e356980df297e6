#include "vorquill21/frame/types/array_view.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "tests/support/raised_number.hpp"

namespace vorquill21 {
namespace {

using test::RaisedNumber;

using View = ArrayView<const double>;

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

/// What a method does with what it is passed.
const double* DataOf(View view) {
  return view.Elements().data();
}

void ExpectView(View view, std::int32_t lower, std::int32_t upper) {
  EXPECT_EQ(view.LowerBound(), lower);
  EXPECT_EQ(view.UpperBound(), upper);
  EXPECT_EQ(std::int64_t(view.Elements().size()), std::int64_t{upper} - lower + 1);
}

TEST(ArrayViewTest, ComesFromEveryKindOfArrayWithoutCopying) {
  const std::vector<double> vector{1, 2, 3};
  ExpectView(vector, 0, 2);
  EXPECT_EQ(DataOf(vector), vector.data());

  const std::span<const double> span(vector.data() + 1, 2);
  ExpectView(span, 0, 1);
  EXPECT_EQ(DataOf(span), vector.data() + 1);

  const double builtIn[] = {4, 5};
  ExpectView(builtIn, 0, 1);
  EXPECT_EQ(DataOf(builtIn), builtIn);

  const BoundedArray<double> bounded(Bounds{-1, 1});
  ExpectView(bounded, -1, 1);
  EXPECT_EQ(DataOf(bounded), bounded.Elements().data());

  ExpectView(View(builtIn, 2, 7), 7, 8);
}

TEST(ArrayViewTest, ElementsAreFoundByTheirIndex) {
  BoundedArray<double> array(Bounds{-1, 1});
  array(-1) = 5;
  array(1) = 7;
  const View view(array);
  EXPECT_EQ(view(-1), 5);
  EXPECT_EQ(view(0), 0);
  EXPECT_EQ(view(1), 7);
  EXPECT_EQ(view.Elements()[2], 7);
}

TEST(ArrayViewTest, IndicesOutsideTheBoundsAreSubscriptErrors) {
  const double elements[] = {1, 2};
  const View view(elements, 2, 5);
  for (const std::int32_t index : {kLeast, 0, 4, 7, kMost}) {
    EXPECT_EQ(RaisedNumber([&] { view(index); }), kSubscriptOutOfRange) << index;
  }
}

TEST(ArrayViewTest, BoundsMayLieAtTheEndsOfTheRangeButNotBeyond) {
  const double elements[] = {1, 2};
  EXPECT_EQ(View(elements, 2, kMost - 1)(kMost), 2);
  EXPECT_EQ(View(elements, 2, kLeast)(kLeast + 1), 2);
  EXPECT_EQ(RaisedNumber([&] { View(elements, 2, kMost); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { View(elements, 2, kLeast)(kMost); }), kSubscriptOutOfRange);
}

TEST(ArrayViewTest, NoElementsMeansTheBoundsZeroToMinusOne) {
  ExpectView(std::vector<double>(), 0, -1);
  ExpectView(std::span<const double>(), 0, -1);
  ExpectView(BoundedArray<double>::Empty(), 0, -1);
  ExpectView(View(nullptr, 0, 5), 0, -1);
  ExpectView(View(nullptr, 0, kLeast), 0, -1);
  EXPECT_EQ(RaisedNumber([&] { View(std::span<const double>())(0); }), kSubscriptOutOfRange);
}

TEST(ArrayViewTest, AnArrayOfNoOrSeveralDimensionsIsAnErrorAtTheFirstQuestion) {
  const BoundedArray<double> arrays[] = {BoundedArray<double>(), BoundedArray<double>({0, 1}, {0, 1}),
                                         BoundedArray<double>({0, 1}, {0, 1}, {0, 1})};
  for (const BoundedArray<double>& array : arrays) {
    const View view(array);
    EXPECT_EQ(RaisedNumber([&] { view.LowerBound(); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { view.UpperBound(); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { view(0); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { view.Elements(); }), kSubscriptOutOfRange);
    EXPECT_EQ(view.BoundsOrNone(), (Bounds{0, -2}));
  }
}

TEST(ArrayViewTest, BoundsOrNoneAreTheBoundsWhereThereAreSome) {
  const double elements[] = {1, 2};
  EXPECT_EQ(View(elements, 2, 7).BoundsOrNone(), (Bounds{7, 8}));
  EXPECT_EQ(View(BoundedArray<double>::Empty()).BoundsOrNone(), (Bounds{0, -1}));
}

}  // namespace
}  // namespace vorquill21
