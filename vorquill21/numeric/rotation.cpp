#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/numeric/elementary.hpp"
#include "vorquill21/numeric/geometry.hpp"
#include "vorquill21/numeric/matrix_product.hpp"

namespace vorquill21 {
namespace {

constexpr double kRadiansPerDegree = 0x1.1df46a25ca311p-6;
constexpr Bounds kOneToThree{1, 3};

/// Both bounds as one number.
std::uint64_t BitsOf(Bounds bounds) {
  return std::bit_cast<std::uint64_t>(bounds);
}

bool HasBounds(const BoundedArray<double>& matrix, Bounds rows, Bounds columns) {
  return matrix.Rank() == 2 && BitsOf(matrix.BoundsOf(1)) == BitsOf(rows) &&
         BitsOf(matrix.BoundsOf(2)) == BitsOf(columns);
}

/// Gives the matrix the bounds; keeps its elements where it has them already, which all are to be
/// overwritten.
void Dimension(BoundedArray<double>& matrix, Bounds rows, Bounds columns) {
  if (!HasBounds(matrix, rows, columns)) matrix.ReDim(rows, columns);
}

/// Whether the indices 1 to `rows` and 1 to `columns` lie within the bounds.
bool HoldsFromOne(const BoundedArray<double>& matrix, std::int32_t rows, std::int32_t columns) {
  return matrix.Rank() == 2 && matrix.LowerBound(1) <= 1 && rows <= matrix.UpperBound(1) &&
         matrix.LowerBound(2) <= 1 && columns <= matrix.UpperBound(2);
}

/// The part of a matrix of two dimensions from the element (1, 1) on.
MatrixView<const double> FromOne(const BoundedArray<double>& matrix) {
  const auto stride = static_cast<std::size_t>(matrix.BoundsOf(2).Count());
  const auto row = static_cast<std::size_t>(1 - std::int64_t{matrix.LowerBound(1)});
  const auto column = static_cast<std::size_t>(1 - std::int64_t{matrix.LowerBound(2)});
  return {matrix.Elements().data() + row * stride + column, stride};
}

/// The product element by element, raising the first fault where it is produced.
void MultiplyChecked(const BoundedArray<double>& a, const BoundedArray<double>& b, std::int32_t terms,
                     BoundedArray<double>& product) {
  std::ranges::fill(product.Elements(), 0.0);
  for (std::int32_t i = 1; i <= product.UpperBound(1); ++i) {
    for (std::int32_t j = 1; j <= product.UpperBound(2); ++j) {
      double sum = 0.0;
      for (std::int32_t k = 1; k <= terms; ++k) sum = CheckedSum(sum, CheckedProduct(a(i, k), b(k, j)));
      product(i, j) = sum;
    }
  }
}

bool AllFinite(const BoundedArray<double>& array) {
  return std::ranges::all_of(array.Elements(), [](double value) { return std::isfinite(value); });
}

/// As std::isfinite, without constants that must be loaded: loads are what a transform of a point waits for.
bool HasFiniteBits(double value) {
  constexpr std::uint64_t kExponent = 0x7FF0'0000'0000'0000;
  return (std::bit_cast<std::uint64_t>(value) & kExponent) != kExponent;
}

double DotProduct(const double* row, double x, double y, double z) {
  return row[0] * x + row[1] * y + row[2] * z;
}

double CheckedDotProduct(const BoundedArray<double>& matrix, std::int32_t row, double x, double y, double z) {
  double sum = CheckedProduct(matrix(row, 1), x);
  sum = CheckedSum(sum, CheckedProduct(matrix(row, 2), y));
  return CheckedSum(sum, CheckedProduct(matrix(row, 3), z));
}

/// Row by row, raising the first fault where it is produced.
[[gnu::cold, gnu::noinline]] void TransformChecked(double x, double y, double z,
                                                   const BoundedArray<double>& matrix, double& newX,
                                                   double& newY, double& newZ) {
  newX = CheckedDotProduct(matrix, 1, x, y, z);
  newY = CheckedDotProduct(matrix, 2, x, y, z);
  newZ = CheckedDotProduct(matrix, 3, x, y, z);
}

}  // namespace

void CGeometry::BuildTransformationMatrix(double arDegX, double arDegY, double arDegZ,
                                          BoundedArray<double>& aaRotMatrix) const {
  const auto [sx, cx] = SineAndCosine(arDegX * kRadiansPerDegree);
  const auto [sy, cy] = SineAndCosine(arDegY * kRadiansPerDegree);
  const auto [sz, cz] = SineAndCosine(arDegZ * kRadiansPerDegree);

  Dimension(aaRotMatrix, kOneToThree, kOneToThree);
  double* const element = aaRotMatrix.Elements().data();
  element[0] = cz * cy;
  element[1] = cz * sy * sx - sz * cx;
  element[2] = cz * sy * cx + sz * sx;
  element[3] = sz * cy;
  element[4] = sz * sy * sx + cz * cx;
  element[5] = sz * sy * cx - cz * sx;
  element[6] = -sy;
  element[7] = sx * cy;
  element[8] = cx * cy;
}

void CGeometry::MatrixMultiply(const BoundedArray<double>& aaMatrixA, const BoundedArray<double>& aaMatrixB,
                               BoundedArray<double>& aaMatrixResult) const {
  if (&aaMatrixResult == &aaMatrixA || &aaMatrixResult == &aaMatrixB) {
    return TranslatingMemoryErrors([&] {
      MatrixMultiply(BoundedArray<double>(aaMatrixA), BoundedArray<double>(aaMatrixB), aaMatrixResult);
    });
  }
  const std::int32_t rows = aaMatrixA.UpperBound(1);
  const std::int32_t terms = std::max(aaMatrixA.UpperBound(2), 0);
  const std::int32_t columns = aaMatrixB.UpperBound(2);
  Dimension(aaMatrixResult, {1, rows}, {1, columns});
  if (!HoldsFromOne(aaMatrixA, rows, terms) || !HoldsFromOne(aaMatrixB, terms, columns)) {
    return MultiplyChecked(aaMatrixA, aaMatrixB, terms, aaMatrixResult);
  }
  const auto stride = static_cast<std::size_t>(columns);
  TranslatingMemoryErrors([&] {
    MultiplyMatrices(FromOne(aaMatrixA), FromOne(aaMatrixB), {aaMatrixResult.Elements().data(), stride},
                     static_cast<std::size_t>(rows), static_cast<std::size_t>(terms), stride);
  });
  if (!AllFinite(aaMatrixResult)) MultiplyChecked(aaMatrixA, aaMatrixB, terms, aaMatrixResult);
}

void CGeometry::TransformPoint(double arOriginalPointX, double arOriginalPointY, double arOriginalPointZ,
                               const BoundedArray<double>& aaRotMatrix, double& arNewPointX,
                               double& arNewPointY, double& arNewPointZ) const {
  if (HasBounds(aaRotMatrix, kOneToThree, kOneToThree)) {
    const double* matrix = aaRotMatrix.Elements().data();
    const double x = DotProduct(matrix, arOriginalPointX, arOriginalPointY, arOriginalPointZ);
    const double y = DotProduct(matrix + 3, arOriginalPointX, arOriginalPointY, arOriginalPointZ);
    const double z = DotProduct(matrix + 6, arOriginalPointX, arOriginalPointY, arOriginalPointZ);
    if (HasFiniteBits(x + y + z)) {
      arNewPointX = x;
      arNewPointY = y;
      arNewPointZ = z;
      return;
    }
  }
  TransformChecked(arOriginalPointX, arOriginalPointY, arOriginalPointZ, aaRotMatrix, arNewPointX,
                   arNewPointY, arNewPointZ);
}

}  // namespace vorquill21
