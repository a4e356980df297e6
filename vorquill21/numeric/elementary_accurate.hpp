#pragma once

#include <cstdint>

#include "vorquill21/numeric/elementary.hpp"

/// The same functions by fixed-point arithmetic of some 190 bits: what the fast ones ask when their own bits
/// do not decide how to round. The results are the nearest doubles, unless an exact value comes nearer than
/// the stated relative distance to the middle between two doubles. Not part of the interface.
namespace vorquill21 {

/// For finite angles of at least 2^-28 in magnitude; the distance is 2^-125. Cost: about 1 us.
SineCosine AccurateSineAndCosine(double radians);

/// For magnitudes from 2^-28 to 2^53; `guess` is the magnitude of the result but for a relative error below
/// 2^-40, and at most the double nearest to pi/2. The distance is 2^-140. Cost: about 2 us.
double AccurateArcTangent(double value, double guess);

/// For finite bases above 0 and exponents above 0; the distance is exponent * 2^-188. Exact powers of up to
/// 192 bits are taken as they are, so that those in the middle of two doubles go to the even one. Cost: some
/// 100 ns for each binary digit of the exponent.
double AccuratePower(double base, std::uint32_t exponent);

}  // namespace vorquill21
