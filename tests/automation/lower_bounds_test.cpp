#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <set>

#include "tests/automation/members.hpp"

namespace vorquill21::test {
namespace {

constexpr HRESULT kRuntimeError = static_cast<HRESULT>(0x800A0000);

/// What a call came to: numbers, where indices are counted from the lower bound of the arrays.
struct Answer {
  HRESULT result = S_OK;
  std::vector<double> numbers;
};

struct Row {
  const char* member;
  std::set<LONG> lowerBounds;  // that it takes, among those that are tried
  HRESULT refusal;             // of the others
  std::function<Answer(LONG lower)> call;
};

const std::set<LONG> kTried = {-3, 0, 1, 5};
const std::set<LONG> kUpToOne = {-3, 0, 1};
const std::set<LONG> kFromZero = {0, 1, 5};
constexpr HRESULT kNoRefusal = S_OK;
constexpr HRESULT kOutOfRange = kRuntimeError + 9;
constexpr HRESULT kBelowZero = -2147220991;

using OfValues = HRESULT (STDMETHODCALLTYPE _CStatistics::*)(SAFEARRAY**, double*);
using OfValuesWithIndex = HRESULT (STDMETHODCALLTYPE _CStatistics::*)(SAFEARRAY**, LONG*, double*);

Row Statistic(const char* member, OfValues function) {
  return {member, kTried, kNoRefusal, [function](LONG lower) {
            Array values(lower, {3, 9, 4});
            double result = 0;
            const HRESULT called = (VORQUILL21_MAKE(CStatistics).Get()->*function)(&values, &result);
            return Answer{called, {result}};
          }};
}

Row Extreme(const char* member, OfValuesWithIndex function) {
  return {member, kTried, kNoRefusal, [function](LONG lower) {
            Array values(lower, {9, 3, 11, 4});
            LONG index = 0;
            double result = 0;
            const HRESULT called = (VORQUILL21_MAKE(CStatistics).Get()->*function)(&values, &index, &result);
            return Answer{called, {result, static_cast<double>(index - lower)}};
          }};
}

using Copy = HRESULT (STDMETHODCALLTYPE _CMathUtils::*)(SAFEARRAY**, VARIANT*);

SAFEARRAY* NewCube(LONG lower) {
  SAFEARRAYBOUND bounds[3] = {{1, lower}, {2, lower}, {2, lower}};
  SAFEARRAY* const cube = SafeArrayCreate(VT_R8, 3, bounds);
  std::fill_n(static_cast<double*>(cube->pvData), 4, 2.5);
  return cube;
}

/// A copy has the bounds of its source, whatever those of the target were.
Row CopyOf(const char* member, Copy function, std::function<SAFEARRAY*(LONG)> newSource) {
  return {member, kTried, kNoRefusal, [=](LONG lower) {
            Array target(lower + 1, {7});
            Value source = Value::Adopt(VT_R8, newSource(lower));
            Answer answer{(VORQUILL21_MAKE(CMathUtils).Get()->*function)(&target, &source),
                          DoublesOf(target.Get())};
            answer.numbers.push_back(static_cast<double>(LowerBoundOf(target.Get()) - lower));
            return answer;
          }};
}

Answer Locate(LONG lower) {
  Array nodes(lower, {1, 2, 4, 8});
  LONG index = 0;
  VARIANT_BOOL isInside = VARIANT_FALSE;
  const HRESULT called = VORQUILL21_MAKE(CMathUtils)->ArrayLocate(&nodes, 5, &index, &isInside);
  return {called, {static_cast<double>(index - lower), static_cast<double>(isInside)}};
}

/// The result is an array from 1, whatever the variable held.
Answer BuildMatrix(LONG lower) {
  Array matrix(lower, {7});
  Answer answer{VORQUILL21_MAKE(CGeometry)->BuildTransformationMatrix(30, 45, 60, &matrix),
                DoublesOf(matrix.Get())};
  answer.numbers.push_back(LowerBoundOf(matrix.Get()));
  return answer;
}

/// Rows and columns that count from 1; where the array begins before that, what stands there is 9.
SAFEARRAY* NewPadded(LONG lower, LONG rows, LONG columns, std::initializer_list<double> byRows) {
  const LONG before = std::max(1 - lower, 0L);
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(before + rows), lower},
                              {static_cast<ULONG>(before + columns), lower}};
  SAFEARRAY* const matrix = SafeArrayCreate(VT_R8, 2, bounds);
  std::fill_n(static_cast<double*>(matrix->pvData), (before + rows) * (before + columns), 9.0);
  auto next = byRows.begin();
  for (LONG i = 0; i < rows; ++i) {
    for (LONG j = 0; j < columns; ++j) {
      LONG indices[2] = {lower + before + i, lower + before + j};
      double element = *next++;
      SafeArrayPutElement(matrix, indices, &element);
    }
  }
  return matrix;
}

Answer Multiply(LONG lower) {
  Array a(NewPadded(lower, 2, 3, {1, 2, 3, 4, 5, 6}));
  Array b(NewPadded(lower, 3, 2, {1, 2, 3, 4, 5, 6}));
  Array product(lower, {7});
  const HRESULT called = VORQUILL21_MAKE(CGeometry)->MatrixMultiply(&a, &b, &product);
  return {called, DoublesOf(product.Get())};
}

Answer Transform(LONG lower) {
  Array matrix(NewPadded(lower, 3, 3, {0, 1, 0, 0, 0, 1, 1, 0, 0}));
  double x = 0;
  double y = 0;
  double z = 0;
  const HRESULT called = VORQUILL21_MAKE(CGeometry)->TransformPoint(1, 2, 3, &matrix, &x, &y, &z);
  return {called, {x, y, z}};
}

Answer InterpolateLinear(LONG lower) {
  Array x(lower, {1, 2, 3});
  Array y(lower, {2, 10, 30});
  double result = 0;
  const HRESULT called =
      VORQUILL21_MAKE(CInterpolate)->OneDLinearInterpolate(eInterpClip, &x, &y, 2.5, &result);
  return {called, {result}};
}

Answer InterpolateBetween(LONG lower) {
  Array x(lower, {0, 1, 2, 3});
  Array y(lower, {0, 10, 30, 60});
  double result = 0;
  const HRESULT called =
      VORQUILL21_MAKE(CInterpolate)
          ->OneDLinearInterpolateWithBounds(eInterpClip, &x, &y, 1.5, lower + 1, lower + 3, &result);
  return {called, {result}};
}

Answer FitCurve(LONG lower) {
  Array x(lower, {0, 1, 2, 3});
  Array y(lower, {1, 3, 5, 7});
  Array coefficients(lower, {7});
  double deviation = 0;
  Answer answer{VORQUILL21_MAKE(CInterpolate)->OneDPolynomialFit(&x, &y, 1, &coefficients, &deviation),
                DoublesOf(coefficients.Get())};
  answer.numbers.push_back(deviation);
  answer.numbers.push_back(LowerBoundOf(coefficients.Get()));
  return answer;
}

/// The coefficients count from 1; what stands before that is not read.
Answer EvaluateCurve(LONG lower) {
  Array coefficients(SafeArrayCreateVector(VT_R8, lower, static_cast<ULONG>(std::max(4 - lower, 3L))));
  auto* const elements = static_cast<double*>(coefficients->pvData);
  std::fill_n(elements, coefficients->rgsabound[0].cElements, 9.0);
  if (lower <= 1) std::copy_n(std::array{2.0, 5.0, 0.0}.data(), 3, elements + 1 - lower);
  double result = 0;
  const HRESULT called = VORQUILL21_MAKE(CInterpolate)->OneDPolynomialInterpolate(3, &coefficients, &result);
  return {called, {result}};
}

Answer FitSurface(LONG lower) {
  Array x(lower, {0, 1, 0, 2});
  Array y(lower, {0, 0, 1, 3});
  Array z(lower, {2, 5, 7, 23});
  Array coefficients(lower, {7});
  double deviation = 0;
  Answer answer{VORQUILL21_MAKE(CInterpolate)->TwoDPolynomialFit(&x, &y, &z, 1, &coefficients, &deviation),
                DoublesOf(coefficients.Get())};
  answer.numbers.push_back(deviation);
  answer.numbers.push_back(LowerBoundOf(coefficients.Get()));
  return answer;
}

Answer EvaluateSurface(LONG lower) {
  Array coefficients(NewMatrix(lower, 2, 2, {2, 3, 5, 0}));
  double x = 10;
  double y = 100;
  double result = 0;
  const HRESULT called =
      VORQUILL21_MAKE(CInterpolate)->TwoDPolynomialInterpolate(&x, &y, &coefficients, &result);
  return {called, {result}};
}

const std::vector<Row>& AllRows() {
  static const std::vector<Row> kRows{
      {"CMathUtils.ArrayLocate", kFromZero, kBelowZero, Locate},
      CopyOf("CMathUtils.CopyArray1D", &_CMathUtils::CopyArray1D,
             [](LONG lower) {
               return NewDoubles(lower, {1, 2});
             }),
      CopyOf("CMathUtils.CopyArray2D", &_CMathUtils::CopyArray2D,
             [](LONG lower) {
               return NewMatrix(lower, 2, 2, {1, 2, 3, 4});
             }),
      CopyOf("CMathUtils.CopyArray3D", &_CMathUtils::CopyArray3D, NewCube),
      Statistic("CStatistics.ArithmeticMean", &_CStatistics::ArithmeticMean),
      Extreme("CStatistics.Maximum", &_CStatistics::Maximum),
      Extreme("CStatistics.Minimum", &_CStatistics::Minimum),
      Statistic("CStatistics.StandardDeviation", &_CStatistics::StandardDeviation),
      Statistic("CStatistics.StandardDeviationPop", &_CStatistics::StandardDeviationPop),
      Statistic("CStatistics.Variance", &_CStatistics::Variance),
      Statistic("CStatistics.VariancePop", &_CStatistics::VariancePop),
      Statistic("CStatistics.RMS", &_CStatistics::RMS),
      {"CGeometry.BuildTransformationMatrix", kTried, kNoRefusal, BuildMatrix},
      {"CGeometry.MatrixMultiply", kUpToOne, kOutOfRange, Multiply},
      {"CGeometry.TransformPoint", kUpToOne, kOutOfRange, Transform},
      {"CInterpolate.OneDLinearInterpolate", kFromZero, kBelowZero, InterpolateLinear},
      {"CInterpolate.OneDLinearInterpolateWithBounds", kFromZero, kBelowZero, InterpolateBetween},
      {"CInterpolate.OneDPolynomialFit", kTried, kNoRefusal, FitCurve},
      {"CInterpolate.OneDPolynomialInterpolate", kUpToOne, kOutOfRange, EvaluateCurve},
      {"CInterpolate.TwoDPolynomialFit", kTried, kNoRefusal, FitSurface},
      {"CInterpolate.TwoDPolynomialInterpolate", {0}, kOutOfRange, EvaluateSurface},
  };
  return kRows;
}

TEST(LowerBoundsTest, EveryMemberThatTakesDoublesIsCalledWithSeveral) {
  std::vector<std::string> demanded;
  for (const Member& member : AllMembers(Component::Default())) {
    if (member.takesDoubles) demanded.push_back(member.name);
  }
  std::vector<std::string> called;
  for (const Row& row : AllRows()) called.emplace_back(row.member);
  EXPECT_EQ(demanded, called);
}

TEST(LowerBoundsTest, EveryMemberGivesTheSameForAllThatItTakesAndRefusesTheOthers) {
  for (const Row& row : AllRows()) {
    const Answer expected = row.call(*row.lowerBounds.begin());
    for (const LONG lower : kTried) {
      SCOPED_TRACE(std::string(row.member) + " from " + std::to_string(lower));
      const Answer answer = row.call(lower);
      if (row.lowerBounds.contains(lower)) {
        EXPECT_EQ(S_OK, answer.result) << std::hex << answer.result;
        EXPECT_EQ(expected.numbers, answer.numbers);
      } else {
        EXPECT_EQ(row.refusal, answer.result) << std::hex << answer.result;
      }
    }
  }
}

}  // namespace
}  // namespace vorquill21::test
