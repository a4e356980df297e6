#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <cstdint>
#include <vector>

namespace vorquill21::python {

namespace py = pybind11;

/// What Python knows as BoundedArray: a numpy array seen through lower bounds. Without lower bounds it was
/// never dimensioned.
class BoundedValues {
 public:
  /// Never dimensioned.
  BoundedValues() = default;

  /// One lower bound for each dimension of `values`, one to three; otherwise ValueError. Upper bounds that do
  /// not fit into 32 bits are ValueError, too.
  BoundedValues(py::array values, std::vector<std::int32_t> lowerBounds);

  const py::array& Values() const { return values_; }
  const std::vector<std::int32_t>& LowerBounds() const { return lowerBounds_; }
  std::vector<std::int32_t> UpperBounds() const;

  /// The place among `Values` of an index (or a tuple of indices) in these bounds. IndexError outside, and
  /// for a wrong number of indices.
  py::tuple PlaceOf(py::handle index) const;

 private:
  py::array values_;
  std::vector<std::int32_t> lowerBounds_;
};

/// The values of a new BoundedArray: an array as it is; of nested lists a new one, of float64 when all their
/// elements are numbers, otherwise of objects.
py::array ValuesOf(const py::object& object);

}  // namespace vorquill21::python
