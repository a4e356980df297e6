#include "vorquill21/numeric/math_utils.hpp"
#include "vorquill21/numeric/statistics.hpp"

namespace vorquill21 {

void CStatistics::SelfTest_Main(FailedTests& aoFailedTests) const {
  const std::vector<double> zero{0.0};
  const std::vector<double> several{0.9, 1.3, 1.4, 1.2, 0.8, 1.0};
  const std::vector<double> one{1.0};
  struct Row {
    TextView name;
    double actual;
    double expected;
  };
  const Row rows[] = {
      {u"Mean", ArithmeticMean(zero), 0.0},
      {u"Mean", ArithmeticMean(several), 1.1},
      {u"Mean", ArithmeticMean(one), 1.0},
      {u"Variance", Variance(several), 0.056},
      {u"Variance", Variance(one), 0.0},
      {u"StdDev", StandardDeviation(several), 0.237},
      {u"StdDev", StandardDeviation(one), 0.0},
      {u"Variance", VariancePop(several), 0.047},
      {u"StdDev", StandardDeviationPop(several), 0.216},
      {u"StdDev", StandardDeviationPop(one), 0.0},
      {u"RMS", RMS(several), 1.121},
      {u"Min", Minimum(several), 0.8},
      {u"Min", Minimum(one), 1.0},
      {u"Max", Maximum(several), 1.4},
      {u"Max", Maximum(one), 1.0},
  };
  const CMathUtils utils(platform_);
  for (const Row& row : rows) {
    if (!utils.NumbersAreEqual(row.actual, row.expected, 3)) aoFailedTests.emplace_back(row.name);
  }
}

}  // namespace vorquill21
