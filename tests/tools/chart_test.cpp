#include "drawing/chart.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace vorquill21::tool {
namespace {

std::vector<std::string> TickTexts(const Scale& scale) {
  std::vector<std::string> texts;
  for (const double tick : scale.Ticks()) texts.push_back(scale.TickText(tick));
  return texts;
}

TEST(ScaleTest, TicksStandAtRoundNumbersWithinTheRange) {
  struct {
    double least;
    double greatest;
    int wantedTicks;
    bool isCount;
    std::vector<std::string> texts;
    const char* label;
  } const cases[] = {
      {0, 10, 5, false, {"0", "2", "4", "6", "8", "10"}, "x"},
      {0, 10, 4, false, {"0.0", "2.5", "5.0", "7.5", "10.0"}, "x"},
      {0, 10, 4, true, {"0", "2", "4", "6", "8", "10"}, "x"},
      {0, 2, 8, true, {"0", "1", "2"}, "x"},
      {-1, 1, 4, false, {"-1.0", "-0.5", "0.0", "0.5", "1.0"}, "x"},
      {0, 3e6, 3, false, {"0", "1", "2", "3"}, "x (×10⁶)"},
      {0, 4e-5, 4, false, {"0", "10", "20", "30", "40"}, "x (×10⁻⁶)"},
  };
  for (const auto& c : cases) {
    const Scale scale(c.least, c.greatest, c.wantedTicks, 0, c.isCount);
    EXPECT_EQ(TickTexts(scale), c.texts) << c.least << " to " << c.greatest;
    EXPECT_EQ(scale.Label("x"), c.label);
  }
}

TEST(ScaleTest, AnAxisHasALengthWhateverTheValues) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::pair<double, double> ranges[] = {
      {0, 0}, {5, 5}, {-3, -3}, {kInfinity, -kInfinity}, {1e-300, 2e-300}, {-1e300, 1e300}};
  for (const auto& [least, greatest] : ranges) {
    const Scale scale(least, greatest, 5, 0.03);
    EXPECT_LT(scale.From(), scale.To()) << least;
    EXPECT_GE(scale.Ticks().size(), 2U) << least;
    EXPECT_LE(scale.Ticks().size(), 20U) << least;
  }
}

TEST(FieldEdgesTest, FieldsMeetHalfWayBetweenTheirCentres) {
  EXPECT_EQ(FieldEdges({1}), (std::vector<double>{0.5, 1.5}));
  EXPECT_EQ(FieldEdges({1, 2, 4}), (std::vector<double>{0.5, 1.5, 3, 5}));
  EXPECT_EQ(FieldEdges({3, 1}), (std::vector<double>{4, 2, 0}));
}

}  // namespace
}  // namespace vorquill21::tool
