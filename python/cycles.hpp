#pragma once

/// Objects of the library may refer to objects of Python that refer back: a handler of a log's event is often
/// a method of the object that holds the log. With this Python's collector sees such circles.

#include <pybind11/pybind11.h>

#include <memory>

namespace vorquill21::python {

namespace py = pybind11;

/// The pointer by which Python holds its object of class C; null before and after the object's life.
template <typename C>
const std::shared_ptr<C>* HolderOf(PyObject* self) {
  auto* instance = reinterpret_cast<py::detail::instance*>(self);
  if (!instance->simple_layout && instance->nonsimple.values_and_holders == nullptr) return nullptr;
  const auto place = instance->get_value_and_holder(py::detail::get_type_info(typeid(C)), false);
  return place.inst != nullptr && place.holder_constructed() ? &place.template holder<std::shared_ptr<C>>()
                                                             : nullptr;
}

/// For a class_ of C: what its objects refer to. `References` has two functions: Visit(object, visit), which
/// calls visit(PyObject*) for each of them and stops when that is not 0, provided that nobody but Python
/// holds the object; and Clear(object), which lets go of them.
template <typename C, typename References>
py::custom_type_setup SeenByCollector() {
  return py::custom_type_setup([](PyHeapTypeObject* heapType) {
    PyTypeObject& type = heapType->ht_type;
    type.tp_flags |= Py_TPFLAGS_HAVE_GC;
    type.tp_traverse = [](PyObject* self, visitproc visit, void* arg) {
      Py_VISIT(Py_TYPE(self));
      const auto* holder = HolderOf<C>(self);
      return holder == nullptr ? 0
                               : References::Visit(*holder, [&](PyObject* seen) { return visit(seen, arg); });
    };
    type.tp_clear = [](PyObject* self) {
      if (const auto* holder = HolderOf<C>(self)) References::Clear(*holder);
      return 0;
    };
    type.tp_dealloc = [](PyObject* self) {
      PyObject_GC_UnTrack(self);
      py::detail::pybind11_object_dealloc(self);
    };
  });
}

}  // namespace vorquill21::python
