#include "vorquill21/numeric/math_utils.hpp"
#include "vorquill21/numeric/trigonometry.hpp"

namespace vorquill21 {

void CTrigonometry::SelfTest_Main(FailedTests& aoFailedTests) const {
  struct Row {
    double value;
    double expected;
  };
  constexpr Row kRows[] = {
      {-0.5, -0.523598775598299}, {0.0, 0.0}, {0.5, 0.523598775598299}, {1.0, 1.5707963267949}};
  const CTrigonometry trigonometry(platform_);
  const CMathUtils utils(platform_);
  for (const Row& row : kRows) {
    if (!utils.NumbersAreEqual(trigonometry.ArcSin(row.value), row.expected, 13)) {
      aoFailedTests.emplace_back(u"ArcSin");
    }
  }
}

}  // namespace vorquill21
