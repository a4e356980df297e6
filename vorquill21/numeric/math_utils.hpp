#pragma once

#include <cstdint>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/array_view.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

/// Numbers of the errors that CMathUtils raises itself.
enum EErrorsMathUtil : std::int32_t {
  eErrMathUtilInvalidArrayLimts = -2147220991,  ///< hexadecimal 80040201
};

/// Direction of a strictly monotonic scale.
enum EMonotonicScale : std::int32_t {
  emsPositive = 0,  ///< strictly increasing
  emsNegative = 1,  ///< strictly decreasing
};

/// Which limits IsInBounds checks. Flags, of which only 1, 2, 4, 9, 10, 12 and 16 are acted on.
enum EBoundsChecks : std::int32_t {
  evcGreaterThan = 1,
  evcLessThan = 2,
  evcBetween = 4,
  evcInclusive = 8,  ///< added to one of the three above
  evcNotEqual = 16,
};

constexpr EBoundsChecks operator|(EBoundsChecks left, EBoundsChecks right) {
  return static_cast<EBoundsChecks>(std::int32_t{left} | std::int32_t{right});
}

/// Small routines for tables of numbers, limits and packed words. An object holds no state but its platform,
/// whose decimal separator is used wherever a variant is converted from or to a text.
///
/// Arrays inside variants may hold variants, doubles or texts. Unless a method says otherwise an array that
/// was never dimensioned, or that has other dimensions than are asked for, is error 9; a value that is no
/// array, or an element that is no number, error 13. Arithmetic follows the rules of variants (see Subtract);
/// a result that overflows is error 6.
///
/// A host may derive its own class, which is used wherever the library is handed one.
class VORQUILL21_API CMathUtils {
 public:
  explicit CMathUtils(Platform& platform = Platform::Native());
  virtual ~CMathUtils() = default;
  CMathUtils(const CMathUtils&) = delete;
  CMathUtils& operator=(const CMathUtils&) = delete;

  /// Finds the interval of a monotonic table, ascending or descending, that holds `arX`, by bisection. True
  /// when `arX` lies between the first and the last node, both included.
  ///
  /// `anIndex` receives the lower node k of the interval: ascending, x(k) <= arX < x(k + 1), but a value
  /// equal to the second node gives the first one, and a value equal to the last node the last but one;
  /// descending, x(k) > arX >= x(k + 1). A value outside is searched as in a descending table and gives
  /// False: below an ascending table k is the last node but one, above it the first node. What a table that
  /// is not monotonic or holds a NaN gives is what these steps come to.
  ///
  /// A bound below 0, as an empty array has, raises eErrMathUtilInvalidArrayLimts, "One or more array bounds
  /// are below 0", with the source "Vorquill21MathUtils.ArrayLocate". A single node that equals `arX` is
  /// error 9; bounds whose sum exceeds 32 bits are error 6. After an error `anIndex` is as it was. Cost:
  /// logarithmic.
  virtual bool ArrayLocate(ArrayView<const double> arXVals, double arX, std::int32_t& anIndex) const;

  /// Copies an array, each element converted to a double, into `arTargetArray`, which takes over all bounds;
  /// an empty variant gives one element of 0, bounds 0 to 0 in every dimension.
  ///
  /// A source of other dimensions or without elements is error 9, and one that is no array error 13;
  /// `arTargetArray` is then as it was. When an element cannot be converted (13), it has the new bounds and
  /// holds the elements before that one, the last index running fastest, and 0 from there on. Cost: linear.
  virtual void CopyArray1D(BoundedArray<double>& arTargetArray, const Variant& avArraySource) const;
  virtual void CopyArray2D(BoundedArray<double>& arTargetArray, const Variant& avTableSource) const;
  virtual void CopyArray3D(BoundedArray<double>& arTargetArray, const Variant& avTableSource) const;

  /// The upper and the lower half of a 32-bit integer as signed 16-bit words, -32768 to 32767.
  virtual std::int32_t DWordGetHighWord(std::int32_t anDWord) const;
  virtual std::int32_t DWordGetLowWord(std::int32_t anDWord) const;

  /// The 32-bit integer of two signed words. A word outside -32768 to 32767 is error 6.
  virtual std::int32_t DWordMake(std::int32_t anHighWord, std::int32_t anLowWord) const;

  /// True when |avNumber1 - avNumber2| <= 1 / 10^anNDPs, so that 2 decimal places accept a difference of up
  /// to 0.01, and 0 places one of up to 1. A NaN equals nothing.
  ///
  /// Both powers are rounded once. 10^anNDPs or its inverse beyond the largest double is error 6 (places
  /// above 308 or below -308), 10^anNDPs below the smallest error 11 (below -323).
  virtual bool NumbersAreEqual(const Variant& avNumber1, const Variant& avNumber2, std::int32_t anNDPs) const;

  /// True when both arrays have the same lower bounds in the first `anOrder` (1 to 3) dimensions and each
  /// element of the first one equals, in the sense of NumbersAreEqual, the element of the second one with the
  /// same indices. Upper bounds are not compared: a second array that goes on after the first one's end is
  /// equal, one that ends earlier is not. Any other order is True, whatever the arrays.
  ///
  /// Raises nothing: every error is False. Cost: linear.
  virtual bool ArraysAreEqual(const Variant& avArray1, const Variant& avArray2, std::int32_t anOrder,
                              std::int32_t anNDPs = 0) const;

  /// True when each element is greater (emsPositive) or less (emsNegative) than the one before it; equal
  /// neighbours fail. True for fewer than two indices of the first dimension, as no element is looked at
  /// then, however many dimensions there are. Another scale type makes no demands: the differences are still
  /// formed, so an element that is no number is still an error, but none of them fails.
  ///
  /// On failure `asStatusMsg` receives `asName` and " must be monotonic positive" (or "negative"); otherwise
  /// it is left alone. Cost: linear, up to the first failure.
  virtual bool ArrayIsMonotonic1D(const Variant& avArray, EMonotonicScale aeScaleType, TextView asName,
                                  Text* asStatusMsg = nullptr) const;

  /// Checks a value against one or two limits; on failure returns False and words it in `asStatusMsg`, which
  /// is left alone otherwise. `avValue` and `avFirstLimit`, when numeric (texts in the form of a number,
  /// too), are converted to doubles first; `avSecondLimit` stays as it is. Values compare as by Compare.
  ///
  /// | aeMode | fails when               | asStatusMsg: `asName` and                              |
  /// |--------|--------------------------|--------------------------------------------------------|
  /// | 1      | value <= first           | " must be greater than " first                         |
  /// | 2      | value >= first           | " must be less than " first                            |
  /// | 4      | <= first or >= second    | " must be greater than " first " and less than " second |
  /// | 9      | value < first            | as for 1                                               |
  /// | 10     | value > first            | as for 2                                               |
  /// | 12     | < first or > second      | " must be equal to or between " first " and" second    |
  /// | 16     | value = first            | " must not equal " first; for a first limit whose text |
  /// |        |                          | is empty, " must not be empty "                        |
  ///
  /// Any other mode is True. A missing argument, an object or an array that a mode compares is error 13.
  virtual bool IsInBounds(const Variant& avValue, TextView asName, Text& asStatusMsg, EBoundsChecks aeMode,
                          const Variant& avFirstLimit, const Variant& avSecondLimit = Missing{}) const;

 private:
  friend class MSupport;
  void SelfTest_Main(FailedTests& aoFailedTests) const;

  char16_t DecimalSeparator() const { return platform_.GetLocale().DecimalSeparator(); }

  Platform& platform_;
};

}  // namespace vorquill21
