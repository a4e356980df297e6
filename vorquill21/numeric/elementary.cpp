#include "vorquill21/numeric/elementary.hpp"

#include <cmath>

namespace vorquill21 {

double Sine(double radians) {
  return std::sin(radians);
}

double Cosine(double radians) {
  return std::cos(radians);
}

SineCosine SineAndCosine(double radians) {
  return {Sine(radians), Cosine(radians)};
}

double ArcTangent(double value) {
  return std::atan(value);
}

double HalfPower(double base) {
  return std::sqrt(base + 0.0);
}

double IntegerPower(double base, std::uint32_t exponent) {
  return std::pow(base, exponent);
}

}  // namespace vorquill21
