#pragma once

#include <cstdint>

/// Elementary functions that give the same bits on every system, with every compiler and at every level of
/// optimisation: the double that is nearest to the exact value of the function at the given double. They take
/// nothing from the system's mathematical library, whose results differ from one system to the next. Not part
/// of the interface.
///
/// A NaN gives a NaN; nothing is raised, callers look at results. The rounding mode of the processor must be
/// to nearest.
namespace vorquill21 {

struct SineCosine {
  double sine;
  double cosine;
};

/// Sine and cosine of any finite angle, however large; for an infinite one NaN. The sine of a zero is that
/// zero. Cost: about 10 ns each below 51,400; beyond, and for one angle in some thousands, about 1 us.
double Sine(double radians);
double Cosine(double radians);

/// Both at once, with the same bits, in less time than one after the other.
SineCosine SineAndCosine(double radians);

/// The angle in [-pi/2, pi/2] whose tangent is `value`; for infinities the doubles nearest to the ends. That
/// of a zero is that zero. Cost: about 10 ns; for one value in some thousands about 3 us.
double ArcTangent(double value);

/// base^0.5: as the nearest double to the power is the nearest one to the square root, this is what the
/// processor's square root gives. A zero of either sign gives +0, a negative base NaN.
double HalfPower(double base);

/// base^2, which a product rounds but once.
inline double Square(double base) {
  return base * base;
}

/// base^exponent, rounded once: infinite beyond the largest double, right below the smallest normal one; a
/// zero or an infinity keeps the sign that the exact power has. Every base to the power of 0, a NaN too,
/// is 1. Cost: logarithmic in the exponent, some nanoseconds for each of its binary digits.
double IntegerPower(double base, std::uint32_t exponent);

}  // namespace vorquill21
