#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>
#include <vector>

#include "vorquill21/frame/types/bounded_array.hpp"

namespace vorquill21 {

/// A one-dimensional array that is read where it lies: a pointer, a lower and an upper bound. It comes
/// implicitly from a BoundedArray (its own bounds), and from std::vector, std::span and built-in arrays
/// (lower bound 0), without copying an element. It must not outlive the array that it looks at.
///
/// The view of a BoundedArray that was never dimensioned, or that has more than one dimension, is error 9 at
/// the first question about its bounds or elements. No elements means the bounds 0 to -1.
template <typename T>
class ArrayView {
  using Element = std::remove_const_t<T>;

 public:
  /// `count` elements from `data` on; the first one has the index `lower`.
  ArrayView(T* data, std::size_t count, std::int32_t lower = 0) : data_(data) {
    if (count == 0) lower = 0;
    const std::int64_t upper = lower + static_cast<std::int64_t>(count) - 1;
    if (upper > std::numeric_limits<std::int32_t>::max()) Raise(kSubscriptOutOfRange);
    bounds_ = {lower, static_cast<std::int32_t>(upper)};
  }

  // Implicit on purpose: a host passes what it has.
  ArrayView(std::span<T> elements) : ArrayView(elements.data(), elements.size()) {}
  ArrayView(const std::vector<Element>& elements) : ArrayView(elements.data(), elements.size()) {}
  template <std::size_t N>
  ArrayView(T (&elements)[N]) : ArrayView(elements, N) {}
  ArrayView(const BoundedArray<Element>& array) {
    const bool isOneDimensional = array.Rank() == 1;
    data_ = array.Elements().data();
    bounds_ = isOneDimensional ? array.BoundsOf(1) : kNoBounds;
  }

  std::int32_t LowerBound() const { return Checked().lower; }
  std::int32_t UpperBound() const { return Checked().upper; }

  /// The element at `index`; error 9 outside the bounds.
  T& operator()(std::int32_t index) const {
    if (index < bounds_.lower || index > bounds_.upper) Raise(kSubscriptOutOfRange);
    return data_[std::int64_t{index} - bounds_.lower];
  }

  /// All elements, the one at the lower bound first.
  std::span<T> Elements() const { return {data_, static_cast<std::size_t>(Checked().Count())}; }

  /// The bounds; 0 to -2, which no array has, where LowerBound and UpperBound are error 9.
  Bounds BoundsOrNone() const noexcept { return bounds_; }

 private:
  Bounds Checked() const {
    if (bounds_ == kNoBounds) Raise(kSubscriptOutOfRange);
    return bounds_;
  }

  /// Bounds that no array has stand for one that is not one-dimensional, so that a view fits into two
  /// registers.
  static constexpr Bounds kNoBounds{0, -2};

  T* data_ = nullptr;
  Bounds bounds_;
};

}  // namespace vorquill21
