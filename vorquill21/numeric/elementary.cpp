#include "vorquill21/numeric/elementary.hpp"

#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>

#include "vorquill21/numeric/elementary_accurate.hpp"
#include "vorquill21/numeric/elementary_tables.hpp"
#include "vorquill21/numeric/error_free.hpp"

// Each function first computes its result as a double and a correction, to some 66 bits. When the double
// stays the nearest one whatever the error within its bound, it is the result; otherwise the accurate
// function is asked. Products that must be exact have factors of few bits: the heads of the tables, and
// arguments cut at multiples of 2^-26.

namespace vorquill21 {
namespace {

constexpr double kToInteger = 0x1.8p52;
constexpr double kToCut = 0x1.8p26;

/// Relative bounds of the error of the fast results.
constexpr double kTrigonometricError = 0x1p-65;
constexpr double kArcError = 0x1p-65;

/// value, rounded to a multiple of 2^-26; for |value| below 2^24.
VORQUILL21_INLINED double Cut(double value) {
  return (value + kToCut) - kToCut;
}

/// Whether result.value is the nearest double to every number within `bound` of result.value + result.error.
VORQUILL21_INLINED bool IsDecided(const ErrorFree& result, double bound) {
  return result.value + (result.error - bound) == result.value + (result.error + bound);
}

VORQUILL21_INLINED double WithSign(double value, std::uint64_t signBit) {
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) ^ signBit);
}

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;

VORQUILL21_INLINED std::uint64_t SignOf(double value) {
  return std::bit_cast<std::uint64_t>(value) & kSignBit;
}

// --- Sine and cosine -------------------------------------------------------------------------------------

/// Up to here the number of steps, below 2^23, times a part of a step is exact.
constexpr double kLargestReduced = 102900.0;

/// An angle of at most about half a step, head + tail but for an error of 2^-79, and what follows from it.
struct SmallAngle {
  double head;
  double tail;
  double sineExcess;    // sine - angle
  double cosineExcess;  // cosine - 1
};

/// magnitude = steps * pi/256 + a small angle.
struct ReducedAngle {
  double steps;
  double head;
  double rest;  // exact but for the third part of the steps
  std::uint64_t index;
};

VORQUILL21_INLINED ReducedAngle Reduced(double magnitude) {
  const double shifted = magnitude * kStepsPerRadian + kToInteger;
  const double steps = shifted - kToInteger;
  const double difference = magnitude - steps * kStepPart1;
  const double second = steps * kStepPart2;
  const double head = Cut(difference - second);
  return {steps, head, (difference - head) - second, std::bit_cast<std::uint64_t>(shifted)};
}

VORQUILL21_INLINED SmallAngle SmallAngleOf(double head, double tail) {
  const double angle = head + tail;
  const double square = angle * angle;
  const double sineExcess =
      angle *
      (square * (-0x1.5555555555555p-3 + square * (0x1.1111111111111p-7 - square * 0x1.a01a01a01a01ap-13)));
  const double cosineExcess =
      square * (-0.5 + square * (0x1.5555555555555p-5 - square * 0x1.6c16c16c16c17p-10));
  return {head, tail, sineExcess, cosineExcess};
}

/// near + cosine's share + across * sine: the sine of node + angle for near = sine, across = cosine of the
/// node.
VORQUILL21_INLINED ErrorFree Rotated(double nearHead, double nearTail, double acrossHead, double acrossTail,
                                     const SmallAngle& angle) {
  const double rest = (nearTail + (nearHead + nearTail) * angle.cosineExcess + acrossTail * angle.head) +
                      (acrossHead + acrossTail) * (angle.tail + angle.sineExcess);
  return FastTwoSum(nearHead + acrossHead * angle.head, rest);
}

VORQUILL21_INLINED ErrorFree SineAt(const TurnNode& node, const SmallAngle& angle) {
  return Rotated(node.sineHead, node.sineTail, node.cosineHead, node.cosineTail, angle);
}

VORQUILL21_INLINED ErrorFree CosineAt(const TurnNode& node, const SmallAngle& angle) {
  return Rotated(node.cosineHead, node.cosineTail, -node.sineHead, -node.sineTail, angle);
}

/// The sine of the small angle alone, with a bound of its error: it may be as small as 2^-60, so that more of
/// the steps' parts are needed.
struct Bounded {
  ErrorFree result;
  double bound;
};

Bounded SmallSine(const ReducedAngle& reduced) {
  const ErrorFree rest = TwoSum(reduced.rest, -(reduced.steps * kStepPart3));
  const ErrorFree angle = FastTwoSum(reduced.head, rest.value);
  const double tail = angle.error + (rest.error - reduced.steps * kStepPart4);
  const double excess = SmallAngleOf(angle.value, tail).sineExcess;
  const ErrorFree result = FastTwoSum(angle.value, tail + excess);
  return {result, std::abs(result.value) * kTrigonometricError + reduced.steps * 0x1p-150};
}

VORQUILL21_INLINED Bounded WithBound(const ErrorFree& result) {
  return {result, std::abs(result.value) * kTrigonometricError};
}

VORQUILL21_INLINED const TurnNode& NodeOf(const ReducedAngle& reduced) {
  return kTurnNodes[reduced.index % kStepsPerHalfTurn];
}

VORQUILL21_INLINED SmallAngle AngleOf(const ReducedAngle& reduced) {
  return SmallAngleOf(reduced.head, reduced.rest - reduced.steps * kStepPart3);
}

/// The sign that whole half turns give.
VORQUILL21_INLINED std::uint64_t TurnSign(const ReducedAngle& reduced) {
  return (reduced.index & kStepsPerHalfTurn) << (63 - std::countr_zero(unsigned{kStepsPerHalfTurn}));
}

VORQUILL21_INLINED Bounded SineOf(const ReducedAngle& reduced) {
  if (reduced.index % kStepsPerHalfTurn == 0) [[unlikely]]
    return SmallSine(reduced);
  return WithBound(SineAt(NodeOf(reduced), AngleOf(reduced)));
}

VORQUILL21_INLINED Bounded CosineOf(const ReducedAngle& reduced) {
  if (reduced.index % kStepsPerHalfTurn == kStepsPerHalfTurn / 2) [[unlikely]] {
    const Bounded sine = SmallSine(reduced);
    return {{-sine.result.value, -sine.result.error}, sine.bound};
  }
  return WithBound(CosineAt(NodeOf(reduced), AngleOf(reduced)));
}

/// Those that are too large for the fast functions, and those that have no sine.
[[gnu::noinline]] SineCosine OfLargeAngle(double radians) {
  if (!std::isfinite(radians)) return {radians - radians, radians - radians};
  return AccurateSineAndCosine(radians);
}

}  // namespace

double Sine(double radians) {
  const double magnitude = std::abs(radians);
  if (!(magnitude < kLargestReduced)) return OfLargeAngle(radians).sine;
  const ReducedAngle reduced = Reduced(magnitude);
  const Bounded sine = SineOf(reduced);
  if (!IsDecided(sine.result, sine.bound)) return AccurateSineAndCosine(radians).sine;
  return WithSign(sine.result.value, SignOf(radians) ^ TurnSign(reduced));
}

double Cosine(double radians) {
  const double magnitude = std::abs(radians);
  if (!(magnitude < kLargestReduced)) return OfLargeAngle(radians).cosine;
  const ReducedAngle reduced = Reduced(magnitude);
  const Bounded cosine = CosineOf(reduced);
  if (!IsDecided(cosine.result, cosine.bound)) return AccurateSineAndCosine(radians).cosine;
  return WithSign(cosine.result.value, TurnSign(reduced));
}

SineCosine SineAndCosine(double radians) {
  const double magnitude = std::abs(radians);
  if (!(magnitude < kLargestReduced)) return OfLargeAngle(radians);
  const ReducedAngle reduced = Reduced(magnitude);
  const Bounded sine = SineOf(reduced);
  const Bounded cosine = CosineOf(reduced);
  if (!IsDecided(sine.result, sine.bound) || !IsDecided(cosine.result, cosine.bound)) {
    return AccurateSineAndCosine(radians);
  }
  const std::uint64_t turnSign = TurnSign(reduced);
  return {WithSign(sine.result.value, SignOf(radians) ^ turnSign), WithSign(cosine.result.value, turnSign)};
}

// --- Arc tangent -----------------------------------------------------------------------------------------

namespace {

constexpr double kLeastNode = 0x1p-7;
constexpr double kEndOfNodes = 0x1p6;
constexpr double kEndOfSlope = 0x1p53;  // from here on the nearest double is that of pi/2
static_assert(kArcLeastExponent == -7 && kArcNodes.size() == 13 * kArcNodesPerBinade + 1);

/// ArcTangent(tangent) - tangent, for |tangent| below 2^-5.9.
VORQUILL21_INLINED double ArcExcess(double tangent) {
  const double square = tangent * tangent;
  const double series =
      0x1.999999999999ap-3 +
      square * (-0x1.2492492492492p-3 + square * (0x1.c71c71c71c71cp-4 - square * 0x1.745d1745d1746p-4));
  return tangent * (square * (-0x1.5555555555555p-2 + square * series));
}

VORQUILL21_INLINED const ArcNode& NodeFor(double magnitude) {
  constexpr int kShift = 52 - std::countr_zero(unsigned{kArcNodesPerBinade});
  constexpr std::uint64_t kFirst = std::bit_cast<std::uint64_t>(kLeastNode) >> kShift;
  if (magnitude >= kEndOfNodes) return kArcNodes.back();
  return kArcNodes[(std::bit_cast<std::uint64_t>(magnitude) >> kShift) - kFirst];
}

/// With the node's angle taken away: tangent = (along * x - crossing) / (along + crossing * x).
VORQUILL21_INLINED ErrorFree ArcTangentFromNode(const ArcNode& node, double magnitude) {
  const double rise = node.along * magnitude - node.crossing;
  const double inverse = 1.0 / (node.along + node.crossing * magnitude);
  const double head = Cut(rise * inverse);
  const double crossing = head * node.crossing;
  const ErrorFree halves = Split(magnitude);
  const double left = ((rise - head * node.along) - crossing * halves.value) - crossing * halves.error;
  const double tail = left * inverse;
  const double rest = node.angleTail + (tail + ArcExcess(head + tail));
  return FastTwoSum(node.angleHead + head, rest);
}

}  // namespace

double ArcTangent(double value) {
  const double magnitude = std::abs(value);
  if (!(magnitude < kEndOfSlope)) {
    return std::isnan(value) ? value : std::copysign(0x1.921fb54442d18p+0, value);
  }
  const ErrorFree result = magnitude < kLeastNode ? FastTwoSum(magnitude, ArcExcess(magnitude))
                                                  : ArcTangentFromNode(NodeFor(magnitude), magnitude);
  if (!IsDecided(result, result.value * kArcError)) return AccurateArcTangent(value, result.value);
  return WithSign(result.value, SignOf(value));
}

// --- Powers ----------------------------------------------------------------------------------------------

namespace {

/// Two doubles' product but for a relative error of 2^-101, `right` being one double.
VORQUILL21_INLINED ErrorFree Product(const ErrorFree& left, double right) {
  const ErrorFree product = TwoProduct<false>(left.value, right);
  return FastTwoSum(product.value, product.error + left.error * right);
}

VORQUILL21_INLINED ErrorFree SquareOf(const ErrorFree& root) {
  const ErrorFree square = TwoProduct<false>(root.value, root.value);
  return FastTwoSum(square.value, square.error + 2.0 * (root.value * root.error));
}

double MagnitudeOfPower(double base, std::uint32_t exponent) {
  ErrorFree power{base, 0.0};
  for (std::uint32_t digit = std::bit_floor(exponent) / 2; digit != 0; digit /= 2) {
    power = SquareOf(power);
    if (exponent & digit) power = Product(power, base);
  }
  // Between these no step has lost bits to the limits of the doubles.
  const bool isMiddling = power.value > 0x1p-900 && power.value < 0x1p900;
  if (isMiddling && IsDecided(power, power.value * exponent * 0x1p-98)) return power.value;
  return AccuratePower(base, exponent);
}

}  // namespace

double HalfPower(double base) {
  return std::sqrt(base + 0.0);
}

double IntegerPower(double base, std::uint32_t exponent) {
  if (exponent == 0) return 1.0;
  if (exponent == 1) return base;
  if (exponent == 2) return Square(base);
  const double magnitude = std::abs(base);
  const bool hasParts = magnitude > 0.0 && magnitude <= std::numeric_limits<double>::max();
  const double power = hasParts ? MagnitudeOfPower(magnitude, exponent) : magnitude;
  return exponent % 2 == 0 ? power : std::copysign(power, base);
}

}  // namespace vorquill21
