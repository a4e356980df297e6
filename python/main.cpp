#include "vorquill21/frame/main.hpp"

#include "python/binding.hpp"
#include "python/module.hpp"

namespace vorquill21::python {
namespace {

/// An accessor of an object with a state.
template <auto kAccessor>
void AddAccompanied(py::class_<Main, std::shared_ptr<Main>>& bound, const char* name, const char* doc) {
  bound.def(
      name, [](const Main& main) { return Accompanied((main.*kAccessor)()); },
      Description(name, {}, {}, true, doc).c_str());
}

}  // namespace

void AddMain(py::module_& module) {
  Class<Main> bound(
      module, "Main",
      "The door to the library: one object of each class, the same with every call, and the self-tests.");
  bound.Constructor()
      .Method<&Main::LibFile>("LibFile", "The CFile.")
      .Method<&Main::LibGeometry>("LibGeometry", "The CGeometry.")
      .Method<&Main::LibInterpolate>("LibInterpolate", "The CInterpolate.")
      .Method<&Main::LibMathUtils>("LibMathUtils", "The CMathUtils.")
      .Method<&Main::LibStatistics>("LibStatistics", "The CStatistics.")
      .Method<&Main::LibTrigonometry>("LibTrigonometry", "The CTrigonometry.")
      .Method<&Main::Initialise, Calls::kLong>(
          "Initialise", "Runs the self-tests when the first element is 1 (silently) or 2 (with a message).",
          "avParamArray"_a)
      .Method<&Main::LibString>("LibString", "The CString.");
  AddAccompanied<&Main::LibLog>(bound.OfPybind(), "LibLog", "The CLog.");
  AddAccompanied<&Main::LibFilestream>(bound.OfPybind(), "LibFilestream", "The CFileStream.");
  bound.Method<&Main::LibOSUtils>("LibOSUtils", "The COSUtils.");
}

}  // namespace vorquill21::python
