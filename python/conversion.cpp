#include "python/conversion.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "python/bounded_values.hpp"

namespace vorquill21::python {
namespace {

using Shape = std::vector<py::ssize_t>;
using LowerBounds = std::vector<std::int32_t>;

constexpr std::size_t kMostDimensions = 3;

constexpr bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr bool IsSurrogate(char32_t unit) {
  return IsHighSurrogate(unit) || IsLowSurrogate(unit);
}

[[noreturn]] void RaisePython(PyObject* type, const std::string& message) {
  PyErr_SetString(type, message.c_str());
  throw py::error_already_set();
}

std::int32_t Int32Of(py::handle number) {
  int overflow = 0;
  const long long value = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
  if (overflow != 0 || value < std::numeric_limits<std::int32_t>::min() ||
      value > std::numeric_limits<std::int32_t>::max()) {
    RaisePython(PyExc_OverflowError, py::cast<std::string>(py::str(number)) + " does not fit into 32 bits");
  }
  return static_cast<std::int32_t>(value);
}

// --- Shapes ----------------------------------------------------------------------------------------------

bool IsList(py::handle object) {
  return py::isinstance<py::list>(object) || py::isinstance<py::tuple>(object);
}

bool HoldsListsOnly(py::handle list) {
  const auto elements = py::reinterpret_borrow<py::sequence>(list);
  return std::all_of(elements.begin(), elements.end(), [](py::handle element) { return IsList(element); });
}

/// A list of lists has one dimension more than the first one of them.
Shape ShapeOfNested(py::object list) {
  Shape shape;
  while (shape.size() < kMostDimensions) {
    const auto length = static_cast<py::ssize_t>(py::len(list));
    shape.push_back(length);
    if (length == 0 || !HoldsListsOnly(list)) break;
    list = py::reinterpret_borrow<py::sequence>(list)[0];
  }
  return shape;
}

bool IsNumber(py::handle object) {
  return py::isinstance<py::float_>(object) ||
         (py::isinstance<py::int_>(object) && !py::isinstance<py::bool_>(object));
}

void AppendCells(py::handle object, const Shape& shape, std::size_t dimension, py::list& cells) {
  if (dimension == shape.size()) return cells.append(object);
  if (!IsList(object) || static_cast<py::ssize_t>(py::len(object)) != shape[dimension]) {
    throw py::value_error("nested lists must form a table: its rows have the same length");
  }
  for (const py::handle element : py::reinterpret_borrow<py::sequence>(object)) {
    AppendCells(element, shape, dimension + 1, cells);
  }
}

/// The elements of an array of any kind, the last index running fastest.
struct Cells {
  Shape shape;
  LowerBounds lowerBounds;
  py::list elements;
};

Cells CellsOfNested(const py::object& list) {
  Cells cells{ShapeOfNested(list), {}, py::list()};
  AppendCells(list, cells.shape, 0, cells.elements);
  cells.lowerBounds.resize(cells.shape.size());
  return cells;
}

Shape ShapeOf(const py::array& array) {
  return {array.shape(), array.shape() + array.ndim()};
}

Cells CellsOfArray(const py::array& array, LowerBounds lowerBounds) {
  return {ShapeOf(array), std::move(lowerBounds), array.attr("ravel")().attr("tolist")()};
}

/// An array with the bounds that a host sees, its elements T(); nothing for one never dimensioned.
template <typename T>
BoundedArray<T> Dimensioned(const Shape& shape, const LowerBounds& lowerBounds) {
  std::array<Bounds, kMostDimensions> bounds;
  for (std::size_t d = 0; d < shape.size(); ++d) {
    const std::int64_t upper = std::int64_t{lowerBounds[d]} + shape[d] - 1;
    if (upper > std::numeric_limits<std::int32_t>::max()) Raise(kSubscriptOutOfRange);
    bounds[d] = {lowerBounds[d], static_cast<std::int32_t>(upper)};
  }
  switch (shape.size()) {
    case 0:
      return {};
    case 1:
      return shape[0] == 0 ? BoundedArray<T>::Empty() : BoundedArray<T>(bounds[0]);
    case 2:
      return BoundedArray<T>(bounds[0], bounds[1]);
    default:
      return BoundedArray<T>(bounds[0], bounds[1], bounds[2]);
  }
}

// --- Arrays of numbers -----------------------------------------------------------------------------------

constexpr int kReadInPlace =
    py::array::c_style | py::array::forcecast | py::detail::npy_api::NPY_ARRAY_ALIGNED_;
using Numbers = py::array_t<double, kReadInPlace>;

void RequireDimensions(const py::array& array) {
  if (array.ndim() < 1 || static_cast<std::size_t>(array.ndim()) > kMostDimensions) {
    throw py::type_error("an array needs one to three dimensions");
  }
}

py::array AsArray(py::handle object) {
  if (py::isinstance<py::array>(object)) return py::reinterpret_borrow<py::array>(object);
  return py::module_::import("numpy").attr("asarray")(object);
}

bool HoldsNumbers(const py::array& array) {
  return std::string_view("iuf").find(array.dtype().kind()) != std::string_view::npos;
}

/// Values with lower bounds, whatever was passed: an array of Python's has the lower bounds 0.
struct Bounded {
  py::array values;
  LowerBounds lowerBounds;
};

Bounded BoundedOf(py::handle object) {
  if (py::isinstance<BoundedValues>(object)) {
    const auto& bounded = py::cast<const BoundedValues&>(object);
    return {bounded.Values(), bounded.LowerBounds()};
  }
  py::array values = AsArray(object);
  RequireDimensions(values);
  LowerBounds zeros(static_cast<std::size_t>(values.ndim()));
  return {std::move(values), std::move(zeros)};
}

Numbers NumbersIn(const py::array& array) {
  if (!HoldsNumbers(array) && array.size() > 0) {
    throw py::type_error("an array of numbers is needed, not one of " +
                         py::cast<std::string>(py::str(array.dtype())));
  }
  return Numbers(array);
}

BoundedArray<double> NumberArrayOf(const py::array& values, const LowerBounds& lowerBounds) {
  if (lowerBounds.empty()) return {};
  const Numbers numbers = NumbersIn(values);
  auto array = Dimensioned<double>(ShapeOf(numbers), lowerBounds);
  std::copy_n(numbers.data(), numbers.size(), array.Elements().begin());
  return array;
}

// --- Arrays of texts and variants ------------------------------------------------------------------------

Text TextOfElement(py::handle element) {
  if (!py::isinstance<py::str>(element)) throw py::type_error("an array of texts holds str only");
  return TextOf(py::reinterpret_borrow<py::str>(element));
}

template <typename T, typename Convert>
BoundedArray<T> Converted(const Cells& cells, const Convert& convert) {
  auto array = Dimensioned<T>(cells.lowerBounds.empty() ? Shape() : cells.shape, cells.lowerBounds);
  std::transform(cells.elements.begin(), cells.elements.end(), array.Elements().begin(), convert);
  return array;
}

Cells CellsOf(py::handle object) {
  if (IsList(object)) return CellsOfNested(py::reinterpret_borrow<py::object>(object));
  const bool isArray = py::isinstance<py::array>(object) || py::isinstance<BoundedValues>(object);
  if (!isArray) throw py::type_error("an array is needed: a list, a numpy array or a BoundedArray");
  auto [values, lowerBounds] = BoundedOf(object);
  return CellsOfArray(values, std::move(lowerBounds));
}

/// A list may hold itself.
BoundedArray<Variant> VariantsIn(const Cells& cells) {
  if (Py_EnterRecursiveCall(" while a list is converted") != 0) throw py::error_already_set();
  struct Leave {
    ~Leave() { Py_LeaveRecursiveCall(); }
  } leave;
  return Converted<Variant>(cells, [](py::handle element) { return VariantOf(element); });
}

Variant VariantOfArray(const py::array& values, const LowerBounds& lowerBounds) {
  if (HoldsNumbers(values) && !lowerBounds.empty()) return NumberArrayOf(values, lowerBounds);
  const Cells cells = CellsOfArray(values, lowerBounds);
  if (values.dtype().kind() == 'U') return Converted<Text>(cells, TextOfElement);
  return VariantsIn(cells);
}

bool IsArrayOfSeveral(py::handle object) {
  return py::isinstance<py::array>(object) && py::reinterpret_borrow<py::array>(object).ndim() > 0;
}

/// The Python object that a scalar of numpy stands for, such as int for numpy.int64.
py::object WithoutNumpy(py::handle object) {
  const bool isOfNumpy = py::isinstance<py::array>(object) ||
                         py::isinstance(object, py::module_::import("numpy").attr("generic"));
  return isOfNumpy ? object.attr("item")() : py::reinterpret_borrow<py::object>(object);
}

std::optional<Variant> ScalarOf(py::handle object) {
  if (object.is_none()) return Variant();
  if (object.is(py::ellipsis())) return Variant(Missing{});
  if (py::isinstance<py::bool_>(object)) return Variant(object.is(py::bool_(true)));
  if (py::isinstance<py::float_>(object)) return Variant(PyFloat_AS_DOUBLE(object.ptr()));
  if (py::isinstance<py::int_>(object)) return Variant(Int32Of(object));
  if (py::isinstance<py::str>(object)) return Variant(TextOf(py::reinterpret_borrow<py::str>(object)));
  return std::nullopt;
}

// --- Results ---------------------------------------------------------------------------------------------

template <typename T>
Shape ShapeOf(const BoundedArray<T>& array) {
  Shape shape;
  for (int d = 1; d <= array.Rank(); ++d)
    shape.push_back(static_cast<py::ssize_t>(array.BoundsOf(d).Count()));
  return shape;
}

template <typename T>
LowerBounds LowerBoundsOf(const BoundedArray<T>& array) {
  LowerBounds bounds;
  for (int d = 1; d <= array.Rank(); ++d) bounds.push_back(array.LowerBound(d));
  return bounds;
}

template <typename T>
bool BeginsAtZero(const BoundedArray<T>& array) {
  const LowerBounds bounds = LowerBoundsOf(array);
  return array.Rank() > 0 && std::all_of(bounds.begin(), bounds.end(), [](auto bound) { return bound == 0; });
}

/// A numpy array of the elements of `array`, which it takes over.
py::array Owned(BoundedArray<double>&& array) {
  auto owned = std::make_unique<BoundedArray<double>>(std::move(array));
  const Shape shape = ShapeOf(*owned);
  const double* elements = owned->Elements().data();
  const py::capsule owner(owned.get(), [](void* data) { delete static_cast<BoundedArray<double>*>(data); });
  static_cast<void>(owned.release());
  return py::array_t<double>(shape, elements, owner);
}

template <typename T>
py::array ArrayOfObjects(BoundedArray<T>&& array) {
  py::array objects(py::dtype("O"), ShapeOf(array));
  auto* place = static_cast<PyObject**>(objects.mutable_data());
  for (T& element : array.Elements()) *place++ = py::cast(std::move(element)).release().ptr();
  return objects;
}

template <typename T>
py::list ListOf(BoundedArray<T>&& array) {
  py::list list;
  for (T& element : array.Elements()) list.append(py::cast(std::move(element)));
  return list;
}

py::object WithBounds(py::array values, LowerBounds lowerBounds) {
  return py::cast(BoundedValues(std::move(values), std::move(lowerBounds)));
}

template <typename T>
py::object ObjectOfElements(BoundedArray<T>&& array) {
  if (array.Rank() == 0) return py::cast(BoundedValues());
  if (array.Rank() == 1 && array.LowerBound() == 0) return ListOf(std::move(array));
  const bool beginsAtZero = BeginsAtZero(array);
  LowerBounds lowerBounds = LowerBoundsOf(array);
  py::array objects = ArrayOfObjects(std::move(array));
  return beginsAtZero ? objects : WithBounds(std::move(objects), std::move(lowerBounds));
}

BoundedArray<double> DoublesIn(const BoundedArray<Variant>& array) {
  auto doubles = Dimensioned<double>(ShapeOf(array), LowerBoundsOf(array));
  std::transform(array.Elements().begin(), array.Elements().end(), doubles.Elements().begin(),
                 [](const Variant& element) { return element.As<double>(); });
  return doubles;
}

}  // namespace

std::int32_t IntegerOf(py::handle object) {
  const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(object.ptr()));
  if (!number) throw py::error_already_set();
  return Int32Of(number);
}

Text TextOf(const py::str& string) {
  const auto length = static_cast<std::size_t>(PyUnicode_GET_LENGTH(string.ptr()));
  const void* data = PyUnicode_DATA(string.ptr());
  switch (PyUnicode_KIND(string.ptr())) {
    case PyUnicode_1BYTE_KIND: {
      const auto* bytes = static_cast<const Py_UCS1*>(data);
      return {bytes, bytes + length};
    }
    case PyUnicode_2BYTE_KIND: {
      const auto* units = static_cast<const Py_UCS2*>(data);
      return {units, units + length};
    }
    default:
      break;
  }
  constexpr Py_UCS4 kBeyondBasicPlane = 0x10000;
  Text text;
  text.reserve(length);
  const auto* characters = static_cast<const Py_UCS4*>(data);
  for (std::size_t i = 0; i < length; ++i) {
    const Py_UCS4 character = characters[i];
    if (character >= kBeyondBasicPlane) text += static_cast<char16_t>(0xD7C0 + (character >> 10));
    text += static_cast<char16_t>(character < kBeyondBasicPlane ? character : 0xDC00 + (character & 0x3FF));
  }
  return text;
}

py::str StringOf(TextView text) {
  const auto build = [](int kind, const void* data, std::size_t length) {
    PyObject* string = PyUnicode_FromKindAndData(kind, data, static_cast<py::ssize_t>(length));
    if (string == nullptr) throw py::error_already_set();
    return py::reinterpret_steal<py::str>(string);
  };
  if (std::none_of(text.begin(), text.end(), IsSurrogate)) {
    return build(PyUnicode_2BYTE_KIND, text.data(), text.size());
  }
  std::u32string characters;
  characters.reserve(text.size());
  for (const char32_t unit : text) {
    const bool joins = IsLowSurrogate(unit) && !characters.empty() && IsHighSurrogate(characters.back());
    if (!joins) {
      characters += unit;
      continue;
    }
    characters.back() = 0x10000 + ((characters.back() - 0xD800) << 10) + (unit - 0xDC00);
  }
  return build(PyUnicode_4BYTE_KIND, characters.data(), characters.size());
}

py::array ValuesOf(const py::object& object) {
  if (!IsList(object)) return AsArray(object);
  Cells cells = CellsOfNested(object);
  const bool areNumbers = std::all_of(cells.elements.begin(), cells.elements.end(), IsNumber);
  py::array values(py::dtype(areNumbers ? "d" : "O"), cells.shape);
  py::ssize_t place = 0;
  for (const py::handle element : cells.elements) values.attr("flat")[py::int_(place++)] = element;
  return values;
}

Variant VariantOf(py::handle object) {
  if (std::optional<Variant> scalar = ScalarOf(object)) return *std::move(scalar);
  if (IsList(object)) return VariantsIn(CellsOf(object));
  if (py::isinstance<BoundedValues>(object) || IsArrayOfSeveral(object)) {
    const auto [values, lowerBounds] = BoundedOf(object);
    return VariantOfArray(values, lowerBounds);
  }
  py::object plain = WithoutNumpy(object);
  if (std::optional<Variant> scalar = ScalarOf(plain)) return *std::move(scalar);
  return ObjectReference(Kept(std::move(plain)));
}

py::object ObjectOf(Variant&& value) {
  if (value.IsEmpty()) return py::none();
  if (value.IsMissing()) return py::ellipsis();
  if (const auto* boolean = value.If<bool>()) return py::bool_(*boolean);
  if (const auto* integer = value.If<std::int32_t>()) return py::int_(*integer);
  if (const auto* number = value.If<double>()) return py::float_(*number);
  if (const auto* text = value.If<Text>()) return StringOf(*text);
  if (const auto* object = value.If<ObjectReference>()) return *static_cast<py::object*>(object->get());
  if (auto* numbers = value.If<BoundedArray<double>>()) return ObjectOf(std::move(*numbers));
  if (auto* texts = value.If<BoundedArray<Text>>()) return ObjectOf(std::move(*texts));
  return ObjectOf(std::move(value.As<BoundedArray<Variant>>()));
}

ArrayView<const double> NumbersOf(py::handle object, py::object& owner) {
  const auto [values, lowerBounds] = BoundedOf(object);
  if (lowerBounds.size() != 1) {
    static const BoundedArray<double> neverDimensioned;
    return neverDimensioned;
  }
  const Numbers numbers = NumbersIn(values);
  owner = numbers;
  return {numbers.data(), static_cast<std::size_t>(numbers.size()), lowerBounds[0]};
}

BoundedArray<double> NumberArrayOf(py::handle object) {
  const auto [values, lowerBounds] = BoundedOf(object);
  return NumberArrayOf(values, lowerBounds);
}

BoundedArray<Text> TextArrayOf(py::handle object) {
  return Converted<Text>(CellsOf(object), TextOfElement);
}

BoundedArray<Variant> VariantArrayOf(py::handle object) {
  return VariantsIn(CellsOf(object));
}

py::object ObjectOf(BoundedArray<double>&& array) {
  if (array.Rank() == 0) return py::cast(BoundedValues());
  if (BeginsAtZero(array)) return Owned(std::move(array));
  LowerBounds lowerBounds = LowerBoundsOf(array);
  return WithBounds(Owned(std::move(array)), std::move(lowerBounds));
}

py::object ObjectOf(BoundedArray<Text>&& array) {
  return ObjectOfElements(std::move(array));
}

py::object ObjectOf(BoundedArray<Variant>&& array) {
  const auto elements = array.Elements();
  const bool holdsDoublesOnly =
      array.Rank() > 0 &&
      std::all_of(elements.begin(), elements.end(), [](const Variant& v) { return v.Holds<double>(); });
  return holdsDoublesOnly ? ObjectOf(DoublesIn(array)) : ObjectOfElements(std::move(array));
}

std::shared_ptr<py::object> Kept(py::object object) {
  return {new py::object(std::move(object)), LetGo()};
}

void LetGo::operator()(py::object* object) const {
  if (Py_IsInitialized() != 0) {
    const py::gil_scoped_acquire lock;
    delete object;
  } else {
    object->release();  // the interpreter is gone, and its objects with it
    delete object;
  }
}

}  // namespace vorquill21::python

namespace pybind11::detail {

bool type_caster<vorquill21::python::Integer>::load(handle source, bool) {
  if (PyIndex_Check(source.ptr()) == 0) return false;
  value.value = vorquill21::python::IntegerOf(source);
  return true;
}

}  // namespace pybind11::detail
