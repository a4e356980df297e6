#include "automation/arrays.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

#include "automation/failure.hpp"
#include "automation/values.hpp"

namespace vorquill21::automation {
namespace {

constexpr int kGreatestRank = 3;

struct ArrayDeleter {
  void operator()(SAFEARRAY* array) const noexcept { SafeArrayDestroy(array); }
};
using OwnedArray = std::unique_ptr<SAFEARRAY, ArrayDeleter>;

/// The bounds of one to three dimensions.
struct Dimensions {
  int rank = 0;
  std::array<Bounds, kGreatestRank> bounds{};

  std::size_t Extent(int index) const {
    return index < rank ? static_cast<std::size_t>(bounds[static_cast<std::size_t>(index)].Count()) : 1;
  }
  std::size_t Count() const { return rank == 0 ? 0 : Extent(0) * Extent(1) * Extent(2); }
  friend bool operator==(const Dimensions&, const Dimensions&) = default;
};

Bounds BoundsOf(const SAFEARRAYBOUND& bound) {
  const std::int64_t upper = std::int64_t{bound.lLbound} + bound.cElements - 1;
  if (upper > std::numeric_limits<std::int32_t>::max()) Raise(kSubscriptOutOfRange);
  if (bound.cElements == 0) return {};
  return {static_cast<std::int32_t>(bound.lLbound), static_cast<std::int32_t>(upper)};
}

/// Leaves out a dimension of a single element where there are two.
Dimensions Squeezed(Dimensions dimensions) {
  if (dimensions.rank != 2) return dimensions;
  if (dimensions.Extent(1) == 1) return {1, {dimensions.bounds[0]}};
  if (dimensions.Extent(0) == 1) return {1, {dimensions.bounds[1]}};
  return dimensions;
}

Dimensions DimensionsOf(const SAFEARRAY& array, Shape shape) {
  if (array.cDims < 1 || array.cDims > kGreatestRank) Raise(kSubscriptOutOfRange);
  Dimensions dimensions{array.cDims, {}};
  for (int i = 0; i < array.cDims; ++i) {  // the first dimension stands last
    dimensions.bounds[static_cast<std::size_t>(i)] = BoundsOf(array.rgsabound[array.cDims - 1 - i]);
  }
  if (array.pvData == nullptr && dimensions.Count() > 0) Raise(kSubscriptOutOfRange);
  return shape == Shape::kOneDimension ? Squeezed(dimensions) : dimensions;
}

template <typename T>
Dimensions DimensionsOf(const BoundedArray<T>& array) {
  Dimensions dimensions{array.Rank(), {}};
  for (int i = 0; i < array.Rank(); ++i) {
    dimensions.bounds[static_cast<std::size_t>(i)] = array.BoundsOf(i + 1);
  }
  return dimensions;
}

template <typename T>
BoundedArray<T> Dimensioned(const Dimensions& dimensions) {
  const auto& [first, second, third] = dimensions.bounds;
  switch (dimensions.rank) {
    case 1:
      return first.Count() == 0 ? BoundedArray<T>::Empty() : BoundedArray<T>(first);
    case 2:
      return BoundedArray<T>(first, second);
    default:
      return BoundedArray<T>(first, second, third);
  }
}

/// Calls `visit` with each element in row-major order. In the array the first index runs fastest.
template <typename Visit>
void ForEachPlace(const SAFEARRAY& array, const Dimensions& dimensions, Visit visit) {
  auto* const data = static_cast<char*>(array.pvData);
  for (std::size_t i = 0; i < dimensions.Extent(0); ++i) {
    for (std::size_t j = 0; j < dimensions.Extent(1); ++j) {
      for (std::size_t k = 0; k < dimensions.Extent(2); ++k) {
        const std::size_t index = i + dimensions.Extent(0) * (j + dimensions.Extent(1) * k);
        visit(data + index * array.cbElements);
      }
    }
  }
}

std::size_t SizeOf(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_DATE:
    case VT_CY:
      return 8;
    case VT_DECIMAL:
      return sizeof(DECIMAL);
    case VT_VARIANT:
      return sizeof(VARIANT);
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return sizeof(void*);
    default:
      return 0;
  }
}

template <typename T>
T Element(VARTYPE type, const void* place, int depth) {
  return ConvertedTo<T>(FromPlace(type, place, depth));
}

template <>
double Element<double>(VARTYPE type, const void* place, int depth) {
  if (type == VT_R8) return *static_cast<const double*>(place);
  return ConvertedTo<double>(FromPlace(type, place, depth));
}

template <typename T>
void FillArray(SAFEARRAY* array, const BoundedArray<T>& value) {
  const ArrayLock lock(array);
  const VARTYPE type = ElementType(*array);
  const T* next = value.Elements().data();
  ForEachPlace(*array, DimensionsOf(value), [&](void* place) { StoreAs(type, place, Variant(*next++)); });
}

template <>
void FillArray(SAFEARRAY* array, const BoundedArray<double>& value) {
  const ArrayLock lock(array);
  const VARTYPE type = ElementType(*array);
  const double* next = value.Elements().data();
  if (type == VT_R8) {
    ForEachPlace(*array, DimensionsOf(value), [&](void* place) { *static_cast<double*>(place) = *next++; });
  } else {
    ForEachPlace(*array, DimensionsOf(value), [&](void* place) { StoreAs(type, place, Variant(*next++)); });
  }
}

bool CanBeReplaced(const SAFEARRAY& array) {
  return array.cLocks == 0 && (array.fFeatures & (FADF_AUTO | FADF_STATIC | FADF_FIXEDSIZE)) == 0;
}

}  // namespace

ArrayLock::ArrayLock(SAFEARRAY* array) : array_(array) {
  if (FAILED(SafeArrayLock(array))) throw ArrayLocked();
}

VARTYPE ElementType(const SAFEARRAY& array) {
  VARTYPE type = VT_EMPTY;
  if (FAILED(SafeArrayGetVartype(const_cast<SAFEARRAY*>(&array), &type))) type = VT_R8;
  if (SizeOf(type) != array.cbElements) Raise(kTypeMismatch);
  return type;
}

template <typename T>
BoundedArray<T> LoadArray(SAFEARRAY* array, Shape shape, int depth) {
  if (array == nullptr) return {};
  const ArrayLock lock(array);
  const VARTYPE type = ElementType(*array);
  const Dimensions dimensions = DimensionsOf(*array, shape);
  auto loaded = Dimensioned<T>(dimensions);
  T* next = loaded.Elements().data();
  ForEachPlace(*array, dimensions, [&](const void* place) { *next++ = Element<T>(type, place, depth); });
  return loaded;
}

template <typename T>
SAFEARRAY* NewArray(VARTYPE type, const BoundedArray<T>& value) {
  if (value.Rank() == 0) return nullptr;
  const Dimensions dimensions = DimensionsOf(value);
  std::array<SAFEARRAYBOUND, kGreatestRank> bounds{};
  for (std::size_t i = 0; i < static_cast<std::size_t>(value.Rank()); ++i) {
    bounds[i] = {static_cast<ULONG>(dimensions.bounds[i].Count()), dimensions.bounds[i].lower};
  }
  OwnedArray array(SafeArrayCreate(type, static_cast<UINT>(value.Rank()), bounds.data()));
  if (array == nullptr) Raise(kOutOfMemory);
  FillArray(array.get(), value);
  return array.release();
}

template <typename T>
void StoreArray(SAFEARRAY*& variable, const BoundedArray<T>& value, VARTYPE newType) {
  if (variable == nullptr) {
    variable = NewArray(newType, value);
    return;
  }
  if (value.Rank() == variable->cDims && DimensionsOf(value) == DimensionsOf(*variable, Shape::kAny)) {
    return FillArray(variable, value);
  }
  if (!CanBeReplaced(*variable)) throw ArrayLocked();
  const OwnedArray old(std::exchange(variable, NewArray(ElementType(*variable), value)));
}

template BoundedArray<double> LoadArray(SAFEARRAY*, Shape, int);
template BoundedArray<Text> LoadArray(SAFEARRAY*, Shape, int);
template BoundedArray<Variant> LoadArray(SAFEARRAY*, Shape, int);
template SAFEARRAY* NewArray(VARTYPE, const BoundedArray<double>&);
template SAFEARRAY* NewArray(VARTYPE, const BoundedArray<Text>&);
template SAFEARRAY* NewArray(VARTYPE, const BoundedArray<Variant>&);
template void StoreArray(SAFEARRAY*&, const BoundedArray<double>&, VARTYPE);
template void StoreArray(SAFEARRAY*&, const BoundedArray<Text>&, VARTYPE);

NumbersRead::NumbersRead(SAFEARRAY* array) {
  if (array == nullptr) return;
  if (ElementType(*array) != VT_R8) {
    converted_ = LoadArray<double>(array, Shape::kOneDimension);
    return;
  }
  const Dimensions dimensions = DimensionsOf(*array, Shape::kOneDimension);
  if (dimensions.rank != 1) return;
  if (FAILED(SafeArrayLock(array))) throw ArrayLocked();
  locked_ = array;
  data_ = static_cast<const double*>(array->pvData);
  count_ = dimensions.Count();
  lower_ = dimensions.bounds[0].lower;
}

ArrayView<const double> NumbersRead::View() const {
  if (locked_ == nullptr) return converted_;
  return {data_, count_, lower_};
}

void NumbersRead::Release() noexcept {
  if (locked_ != nullptr) SafeArrayUnlock(std::exchange(locked_, nullptr));
}

}  // namespace vorquill21::automation
