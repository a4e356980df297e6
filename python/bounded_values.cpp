#include "python/bounded_values.hpp"

#include <algorithm>
#include <limits>
#include <utility>

#include "python/conversion.hpp"
#include "python/module.hpp"

namespace vorquill21::python {
namespace {

py::tuple AsTuple(py::handle object) {
  return py::isinstance<py::tuple>(object) ? py::reinterpret_borrow<py::tuple>(object)
                                           : py::make_tuple(object);
}

py::tuple TupleOf(const std::vector<std::int32_t>& numbers) {
  py::list list;
  for (const std::int32_t number : numbers) list.append(number);
  return py::tuple(list);
}

/// One lower bound counts for all dimensions.
std::vector<std::int32_t> LowerBoundsOf(const py::object& lowerBounds, const py::array& values) {
  std::vector<std::int32_t> bounds;
  for (const py::handle bound : AsTuple(lowerBounds)) bounds.push_back(IntegerOf(bound));
  if (!py::isinstance<py::tuple>(lowerBounds))
    bounds.resize(static_cast<std::size_t>(values.ndim()), bounds[0]);
  return bounds;
}

BoundedValues Made(const py::object& values, const py::object& lowerBounds) {
  if (values.is_none()) return {};
  py::array array = ValuesOf(values);
  std::vector<std::int32_t> bounds = LowerBoundsOf(lowerBounds, array);
  return {std::move(array), std::move(bounds)};
}

py::str Described(const BoundedValues& array) {
  if (array.LowerBounds().empty()) return py::str("BoundedArray()");
  return py::str("BoundedArray({!r}, lower_bounds={!r})")
      .format(array.Values(), TupleOf(array.LowerBounds()));
}

bool AreEqual(const BoundedValues& left, const BoundedValues& right) {
  const py::object areEqual = py::module_::import("numpy").attr("array_equal");
  return left.LowerBounds() == right.LowerBounds() && py::cast<bool>(areEqual(left.Values(), right.Values()));
}

}  // namespace

BoundedValues::BoundedValues(py::array values, std::vector<std::int32_t> lowerBounds)
    : values_(std::move(values)), lowerBounds_(std::move(lowerBounds)) {
  if (values_.ndim() < 1 || values_.ndim() > 3) throw py::value_error("an array has one to three dimensions");
  if (static_cast<std::size_t>(values_.ndim()) != lowerBounds_.size()) {
    throw py::value_error("an array has one lower bound for each dimension");
  }
  for (std::size_t d = 0; d < lowerBounds_.size(); ++d) {
    const std::int64_t upper = std::int64_t{lowerBounds_[d]} + values_.shape()[d] - 1;
    if (upper > std::numeric_limits<std::int32_t>::max())
      throw py::value_error("upper bounds fit into 32 bits");
  }
}

std::vector<std::int32_t> BoundedValues::UpperBounds() const {
  std::vector<std::int32_t> bounds(lowerBounds_);
  for (std::size_t d = 0; d < bounds.size(); ++d)
    bounds[d] += static_cast<std::int32_t>(values_.shape()[d]) - 1;
  return bounds;
}

py::tuple BoundedValues::PlaceOf(py::handle index) const {
  const py::tuple indices = AsTuple(index);
  if (indices.size() != lowerBounds_.size())
    throw py::index_error("an element has one index for each dimension");
  py::tuple place(indices.size());
  for (std::size_t d = 0; d < indices.size(); ++d) {
    const std::int64_t offset = std::int64_t{IntegerOf(indices[d])} - lowerBounds_[d];
    if (offset < 0 || offset >= values_.shape()[d]) throw py::index_error("the index is outside the bounds");
    place[d] = py::int_(offset);
  }
  return place;
}

void AddBoundedArray(py::module_& module) {
  py::class_<BoundedValues>(module, "BoundedArray", py::buffer_protocol(),
                            "A numpy array with lower bounds: values[0] has the index lower_bounds[0].")
      .def(py::init(&Made), py::arg("values") = py::none(), py::arg("lower_bounds") = 0,
           "__init__(self, values=None, lower_bounds=0)\n--\n\n"
           "An array is seen, not copied; lists are made one. One lower bound counts for all dimensions.\n"
           "Without values the array was never dimensioned.")
      .def_property_readonly("values", &BoundedValues::Values, "The numpy array, indices from 0.")
      .def_property_readonly(
          "lower_bounds", [](const BoundedValues& self) { return TupleOf(self.LowerBounds()); },
          "The first index of each dimension, none when the array was never dimensioned.")
      .def_property_readonly(
          "upper_bounds", [](const BoundedValues& self) { return TupleOf(self.UpperBounds()); },
          "The last index of each dimension.")
      .def(
          "__getitem__",
          [](const BoundedValues& self, const py::object& index) {
            return py::object(self.Values()[self.PlaceOf(index)]);
          },
          py::arg("index"), "__getitem__(self, index, /)\n--\n\nThe element at an index in the bounds.")
      .def(
          "__setitem__",
          [](const BoundedValues& self, const py::object& index, const py::object& value) {
            self.Values()[self.PlaceOf(index)] = value;
          },
          py::arg("index"), py::arg("value"), "__setitem__(self, index, value, /)\n--\n\n")
      .def(
          "__len__", [](const BoundedValues& self) { return py::len(self.Values()); },
          "__len__(self, /)\n--\n\nThe number of indices of the first dimension.")
      .def(
          "__iter__", [](const BoundedValues& self) { return py::iter(self.Values()); },
          "__iter__(self, /)\n--\n\n")
      .def(
          "__eq__",
          [](const BoundedValues& self, const py::object& other) -> py::object {
            if (!py::isinstance<BoundedValues>(other))
              return py::reinterpret_borrow<py::object>(Py_NotImplemented);
            return py::bool_(AreEqual(self, py::cast<const BoundedValues&>(other)));
          },
          py::arg("value"), "__eq__(self, value, /)\n--\n\nThe same bounds and the same elements.")
      .def("__repr__", &Described, "__repr__(self, /)\n--\n\n")
      .def_buffer([](const BoundedValues& self) { return self.Values().request(); });
}

}  // namespace vorquill21::python
