#include "python/module.hpp"

#include <exception>

#include "python/binding.hpp"
#include "vorquill21/vorquill21.hpp"

namespace vorquill21::python {
namespace {

void RaiseInPython(const LibraryError& error, const py::tuple& results) {
  const py::object type = py::module_::import("vorquill21._errors").attr("LibraryError");
  const py::object raised = type(error.Number(), error.Source(), error.Description());
  raised.attr("results") = results;
  PyErr_SetObject(type.ptr(), raised.ptr());
}

struct Enumerator {
  const char* name;
  std::int32_t value;
};

/// A class of Python's module enum: `kind` is IntEnum or IntFlag.
void AddEnumeration(py::module_& module, const char* kind, const char* name,
                    std::initializer_list<Enumerator> enumerators) {
  py::list members;
  for (const Enumerator& enumerator : enumerators)
    members.append(py::make_tuple(enumerator.name, enumerator.value));
  module.attr(name) =
      py::module_::import("enum").attr(kind)(name, members, "module"_a = module.attr("__name__"));
}

}  // namespace

void AddErrors(py::module_& module) {
  module.attr("LibraryError") = py::module_::import("vorquill21._errors").attr("LibraryError");
  py::register_local_exception_translator([](std::exception_ptr raised) {
    try {
      std::rethrow_exception(std::move(raised));
    } catch (const FailedCall& failed) {
      RaiseInPython(failed.error, failed.results);
    } catch (const LibraryError& error) {
      RaiseInPython(error, py::tuple());
    }
  });
}

void AddEnumerations(py::module_& module) {
  AddEnumeration(module, "IntEnum", "EErrorsMathUtil",
                 {{"eErrMathUtilInvalidArrayLimts", eErrMathUtilInvalidArrayLimts}});
  AddEnumeration(module, "IntEnum", "EMonotonicScale",
                 {{"emsPositive", emsPositive}, {"emsNegative", emsNegative}});
  AddEnumeration(module, "IntFlag", "EBoundsChecks",
                 {{"evcGreaterThan", evcGreaterThan},
                  {"evcLessThan", evcLessThan},
                  {"evcBetween", evcBetween},
                  {"evcInclusive", evcInclusive},
                  {"evcNotEqual", evcNotEqual}});
  AddEnumeration(module, "IntEnum", "EOutOfBoundsBehaviour",
                 {{"eInterpClip", eInterpClip}, {"eInterpExtrapolate", eInterpExtrapolate}});
  AddEnumeration(module, "IntEnum", "EOSUtilsSpecialFolders",
                 {{"eSpecialFolder_PERSONAL", eSpecialFolder_PERSONAL},
                  {"eSpecialFolder_APPDATA", eSpecialFolder_APPDATA},
                  {"eSpecialFolder_LOCAL_APPDATA", eSpecialFolder_LOCAL_APPDATA},
                  {"eSpecialFolder_INTERNET_CACHE", eSpecialFolder_INTERNET_CACHE},
                  {"eSpecialFolder_COOKIES", eSpecialFolder_COOKIES},
                  {"eSpecialFolder_HISTORY", eSpecialFolder_HISTORY},
                  {"eSpecialFolder_COMMON_APPDATA", eSpecialFolder_COMMON_APPDATA},
                  {"eSpecialFolder_WINDOWS", eSpecialFolder_WINDOWS},
                  {"eSpecialFolder_SYSTEM", eSpecialFolder_SYSTEM},
                  {"eSpecialFolder_PROGRAM_FILES", eSpecialFolder_PROGRAM_FILES},
                  {"eSpecialFolder_MYPICTURES", eSpecialFolder_MYPICTURES},
                  {"eSpecialFolder_PROGRAM_FILES_COMMON", eSpecialFolder_PROGRAM_FILES_COMMON},
                  {"eSpecialFolder_COMMON_DOCUMENTS", eSpecialFolder_COMMON_DOCUMENTS},
                  {"eSpecialFolder_COMMON_ADMINTOOLS", eSpecialFolder_COMMON_ADMINTOOLS},
                  {"eSpecialFolder_ADMINTOOLS", eSpecialFolder_ADMINTOOLS},
                  {"eSpecialFolder_FLAG_CREATE", eSpecialFolder_FLAG_CREATE}});
  AddEnumeration(module, "IntEnum", "ELogAction",
                 {{"logExact", logExact},
                  {"logNormal", logNormal},
                  {"logException", logException},
                  {"logExceptionError", logExceptionError},
                  {"logDiagnostic", logDiagnostic}});
}

}  // namespace vorquill21::python

/// What the classes say of their home is the package, which takes over all names.
PYBIND11_MODULE(_core, module) {
  using namespace vorquill21::python;
  py::options options;
  options.disable_function_signatures();
  const py::object ownName = module.attr("__name__");
  module.attr("__name__") = "vorquill21";
  module.attr("Missing") = py::ellipsis();
  AddErrors(module);
  AddBoundedArray(module);
  AddEnumerations(module);
  AddNumeric(module);
  AddMathUtils(module);
  AddInterpolate(module);
  AddText(module);
  AddFiles(module);
  AddLog(module);
  AddFileStream(module);
  AddImport(module);
  AddMain(module);
  module.attr("__name__") = ownName;
}
