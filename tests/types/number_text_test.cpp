#include "vorquill21/frame/types/number_text.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/support/raised_number.hpp"
#include "tests/types/big_integer.hpp"

namespace vorquill21 {
namespace {

using test::BigInteger;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLeast = std::numeric_limits<double>::denorm_min();
constexpr double kGreatest = std::numeric_limits<double>::max();

std::uint64_t BitsOf(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

double OfBits(std::uint64_t bits) {
  return std::bit_cast<double>(bits);
}

std::size_t Below(std::mt19937_64& random, std::size_t end) {
  return static_cast<std::size_t>(random() % end);
}

/// A finite double, any bits being as likely as any others.
double AnyDouble(std::mt19937_64& random) {
  for (;;) {
    const double value = OfBits(random());
    if (std::isfinite(value)) return value;
  }
}

/// The values whose powers of two or ten begin, and their neighbours.
std::vector<double> Landmarks() {
  std::vector<double> values{0.0, -0.0, kLeast, 2 * kLeast, kGreatest, std::numeric_limits<double>::min()};
  const auto addWithNeighbours = [&values](double value) {
    for (const double near : {std::nextafter(value, 0.0), value, std::nextafter(value, kInfinity)}) {
      if (std::isfinite(near)) values.push_back(near);
    }
  };
  for (int exponent = -1074; exponent < 1024; ++exponent) addWithNeighbours(std::ldexp(1.0, exponent));
  for (int exponent = -323; exponent <= 308; ++exponent) {
    double power = 0.0;
    const std::string text = std::string("1e").append(std::to_string(exponent));
    std::from_chars(text.data(), text.data() + text.size(), power);
    addWithNeighbours(power);
  }
  return values;
}

// --- From numbers to texts ---------------------------------------------------------------------------------

std::string Written(double value) {
  return ToUtf8(NumberToText(value, u'.'));
}

/// By the standard library; for finite numbers.
std::string Expected(double value) {
  if (value == 0.0) return "0";
  char text[40];
  std::string expected(text,
                       std::to_chars(text, text + sizeof text, value, std::chars_format::general, 15).ptr);
  for (char& c : expected) c = c == 'e' ? 'E' : c;
  return expected;
}

TEST(NumberToTextTest, WritesFifteenSignificantDigitsWithoutTrailingZeros) {
  const struct {
    double value;
    const char* text;
  } kRows[] = {
      {0.0, "0"},
      {-0.0, "0"},
      {1.0, "1"},
      {-1.0, "-1"},
      {0.11019, "0.11019"},
      {1500000.0, "1500000"},
      {-12.75, "-12.75"},
      {0.1, "0.1"},
      {0.1 + 0.2, "0.3"},
      {1.0 / 3.0, "0.333333333333333"},
      {2.0 / 3.0, "0.666666666666667"},
      {-100.0 / 3.0, "-33.3333333333333"},
      {3.14159265358979, "3.14159265358979"},
      {10.0, "10"},
      {100.5, "100.5"},
      {123456789012345.0, "123456789012345"},
      {12345678901234.5, "12345678901234.5"},
      {100000000000000.0, "100000000000000"},
      {999999999999999.0, "999999999999999"},
      {1e15, "1E+15"},
      {1.5e15, "1.5E+15"},
      {1234567890123456.0, "1.23456789012346E+15"},
      {-1e15, "-1E+15"},
      {1e-4, "0.0001"},
      {0.000123456789012345, "0.000123456789012345"},
      {-0.00999, "-0.00999"},
      {1e-5, "1E-05"},
      {1.25e-5, "1.25E-05"},
      {1e-50, "1E-50"},
      {1e100, "1E+100"},
      {-1.23456789012345e-300, "-1.23456789012345E-300"},
      {kGreatest, "1.79769313486232E+308"},
      {std::numeric_limits<double>::min(), "2.2250738585072E-308"},
      {kLeast, "4.94065645841247E-324"},
      {-kLeast, "-4.94065645841247E-324"},
      {9007199254740993.0, "9.00719925474099E+15"},
  };
  for (const auto& row : kRows) EXPECT_EQ(Written(row.value), row.text);
}

TEST(NumberToTextTest, RoundsTheExactValueAndAHalfToTheEvenDigit) {
  const struct {
    double value;
    const char* text;
  } kRows[] = {
      {0x1p-22, "2.38418579101562E-07"},      // 2.384185791015625E-07
      {3 * 0x1p-22, "7.15255737304688E-07"},  // 7.152557373046875E-07
      {100000000000000.5, "100000000000000"},
      {100000000000001.5, "100000000000002"},
      {10000000000000.25, "10000000000000.2"},
      {10000000000000.75, "10000000000000.8"},
      {1000000000000005.0, "1E+15"},
      {1000000000000015.0, "1.00000000000002E+15"},
      {1000000000000025.0, "1.00000000000002E+15"},
      {0.1000000000000005, "0.100000000000001"},  // a little more than the half
      {0.1001000000000015, "0.100100000000001"},  // a little less than the half
  };
  for (const auto& row : kRows) EXPECT_EQ(Written(row.value), row.text);
}

TEST(NumberToTextTest, RoundingUpMayReachTheNextPowerOfTen) {
  const struct {
    double value;
    const char* text;
  } kRows[] = {
      {9.99999999999999e14, "999999999999999"},
      {999999999999999.5, "1E+15"},
      {999999999999999.375, "999999999999999"},
      {99999999999999.96875, "100000000000000"},
      {0.9999999999999999, "1"},
      {9.9999999999999999e-5, "0.0001"},
      {0.00009999999999999999, "0.0001"},
      {9.999999999999999e22, "1E+23"},
      {9.9999999999999995e-11, "1E-10"},
      {-9999.9999999999999, "-10000"},
  };
  for (const auto& row : kRows) EXPECT_EQ(Written(row.value), row.text);
}

TEST(NumberToTextTest, WhatIsNotFiniteIsNamed) {
  EXPECT_EQ(Written(kInfinity), "INF");
  EXPECT_EQ(Written(-kInfinity), "-INF");
  EXPECT_EQ(Written(std::numeric_limits<double>::quiet_NaN()), "NAN");
  EXPECT_EQ(Written(-std::numeric_limits<double>::quiet_NaN()), "NAN");
}

TEST(NumberToTextTest, TheSeparatorStandsWhereThePointWould) {
  for (const char16_t separator : {u',', u'\x066B', u'\xFFFF'}) {
    const Text point(1, separator);
    EXPECT_EQ(NumberToText(-12.75, separator), u"-12" + point + u"75");
    EXPECT_EQ(NumberToText(0.0625, separator), u"0" + point + u"0625");
    EXPECT_EQ(NumberToText(1.5e-7, separator), u"1" + point + u"5E-07");
    EXPECT_EQ(NumberToText(1500000.0, separator), u"1500000");
    EXPECT_EQ(NumberToText(1e22, separator), u"1E+22");
  }
}

TEST(NumberToTextTest, AgreesWithTheStandardLibraryAtEveryPowerOfTwoAndTen) {
  for (const double value : Landmarks()) {
    ASSERT_EQ(Written(value), Expected(value));
    ASSERT_EQ(Written(-value), Expected(-value));
  }
}

TEST(NumberToTextTest, AgreesWithTheStandardLibraryOnRandomNumbers) {
  std::mt19937_64 random(21);
  for (int i = 0; i < 100000; ++i) {
    const double value = AnyDouble(random);
    ASSERT_EQ(Written(value), Expected(value)) << BitsOf(value);
  }
}

TEST(NumberToTextTest, AgreesWithTheStandardLibraryOnShortDecimals) {
  std::mt19937_64 random(22);
  for (int i = 0; i < 100000; ++i) {
    const auto digits =
        static_cast<double>(random() % 1'000'000'000'000'000 / (random() % 2 == 0 ? 1 : 1'000'000'000));
    const double value = digits / std::pow(10.0, static_cast<double>(random() % 23));
    ASSERT_EQ(Written(value), Expected(value)) << BitsOf(value);
  }
}

TEST(NumberToTextTest, AgreesWithTheStandardLibraryOnAndBesideHalves) {
  // Odd multiples of 2 ^ -22 to 1/2 whose exact value has sixteen digits.
  std::mt19937_64 random(23);
  int halves = 0;
  for (int power = 1; power <= 22; ++power) {
    const double unit = std::ldexp(1.0, -power);
    const double least = 1e15 * std::pow(5.0, -power);
    for (int i = 0; i < 1000; ++i) {
      const double odd =
          2 * std::floor((least + static_cast<double>(random() >> 11) * 0x1p-53 * 9 * least) / 2) + 1;
      const double value = odd * unit;
      char exact[64];
      const auto end = std::to_chars(exact, exact + sizeof exact, value, std::chars_format::scientific).ptr;
      halves += std::string(exact, end).find("5e") == 16 ? 1 : 0;
      for (const double near : {std::nextafter(value, 0.0), value, std::nextafter(value, kInfinity)}) {
        ASSERT_EQ(Written(near), Expected(near)) << BitsOf(near);
      }
    }
  }
  EXPECT_GT(halves, 10000);
}

TEST(NumberToTextTest, NothingBehindTheRoomIsTouched) {
  std::mt19937_64 random(24);
  std::vector<double> values = Landmarks();
  for (int i = 0; i < 10000; ++i) values.push_back(AnyDouble(random));
  values.insert(values.end(), {kInfinity, -kInfinity, -std::numeric_limits<double>::quiet_NaN()});
  std::vector<char16_t> units(kNumberTextCapacity + 1);
  std::size_t longest = 0;
  for (const double value : values) {
    for (const double signedValue : {value, -value}) {
      units.back() = u'\xABCD';
      const char16_t* const end = WriteNumber(signedValue, u'.', units.data());
      longest = std::max(longest, static_cast<std::size_t>(end - units.data()));
      ASSERT_EQ(units.back(), u'\xABCD') << signedValue;
    }
  }
  EXPECT_EQ(longest, 22u);
}

TEST(NumberToTextTest, WritesIntegersPlainly) {
  EXPECT_EQ(NumberToText(std::int32_t{0}), u"0");
  EXPECT_EQ(NumberToText(std::int32_t{-7}), u"-7");
  EXPECT_EQ(NumberToText(std::numeric_limits<std::int32_t>::max()), u"2147483647");
  EXPECT_EQ(NumberToText(std::numeric_limits<std::int32_t>::min()), u"-2147483648");
}

// --- From texts to numbers ---------------------------------------------------------------------------------

/// A copy without room behind it, so that reading on is noticed by the tools that look for such faults.
template <typename Unit>
std::vector<Unit> Tight(std::string_view text) {
  std::vector<Unit> units;
  units.reserve(text.size());
  for (const char c : text) units.push_back(static_cast<Unit>(static_cast<unsigned char>(c)));
  return units;
}

template <typename Unit>
std::basic_string_view<Unit> ViewOf(const std::vector<Unit>& units) {
  return {units.data(), units.size()};
}

/// What the text spells as 16-bit and as 8-bit text; both must be the same.
std::optional<double> Read(std::string_view text, char separator = '.') {
  const auto units = Tight<char16_t>(text);
  const auto bytes = Tight<char>(text);
  const auto wide = TextToNumber(ViewOf(units), static_cast<char16_t>(static_cast<unsigned char>(separator)));
  const auto narrow = TextToNumber(ViewOf(bytes), separator);
  EXPECT_EQ(wide.has_value(), narrow.has_value()) << text;
  EXPECT_EQ(BitsOf(wide.value_or(0.0)), BitsOf(narrow.value_or(0.0))) << text;
  return wide;
}

void ExpectReadAs(std::string_view text, double expected, char separator = '.') {
  const auto number = Read(text, separator);
  ASSERT_TRUE(number.has_value()) << text;
  EXPECT_EQ(BitsOf(*number), BitsOf(expected)) << text << " is read as " << *number;
}

/// Where the longest number at the beginning of `text` ends, and its value by the standard library.
struct Reference {
  std::size_t length = 0;
  double value = 0.0;
};

bool IsDigitAt(std::string_view text, std::size_t at) {
  return at < text.size() && text[at] >= '0' && text[at] <= '9';
}

double ValueOf(const std::string& text) {
  double value = 0.0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) return std::strtod(text.c_str(), nullptr);
  return value;
}

Reference ReferenceOf(std::string_view text, char separator) {
  std::string plain;
  std::size_t at = 0;
  bool isNegative = false;
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) isNegative = text[at++] == '-';
  bool hasDigit = false;
  bool hasSeparator = false;
  for (; at < text.size(); ++at) {
    if (IsDigitAt(text, at)) {
      hasDigit = true;
      plain += text[at];
    } else if (text[at] == separator && !hasSeparator) {
      hasSeparator = true;
      plain += '.';
    } else {
      break;
    }
  }
  if (!hasDigit) return {};
  if (plain[0] == '.') plain.insert(0, 1, '0');
  if (at < text.size() && std::string_view("EeDd").find(text[at]) != std::string_view::npos) {
    const std::size_t sign = at + 1;
    const bool hasSign = sign < text.size() && (text[sign] == '+' || text[sign] == '-');
    std::size_t digit = sign + (hasSign ? 1 : 0);
    if (IsDigitAt(text, digit)) {
      plain += hasSign && text[sign] == '-' ? "e-" : "e";
      while (IsDigitAt(text, digit)) plain += text[digit++];
      at = digit;
    }
  }
  const double size = ValueOf(plain);
  return {at, isNegative ? -size : size};
}

template <typename Unit>
void ExpectParsedLikeReference(std::string_view text, char separator) {
  const auto units = Tight<Unit>(text);
  const Reference expected = ReferenceOf(text, separator);
  const auto unitSeparator = static_cast<Unit>(static_cast<unsigned char>(separator));
  const auto parsed = ParseNumber(units.data(), units.data() + units.size(), unitSeparator);
  ASSERT_EQ(static_cast<std::size_t>(parsed.end - units.data()), expected.length) << text;
  ASSERT_EQ(BitsOf(parsed.value), BitsOf(expected.value)) << text << " is read as " << parsed.value;
}

void ExpectLikeReference(std::string_view text, char separator = '.') {
  ExpectParsedLikeReference<char16_t>(text, separator);
  ExpectParsedLikeReference<char>(text, separator);
}

TEST(TextToNumberTest, ReadsEveryForm) {
  const struct {
    const char* text;
    double value;
  } kRows[] = {
      {"0", 0.0},
      {"-0", -0.0},
      {"+0", 0.0},
      {"7", 7.0},
      {"007", 7.0},
      {"-12.75", -12.75},
      {"+12.75", 12.75},
      {".5", 0.5},
      {"-.5", -0.5},
      {"5.", 5.0},
      {"+5.", 5.0},
      {"0.11019", 0.11019},
      {"1500000", 1500000.0},
      {"1E3", 1000.0},
      {"1e3", 1000.0},
      {"1D3", 1000.0},
      {"1d3", 1000.0},
      {"1.5d-3", 0.0015},
      {"1.5E+03", 1500.0},
      {".5e1", 5.0},
      {"5.e1", 50.0},
      {"1e0000000000000000000000003", 1000.0},
      {"  1.5", 1.5},
      {"1.5  ", 1.5},
      {"\t\r\n 1.5 \n\r\t", 1.5},
      {"\n-0.001", -0.001},
      {"123456789012345", 123456789012345.0},
      {"1234567890123456", 1234567890123456.0},
      {"12345678901234567", 12345678901234568.0},
      {"0.123456789012345", 0.123456789012345},
      {"0.12345678901234568", 0.12345678901234568},
      {"18446744073709551615", 18446744073709551616.0},
      {"18446744073709551616", 18446744073709551616.0},
      {"0.000000000000000000000000000001", 1e-30},
      {"1000000000000000000000000000000", 1e30},
  };
  for (const auto& row : kRows) ExpectReadAs(row.text, row.value);
}

TEST(TextToNumberTest, AnythingElseIsNoNumber) {
  const char* const kTexts[] = {
      "",
      " ",
      "\t\r\n",
      "abc",
      ".",
      "-",
      "+",
      "-.",
      "+.",
      "e5",
      ".e5",
      "1e",
      "1e+",
      "1e-",
      "1d",
      "1E 5",
      "1e5.0",
      "1e5e5",
      "1.2.3",
      "1..2",
      "1,5",
      "1,000",
      "--1",
      "+-1",
      "- 1",
      "1 2",
      "1-",
      "1+2",
      "$1",
      "1$",
      "1%",
      "(1)",
      "0x10",
      "&H10",
      "inf",
      "INF",
      "-inf",
      "nan",
      "NAN",
      "infinity",
      "1f",
      "1L",
      "True",
      "1\v",
      "\f1",
      "\2401",
      "1\xA0",
      "\xB2",
      "12:30",
      "3.5kg",
      "1e5 x",
      "1 e5",
      "1e5e",
      "123456789012345x",
      "1234567890123456x",
      "12345678901234567x",
      "1.2345678901234567.",
      "0.123456789012345.6",
  };
  for (const char* const text : kTexts) EXPECT_EQ(Read(text), std::nullopt) << text;
  EXPECT_EQ(Read(std::string_view("1\0", 2)), std::nullopt);
  EXPECT_EQ(Read(std::string_view("\0", 1)), std::nullopt);
}

TEST(TextToNumberTest, UnitsThatOnlyEndLikeDigitsAreNone) {
  // Units whose lower byte is a digit, a sign, a point or an exponent mark, and digits of other scripts.
  for (const char16_t unit :
       {u'\x0130', u'\x3031', u'\xFF11', u'\x0661', u'\x8035', u'\xFF2D', u'\x012E', u'\x0145'}) {
    EXPECT_EQ(TextToNumber(Text(1, unit), u'.'), std::nullopt);
    EXPECT_EQ(TextToNumber(Text(u"1") + unit + u"2", u'.'), std::nullopt);
    EXPECT_EQ(TextToNumber(Text(u"1.25") + unit, u'.'), std::nullopt);
    EXPECT_EQ(TextToNumber(Text(u"1.2512345678901") + unit + u"3", u'.'), std::nullopt);
  }
}

TEST(TextToNumberTest, OnlyTheGivenSeparatorCounts) {
  ExpectReadAs("12,75", 12.75, ',');
  EXPECT_EQ(Read("12.75", ','), std::nullopt);
  EXPECT_EQ(Read("1,234,567", ','), std::nullopt);
  ExpectReadAs(
      "3\xB7"
      "5",
      3.5, '\xB7');
  ExpectReadAs(
      "3\xFF"
      "5",
      3.5, '\xFF');
  ExpectReadAs(std::string_view("3\0"
                                "5",
                                3),
               3.5, '\0');
  EXPECT_EQ(TextToNumber(u"-12\x066B"
                         u"75E2",
                         u'\x066B'),
            -1275.0);
  EXPECT_EQ(TextToNumber(u"12\x066B"
                         u"75",
                         u'\x066C'),
            std::nullopt);
  EXPECT_EQ(TextToNumber(u"12\x066B"
                         u"75",
                         u'\x6B'),
            std::nullopt);
  EXPECT_EQ(TextToNumber(u"12\x8000"
                         u"75",
                         u'\xFF'),
            std::nullopt);
  EXPECT_EQ(TextToNumber(u"12\x8000"
                         u"75",
                         u'\0'),
            std::nullopt);
  EXPECT_EQ(TextToNumber(u"12\x0100"
                         u"75",
                         u'\xFF'),
            std::nullopt);
}

TEST(TextToNumberTest, WhatIsTooLargeIsNoNumber) {
  ExpectReadAs("1.7976931348623157e308", kGreatest);
  ExpectReadAs("1.7976931348623158e308", kGreatest);
  for (const char* const text : {"1.7976931348623159e308", "-1.7976931348623159e308", "1e309", "-1e309",
                                 "1e400", "1e99999999999999999999", "17976931348623159e292", "0.1e310"}) {
    EXPECT_EQ(Read(text), std::nullopt) << text;
  }
  ExpectReadAs("0e309", 0.0);
  ExpectReadAs("-0.000e99999999999999999999", -0.0);
  const std::string zeros(400, '0');
  EXPECT_EQ(Read("1" + zeros), std::nullopt);
  ExpectReadAs("1" + zeros + "e-400", 1.0);
  ExpectReadAs("0." + zeros + "1e401", 1.0);
  ExpectReadAs("0." + zeros + "123456789012345678901234567890e401", 1.2345678901234567);
}

TEST(TextToNumberTest, WhatIsTooSmallBecomesTheNearestSubnormalOrZero) {
  ExpectReadAs("2.2250738585072014e-308", std::numeric_limits<double>::min());
  ExpectReadAs("2.2250738585072011e-308", OfBits(0x000FFFFFFFFFFFFF));
  ExpectReadAs("1e-310", 1e-310);
  ExpectReadAs("5e-324", kLeast);
  ExpectReadAs("3e-324", kLeast);
  ExpectReadAs("2.4703282292062328e-324", kLeast);
  ExpectReadAs("2.4703282292062327e-324", 0.0);
  ExpectReadAs("-2.4e-324", -0.0);
  ExpectReadAs("-1e-400", -0.0);
  ExpectReadAs("1e-99999999999999999999", 0.0);
}

TEST(TextToNumberTest, AHalfGoesToTheEvenDouble) {
  ExpectReadAs("9007199254740993", 9007199254740992.0);
  ExpectReadAs("9007199254740993.0", 9007199254740992.0);
  ExpectReadAs("9007199254740993.00000000000000000000000000000001", 9007199254740994.0);
  ExpectReadAs("9007199254740992.99999999999999999999999999999999", 9007199254740992.0);
  ExpectReadAs("9007199254740995", 9007199254740996.0);
  ExpectReadAs("-9007199254740995e0", -9007199254740996.0);
  ExpectReadAs("90071992547409930e-1", 9007199254740992.0);
  ExpectReadAs("900719925474099.3e1", 9007199254740992.0);
  ExpectReadAs("123456789012345e3", 123456789012345000.0);
}

/// The decimal digits of the integer before.
std::string WithoutOne(std::string digits) {
  auto digit = digits.rbegin();
  for (; *digit == '0'; ++digit) *digit = '9';
  --*digit;
  return digits;
}

TEST(TextToNumberTest, EveryMiddleBetweenTwoDoublesIsRoundedExactly) {
  std::mt19937_64 random(25);
  std::vector<double> values{0.0,
                             kLeast,
                             std::numeric_limits<double>::min(),
                             1.0,
                             OfBits(BitsOf(kGreatest) - 1),
                             OfBits(BitsOf(kGreatest) - 2)};
  for (int i = 0; i < 600; ++i) values.push_back(std::abs(AnyDouble(random)));
  for (int i = 0; i < 600; ++i)
    values.push_back(std::ldexp(1.0 + static_cast<double>(random() >> 12) * 0x1p-52,
                                static_cast<int>(random() % 140) - 70));
  for (const double value : values) {
    const double next = std::nextafter(value, kInfinity);
    if (std::isinf(next)) continue;
    const std::uint64_t fraction = BitsOf(value) & 0x000FFFFFFFFFFFFF;
    const int biased = static_cast<int>(BitsOf(value) >> 52);
    const std::uint64_t significand = biased == 0 ? fraction : fraction | 0x0010000000000000;
    const int exponent = (biased == 0 ? 1 : biased) - 1075 - 1;
    // (2 * significand + 1) * 2 ^ exponent, as an integer times 10 ^ scale
    BigInteger middle(2 * significand + 1);
    middle.MultiplyByPower(2, exponent).MultiplyByPower(5, -exponent);
    const std::string digits = middle.ToDecimal();
    const std::string scale = std::string("e").append(std::to_string(std::min(exponent, 0)));
    const double even = fraction % 2 == 0 ? value : next;
    ExpectReadAs(digits + scale, even);
    ExpectReadAs(digits + ".000" + scale, even);
    ExpectReadAs(digits + ".0000000000000000000000000001" + scale, next);
    ExpectReadAs(digits + "." + std::string(900, '0') + "1" + scale, next);
    const std::string below = WithoutOne(digits);
    ExpectReadAs(below + ".9999999999999999999999999999" + scale, value);
    ExpectReadAs(below + "." + std::string(900, '9') + scale, value);
  }
}

TEST(TextToNumberTest, SeventeenDigitsComeBackToTheBit) {
  std::mt19937_64 random(26);
  std::vector<double> values = Landmarks();
  for (int i = 0; i < 50000; ++i) values.push_back(AnyDouble(random));
  for (const double value : values) {
    for (const auto format : {std::chars_format::scientific, std::chars_format::general}) {
      char text[40];
      const auto end = std::to_chars(text, text + sizeof text, value, format, 17).ptr;
      ExpectReadAs(std::string_view(text, static_cast<std::size_t>(end - text)), value);
    }
  }
}

TEST(TextToNumberTest, WhatIsWrittenIsReadBackAsTheSameText) {
  std::mt19937_64 random(27);
  for (int i = 0; i < 100000; ++i) {
    const auto digits = static_cast<double>(random() % 1'000'000'000'000'000);
    const Text written = NumberToText(digits * std::pow(10.0, static_cast<double>(random() % 60) - 40), u',');
    const auto read = TextToNumber(written, u',');
    ASSERT_TRUE(read.has_value());
    ASSERT_EQ(NumberToText(*read, u','), written);
  }
}

TEST(ParseNumberTest, EndsBehindTheLongestNumber) {
  const struct {
    const char* text;
    std::size_t length;
    double value;
  } kRows[] = {
      {"", 0, 0.0},
      {"x", 0, 0.0},
      {" 1", 0, 0.0},
      {"-", 0, 0.0},
      {"+.", 0, 0.0},
      {"-.e5", 0, 0.0},
      {"1", 1, 1.0},
      {"1 ", 1, 1.0},
      {"1\t2\t3\t4\t5\t6\t7\t8\t9\t0", 1, 1.0},
      {"12.5\t13.5\t14.5\t15.5", 4, 12.5},
      {"1.", 2, 1.0},
      {"1.2.3", 3, 1.2},
      {".5.", 2, 0.5},
      {"1..5", 2, 1.0},
      {"1e", 1, 1.0},
      {"1e+", 1, 1.0},
      {"1e+x", 1, 1.0},
      {"1.5e5e5", 5, 1.5e5},
      {"1.5E-3.5", 6, 1.5e-3},
      {"3.5kg", 3, 3.5},
      {"12.30:15", 5, 12.3},
      {"1234567890123456.5x", 18, 1234567890123456.5},
      {"123456789012345.6.7", 17, 123456789012345.6},
      {"1.23456789012345,6", 16, 1.23456789012345},
      {"1.2345678901234567E-05\t1", 22, 1.2345678901234567e-05},
      {"1e999 ", 5, kInfinity},
      {"-1e999 ", 6, -kInfinity},
      {"1e-999 ", 6, 0.0},
  };
  for (const auto& row : kRows) {
    const auto units = Tight<char16_t>(row.text);
    const auto wide = ParseNumber(units.data(), units.data() + units.size(), u'.');
    EXPECT_EQ(static_cast<std::size_t>(wide.end - units.data()), row.length) << row.text;
    EXPECT_EQ(BitsOf(wide.value), BitsOf(row.value)) << row.text;
    const auto bytes = Tight<char>(row.text);
    const auto narrow = ParseNumber(bytes.data(), bytes.data() + bytes.size(), '.');
    EXPECT_EQ(static_cast<std::size_t>(narrow.end - bytes.data()), row.length) << row.text;
    EXPECT_EQ(BitsOf(narrow.value), BitsOf(row.value)) << row.text;
  }
}

TEST(ParseNumberTest, AgreesWithTheReferenceOnNumbersOfEveryLengthAndShape) {
  std::mt19937_64 random(28);
  const auto digits = [&random](std::size_t count) {
    std::string text;
    for (; count > 0; --count) text += static_cast<char>('0' + random() % 10);
    return text;
  };
  for (std::size_t before = 0; before <= 24; ++before) {
    for (std::size_t behind = 0; behind <= 24; ++behind) {
      for (const char* const sign : {"", "-", "+"}) {
        for (const char* const mark : {"", "e-1", "E+12", "d300", "D-330", "x"}) {
          for (const char* const rest : {"", "\t", "\t1.5\t2.5\t3.5\t4.5\t5.5\t"}) {
            ExpectLikeReference(sign + digits(before) + "," + digits(behind) + mark + rest, ',');
            ExpectLikeReference(sign + digits(before) + mark + rest, ',');
          }
        }
      }
    }
  }
}

TEST(ParseNumberTest, AgreesWithTheReferenceOnRandomUnits) {
  constexpr std::string_view kUnits = "00112233445566778899..,,++--eEdD \t:x/\xB7\xFF";
  constexpr std::string_view kSeparators(".,+-eE5 :\xB7\xFF\0x", 13);
  std::mt19937_64 random(29);
  for (int i = 0; i < 300000; ++i) {
    std::string text;
    const std::size_t mostlyDigits = Below(random, 3);
    for (std::size_t length = Below(random, 40); length > 0; --length) {
      text += random() % 3 < mostlyDigits ? static_cast<char>('0' + random() % 10)
                                          : kUnits[Below(random, kUnits.size())];
    }
    ExpectLikeReference(text, kSeparators[Below(random, kSeparators.size())]);
  }
}

TEST(ParseNumberTest, DigitsInAnyNumberAreReadExactly) {
  std::mt19937_64 random(30);
  for (std::size_t length = 1; length <= 1200; length += 1 + length / 16) {
    for (int i = 0; i < 20; ++i) {
      std::string text;
      while (text.size() < length) text += static_cast<char>('0' + random() % 10);
      text.insert(Below(random, text.size() + 1), 1, '.');
      if (random() % 2 == 0) text.insert(0, Below(random, 400), '0');
      const int exponent = static_cast<int>(random() % 700) - 350 - static_cast<int>(length / 2);
      text.append("e").append(std::to_string(exponent));
      ExpectLikeReference(text);
    }
  }
}

TEST(ParseNumberTest, ASeparatorThatNoByteHoldsGivesTheSameNumbers) {
  std::mt19937_64 random(31);
  for (int i = 0; i < 50000; ++i) {
    char text[40];
    char* const end = std::to_chars(text, text + sizeof text, AnyDouble(random),
                                    std::chars_format::scientific, static_cast<int>(random() % 19))
                          .ptr;
    Text units(text, end);
    const char16_t* const begin = units.data();
    const auto expected = ParseNumber(begin, begin + units.size(), u'.');
    for (char16_t& unit : units) unit = unit == u'.' ? u'\x066B' : unit;
    const auto parsed = ParseNumber(begin, begin + units.size(), u'\x066B');
    ASSERT_EQ(parsed.end, expected.end);
    ASSERT_EQ(BitsOf(parsed.value), BitsOf(expected.value));
  }
}

TEST(LeadingNumberTest, TheLongestPrefixCounts) {
  const struct {
    const char* text;
    double value;
  } kRows[] = {
      {"", 0.0},          {"abc", 0.0},       {"-", 0.0},      {"3.5kg", 3.5},    {"12.30", 12.3},
      {"12.30.45", 12.3}, {"  7", 7.0},       {"\t7", 0.0},    {"1,5", 1.0},      {"1e", 1.0},
      {"1e3x", 1000.0},   {"-2.5D1z", -25.0}, {"- 1", 0.0},    {"   -.5 ", -0.5}, {"0x10", 0.0},
      {"inf", 0.0},       {".", 0.0},         {"1e-400", 0.0}, {"0e999", 0.0},    {"1 2", 1.0},
  };
  for (const auto& row : kRows) {
    const auto units = Tight<char16_t>(row.text);
    const auto bytes = Tight<char>(row.text);
    EXPECT_EQ(BitsOf(LeadingNumber(ViewOf(units))), BitsOf(row.value)) << row.text;
    EXPECT_EQ(BitsOf(LeadingNumber(ViewOf(bytes))), BitsOf(row.value)) << row.text;
  }
}

TEST(LeadingNumberTest, TooLargeIsAnOverflow) {
  for (const char* const text : {"1e309", " -1e309x", "1e999999999999999999999"}) {
    const std::string_view bytes = text;
    EXPECT_EQ(test::RaisedNumber([&] { LeadingNumber(bytes); }), kOverflow) << text;
    EXPECT_EQ(test::RaisedNumber([&] { LeadingNumber(FromUtf8(bytes)); }), kOverflow) << text;
  }
}

}  // namespace
}  // namespace vorquill21
