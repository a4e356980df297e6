#include "vorquill21/interpolate/points.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace vorquill21 {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t kMostNumbers = 70;  // several times as many as are looked at side by side

std::vector<double> RandomNumbers(std::size_t count, std::mt19937& random) {
  std::vector<double> numbers(count);
  for (double& number : numbers) number = static_cast<double>(random() % 2001) - 1000.0;
  return numbers;
}

TEST(ExtentTest, TheLeastAndTheGreatestAreFoundWhereverTheyStand) {
  std::mt19937 random(1);
  for (std::size_t count = 1; count <= kMostNumbers; ++count) {
    for (std::size_t place = 0; place < count; ++place) {
      std::vector<double> numbers = RandomNumbers(count, random);
      numbers[place] = place % 2 == 0 ? 5000.0 : -5000.0;
      const Extent extent = ExtentOf(numbers);
      EXPECT_EQ(extent.least, *std::ranges::min_element(numbers));
      EXPECT_EQ(extent.greatest, *std::ranges::max_element(numbers));
      EXPECT_TRUE(extent.isFinite);
    }
  }
}

TEST(ExtentTest, OneNumberThatIsNotFiniteIsNoticedWhereverItStands) {
  std::mt19937 random(2);
  for (const double strange : {kInfinity, -kInfinity, kNaN}) {
    for (std::size_t count = 1; count <= kMostNumbers; ++count) {
      for (std::size_t place = 0; place < count; ++place) {
        std::vector<double> numbers = RandomNumbers(count, random);
        numbers[place] = strange;
        EXPECT_FALSE(ExtentOf(numbers).isFinite) << strange << " at " << place << " of " << count;
      }
    }
  }
}

TEST(ScalingTest, TheLargestMagnitudeComesBetweenAHalfAndOneWhateverItsSize) {
  for (const double sign : {1.0, -1.0}) {
    for (int exponent = -1073; exponent <= 1024; ++exponent) {
      const double largest = sign * std::ldexp(0.5, exponent);
      const Scaling scale(Extent{std::min(largest, 0.0), std::max(largest, 0.0), true});
      EXPECT_EQ(scale.Exponent(), exponent);
      EXPECT_EQ(scale(largest), sign * 0.5);
      EXPECT_EQ(scale(largest / 4.0), std::abs(largest) < 0x1p-1072 ? 0.0 : sign * 0.125) << exponent;
    }
  }
}

TEST(ScalingTest, WhatIsNothingBesideTheLargestIsZero) {
  const Scaling scale(Extent{0.0, 1.0, true});
  EXPECT_EQ(scale(0x1p-298), 0x1p-299);
  EXPECT_EQ(scale(0x1p-299), 0x1p-300);
  EXPECT_EQ(scale(0x1p-300), 0.0);
  EXPECT_EQ(scale(-0x1p-300), 0.0);
  const Scaling zeros(Extent{0.0, 0.0, true});
  EXPECT_EQ(zeros.Exponent(), 0);
}

}  // namespace
}  // namespace vorquill21
