#include "vorquill21/numeric/math_utils.hpp"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <tuple>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/frame/types/number_text.hpp"
#include "vorquill21/numeric/table_search.hpp"

namespace vorquill21 {
namespace {

// --- Elements of arrays ----------------------------------------------------------------------------------
// Templates over the array see either a variant that holds any array or, without a variant for each element,
// the doubles themselves.

template <typename... Index>
Variant ElementAt(const Variant& array, Index... indices) {
  return ArrayElement(array, indices...);
}

template <typename... Index>
double ElementAt(const BoundedArray<double>& array, Index... indices) {
  return array(indices...);
}

double Difference(const Variant& left, const Variant& right, char16_t decimalSeparator) {
  return ToDouble(Subtract(left, right, decimalSeparator), decimalSeparator);
}

double Difference(double left, double right, char16_t /*decimalSeparator*/) {
  return Checked(left - right, left, right);
}

/// Calls `visit(indices...)` for every element of an array of `dimensions` dimensions, dimension 1 outermost,
/// until it returns false; returns whether it never did.
template <int dimensions, typename Visit, typename... Index>
bool ForAllIndices(const Variant& array, const Visit& visit, Index... outer) {
  constexpr int kOuter = static_cast<int>(sizeof...(outer));
  if constexpr (kOuter == dimensions) {
    return visit(outer...);
  } else {
    const Bounds bounds = ArrayBounds(array, kOuter + 1);
    for (std::int64_t i = bounds.lower; i <= bounds.upper; ++i) {
      if (!ForAllIndices<dimensions>(array, visit, outer..., static_cast<std::int32_t>(i))) return false;
    }
    return true;
  }
}

// --- Searching -------------------------------------------------------------------------------------------

/// ArrayLocate by the indices of the table, step by step.
[[gnu::cold]] bool LocateByIndex(ArrayView<const double> nodes, double x, std::int32_t& index) {
  std::int32_t low = nodes.LowerBound();
  std::int32_t high = nodes.UpperBound();
  if (low < 0 || high < 0) {
    throw LibraryError(eErrMathUtilInvalidArrayLimts, Text(kLibraryTitle) + u"MathUtils.ArrayLocate",
                       u"One or more array bounds are below 0");
  }
  const bool ascending = IsAscendingAround(nodes.Elements(), x);
  const bool found = ascending || IsDescendingAround(nodes.Elements(), x);
  const bool isInFirst = ascending && x <= nodes(CheckedInt32(std::int64_t{low} + 1));
  while (!isInFirst && high - low >= 2) {
    const std::int32_t middle = CheckedInt32(std::int64_t{low} + high) / 2;
    ((x >= nodes(middle)) == ascending ? low : high) = middle;
  }
  index = low;
  return found;
}

// --- Copying ---------------------------------------------------------------------------------------------

/// Bounds that the copy of `source` takes over.
template <int dimensions>
std::array<Bounds, dimensions> BoundsOfCopy(const Variant& source) {
  std::array<Bounds, dimensions> bounds;
  bounds.fill({0, 0});
  if (source.IsEmpty()) return bounds;
  if (ArrayRank(source) != dimensions) Raise(kSubscriptOutOfRange);
  for (int d = 0; d < dimensions; ++d) bounds[static_cast<std::size_t>(d)] = ArrayBounds(source, d + 1);
  return bounds;
}

template <int dimensions>
void CopyArray(BoundedArray<double>& target, const Variant& source, char16_t decimalSeparator) {
  const std::array<Bounds, dimensions> bounds = BoundsOfCopy<dimensions>(source);
  const auto* doubles = source.If<BoundedArray<double>>();
  if (doubles != nullptr && !doubles->Elements().empty()) {
    target = *doubles;
    return;
  }
  std::apply([&target](auto... each) { target.ReDim(each...); }, bounds);
  if (source.IsEmpty()) return;
  ForAllIndices<dimensions>(source, [&](auto... i) {
    target(i...) = ToDouble(ArrayElement(source, i...), decimalSeparator);
    return true;
  });
}

// --- Comparing -------------------------------------------------------------------------------------------

/// 10 to the power of `exponent`, correctly rounded and so the same on every system.
double PowerOfTen(std::int32_t exponent) {
  const auto power = TextToNumber("1E" + std::to_string(exponent), '.');
  if (!power) Raise(kOverflow);
  return *power;
}

double Tolerance(std::int32_t decimalPlaces) {
  return CheckedQuotient(1.0, PowerOfTen(decimalPlaces));
}

bool LowerBoundsMatch(const Variant& array1, const Variant& array2, int dimensions) {
  for (int d = 1; d <= dimensions; ++d) {
    if (ArrayBounds(array1, d).lower != ArrayBounds(array2, d).lower) return false;
  }
  return true;
}

/// Compares over the extent of `extent`, which holds the elements of `array1`.
template <typename Array>
bool ElementsAreEqual(const Variant& extent, const Array& array1, const Array& array2, int dimensions,
                      double tolerance, char16_t decimalSeparator) {
  const auto equal = [&](auto... i) {
    return std::abs(Difference(ElementAt(array1, i...), ElementAt(array2, i...), decimalSeparator)) <=
           tolerance;
  };
  switch (dimensions) {
    case 1:
      return ForAllIndices<1>(extent, equal);
    case 2:
      return ForAllIndices<2>(extent, equal);
    default:
      return ForAllIndices<3>(extent, equal);
  }
}

bool ArraysMatch(const Variant& array1, const Variant& array2, int dimensions, std::int32_t decimalPlaces,
                 char16_t decimalSeparator) {
  if (!LowerBoundsMatch(array1, array2, dimensions)) return false;
  if (ArrayBounds(array1).Count() == 0) return true;
  const double tolerance = Tolerance(decimalPlaces);
  const auto* doubles1 = array1.If<BoundedArray<double>>();
  const auto* doubles2 = array2.If<BoundedArray<double>>();
  if (doubles1 != nullptr && doubles2 != nullptr) {
    return ElementsAreEqual(array1, *doubles1, *doubles2, dimensions, tolerance, decimalSeparator);
  }
  return ElementsAreEqual(array1, array1, array2, dimensions, tolerance, decimalSeparator);
}

bool StepFits(double difference, EMonotonicScale scaleType) {
  if (scaleType == emsPositive) return !(difference <= 0.0);
  if (scaleType == emsNegative) return !(difference >= 0.0);
  return true;
}

template <typename Array>
bool StepsFit(const Array& array, Bounds bounds, EMonotonicScale scaleType, char16_t decimalSeparator) {
  for (std::int64_t next = std::int64_t{bounds.lower} + 1; next <= bounds.upper; ++next) {
    const auto i = static_cast<std::int32_t>(next);
    const double difference = Difference(ElementAt(array, i), ElementAt(array, i - 1), decimalSeparator);
    if (!StepFits(difference, scaleType)) return false;
  }
  return true;
}

// --- Limits ----------------------------------------------------------------------------------------------

constexpr EBoundsChecks kNotLess = evcGreaterThan | evcInclusive;
constexpr EBoundsChecks kNotGreater = evcLessThan | evcInclusive;
constexpr EBoundsChecks kBetweenInclusive = evcBetween | evcInclusive;

Variant AsDoubleWhenNumeric(const Variant& value, char16_t decimalSeparator) {
  if (!IsNumeric(value, decimalSeparator)) return value;
  return ToDouble(value, decimalSeparator);
}

bool IsOutside(const Variant& value, std::int32_t mode, const Variant& first, const Variant& second) {
  switch (mode) {
    case evcGreaterThan:
      return Compare(value, first) <= 0;
    case evcLessThan:
      return Compare(value, first) >= 0;
    case evcBetween:
      return Compare(value, first) <= 0 || Compare(value, second) >= 0;
    case kNotLess:
      return Compare(value, first) < 0;
    case kNotGreater:
      return Compare(value, first) > 0;
    case kBetweenInclusive:
      return Compare(value, first) < 0 || Compare(value, second) > 0;
    case evcNotEqual:
      return Compare(value, first) == 0;
    default:
      return false;
  }
}

/// What a value that IsOutside does not keep to.
Text Demand(std::int32_t mode, const Variant& first, const Variant& second, char16_t decimalSeparator) {
  const Text limit = ToText(first, decimalSeparator);
  switch (mode) {
    case evcGreaterThan:
    case kNotLess:
      return u" must be greater than " + limit;
    case evcLessThan:
    case kNotGreater:
      return u" must be less than " + limit;
    case evcBetween:
      return u" must be greater than " + limit + u" and less than " + ToText(second, decimalSeparator);
    case kBetweenInclusive:
      return u" must be equal to or between " + limit + u" and" + ToText(second, decimalSeparator);
    default:
      return (limit.empty() ? u" must not be empty " : u" must not equal ") + limit;
  }
}

std::int32_t SignedWord(std::int32_t value) {
  if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max()) {
    Raise(kOverflow);
  }
  return value;
}

}  // namespace

CMathUtils::CMathUtils(Platform& platform) : platform_(platform) {}

bool CMathUtils::ArrayLocate(ArrayView<const double> arXVals, double arX, std::int32_t& anIndex) const {
  const Bounds bounds{arXVals.LowerBound(), arXVals.UpperBound()};
  if (!AllowBisection(bounds)) return LocateByIndex(arXVals, arX, anIndex);
  const std::span<const double> nodes = arXVals.Elements();
  const bool ascending = IsAscendingAround(nodes, arX);
  anIndex = bounds.lower + static_cast<std::int32_t>(FindInterval(nodes, arX, ascending));
  return ascending || IsDescendingAround(nodes, arX);
}

void CMathUtils::CopyArray1D(BoundedArray<double>& arTargetArray, const Variant& avArraySource) const {
  TranslatingMemoryErrors([&] { CopyArray<1>(arTargetArray, avArraySource, DecimalSeparator()); });
}

void CMathUtils::CopyArray2D(BoundedArray<double>& arTargetArray, const Variant& avTableSource) const {
  TranslatingMemoryErrors([&] { CopyArray<2>(arTargetArray, avTableSource, DecimalSeparator()); });
}

void CMathUtils::CopyArray3D(BoundedArray<double>& arTargetArray, const Variant& avTableSource) const {
  TranslatingMemoryErrors([&] { CopyArray<3>(arTargetArray, avTableSource, DecimalSeparator()); });
}

std::int32_t CMathUtils::DWordGetHighWord(std::int32_t anDWord) const {
  return anDWord >> 16;
}

std::int32_t CMathUtils::DWordGetLowWord(std::int32_t anDWord) const {
  return static_cast<std::int16_t>(anDWord & 0xFFFF);
}

std::int32_t CMathUtils::DWordMake(std::int32_t anHighWord, std::int32_t anLowWord) const {
  const std::int32_t high = SignedWord(anHighWord);
  const std::int32_t low = SignedWord(anLowWord);
  return high * 65536 + (low & 0xFFFF);
}

bool CMathUtils::NumbersAreEqual(const Variant& avNumber1, const Variant& avNumber2,
                                 std::int32_t anNDPs) const {
  const double tolerance = Tolerance(anNDPs);
  return std::abs(Difference(avNumber1, avNumber2, DecimalSeparator())) <= tolerance;
}

bool CMathUtils::ArraysAreEqual(const Variant& avArray1, const Variant& avArray2, std::int32_t anOrder,
                                std::int32_t anNDPs) const {
  if (anOrder < 1 || anOrder > 3) return true;
  try {
    return TranslatingMemoryErrors(
        [&] { return ArraysMatch(avArray1, avArray2, anOrder, anNDPs, DecimalSeparator()); });
  } catch (const LibraryError&) {
    return false;
  }
}

bool CMathUtils::ArrayIsMonotonic1D(const Variant& avArray, EMonotonicScale aeScaleType, TextView asName,
                                    Text* asStatusMsg) const {
  return TranslatingMemoryErrors([&] {
    const Bounds bounds = ArrayBounds(avArray);
    const auto* doubles = avArray.If<BoundedArray<double>>();
    const bool fits = doubles != nullptr ? StepsFit(*doubles, bounds, aeScaleType, DecimalSeparator())
                                         : StepsFit(avArray, bounds, aeScaleType, DecimalSeparator());
    if (!fits && asStatusMsg != nullptr) {
      const TextView direction = aeScaleType == emsPositive ? u"positive" : u"negative";
      *asStatusMsg = Text(asName).append(u" must be monotonic ").append(direction);
    }
    return fits;
  });
}

bool CMathUtils::IsInBounds(const Variant& avValue, TextView asName, Text& asStatusMsg, EBoundsChecks aeMode,
                            const Variant& avFirstLimit, const Variant& avSecondLimit) const {
  return TranslatingMemoryErrors([&] {
    const char16_t separator = DecimalSeparator();
    const Variant value = AsDoubleWhenNumeric(avValue, separator);
    const Variant first = AsDoubleWhenNumeric(avFirstLimit, separator);
    if (!IsOutside(value, aeMode, first, avSecondLimit)) return true;
    asStatusMsg = Text(asName) + Demand(aeMode, first, avSecondLimit, separator);
    return false;
  });
}

}  // namespace vorquill21
