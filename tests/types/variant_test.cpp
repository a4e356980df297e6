#include "vorquill21/frame/types/variant.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

#include "tests/support/raised_number.hpp"

namespace vorquill21 {
namespace {

using test::RaisedNumber;

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// One value of each kind that is no number, whatever its content.
std::vector<Variant> NoScalars() {
  return {Missing{},
          ObjectReference(std::make_shared<int>(1)),
          ObjectReference(),
          BoundedArray<Variant>(Bounds{0, 0}),
          BoundedArray<double>(Bounds{0, 0}),
          BoundedArray<Text>(Bounds{0, 0}),
          BoundedArray<double>()};
}

// --- Kinds -----------------------------------------------------------------------------------------------

TEST(VariantTest, ANewVariantIsEmpty) {
  const Variant value;
  EXPECT_TRUE(value.IsEmpty());
  EXPECT_FALSE(value.IsMissing());
  EXPECT_FALSE(value.IsArray());
}

TEST(VariantTest, AValueHasTheKindItCameFrom) {
  EXPECT_TRUE(Variant(Missing{}).IsMissing());
  EXPECT_TRUE(Variant(true).Holds<bool>());
  EXPECT_TRUE(Variant(7).Holds<std::int32_t>());
  EXPECT_TRUE(Variant(7.0).Holds<double>());
  EXPECT_TRUE(Variant(7.0f).Holds<double>());
  EXPECT_TRUE(Variant(u"text").Holds<Text>());
  EXPECT_TRUE(Variant(Text(u"text")).Holds<Text>());
  EXPECT_TRUE(Variant(TextView(u"text")).Holds<Text>());
  EXPECT_TRUE(Variant(ObjectReference()).Holds<ObjectReference>());
  EXPECT_TRUE(Variant(std::make_shared<int>(1)).Holds<ObjectReference>());
  EXPECT_TRUE(Variant(BoundedArray<Variant>()).Holds<BoundedArray<Variant>>());
  EXPECT_TRUE(Variant(BoundedArray<double>()).Holds<BoundedArray<double>>());
  EXPECT_TRUE(Variant(BoundedArray<Text>()).Holds<BoundedArray<Text>>());
}

TEST(VariantTest, PointersDoNotBecomeTrue) {
  static_assert(!std::is_constructible_v<Variant, const char*>);
  static_assert(!std::is_constructible_v<Variant, const int*>);
  static_assert(!std::is_constructible_v<Variant, const void*>);
  static_assert(std::is_constructible_v<Variant, char16_t*>);
}

TEST(VariantTest, ArraysOfEveryElementAreArrays) {
  EXPECT_TRUE(Variant(BoundedArray<Variant>()).IsArray());
  EXPECT_TRUE(Variant(BoundedArray<double>()).IsArray());
  EXPECT_TRUE(Variant(BoundedArray<Text>()).IsArray());
  for (const Variant& value :
       {Variant(), Variant(Missing{}), Variant(1), Variant(u"x"), Variant(ObjectReference())}) {
    EXPECT_FALSE(value.IsArray());
  }
}

TEST(VariantTest, IfGivesTheValueOfItsKindOnly) {
  Variant value(7);
  ASSERT_NE(value.If<std::int32_t>(), nullptr);
  EXPECT_EQ(*value.If<std::int32_t>(), 7);
  EXPECT_EQ(value.If<double>(), nullptr);
  *value.If<std::int32_t>() = 8;
  EXPECT_EQ(std::as_const(value).If<std::int32_t>()[0], 8);
}

TEST(VariantTest, AsOfAnotherKindIsATypeMismatch) {
  Variant value(u"text");
  value.As<Text>().push_back(u's');
  EXPECT_EQ(std::as_const(value).As<Text>(), u"texts");
  EXPECT_EQ(RaisedNumber([&] { value.As<double>(); }), kTypeMismatch);
  EXPECT_EQ(RaisedNumber([&] { std::as_const(value).As<std::int32_t>(); }), kTypeMismatch);
  EXPECT_EQ(RaisedNumber([] { Variant().As<Text>(); }), kTypeMismatch);
}

TEST(VariantTest, EqualMeansSameKindAndSameValue) {
  EXPECT_EQ(Variant(), Variant());
  EXPECT_EQ(Variant(Missing{}), Variant(Missing{}));
  EXPECT_EQ(Variant(7), Variant(7));
  EXPECT_NE(Variant(7), Variant(8));
  EXPECT_NE(Variant(7), Variant(7.0));
  EXPECT_NE(Variant(), Variant(0));
  EXPECT_NE(Variant(), Variant(u""));
  EXPECT_NE(Variant(), Variant(Missing{}));
  EXPECT_NE(Variant(true), Variant(-1));
  EXPECT_NE(Variant(kNan), Variant(kNan));
  EXPECT_EQ(Variant(BoundedArray<double>(Bounds{1, 2})), Variant(BoundedArray<double>(Bounds{1, 2})));
  EXPECT_NE(Variant(BoundedArray<double>(Bounds{1, 2})), Variant(BoundedArray<double>(Bounds{0, 1})));
  const auto object = std::make_shared<int>(1);
  EXPECT_EQ(Variant(object), Variant(object));
  EXPECT_NE(Variant(object), Variant(std::make_shared<int>(1)));
}

// --- Conversion ------------------------------------------------------------------------------------------

TEST(VariantConversionTest, NumbersOfEveryScalar) {
  EXPECT_EQ(ToDouble(Variant(), u'.'), 0);
  EXPECT_EQ(ToDouble(true, u'.'), -1);
  EXPECT_EQ(ToDouble(false, u'.'), 0);
  EXPECT_EQ(ToDouble(kLeast, u'.'), -2147483648.0);
  EXPECT_EQ(ToDouble(0.1, u'.'), 0.1);
  EXPECT_EQ(ToDouble(kInfinity, u'.'), kInfinity);
  EXPECT_TRUE(std::isnan(ToDouble(kNan, u'.')));
  EXPECT_EQ(ToDouble(u" 1.5E2\r\n", u'.'), 150);
  EXPECT_EQ(ToDouble(u"1,5", u','), 1.5);
}

TEST(VariantConversionTest, WhatIsNoNumberIsATypeMismatch) {
  for (const TextView text : {u"", u" ", u"abc", u"1x", u"1,5", u"True", u"&H1", u"1E999"}) {
    EXPECT_EQ(RaisedNumber([=] { ToDouble(text, u'.'); }), kTypeMismatch) << ToUtf8(text);
    EXPECT_EQ(RaisedNumber([=] { ToSingle(text, u'.'); }), kTypeMismatch) << ToUtf8(text);
    EXPECT_EQ(RaisedNumber([=] { ToInt32(text, u'.'); }), kTypeMismatch) << ToUtf8(text);
  }
  for (const Variant& value : NoScalars()) {
    EXPECT_EQ(RaisedNumber([&] { ToDouble(value, u'.'); }), kTypeMismatch);
    EXPECT_EQ(RaisedNumber([&] { ToSingle(value, u'.'); }), kTypeMismatch);
    EXPECT_EQ(RaisedNumber([&] { ToInt32(value, u'.'); }), kTypeMismatch);
    EXPECT_EQ(RaisedNumber([&] { ToText(value, u'.'); }), kTypeMismatch);
  }
}

TEST(VariantConversionTest, SinglePrecisionRoundsAndOverflows) {
  EXPECT_EQ(ToSingle(0.1, u'.'), 0.1f);
  EXPECT_EQ(ToSingle(1e-60, u'.'), 0.0f);
  EXPECT_EQ(ToSingle(u"2.5", u'.'), 2.5f);
  EXPECT_EQ(ToSingle(true, u'.'), -1.0f);
  EXPECT_EQ(ToSingle(3.4028234663852886e38, u'.'), std::numeric_limits<float>::max());
  EXPECT_EQ(RaisedNumber([] { ToSingle(1e39, u'.'); }), kOverflow);
  EXPECT_EQ(RaisedNumber([] { ToSingle(-1e39, u'.'); }), kOverflow);
  EXPECT_EQ(ToSingle(-kInfinity, u'.'), -std::numeric_limits<float>::infinity());
  EXPECT_TRUE(std::isnan(ToSingle(kNan, u'.')));
}

TEST(VariantConversionTest, IntegersRoundAHalfToEven) {
  EXPECT_EQ(ToInt32(Variant(), u'.'), 0);
  EXPECT_EQ(ToInt32(true, u'.'), -1);
  EXPECT_EQ(ToInt32(kMost, u'.'), kMost);
  EXPECT_EQ(ToInt32(0.5, u'.'), 0);
  EXPECT_EQ(ToInt32(1.5, u'.'), 2);
  EXPECT_EQ(ToInt32(-2.5, u'.'), -2);
  EXPECT_EQ(ToInt32(u"2.5", u'.'), 2);
  EXPECT_EQ(ToInt32(u"3,5", u','), 4);
}

TEST(VariantConversionTest, IntegersBeyond32BitsOverflow) {
  for (const double value : {2147483647.5, -2147483649.0, 1e300, kInfinity, kNan}) {
    EXPECT_EQ(RaisedNumber([=] { ToInt32(value, u'.'); }), kOverflow) << value;
  }
  EXPECT_EQ(RaisedNumber([] { ToInt32(u"2147483648", u'.'); }), kOverflow);
}

TEST(VariantConversionTest, TextsOfEveryScalar) {
  EXPECT_EQ(ToText(Variant(), u'.'), u"");
  EXPECT_EQ(ToText(true, u'.'), u"True");
  EXPECT_EQ(ToText(false, u','), u"False");
  EXPECT_EQ(ToText(kLeast, u'.'), u"-2147483648");
  EXPECT_EQ(ToText(0.1, u'.'), u"0.1");
  EXPECT_EQ(ToText(-0.5, u','), u"-0,5");
  EXPECT_EQ(ToText(-0.0, u'.'), u"0");
  EXPECT_EQ(ToText(1e15, u'.'), u"1E+15");
  EXPECT_EQ(ToText(u"1.50 kg", u','), u"1.50 kg");
}

TEST(VariantConversionTest, NumericAreNumbersBooleansEmptyAndTextsInTheFormOfANumber) {
  for (const Variant& value : {Variant(), Variant(true), Variant(0), Variant(kNan), Variant(u" -1.5E+3\t"),
                               Variant(u"1D5"), Variant(u".5"), Variant(u"5.")}) {
    EXPECT_TRUE(IsNumeric(value, u'.'));
  }
  for (const TextView text : {u"", u"abc", u"1,000.5", u"$1", u"1 2", u"&HFF", u"inf", u"nan", u"."}) {
    EXPECT_FALSE(IsNumeric(text, u'.')) << ToUtf8(text);
  }
  EXPECT_TRUE(IsNumeric(u"1,5", u','));
  EXPECT_FALSE(IsNumeric(u"1.5", u','));
  for (const Variant& value : NoScalars()) EXPECT_FALSE(IsNumeric(value, u'.'));
}

// --- Arithmetic ------------------------------------------------------------------------------------------

TEST(VariantSubtractTest, IntegersStayIntegers) {
  EXPECT_EQ(Subtract(7, 9, u'.'), Variant(-2));
  EXPECT_EQ(Subtract(true, 1, u'.'), Variant(-2));
  EXPECT_EQ(Subtract(false, true, u'.'), Variant(1));
  EXPECT_EQ(Subtract(Variant(), Variant(), u'.'), Variant(0));
  EXPECT_EQ(Subtract(Variant(), 5, u'.'), Variant(-5));
  EXPECT_EQ(Subtract(kMost, 0, u'.'), Variant(kMost));
  EXPECT_EQ(Subtract(-1, kMost, u'.'), Variant(kLeast));
}

TEST(VariantSubtractTest, IntegersThatOverflowGoOnAsDoubles) {
  EXPECT_EQ(Subtract(kMost, -1, u'.'), Variant(2147483648.0));
  EXPECT_EQ(Subtract(kLeast, 1, u'.'), Variant(-2147483649.0));
  EXPECT_EQ(Subtract(Variant(), kLeast, u'.'), Variant(2147483648.0));
  EXPECT_EQ(Subtract(kLeast, kMost, u'.'), Variant(-4294967295.0));
}

TEST(VariantSubtractTest, OtherwiseDoublesAreSubtracted) {
  EXPECT_EQ(Subtract(1.5, 1, u'.'), Variant(0.5));
  EXPECT_EQ(Subtract(true, 0.5, u'.'), Variant(-1.5));
  EXPECT_EQ(Subtract(u"5", 3, u'.'), Variant(2.0));
  EXPECT_EQ(Subtract(u"1,5", u"0,5", u','), Variant(1.0));
}

TEST(VariantSubtractTest, FiniteDoublesMayOverflow) {
  EXPECT_EQ(RaisedNumber([] { Subtract(kLargest, -kLargest, u'.'); }), kOverflow);
  EXPECT_EQ(Subtract(kInfinity, kLargest, u'.'), Variant(kInfinity));
  EXPECT_TRUE(std::isnan(Subtract(kInfinity, kInfinity, u'.').As<double>()));
}

TEST(VariantSubtractTest, WhatIsNoNumberIsATypeMismatch) {
  for (const Variant& value : NoScalars()) {
    EXPECT_EQ(RaisedNumber([&] { Subtract(value, 1, u'.'); }), kTypeMismatch);
    EXPECT_EQ(RaisedNumber([&] { Subtract(1, value, u'.'); }), kTypeMismatch);
  }
  EXPECT_EQ(RaisedNumber([] { Subtract(u"abc", 1, u'.'); }), kTypeMismatch);
  EXPECT_EQ(RaisedNumber([] { Subtract(1, u"", u'.'); }), kTypeMismatch);
}

// --- Comparison ------------------------------------------------------------------------------------------

TEST(VariantCompareTest, NumbersCompareByValue) {
  EXPECT_EQ(Compare(1, 2), std::partial_ordering::less);
  EXPECT_EQ(Compare(2.5, 2), std::partial_ordering::greater);
  EXPECT_EQ(Compare(2.0, 2), std::partial_ordering::equivalent);
  EXPECT_EQ(Compare(true, -1), std::partial_ordering::equivalent);
  EXPECT_EQ(Compare(true, false), std::partial_ordering::less);
  EXPECT_EQ(Compare(-0.0, 0), std::partial_ordering::equivalent);
  EXPECT_EQ(Compare(kMost, 2147483647.5), std::partial_ordering::less);
}

TEST(VariantCompareTest, TextsCompareByTheCodesOfTheirUnits) {
  EXPECT_EQ(Compare(u"a", u"b"), std::partial_ordering::less);
  EXPECT_EQ(Compare(u"a", u"B"), std::partial_ordering::greater);
  EXPECT_EQ(Compare(u"10", u"9"), std::partial_ordering::less);
  EXPECT_EQ(Compare(u"a", u"ab"), std::partial_ordering::less);
  EXPECT_EQ(Compare(u"é", u"z"), std::partial_ordering::greater);
  EXPECT_EQ(Compare(u"a", u"a"), std::partial_ordering::equivalent);
}

TEST(VariantCompareTest, AnyNumberIsBelowAnyText) {
  for (const Variant& number : {Variant(kMost), Variant(kInfinity), Variant(kNan), Variant(true)}) {
    for (const TextView text : {u"", u"0", u"abc"}) {
      EXPECT_EQ(Compare(number, text), std::partial_ordering::less) << ToUtf8(text);
      EXPECT_EQ(Compare(text, number), std::partial_ordering::greater) << ToUtf8(text);
    }
  }
}

TEST(VariantCompareTest, EmptyEqualsZeroAndTheEmptyText) {
  for (const Variant& value : {Variant(), Variant(0), Variant(0.0), Variant(false), Variant(u"")}) {
    EXPECT_EQ(Compare(Variant(), value), std::partial_ordering::equivalent);
    EXPECT_EQ(Compare(value, Variant()), std::partial_ordering::equivalent);
  }
  EXPECT_EQ(Compare(Variant(), 1), std::partial_ordering::less);
  EXPECT_EQ(Compare(Variant(), true), std::partial_ordering::greater);
  EXPECT_EQ(Compare(Variant(), u"a"), std::partial_ordering::less);
  EXPECT_EQ(Compare(u"a", Variant()), std::partial_ordering::greater);
}

TEST(VariantCompareTest, ANanIsUnordered) {
  EXPECT_EQ(Compare(kNan, kNan), std::partial_ordering::unordered);
  EXPECT_EQ(Compare(kNan, 1), std::partial_ordering::unordered);
  EXPECT_EQ(Compare(Variant(), kNan), std::partial_ordering::unordered);
}

TEST(VariantCompareTest, WhatIsNoScalarIsATypeMismatch) {
  for (const Variant& value : NoScalars()) {
    for (const Variant& other : {Variant(), Variant(1), Variant(u"text"), value}) {
      EXPECT_EQ(RaisedNumber([&] { Compare(value, other); }), kTypeMismatch);
      EXPECT_EQ(RaisedNumber([&] { Compare(other, value); }), kTypeMismatch);
    }
  }
}

// --- Arrays ----------------------------------------------------------------------------------------------

TEST(VariantArrayTest, ElementsOfEveryKindOfArrayAreVariants) {
  BoundedArray<double> numbers(Bounds{1, 2});
  numbers(2) = 5;
  BoundedArray<Text> texts({0, 1}, {3, 4});
  texts(1, 3) = Text(u"x");
  BoundedArray<Variant> variants({0, 1}, {0, 1}, {0, 1});
  variants(1, 0, 1) = true;
  EXPECT_EQ(ArrayElement(numbers, 2), Variant(5.0));
  EXPECT_EQ(ArrayElement(texts, 1, 3), Variant(u"x"));
  EXPECT_EQ(ArrayElement(variants, 1, 0, 1), Variant(true));
  EXPECT_EQ(ArrayElement(variants, 0, 0, 0), Variant());
  EXPECT_EQ(ArrayRank(numbers), 1);
  EXPECT_EQ(ArrayRank(texts), 2);
  EXPECT_EQ(ArrayRank(variants), 3);
  EXPECT_EQ(ArrayRank(BoundedArray<Text>()), 0);
  EXPECT_EQ(ArrayBounds(numbers), (Bounds{1, 2}));
  EXPECT_EQ(ArrayBounds(texts, 2), (Bounds{3, 4}));
  EXPECT_EQ(ArrayBounds(variants, 3), (Bounds{0, 1}));
}

TEST(VariantArrayTest, IndicesAndDimensionsOutsideAreSubscriptErrors) {
  const Variant array = BoundedArray<double>({1, 2}, {1, 2});
  EXPECT_EQ(RaisedNumber([&] { ArrayElement(array, 1); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { ArrayElement(array, 0, 1); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { ArrayElement(array, 1, 1, 1); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { ArrayBounds(array, 0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { ArrayBounds(array, 3); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { ArrayBounds(BoundedArray<Variant>()); }), kSubscriptOutOfRange);
}

TEST(VariantArrayTest, AValueThatIsNoArrayIsATypeMismatch) {
  for (const Variant& value :
       {Variant(), Variant(Missing{}), Variant(1), Variant(u"text"), Variant(ObjectReference())}) {
    EXPECT_EQ(RaisedNumber([&] { ArrayRank(value); }), kTypeMismatch);
    EXPECT_EQ(RaisedNumber([&] { ArrayBounds(value); }), kTypeMismatch);
    EXPECT_EQ(RaisedNumber([&] { ArrayElement(value, 0); }), kTypeMismatch);
    EXPECT_EQ(RaisedNumber([&] { ArrayElement(value, 0, 0); }), kTypeMismatch);
    EXPECT_EQ(RaisedNumber([&] { ArrayElement(value, 0, 0, 0); }), kTypeMismatch);
  }
}

}  // namespace
}  // namespace vorquill21
