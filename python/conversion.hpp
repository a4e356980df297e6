#pragma once

/// How the types of the library look in Python, in both directions. Every source of the module includes this
/// header, so that each type has one form.

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "vorquill21/frame/types/array_view.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"

namespace vorquill21::python {

namespace py = pybind11;

/// A 32-bit integer that Python passes: an integer beyond 32 bits is OverflowError.
struct Integer {
  std::int32_t value = 0;
};

/// The value of an object that is an integer; TypeError otherwise.
std::int32_t IntegerOf(py::handle object);

/// The text of a str, unit by unit: a character beyond the basic plane becomes two units, a lone surrogate
/// one.
Text TextOf(const py::str& string);

/// The str of a text: surrogates that are partners become one character, others stay alone.
py::str StringOf(TextView text);

/// The value of an object that has a counterpart among the variants, of any other a reference to the object.
Variant VariantOf(py::handle object);
py::object ObjectOf(Variant&& value);

/// A numeric one-dimensional array that is read where it lies, whenever it is a contiguous array of float64;
/// otherwise a converted copy. `owner` keeps alive what the view looks at. TypeError for what holds other
/// things than integers and floating numbers.
ArrayView<const double> NumbersOf(py::handle object, py::object& owner);

/// Copies of arrays. TypeError for other elements, or more than three dimensions.
BoundedArray<double> NumberArrayOf(py::handle object);
BoundedArray<Text> TextArrayOf(py::handle object);
BoundedArray<Variant> VariantArrayOf(py::handle object);

/// A numpy array that owns the elements of `array`, which are moved and not copied; an array with other lower
/// bounds than 0, or one never dimensioned, is a BoundedArray over such an array.
py::object ObjectOf(BoundedArray<double>&& array);

/// A list of one dimension, a numpy array of objects otherwise; a BoundedArray as above.
py::object ObjectOf(BoundedArray<Text>&& array);

/// As texts, but a numpy array of float64 when all elements are doubles.
py::object ObjectOf(BoundedArray<Variant>&& array);

/// An object of Python's that lives as long as somebody in the library refers to it, and is let go with the
/// interpreter's lock held.
std::shared_ptr<py::object> Kept(py::object object);

/// Lets go of what Kept made; its presence tells that a pointer stems from there.
struct LetGo {
  void operator()(py::object* object) const;
};

}  // namespace vorquill21::python

namespace pybind11::detail {

template <>
struct type_caster<vorquill21::python::Integer> {
  PYBIND11_TYPE_CASTER(vorquill21::python::Integer, const_name("int"));
  bool load(handle source, bool);
  static handle cast(vorquill21::python::Integer source, return_value_policy, handle) {
    return PyLong_FromLong(source.value);
  }
};

template <>
struct type_caster<vorquill21::Text> {
  PYBIND11_TYPE_CASTER(vorquill21::Text, const_name("str"));
  bool load(handle source, bool) {
    if (!isinstance<str>(source)) return false;
    value = vorquill21::python::TextOf(reinterpret_borrow<str>(source));
    return true;
  }
  static handle cast(const vorquill21::Text& source, return_value_policy, handle) {
    return vorquill21::python::StringOf(source).release();
  }
};

/// The text lies in the caster, which lives until the call is over.
template <>
struct type_caster<vorquill21::TextView> {
  PYBIND11_TYPE_CASTER(vorquill21::TextView, const_name("str"));
  bool load(handle source, bool) {
    if (!isinstance<str>(source)) return false;
    text_ = vorquill21::python::TextOf(reinterpret_borrow<str>(source));
    value = text_;
    return true;
  }
  static handle cast(vorquill21::TextView source, return_value_policy, handle) {
    return vorquill21::python::StringOf(source).release();
  }

 private:
  vorquill21::Text text_;
};

template <>
struct type_caster<vorquill21::Variant> {
  PYBIND11_TYPE_CASTER(vorquill21::Variant, const_name("object"));
  bool load(handle source, bool) {
    value = vorquill21::python::VariantOf(source);
    return true;
  }
  static handle cast(vorquill21::Variant source, return_value_policy, handle) {
    return vorquill21::python::ObjectOf(std::move(source)).release();
  }
};

/// The array is kept by the caster, which lives until the call is over.
template <>
struct type_caster<vorquill21::ArrayView<const double>> {
  using View = vorquill21::ArrayView<const double>;
  static constexpr auto name = const_name("numpy.ndarray");

  template <typename>
  using cast_op_type = View;
  operator View() const { return view_; }

  bool load(handle source, bool) {
    view_ = vorquill21::python::NumbersOf(source, owner_);
    return true;
  }
  /// A copy: the view may not outlive the call, an array of Python's may.
  static handle cast(View source, return_value_policy, handle) {
    const auto elements = source.Elements();
    vorquill21::BoundedArray<double> copy(std::vector<double>(elements.begin(), elements.end()),
                                          source.LowerBound());
    return vorquill21::python::ObjectOf(std::move(copy)).release();
  }

 private:
  object owner_;
  View view_{nullptr, 0};
};

template <typename T>
struct type_caster<vorquill21::BoundedArray<T>> {
  PYBIND11_TYPE_CASTER(vorquill21::BoundedArray<T>, const_name("BoundedArray"));
  bool load(handle source, bool) {
    if constexpr (std::is_same_v<T, double>) {
      value = vorquill21::python::NumberArrayOf(source);
    } else if constexpr (std::is_same_v<T, vorquill21::Text>) {
      value = vorquill21::python::TextArrayOf(source);
    } else {
      value = vorquill21::python::VariantArrayOf(source);
    }
    return true;
  }
  static handle cast(vorquill21::BoundedArray<T> source, return_value_policy, handle) {
    return vorquill21::python::ObjectOf(std::move(source)).release();
  }
};

template <>
struct type_caster<vorquill21::FailedTests> {
  PYBIND11_TYPE_CASTER(vorquill21::FailedTests, const_name("list"));
  bool load(handle source, bool) {
    const auto texts = vorquill21::python::TextArrayOf(source);
    value.assign(texts.Elements().begin(), texts.Elements().end());
    return true;
  }
  static handle cast(const vorquill21::FailedTests& source, return_value_policy, handle) {
    list names;
    for (const vorquill21::Text& name : source) names.append(vorquill21::python::StringOf(name));
    return names.release();
  }
};

/// Enumerations are integers in both directions; Python's classes for them stand beside (see Enumeration).
template <typename E>
struct type_caster<E, std::enable_if_t<std::is_enum_v<E> && sizeof(E) == sizeof(std::int32_t)>> {
  PYBIND11_TYPE_CASTER(E, const_name("int"));
  bool load(handle source, bool convert) {
    type_caster<vorquill21::python::Integer> number;
    if (!number.load(source, convert)) return false;
    value = static_cast<E>(static_cast<vorquill21::python::Integer&>(number).value);
    return true;
  }
  static handle cast(E source, return_value_policy, handle) {
    return PyLong_FromLong(static_cast<std::int32_t>(source));
  }
};

}  // namespace pybind11::detail
