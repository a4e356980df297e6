#include "vorquill21/numeric/math_utils.hpp"

#include "python/binding.hpp"
#include "python/module.hpp"

namespace vorquill21::python {
namespace {

constexpr const char* kArrayLocate = "ArrayLocate";

/// A class that Python derives from CMathUtils. Of its members the library calls ArrayLocate alone; Python's
/// is called with what it takes by position, and returns whether the value is inside, and the index.
class DerivedMathUtils : public CMathUtils {
 public:
  using CMathUtils::CMathUtils;

  bool ArrayLocate(ArrayView<const double> arXVals, double arX, std::int32_t& anIndex) const override {
    const py::gil_scoped_acquire lock;
    const py::function override = py::get_override(static_cast<const CMathUtils*>(this), kArrayLocate);
    if (!override) return CMathUtils::ArrayLocate(arXVals, arX, anIndex);
    return ResultsOf(override(arXVals, arX), anIndex);
  }

 private:
  static bool ResultsOf(const py::object& returned, std::int32_t& anIndex) {
    const bool isPair = py::isinstance<py::tuple>(returned) && py::len(returned) == 2;
    const py::tuple results = isPair ? py::tuple(returned) : py::make_tuple(py::none(), py::none());
    if (PyIndex_Check(results[1].ptr()) == 0) {
      throw py::type_error("ArrayLocate returns whether arX is inside, and anIndex");
    }
    anIndex = IntegerOf(results[1]);
    return py::bool_(results[0]);
  }
};

}  // namespace

void AddMathUtils(py::module_& module) {
  using C = CMathUtils;
  Class<C, Calls::kQuick, DerivedMathUtils> bound(
      module, "CMathUtils",
      "Small routines for tables of numbers, limits and packed words. A class derived from it is\n"
      "used wherever the library is handed one.");
  bound.OfPybind().def(py::init([] { return std::make_shared<CMathUtils>(); },
                                [] { return std::make_shared<DerivedMathUtils>(); }),
                       "__init__(self)\n--\n\n");
  bound
      .Method<&C::ArrayLocate>(
          "ArrayLocate",
          "Finds the interval of a monotonic table that holds arX, and says whether it is inside.",
          "arXVals"_a, "arX"_a, "anIndex"_a)
      .Method<&C::CopyArray1D, Calls::kLong>("CopyArray1D", "Copies an array as numbers, with its bounds.",
                                             "arTargetArray"_a, "avArraySource"_a)
      .Method<&C::CopyArray2D, Calls::kLong>("CopyArray2D", "Copies a table as numbers, with its bounds.",
                                             "arTargetArray"_a, "avTableSource"_a)
      .Method<&C::CopyArray3D, Calls::kLong>("CopyArray3D", "Copies an array of three dimensions as numbers.",
                                             "arTargetArray"_a, "avTableSource"_a)
      .Method<&C::DWordGetHighWord>("DWordGetHighWord", "The upper half as a signed 16-bit word.",
                                    "anDWord"_a)
      .Method<&C::DWordGetLowWord>("DWordGetLowWord", "The lower half as a signed 16-bit word.", "anDWord"_a)
      .Method<&C::DWordMake>("DWordMake", "The 32-bit integer of two signed words.", "anHighWord"_a,
                             "anLowWord"_a)
      .Method<&C::NumbersAreEqual>("NumbersAreEqual",
                                   "Whether two numbers differ by 1 / 10^anNDPs at the most.", "avNumber1"_a,
                                   "avNumber2"_a, "anNDPs"_a)
      .Method<&C::ArraysAreEqual, Calls::kLong>(
          "ArraysAreEqual", "Whether the elements of two arrays of anOrder dimensions are equal.",
          "avArray1"_a, "avArray2"_a, "anOrder"_a, "anNDPs"_a = 0)
      .Method<&C::ArrayIsMonotonic1D, Calls::kLong>(
          "ArrayIsMonotonic1D", "Whether an array strictly rises or falls, and if not, in words.",
          "avArray"_a, "aeScaleType"_a, "asName"_a, "asStatusMsg"_a)
      .Method<&C::IsInBounds>("IsInBounds", "Whether a value is within limits, and if not, in words.",
                              "avValue"_a, "asName"_a, "asStatusMsg"_a, "aeMode"_a, "avFirstLimit"_a,
                              "avSecondLimit"_a = py::ellipsis());
}

}  // namespace vorquill21::python
