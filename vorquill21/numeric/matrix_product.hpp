#pragma once

#include <cstddef>

namespace vorquill21 {

/// A matrix in row-major order that lies in somebody else's memory.
template <typename T>
struct MatrixView {
  T* data;
  std::size_t stride;  ///< elements from one row to the next

  T* Row(std::size_t row) const { return data + row * stride; }
};

/// product(i, j) = the sum of a(i, k) * b(k, j) over k = 0 ... terms - 1, each product rounded and added to 0
/// in the order of k. Not part of the interface.
void MultiplyMatrices(MatrixView<const double> a, MatrixView<const double> b, MatrixView<double> product,
                      std::size_t rows, std::size_t terms, std::size_t columns);

}  // namespace vorquill21
