#include "vorquill21/numeric/elementary.hpp"

#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>

#include "vorquill21/numeric/elementary_accurate.hpp"
#include "vorquill21/numeric/elementary_tables.hpp"
#include "vorquill21/numeric/error_free.hpp"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

// Each function first computes its result as a sum of two doubles, to some 66 bits. When the sum rounds to
// one double, whatever the error within its bound, that is the result; otherwise the accurate function is
// asked. Products that must be exact have factors of few bits: the heads of the tables, and arguments cut at
// multiples of 2^-26.

namespace vorquill21 {
namespace {

constexpr double kToInteger = 0x1.8p52;
constexpr double kToCut = 0x1.8p26;

/// A sine in place 0 and a cosine in place 1, computed at once. What the compiler makes of the operators are
/// the operations on doubles.
using Pair [[gnu::vector_size(2 * sizeof(double))]] = double;

/// Relative bounds of the error of the fast results. That of a sine or cosine comes from some eleven
/// roundings of the node's own one times the angle's cosine - 1, which is at most 2^-17.6, and near an axis
/// the node's may be twice the result.
constexpr Pair kTrigonometricErrors{0x1.4p-66, 0x1.4p-66};
constexpr double kArcError = 0x1p-66;

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

VORQUILL21_INLINED Pair BothOf(double value) {
  return Pair{value, value};
}

VORQUILL21_INLINED Pair Swapped(Pair pair) {
  return Pair{pair[1], pair[0]};
}

/// What a step is beyond its first two parts, as one double.
constexpr double kStepRest = kStepPart3 + kStepPart4;

/// Up to here the number of steps, below 2^23, times a part of a step is exact.
constexpr double kLargestReduced = 51400.0;

/// magnitude = steps * pi/512 + head + rest - steps * (third and fourth part of a step).
struct ReducedAngle {
  double steps;
  double head;
  double rest;
  double sum;           // head + rest, rounded
  std::uint64_t index;  // the number of steps, but for what lies above 2^51
};

VORQUILL21_INLINED ReducedAngle Reduced(double magnitude) {
  const double shifted = magnitude * kStepsPerRadian + kToInteger;
  const double steps = shifted - kToInteger;
  const double difference = magnitude - steps * kStepPart1;
  const double second = steps * kStepPart2;
  const double sum = difference - second;
  const double head = Cut(sum);
  return {steps, head, (difference - head) - second, sum, std::bit_cast<std::uint64_t>(shifted)};
}

/// Whether both comparisons hold.
template <typename Comparisons>
VORQUILL21_INLINED bool Both(Comparisons comparisons) {
#ifdef __SSE2__
  return _mm_movemask_pd(std::bit_cast<__m128d>(comparisons)) == 3;
#else
  return (comparisons[0] & comparisons[1]) != 0;
#endif
}

/// Sine - angle and cosine - 1 of an angle of at most about half a step.
VORQUILL21_INLINED Pair Excess(double angle) {
  constexpr Pair kFirst{-0x1.5555555555555p-3, -0x1p-1};
  constexpr Pair kSecond{0x1.1111111111111p-7, 0x1.5555555555555p-5};
  constexpr Pair kThird{0x1.a01a01a01a01ap-13, 0x1.6c16c16c16c17p-10};
  const Pair square = BothOf(angle * angle);
  return (Pair{angle, 1.0} * square) * ((kFirst + square * kSecond) - (square * square) * kThird);
}

/// Sums of a large and a small part, and bounds of their errors.
struct BoundedPair {
  Pair value;
  Pair error;
  Pair bound;
};

/// Of the node's angle plus head + tail, which is nearly `angle`.
VORQUILL21_INLINED BoundedPair Rotated(const TurnNode& node, double head, double tail, double angle) {
  const Pair nearHead{node.sineHead, node.cosineHead};
  const Pair nearTail{node.sineTail, node.cosineTail};
  const Pair acrossHead = Swapped(nearHead);
  const Pair acrossTail = Swapped(nearTail);
  const Pair excess = Excess(angle);
  const Pair turn{head, -head};
  const Pair smallTurn{tail + excess[0], -(tail + excess[0])};
  const Pair value = nearHead + acrossHead * turn;
  const Pair error = (nearTail + (nearHead + nearTail) * BothOf(excess[1]) + acrossTail * turn) +
                     (acrossHead + acrossTail) * smallTurn;
  return {value, error, value * kTrigonometricErrors};
}

/// The sign that whole half turns give.
VORQUILL21_INLINED std::uint64_t TurnSign(const ReducedAngle& reduced) {
  return (reduced.index & kStepsPerHalfTurn) << (63 - std::countr_zero(unsigned{kStepsPerHalfTurn}));
}

/// Rounds the sums, where that is decided, and gives them the signs that the angle asks for.
VORQUILL21_INLINED SineCosine Finished(const BoundedPair& pair, const ReducedAngle& reduced, double radians) {
  const Pair least = pair.value + (pair.error - pair.bound);
  const Pair greatest = pair.value + (pair.error + pair.bound);
  if (!Both(least == greatest)) return AccurateSineAndCosine(radians);
  const std::uint64_t turnSign = TurnSign(reduced);
  return {WithSign(least[0], SignOf(radians) ^ turnSign), WithSign(least[1], turnSign)};
}

VORQUILL21_INLINED BoundedPair OfReduced(const ReducedAngle& reduced) {
  const double third = reduced.steps * kStepRest;
  return Rotated(kTurnNodes[static_cast<std::size_t>(reduced.index % kStepsPerHalfTurn)], reduced.head,
                 reduced.rest - third, reduced.sum - third);
}

/// Where the node's sine or cosine is 0: that one is the sine of the angle that reduction left, which may be
/// as small as 2^-60, so that all parts of the steps are needed.
[[gnu::noinline]] SineCosine NearAxis(double radians) {
  const ReducedAngle reduced = Reduced(std::abs(radians));
  const ErrorFree rest = TwoSum(reduced.rest, -(reduced.steps * kStepPart3));
  const ErrorFree angle = FastTwoSum(reduced.head, rest.value);
  const double tail = angle.error + (rest.error - reduced.steps * kStepPart4);
  const ErrorFree sine = FastTwoSum(angle.value, tail + Excess(angle.value)[0]);
  BoundedPair pair = OfReduced(reduced);
  const int place = reduced.index % kStepsPerHalfTurn == 0 ? 0 : 1;
  const double sign = place == 0 ? 1.0 : -1.0;
  pair.value[place] = sign * sine.value;
  pair.error[place] = sign * sine.error;
  pair.bound[place] = std::abs(sine.value) * kTrigonometricErrors[0] + reduced.steps * 0x1p-140;
  return Finished(pair, reduced, radians);
}

/// Those that are too large for the fast phase, and those that have no sine.
[[gnu::noinline]] SineCosine OfLargeAngle(double radians) {
  if (!std::isfinite(radians)) return {radians - radians, radians - radians};
  return AccurateSineAndCosine(radians);
}

}  // namespace

SineCosine SineAndCosine(double radians) {
  const double magnitude = std::abs(radians);
  if (!(magnitude < kLargestReduced)) return OfLargeAngle(radians);
  const ReducedAngle reduced = Reduced(magnitude);
  if (reduced.index % (kStepsPerHalfTurn / 2) == 0) return NearAxis(radians);
  return Finished(OfReduced(reduced), reduced, radians);
}

double Sine(double radians) {
  return SineAndCosine(radians).sine;
}

double Cosine(double radians) {
  return SineAndCosine(radians).cosine;
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
  const double fourth = square * square;
  const double series = (0x1.999999999999ap-3 - square * 0x1.2492492492492p-3) +
                        fourth * (0x1.c71c71c71c71cp-4 - square * 0x1.745d1745d1746p-4);
  return (tangent * square) * (-0x1.5555555555555p-2 + square * series);
}

VORQUILL21_INLINED const ArcNode& NodeFor(double magnitude) {
  constexpr int kShift = 52 - std::countr_zero(unsigned{kArcNodesPerBinade});
  constexpr std::uint64_t kFirst = std::bit_cast<std::uint64_t>(kLeastNode) >> kShift;
  if (magnitude >= kEndOfNodes) return kArcNodes.back();
  return kArcNodes[static_cast<std::size_t>((std::bit_cast<std::uint64_t>(magnitude) >> kShift) - kFirst)];
}

/// With the node's angle taken away: tangent = (along * x - crossing) / (along + crossing * x).
VORQUILL21_INLINED ErrorFree ArcTangentFromNode(const ArcNode& node, double magnitude) {
  const double rise = node.along * magnitude - node.crossing;
  const double inverse = 1.0 / (node.along + node.crossing * magnitude);
  const double tangent = rise * inverse;
  const double head = Cut(tangent);
  const double crossing = head * node.crossing;
  const ErrorFree halves = Split(magnitude);
  const double left = ((rise - head * node.along) - crossing * halves.value) - crossing * halves.error;
  const double tail = left * inverse;
  return {node.angleHead + head, node.angleTail + (tail + ArcExcess(tangent))};
}

}  // namespace

double ArcTangent(double value) {
  const double magnitude = std::abs(value);
  if (!(magnitude < kEndOfSlope)) {
    return std::isnan(value) ? value : std::copysign(0x1.921fb54442d18p+0, value);
  }
  const ErrorFree angle = magnitude < kLeastNode ? ErrorFree{magnitude, ArcExcess(magnitude)}
                                                 : ArcTangentFromNode(NodeFor(magnitude), magnitude);
  const double bound = angle.value * kArcError;
  const double least = angle.value + (angle.error - bound);
  const double greatest = angle.value + (angle.error + bound);
  if (least != greatest) return AccurateArcTangent(value, least);
  return WithSign(least, SignOf(value));
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
