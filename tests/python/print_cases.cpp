// Prints, for the tests of the Python module, what members return in C++: a line for each call with the
// class, the member, the arguments and the results, all as JSON in which doubles are hexadecimal texts.

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "vorquill21/vorquill21.hpp"

namespace {

using namespace vorquill21;

std::string Json(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "\"%016llx\"",
                static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(value)));
  return text;
}

template <typename Numbers>
std::string JsonList(const Numbers& numbers) {
  std::string text = "[";
  for (const double number : numbers) text.append(text.size() > 1 ? "," : "").append(Json(number));
  return text.append("]");
}

std::string Json(const std::vector<double>& numbers) {
  return JsonList(numbers);
}
std::string Json(const BoundedArray<double>& array) {
  return JsonList(array.Elements());
}
std::string Json(std::int32_t value) {
  return std::to_string(value);
}
std::string Json(bool value) {
  return value ? "true" : "false";
}

template <typename... Values>
std::string List(const Values&... values) {
  std::string text = "[";
  ((text.append(text.size() > 1 ? "," : "").append(Json(values))), ...);
  return text.append("]");
}

void Print(const char* className, const char* member, const std::string& arguments,
           const std::string& results) {
  std::printf("[\"%s\",\"%s\",%s,%s]\n", className, member, arguments.c_str(), results.c_str());
}

class Numbers {
 public:
  double Next() { return distribution_(engine_); }
  std::vector<double> Several(std::size_t count) {
    std::vector<double> numbers(count);
    for (double& number : numbers) number = Next();
    return numbers;
  }
  /// Strictly ascending.
  std::vector<double> Ascending(std::size_t count) {
    std::vector<double> numbers(count);
    double last = Next();
    for (double& number : numbers) number = last += 0.01 + std::abs(Next());
    return numbers;
  }

 private:
  std::mt19937_64 engine_{20211107};
  std::uniform_real_distribution<double> distribution_{-10, 10};
};

void PrintTrigonometry(Numbers& numbers) {
  const CTrigonometry trigonometry;
  const double x = numbers.Next();
  const double y = numbers.Next();
  double first = 0;
  double second = 0;
  Print("CTrigonometry", "ArcCos", List(x / 10), List(trigonometry.ArcCos(x / 10)));
  Print("CTrigonometry", "ArcSin", List(x / 10), List(trigonometry.ArcSin(x / 10)));
  Print("CTrigonometry", "ArcTan2", List(x, y), List(trigonometry.ArcTan2(x, y)));
  Print("CTrigonometry", "Degrees", List(x), List(trigonometry.Degrees(x)));
  Print("CTrigonometry", "Radians", List(x), List(trigonometry.Radians(x)));
  trigonometry.PolarToXY(x, y, first, second);
  Print("CTrigonometry", "PolarToXY", List(x, y), List(first, second));
  trigonometry.XYToPolar(x, y, first, second);
  Print("CTrigonometry", "XYToPolar", List(x, y), List(first, second));
}

void PrintStatistics(Numbers& numbers) {
  const CStatistics statistics;
  const std::vector<double> values = numbers.Several(137);
  std::int32_t index = 0;
  const double maximum = statistics.Maximum(values, &index);
  Print("CStatistics", "Maximum", List(values), List(maximum, index));
  const double minimum = statistics.Minimum(values, &index);
  Print("CStatistics", "Minimum", List(values), List(minimum, index));
  Print("CStatistics", "ArithmeticMean", List(values), List(statistics.ArithmeticMean(values)));
  Print("CStatistics", "StandardDeviation", List(values), List(statistics.StandardDeviation(values)));
  Print("CStatistics", "StandardDeviationPop", List(values), List(statistics.StandardDeviationPop(values)));
  Print("CStatistics", "Variance", List(values), List(statistics.Variance(values)));
  Print("CStatistics", "VariancePop", List(values), List(statistics.VariancePop(values)));
  Print("CStatistics", "RMS", List(values), List(statistics.RMS(values)));
}

void PrintGeometry(Numbers& numbers) {
  const CGeometry geometry;
  const std::vector<double> v = numbers.Several(12);
  double x = 0;
  double y = 0;
  double z = 0;
  BoundedArray<double> matrix;
  BoundedArray<double> product;
  Print("CGeometry", "AngleBetweenLines",
        List(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9], v[10], v[11]),
        List(geometry.AngleBetweenLines(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9], v[10],
                                        v[11])));
  Print("CGeometry", "AngleBetweenVectors", List(v[0], v[1], v[2], v[3], v[4], v[5]),
        List(geometry.AngleBetweenVectors(v[0], v[1], v[2], v[3], v[4], v[5])));
  Print("CGeometry", "LineDistanceToPoint", List(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8]),
        List(geometry.LineDistanceToPoint(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8])));
  geometry.IntersectNormalPointToLine(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], x, y, z);
  Print("CGeometry", "IntersectNormalPointToLine", List(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8]),
        List(x, y, z));
  geometry.BuildTransformationMatrix(v[0], v[1], v[2], matrix);
  Print("CGeometry", "BuildTransformationMatrix", List(v[0], v[1], v[2]), List(matrix));
  geometry.UnitVector3d(v[0], v[1], v[2], x, y, z);
  Print("CGeometry", "UnitVector3d", List(v[0], v[1], v[2]), List(x, y, z));
  geometry.VectorAdd3d(v[0], v[1], v[2], v[3], v[4], v[5], x, y, z);
  Print("CGeometry", "VectorAdd3d", List(v[0], v[1], v[2], v[3], v[4], v[5]), List(x, y, z));
  geometry.VectorSubtract3d(v[0], v[1], v[2], v[3], v[4], v[5], x, y, z);
  Print("CGeometry", "VectorSubtract3d", List(v[0], v[1], v[2], v[3], v[4], v[5]), List(x, y, z));
  geometry.VectorCrossProduct3d(v[0], v[1], v[2], v[3], v[4], v[5], x, y, z);
  Print("CGeometry", "VectorCrossProduct3d", List(v[0], v[1], v[2], v[3], v[4], v[5]), List(x, y, z));
  geometry.VectorDotProduct3d(v[0], v[1], v[2], v[3], v[4], v[5], x);
  Print("CGeometry", "VectorDotProduct3d", List(v[0], v[1], v[2], v[3], v[4], v[5]), List(x));
  Print("CGeometry", "VectorMagnitude3d", List(v[0], v[1], v[2]),
        List(geometry.VectorMagnitude3d(v[0], v[1], v[2])));
}

void PrintTables(Numbers& numbers) {
  const CMathUtils utils;
  const CInterpolate interpolate;
  const std::vector<double> x = numbers.Ascending(23);
  const std::vector<double> y = numbers.Several(23);
  const double sought = x.front() + (x.back() - x.front()) * (numbers.Next() + 12) / 24;
  std::int32_t index = 0;
  const bool isInside = utils.ArrayLocate(x, sought, index);
  Print("CMathUtils", "ArrayLocate", List(x, sought), List(isInside, index));
  for (const EOutOfBoundsBehaviour behaviour : {eInterpClip, eInterpExtrapolate}) {
    const auto number = static_cast<std::int32_t>(behaviour);
    Print("CInterpolate", "OneDLinearInterpolate", List(number, x, y, sought),
          List(interpolate.OneDLinearInterpolate(behaviour, x, y, sought)));
    Print("CInterpolate", "OneDLinearInterpolateWithBounds", List(number, x, y, sought, 3, 17),
          List(interpolate.OneDLinearInterpolateWithBounds(behaviour, x, y, sought, 3, 17)));
  }
  Print("CInterpolate", "OneDLinearInterpolateFromPoints", List(x[0], x[1], y[0], y[1], sought),
        List(interpolate.OneDLinearInterpolateFromPoints(x[0], x[1], y[0], y[1], sought)));
}

void PrintFits(Numbers& numbers) {
  const CInterpolate interpolate;
  const std::vector<double> x = numbers.Several(41);
  const std::vector<double> y = numbers.Several(41);
  const std::vector<double> z = numbers.Several(41);
  BoundedArray<double> coefficients;
  double deviation = 0;
  for (std::int32_t order = 0; order <= 5; ++order) {
    interpolate.OneDPolynomialFit(x, y, order, coefficients, &deviation);
    Print("CInterpolate", "OneDPolynomialFit", List(x, y, order), List(coefficients, deviation));
    interpolate.TwoDPolynomialFit(x, y, z, order, coefficients, &deviation);
    Print("CInterpolate", "TwoDPolynomialFit", List(x, y, z, order), List(coefficients, deviation));
  }
  Print("CInterpolate", "OneDPolynomialInterpolate", List(x[0], y),
        List(interpolate.OneDPolynomialInterpolate(x[0], y)));
}

}  // namespace

int main() {
  Numbers numbers;
  for (int round = 0; round < 40; ++round) {
    PrintTrigonometry(numbers);
    PrintStatistics(numbers);
    PrintGeometry(numbers);
    PrintTables(numbers);
    PrintFits(numbers);
  }
  return 0;
}
