#include "vorquill21/import/plain_number.hpp"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

/// The number that a field spells, with `rest` behind it and nothing else that could be read.
std::optional<double> Plain(const std::string& field, const std::string& rest = "\t1234567") {
  const std::vector<char> text = [&] {
    const std::string whole = field + rest;
    return std::vector<char>(whole.begin(), whole.end());
  }();
  double value;
  if (!ReadPlainNumber({text.data(), field.size()}, text.data() + text.size(), value)) return std::nullopt;
  return value;
}

std::optional<std::uint64_t> Bits(std::optional<double> value) {
  return value ? std::optional(std::bit_cast<std::uint64_t>(*value)) : std::nullopt;
}

TEST(ReadPlainNumberTest, ReadsTheUsualForms) {
  for (const char* field : {"0",
                            "-0",
                            "7",
                            "-7",
                            "12345678",
                            "123456789",
                            "1234567812345678",
                            "1.",
                            ".5",
                            "-.5",
                            "0.5",
                            "1.234567",
                            "12345678.9",
                            "9999999999999999",
                            "1234567.89",
                            "12345678.",
                            "1.5E+03",
                            "-1.5e-03",
                            "1E+00",
                            "0E+99",
                            "-0.0E-12",
                            "1234.56789",
                            "0.000000001",
                            "123456.78",
                            "9007199254740993",
                            "5.E-07",
                            ".5E-07",
                            "1.2345678901234E-05",
                            "00000000",
                            "0000000000000001",
                            "123456789012345.",
                            "0.12345678901234",
                            "-9999999999999999"}) {
    EXPECT_EQ(Bits(Plain(field)), Bits(std::strtod(field, nullptr))) << field;
  }
}

TEST(ReadPlainNumberTest, RefusesEverythingElse) {
  for (const char* field : {"",
                            "-",
                            ".",
                            "-.",
                            "+1",
                            "--1",
                            "1-",
                            "1.2.3",
                            "..",
                            "12:30",
                            "1,5",
                            " 1",
                            "1 ",
                            "x",
                            "3.5kg",
                            "1E5",
                            "1E+5",
                            "1E+005",
                            "1D+05",
                            "E+05",
                            ".E+05",
                            "-E+05",
                            "1E+0x",
                            "1E+x0",
                            "1E*05",
                            "1.2.E+05",
                            "1e+0:",
                            "1.5\xB0",
                            "\xB0\x38",
                            "\x8A\x39",
                            "/",
                            ":",
                            "1\xFF",
                            "1/2",
                            "12345678x",
                            "x12345678",
                            "1.2345678.",
                            "12345.678x",
                            "12345678901234567",
                            "123456789012.345678",
                            "1.23456789012345678E+05"}) {
    EXPECT_EQ(Plain(field), std::nullopt) << field;
  }
}

TEST(ReadPlainNumberTest, ReadsNothingBehindTheText) {
  EXPECT_EQ(Plain("1.5", "\t1234"), 1.5);
  EXPECT_EQ(Plain("1.5", "\t123"), std::nullopt);
  EXPECT_EQ(Plain("-1.5", "\t1234"), -1.5);
  EXPECT_EQ(Plain("-1.5", "\t123"), std::nullopt);
  EXPECT_EQ(Plain("12345678", ""), 12345678.0);
  EXPECT_EQ(Plain("1.2345678E-05", ""), 1.2345678e-05);
}

class Fields {
 public:
  /// A number of one of the forms, sometimes with a slip.
  std::string Next() {
    std::string field = Number(3) == 0 ? "-" : "";
    const std::size_t length = 1 + Number(18);
    const std::size_t point = Number(2) == 0 ? Number(length) : length;
    for (std::size_t i = 0; i < length; ++i) {
      field += i == point ? '.' : static_cast<char>('0' + Number(Number(2) == 0 ? 2 : 10));
    }
    if (Number(4) == 0) {
      field += std::string(1, "EeDd"[Number(Number(4) == 0 ? 4 : 2)]) + (Number(2) == 0 ? "+" : "-");
      for (std::size_t digits = Number(8) == 0 ? Number(4) : 2; digits > 0; --digits) {
        field += static_cast<char>('0' + Number(10));
      }
    }
    if (Number(8) == 0) field[Number(field.size())] = static_cast<char>(Number(256));
    return field;
  }

  std::size_t Number(std::size_t count) { return random_() % count; }

 private:
  std::mt19937 random_{20261122};
};

TEST(ReadPlainNumberTest, WhatItReadsIsTheNumberThatTheWholeFieldSpells) {
  Fields fields;
  int read = 0;
  for (int run = 0; run < 300000; ++run) {
    const std::string field = fields.Next();
    const std::optional<double> value = Plain(field, std::string(fields.Number(10), 'x'));
    if (!value) continue;
    ++read;
    const auto [expected, end] = ParseNumber(field.data(), field.data() + field.size(), '.');
    ASSERT_EQ(end, field.data() + field.size()) << field;
    ASSERT_EQ(Bits(value), Bits(expected)) << field;
    ASSERT_EQ(Bits(value), Bits(std::strtod(field.c_str(), nullptr))) << field;
  }
  EXPECT_GT(read, 100000);
}

TEST(ReadPlainNumberTest, NearlyAllOfTheUsualFormsAreRead) {
  std::mt19937_64 random(3);
  int refused = 0;
  constexpr int kRuns = 100000;
  for (int run = 0; run < kRuns; ++run) {
    const double value = static_cast<double>(random() % 1'000'000'000) * 1e-7;
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), run % 2 == 0 ? "%.9g" : "%.7E", value);
    if (Plain(text.data()) == std::nullopt) ++refused;
  }
  EXPECT_LT(refused, kRuns / 100);
}

}  // namespace
}  // namespace vorquill21
