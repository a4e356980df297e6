#pragma once

#include <pybind11/pybind11.h>

namespace vorquill21::python {

namespace py = pybind11;

// Each adds its classes to the module.
void AddErrors(py::module_& module);
void AddBoundedArray(py::module_& module);
void AddEnumerations(py::module_& module);
void AddNumeric(py::module_& module);
void AddMathUtils(py::module_& module);
void AddInterpolate(py::module_& module);
void AddText(py::module_& module);
void AddFiles(py::module_& module);
void AddLog(py::module_& module);
void AddFileStream(py::module_& module);
void AddImport(py::module_& module);
void AddMain(py::module_& module);

}  // namespace vorquill21::python
