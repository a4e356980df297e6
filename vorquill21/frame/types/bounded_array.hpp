#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {

/// First and last index of one dimension.
struct Bounds {
  std::int32_t lower = 0;
  std::int32_t upper = -1;

  /// Number of indices from lower to upper.
  constexpr std::int64_t Count() const noexcept { return std::int64_t{upper} - lower + 1; }
  friend bool operator==(const Bounds&, const Bounds&) = default;
};

/// An array of one to three dimensions whose bounds are part of its value, or one that was never dimensioned
/// (rank 0). Elements lie in row-major order: the last index runs fastest.
///
/// Every access checks its indices: an index outside the bounds, a wrong number of indices, and any question
/// about the bounds of an array that was never dimensioned are error 9.
template <typename T>
class BoundedArray {
 public:
  /// Never dimensioned.
  BoundedArray() = default;
  BoundedArray(const BoundedArray&) = default;
  BoundedArray& operator=(const BoundedArray&) = default;

  /// Takes the other array over, which is never dimensioned afterwards.
  BoundedArray(BoundedArray&& other) noexcept { Swap(other); }
  /// As moving into a new array.
  BoundedArray& operator=(BoundedArray&& other) noexcept {
    BoundedArray moved(std::move(other));
    Swap(moved);
    return *this;
  }
  ~BoundedArray() = default;

  /// Dimensioned with the given bounds, every element T(). An upper bound below its lower bound is error 9;
  /// more elements than memory holds is error 7.
  explicit BoundedArray(Bounds first) { ReDim(first); }
  BoundedArray(Bounds first, Bounds second) { ReDim(first, second); }
  BoundedArray(Bounds first, Bounds second, Bounds third) { ReDim(first, second, third); }

  /// One dimension, from `lower` on, taking over the elements; with no elements the same as Empty().
  explicit BoundedArray(std::vector<T> elements, std::int32_t lower = 0) : elements_(std::move(elements)) {
    if (elements_.empty()) lower = 0;
    const std::int64_t upper = lower + static_cast<std::int64_t>(elements_.size()) - 1;
    if (upper > std::numeric_limits<std::int32_t>::max()) Raise(kSubscriptOutOfRange);
    rank_ = 1;
    bounds_[0] = {lower, static_cast<std::int32_t>(upper)};
  }

  /// The array without elements: one dimension, bounds 0 to -1.
  static BoundedArray Empty() { return BoundedArray(std::vector<T>()); }

  /// 0 when never dimensioned, otherwise 1 to 3.
  int Rank() const noexcept { return rank_; }

  /// Bounds of dimension 1, 2 or 3.
  std::int32_t LowerBound(int dimension = 1) const { return BoundsOf(dimension).lower; }
  std::int32_t UpperBound(int dimension = 1) const { return BoundsOf(dimension).upper; }
  Bounds BoundsOf(int dimension) const {
    if (dimension < 1 || dimension > rank_) Raise(kSubscriptOutOfRange);
    return bounds_[static_cast<std::size_t>(dimension - 1)];
  }

  /// Gives the array new bounds and elements T(). After an error the array is as it was.
  void ReDim(Bounds first) { Replace(1, {first, {}, {}}); }
  void ReDim(Bounds first, Bounds second) { Replace(2, {first, second, {}}); }
  void ReDim(Bounds first, Bounds second, Bounds third) { Replace(3, {first, second, third}); }

  /// Moves the end of the last dimension of a one-dimensional array (or dimensions one from 0), keeping the
  /// elements that stay inside. An upper bound below the lower one is error 9. Cost: amortised constant for
  /// each element added.
  void ReDimPreserve(std::int32_t upper) {
    if (rank_ == 0) return ReDim({0, upper});
    if (rank_ != 1 || upper < bounds_[0].lower) Raise(kSubscriptOutOfRange);
    const std::size_t count = Product(1, Bounds{bounds_[0].lower, upper});
    TranslatingMemoryErrors([&] { elements_.resize(count); });
    bounds_[0].upper = upper;
  }

  /// The element at the given indices.
  T& operator()(std::int32_t i) { return elements_[Offset(i)]; }
  T& operator()(std::int32_t i, std::int32_t j) { return elements_[Offset(i, j)]; }
  T& operator()(std::int32_t i, std::int32_t j, std::int32_t k) { return elements_[Offset(i, j, k)]; }
  const T& operator()(std::int32_t i) const { return elements_[Offset(i)]; }
  const T& operator()(std::int32_t i, std::int32_t j) const { return elements_[Offset(i, j)]; }
  const T& operator()(std::int32_t i, std::int32_t j, std::int32_t k) const {
    return elements_[Offset(i, j, k)];
  }

  /// All elements in row-major order; empty when never dimensioned.
  std::span<T> Elements() noexcept { return elements_; }
  std::span<const T> Elements() const noexcept { return elements_; }

  friend bool operator==(const BoundedArray&, const BoundedArray&) = default;

 private:
  using AllBounds = std::array<Bounds, 3>;

  void Swap(BoundedArray& other) noexcept {
    elements_.swap(other.elements_);
    bounds_.swap(other.bounds_);
    std::swap(rank_, other.rank_);
  }

  /// `count` times the number of indices; error 7 when memory cannot hold as many elements.
  static std::size_t Product(std::size_t count, Bounds dimension) {
    const auto extent = static_cast<std::uint64_t>(dimension.Count());
    if (count > std::numeric_limits<std::size_t>::max() / extent) Raise(kOutOfMemory);
    return static_cast<std::size_t>(count * extent);
  }

  void Replace(int rank, const AllBounds& bounds) {
    std::size_t count = 1;
    for (int d = 0; d < rank; ++d) {
      const Bounds& dimension = bounds[static_cast<std::size_t>(d)];
      if (dimension.upper < dimension.lower) Raise(kSubscriptOutOfRange);
      count = Product(count, dimension);
    }
    std::vector<T> elements = TranslatingMemoryErrors([&] { return std::vector<T>(count); });
    elements_ = std::move(elements);
    bounds_ = bounds;
    rank_ = rank;
  }

  template <typename... Index>
  std::size_t Offset(Index... indices) const {
    if (rank_ != static_cast<int>(sizeof...(indices))) Raise(kSubscriptOutOfRange);
    std::size_t offset = 0;
    std::size_t dimension = 0;
    for (const std::int32_t index : {indices...}) {
      const Bounds& bounds = bounds_[dimension++];
      if (index < bounds.lower || index > bounds.upper) Raise(kSubscriptOutOfRange);
      offset = offset * static_cast<std::size_t>(bounds.Count()) +
               static_cast<std::size_t>(std::int64_t{index} - bounds.lower);
    }
    return offset;
  }

  std::vector<T> elements_;
  AllBounds bounds_{};
  int rank_ = 0;
};

}  // namespace vorquill21
