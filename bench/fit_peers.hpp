#pragma once

// Polynomial fits by the libraries that ours are measured beside. Both get the matrix of all terms, in
// doubles.

#include <gsl/gsl_multifit.h>

#include <Eigen/Dense>
#include <cmath>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace vorquill21::bench {

/// Writes the powers of x, ascending, to `row`.
inline void WriteCurveTerms(double x, int order, std::span<double> row) {
  double power = 1.0;
  for (int k = 0; k <= order; ++k) {
    row[static_cast<std::size_t>(k)] = power;
    power *= x;
  }
}

/// Writes y^i * x^j, i + j <= order, i outermost, to `row`.
inline void WriteSurfaceTerms(double x, double y, int order, std::span<double> row) {
  std::size_t at = 0;
  double powerOfY = 1.0;
  for (int i = 0; i <= order; ++i) {
    double term = powerOfY;
    for (int j = 0; i + j <= order; ++j) {
      row[at++] = term;
      term *= x;
    }
    powerOfY *= y;
  }
}

/// gsl_multifit_linear: singular value decomposition of the balanced matrix.
class GslFit {
 public:
  GslFit(std::size_t points, std::size_t terms)
      : matrix_(gsl_matrix_alloc(points, terms)),
        values_(gsl_vector_alloc(points)),
        coefficients_(gsl_vector_alloc(terms)),
        covariance_(gsl_matrix_alloc(terms, terms)),
        work_(gsl_multifit_linear_alloc(points, terms)) {}

  std::span<double> Row(std::size_t i) { return {gsl_matrix_ptr(matrix_.get(), i, 0), matrix_->size2}; }
  double& Value(std::size_t i) { return *gsl_vector_ptr(values_.get(), i); }

  /// The coefficients; `squares` receives the sum of the squared residuals.
  std::span<const double> Solve(double& squares) {
    gsl_multifit_linear(matrix_.get(), values_.get(), coefficients_.get(), covariance_.get(), &squares,
                        work_.get());
    return {gsl_vector_ptr(coefficients_.get(), 0), coefficients_->size};
  }

 private:
  template <auto freed>
  struct Free {
    void operator()(auto* object) const { freed(object); }
  };

  std::unique_ptr<gsl_matrix, Free<gsl_matrix_free>> matrix_;
  std::unique_ptr<gsl_vector, Free<gsl_vector_free>> values_;
  std::unique_ptr<gsl_vector, Free<gsl_vector_free>> coefficients_;
  std::unique_ptr<gsl_matrix, Free<gsl_matrix_free>> covariance_;
  std::unique_ptr<gsl_multifit_linear_workspace, Free<gsl_multifit_linear_free>> work_;
};

/// Householder QR with column pivoting.
class EigenFit {
 public:
  EigenFit(std::size_t points, std::size_t terms)
      : matrix_(points, terms),
        values_(points),
        row_(terms),
        solver_(static_cast<Eigen::Index>(points), static_cast<Eigen::Index>(terms)) {}

  /// Row i is written to the span and then taken over.
  std::span<double> Row() { return row_; }
  void TakeRow(std::size_t i, double value) {
    const auto index = static_cast<Eigen::Index>(i);
    for (std::size_t k = 0; k < row_.size(); ++k) matrix_(index, static_cast<Eigen::Index>(k)) = row_[k];
    values_(index) = value;
  }

  std::span<const double> Solve(double& squares) {
    solver_.compute(matrix_);
    coefficients_ = solver_.solve(values_);
    squares = (values_ - matrix_ * coefficients_).squaredNorm();
    return {coefficients_.data(), static_cast<std::size_t>(coefficients_.size())};
  }

 private:
  Eigen::MatrixXd matrix_;
  Eigen::VectorXd values_;
  std::vector<double> row_;
  Eigen::ColPivHouseholderQR<Eigen::MatrixXd> solver_;
  Eigen::VectorXd coefficients_;
};

}  // namespace vorquill21::bench
