#include <benchmark/benchmark.h>

#include <Eigen/Dense>
#include <Eigen/Geometry>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "vorquill21/numeric/geometry.hpp"

namespace vorquill21 {
namespace {

constexpr std::size_t kCount = 1024;
constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;

struct Triple {
  double x;
  double y;
  double z;
};

std::vector<Triple> Triples(double from, double to) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> uniform(from, to);
  std::vector<Triple> triples(kCount);
  for (Triple& triple : triples) triple = {uniform(random), uniform(random), uniform(random)};
  return triples;
}

Eigen::Vector3d ToEigen(const Triple& triple) {
  return {triple.x, triple.y, triple.z};
}

void Report(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCount));
}

// --- Angles ----------------------------------------------------------------------------------------------

void AngleOfOurs(benchmark::State& state) {
  const CGeometry geometry;
  const std::vector<Triple> vectors = Triples(-1, 1);
  for (auto _ : state) {
    for (std::size_t i = 0; i < kCount; ++i) {
      const Triple& a = vectors[i];
      const Triple& b = vectors[kCount - 1 - i];
      benchmark::DoNotOptimize(geometry.AngleBetweenVectors(a.x, a.y, a.z, b.x, b.y, b.z));
    }
  }
  Report(state);
}
BENCHMARK(AngleOfOurs)->Name("AngleBetweenVectors/ours");

void AngleOfEigen(benchmark::State& state) {
  std::vector<Eigen::Vector3d> vectors;
  for (const Triple& triple : Triples(-1, 1)) vectors.push_back(ToEigen(triple));
  for (auto _ : state) {
    for (std::size_t i = 0; i < kCount; ++i) {
      const Eigen::Vector3d& a = vectors[i];
      const Eigen::Vector3d& b = vectors[kCount - 1 - i];
      benchmark::DoNotOptimize(std::acos(a.dot(b) / (a.norm() * b.norm())) / kRadiansPerDegree);
    }
  }
  Report(state);
}
BENCHMARK(AngleOfEigen)->Name("AngleBetweenVectors/eigen");

// --- Rotations -------------------------------------------------------------------------------------------

void BuildOfOurs(benchmark::State& state) {
  const CGeometry geometry;
  const std::vector<Triple> angles = Triples(-180, 180);
  BoundedArray<double> matrix;
  for (auto _ : state) {
    for (const Triple& angle : angles) {
      geometry.BuildTransformationMatrix(angle.x, angle.y, angle.z, matrix);
      benchmark::DoNotOptimize(matrix.Elements().data());
      benchmark::ClobberMemory();
    }
  }
  Report(state);
}
BENCHMARK(BuildOfOurs)->Name("BuildTransformationMatrix/ours");

void BuildOfEigen(benchmark::State& state) {
  const std::vector<Triple> angles = Triples(-180, 180);
  Eigen::Matrix3d matrix;
  for (auto _ : state) {
    for (const Triple& angle : angles) {
      matrix = (Eigen::AngleAxisd(angle.z * kRadiansPerDegree, Eigen::Vector3d::UnitZ()) *
                Eigen::AngleAxisd(angle.y * kRadiansPerDegree, Eigen::Vector3d::UnitY()) *
                Eigen::AngleAxisd(angle.x * kRadiansPerDegree, Eigen::Vector3d::UnitX()))
                   .toRotationMatrix();
      benchmark::DoNotOptimize(matrix.data());
      benchmark::ClobberMemory();
    }
  }
  Report(state);
}
BENCHMARK(BuildOfEigen)->Name("BuildTransformationMatrix/eigen");

void TransformOfOurs(benchmark::State& state) {
  const CGeometry geometry;
  const std::vector<Triple> points = Triples(-1, 1);
  BoundedArray<double> matrix;
  geometry.BuildTransformationMatrix(10, 20, 30, matrix);
  for (auto _ : state) {
    for (const Triple& point : points) {
      Triple turned;
      geometry.TransformPoint(point.x, point.y, point.z, matrix, turned.x, turned.y, turned.z);
      benchmark::DoNotOptimize(turned);
    }
  }
  Report(state);
}
BENCHMARK(TransformOfOurs)->Name("TransformPoint/ours");

/// What TransformPoint does, by Eigen and without a look at bounds or faults: a call, three numbers in, a
/// matrix by rows, three numbers out.
[[gnu::noinline]] void TransformByEigen(double x, double y, double z, const double* matrix, double& newX,
                                        double& newY, double& newZ) {
  using MatrixByRows = Eigen::Matrix<double, 3, 3, Eigen::RowMajor>;
  const Eigen::Vector3d turned = Eigen::Map<const MatrixByRows>(matrix) * Eigen::Vector3d(x, y, z);
  newX = turned.x();
  newY = turned.y();
  newZ = turned.z();
}

void TransformOfEigenCalled(benchmark::State& state) {
  const std::vector<Triple> points = Triples(-1, 1);
  BoundedArray<double> matrix;
  CGeometry().BuildTransformationMatrix(10, 20, 30, matrix);
  for (auto _ : state) {
    for (const Triple& point : points) {
      Triple turned;
      TransformByEigen(point.x, point.y, point.z, matrix.Elements().data(), turned.x, turned.y, turned.z);
      benchmark::DoNotOptimize(turned);
    }
  }
  Report(state);
}
BENCHMARK(TransformOfEigenCalled)->Name("TransformPoint/eigen, called");

void TransformOfEigenInlined(benchmark::State& state) {
  std::vector<Eigen::Vector3d> points;
  for (const Triple& triple : Triples(-1, 1)) points.push_back(ToEigen(triple));
  Eigen::Matrix3d matrix = Eigen::AngleAxisd(0.3, Eigen::Vector3d(1, 2, 3).normalized()).toRotationMatrix();
  benchmark::DoNotOptimize(matrix.data());  // a matrix in memory, as a host has it, and not one in registers
  for (auto _ : state) {
    for (const Eigen::Vector3d& point : points) {
      Eigen::Vector3d turned = matrix * point;
      benchmark::DoNotOptimize(turned);
    }
  }
  Report(state);
}
BENCHMARK(TransformOfEigenInlined)->Name("TransformPoint/eigen, inlined");

/// Each turn begins with what the one before has left, so that what counts is how long one takes, not how
/// many are under way at once.
void RepeatedTransformOfOurs(benchmark::State& state) {
  const CGeometry geometry;
  BoundedArray<double> matrix;
  geometry.BuildTransformationMatrix(10, 20, 30, matrix);
  Triple point{1.0, 0.5, 0.25};
  for (auto _ : state) {
    for (std::size_t i = 0; i < kCount; ++i) {
      geometry.TransformPoint(point.x, point.y, point.z, matrix, point.x, point.y, point.z);
    }
    benchmark::DoNotOptimize(point);
  }
  Report(state);
}
BENCHMARK(RepeatedTransformOfOurs)->Name("TransformPoint again and again/ours");

void RepeatedTransformOfEigen(benchmark::State& state) {
  Eigen::Matrix3d matrix = Eigen::AngleAxisd(0.3, Eigen::Vector3d(1, 2, 3).normalized()).toRotationMatrix();
  benchmark::DoNotOptimize(matrix.data());
  Eigen::Vector3d point(1.0, 0.5, 0.25);
  for (auto _ : state) {
    for (std::size_t i = 0; i < kCount; ++i) point = matrix * point;
    benchmark::DoNotOptimize(point);
  }
  Report(state);
}
BENCHMARK(RepeatedTransformOfEigen)->Name("TransformPoint again and again/eigen");

// --- Products --------------------------------------------------------------------------------------------

void ReportProduct(benchmark::State& state) {
  const std::int64_t size = state.range(0);
  state.SetItemsProcessed(state.iterations() * size * size * size);
}

void MultiplyOfOurs(benchmark::State& state) {
  const CGeometry geometry;
  const auto size = static_cast<std::int32_t>(state.range(0));
  BoundedArray<double> a({1, size}, {1, size});
  double next = 0.1;
  for (double& element : a.Elements()) element = next = 3.9 * next * (1.0 - next);
  const BoundedArray<double> b = a;
  BoundedArray<double> product;
  for (auto _ : state) {
    geometry.MatrixMultiply(a, b, product);
    benchmark::DoNotOptimize(product.Elements().data());
    benchmark::ClobberMemory();
  }
  ReportProduct(state);
}
BENCHMARK(MultiplyOfOurs)->Name("MatrixMultiply/ours")->Arg(3)->Arg(500);

void MultiplyOfEigen(benchmark::State& state) {
  const auto size = static_cast<Eigen::Index>(state.range(0));
  Eigen::MatrixXd a(size, size);
  double next = 0.1;
  for (double& element : a.reshaped()) element = next = 3.9 * next * (1.0 - next);
  const Eigen::MatrixXd b = a;
  Eigen::MatrixXd product(size, size);
  for (auto _ : state) {
    product.noalias() = a * b;
    benchmark::DoNotOptimize(product.data());
    benchmark::ClobberMemory();
  }
  ReportProduct(state);
}
BENCHMARK(MultiplyOfEigen)->Name("MatrixMultiply/eigen")->Arg(3)->Arg(500);

}  // namespace
}  // namespace vorquill21
