#pragma once

#include <vector>

#include "automation/interface.hpp"
#include "vorquill21/frame/types/array_view.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"

namespace vorquill21::automation {

/// Keeps the memory of an array in its place; error 10 when the array cannot be locked.
class ArrayLock {
 public:
  explicit ArrayLock(SAFEARRAY* array);
  ArrayLock(const ArrayLock&) = delete;
  ArrayLock& operator=(const ArrayLock&) = delete;
  ~ArrayLock() { SafeArrayUnlock(array_); }

 private:
  SAFEARRAY* array_;
};

/// How many dimensions a parameter has: where it is one, an array of 1 x N or N x 1 elements counts as one of
/// N.
enum class Shape { kAny, kOneDimension };

/// The kind of the elements. Elements of 8 bytes that say nothing of their kind are doubles. Error 13 for
/// records and other kinds that are not for automation.
VARTYPE ElementType(const SAFEARRAY& array);

/// The elements and bounds, each element converted to T: double, Text or Variant. No array is one that was
/// never dimensioned; one of no or more than three dimensions, or with an upper bound that 32 bits do not
/// hold, is error 9.
template <typename T>
BoundedArray<T> LoadArray(SAFEARRAY* array, Shape shape = Shape::kAny, int depth = 0);

/// A new array with these bounds and elements of the kind `type`; null for one that was never dimensioned.
template <typename T>
SAFEARRAY* NewArray(VARTYPE type, const BoundedArray<T>& value);

/// Gives an array variable this value. The elements stay of the kind that they are; only where there is no
/// array yet they are of the kind `newType`. Error 10 when the bounds change and the array is locked or of
/// fixed size.
template <typename T>
void StoreArray(SAFEARRAY*& variable, const BoundedArray<T>& value, VARTYPE newType);

/// The numbers of an array, locked and read where they lie when they are doubles, otherwise converted.
class NumbersRead {
 public:
  explicit NumbersRead(SAFEARRAY* array);
  NumbersRead(const NumbersRead&) = delete;
  NumbersRead& operator=(const NumbersRead&) = delete;
  ~NumbersRead() { Release(); }

  /// Error 9, when it is used, for an array that was never dimensioned or has more than one dimension.
  ArrayView<const double> View() const;

  /// Ends the lock; the view is not to be used any more.
  void Release() noexcept;

 private:
  SAFEARRAY* locked_ = nullptr;
  BoundedArray<double> converted_;
  const double* data_ = nullptr;
  std::size_t count_ = 0;
  std::int32_t lower_ = 0;
};

}  // namespace vorquill21::automation
