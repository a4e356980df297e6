#include "vorquill21/numeric/matrix_product.hpp"

#include <algorithm>
#include <cstring>
#include <vector>

#include "vorquill21/numeric/error_free.hpp"

// Columns of the product are made in strips as wide as two vectors, rows of them in groups, so that the sums
// of a group stay in registers while k runs. A strip of b is copied first, to lie closely together. What
// remains is made in strips of 4, 2 and 1 columns.

namespace vorquill21 {
namespace {

constexpr std::size_t kGroup = 4;

struct Factors {
  MatrixView<const double> a;
  MatrixView<const double> b;
  MatrixView<double> product;
  std::size_t rows;
  std::size_t terms;
  std::size_t columns;
};

template <typename Vector>
constexpr std::size_t kStrip = 2 * sizeof(Vector) / sizeof(double);

/// `group` rows of the product from `row` on, in the strip that begins at `column`.
template <typename Vector, std::size_t group>
VORQUILL21_INLINED void MultiplyGroup(const Factors& f, const double* strip, std::size_t row,
                                      std::size_t column) {
  Vector sums[group][2] = {};
  const double* a = f.a.Row(row);
  for (std::size_t k = 0; k < f.terms; ++k, strip += kStrip<Vector>) {
    Vector left;
    Vector right;
    std::memcpy(&left, strip, sizeof left);
    std::memcpy(&right, strip + kStrip<Vector> / 2, sizeof right);
    for (std::size_t r = 0; r < group; ++r) {
      const double factor = a[r * f.a.stride + k];
      sums[r][0] += factor * left;
      sums[r][1] += factor * right;
    }
  }
  for (std::size_t r = 0; r < group; ++r) {
    double* const product = f.product.Row(row + r) + column;
    std::memcpy(product, &sums[r][0], sizeof(Vector));
    std::memcpy(product + kStrip<Vector> / 2, &sums[r][1], sizeof(Vector));
  }
}

template <typename Vector>
VORQUILL21_INLINED void MultiplyStrip(const Factors& f, double* strip, std::size_t column) {
  for (std::size_t k = 0; k < f.terms; ++k) {
    std::copy_n(f.b.Row(k) + column, kStrip<Vector>, strip + k * kStrip<Vector>);
  }
  std::size_t row = 0;
  for (; row + kGroup <= f.rows; row += kGroup) MultiplyGroup<Vector, kGroup>(f, strip, row, column);
  for (; row < f.rows; ++row) MultiplyGroup<Vector, 1>(f, strip, row, column);
}

template <std::size_t width>
VORQUILL21_INLINED void MultiplyNarrowStrip(const Factors& f, std::size_t column) {
  for (std::size_t row = 0; row < f.rows; ++row) {
    double sums[width] = {};
    const double* a = f.a.Row(row);
    const double* b = f.b.data + column;
    for (std::size_t k = 0; k < f.terms; ++k, b += f.b.stride) {
      for (std::size_t j = 0; j < width; ++j) sums[j] += a[k] * b[j];
    }
    std::copy_n(sums, width, f.product.Row(row) + column);
  }
}

template <typename Vector>
VORQUILL21_INLINED void Multiply(const Factors& f) {
  std::size_t column = 0;
  if (f.columns >= kStrip<Vector>) {
    std::vector<double> strip(f.terms * kStrip<Vector>);
    for (; column + kStrip<Vector> <= f.columns; column += kStrip<Vector>) {
      MultiplyStrip<Vector>(f, strip.data(), column);
    }
  }
  for (; column + 4 <= f.columns; column += 4) MultiplyNarrowStrip<4>(f, column);
  switch (f.columns - column) {
    case 3:
      return MultiplyNarrowStrip<3>(f, column);
    case 2:
      return MultiplyNarrowStrip<2>(f, column);
    case 1:
      return MultiplyNarrowStrip<1>(f, column);
    default:
      return;
  }
}

using TwoDoubles [[gnu::vector_size(16)]] = double;

#ifdef VORQUILL21_WIDE_INSTRUCTIONS
using FourDoubles [[gnu::vector_size(32)]] = double;

__attribute__((target("avx2"))) void MultiplyWide(const Factors& factors) {
  Multiply<FourDoubles>(factors);
}
#endif

}  // namespace

void MultiplyMatrices(MatrixView<const double> a, MatrixView<const double> b, MatrixView<double> product,
                      std::size_t rows, std::size_t terms, std::size_t columns) {
  const Factors factors{a, b, product, rows, terms, columns};
#ifdef VORQUILL21_WIDE_INSTRUCTIONS
  if (__builtin_cpu_supports("avx2")) return MultiplyWide(factors);
#endif
  Multiply<TwoDoubles>(factors);
}

}  // namespace vorquill21
