#include "vorquill21/interpolate/interpolate.hpp"

#include "python/binding.hpp"
#include "python/cycles.hpp"
#include "python/module.hpp"

namespace vorquill21::python {
namespace {

/// The Python object stays alive with what it overrides as long as `interpolate` refers to it.
void SetUtils(CInterpolate& interpolate, const py::object& utils) {
  if (utils.is_none()) {
    interpolate.moUtils = nullptr;
    return;
  }
  if (!py::isinstance<CMathUtils>(utils)) throw py::type_error("moUtils is a CMathUtils, or None");
  interpolate.moUtils = std::shared_ptr<CMathUtils>(Kept(utils), py::cast<CMathUtils*>(utils));
}

/// The object of the host that finds intervals, in the eyes of the collector.
struct UtilsOfHost {
  template <typename Visitor>
  static int Visit(const std::shared_ptr<CInterpolate>& interpolate, const Visitor& visit) {
    const auto& utils = interpolate->moUtils;
    const bool stemsFromPython = std::get_deleter<LetGo>(utils) != nullptr;
    if (!stemsFromPython || interpolate.use_count() > 1 || utils.use_count() > 1) return 0;
    return visit(
        py::detail::get_object_handle(utils.get(), py::detail::get_type_info(typeid(CMathUtils))).ptr());
  }

  static void Clear(const std::shared_ptr<CInterpolate>& interpolate) { interpolate->moUtils.reset(); }
};

}  // namespace

void AddInterpolate(py::module_& module) {
  using C = CInterpolate;
  Class<C> bound(
      module, "CInterpolate",
      "Interpolation in tables of points, and polynomials of least squares in one and two dimensions.",
      SeenByCollector<C, UtilsOfHost>());
  bound.Constructor().OfPybind().def_property(
      "moUtils", [](const C& self) { return self.moUtils; }, &SetUtils,
      "The CMathUtils that finds the intervals of tables; a host may put its own in its place.");
  bound
      .Method<&C::OneDLinearInterpolate>("OneDLinearInterpolate", "The value of a table of points at arX.",
                                         "aeOutOfBoundsBehaviour"_a, "arXVals"_a, "arYVals"_a, "arX"_a)
      .Method<&C::OneDLinearInterpolateFromPoints>("OneDLinearInterpolateFromPoints",
                                                   "The straight line through two points at arXVal.",
                                                   "arX1"_a, "arX2"_a, "arY1"_a, "arY2"_a, "arXVal"_a)
      .Method<&C::OneDLinearInterpolateWithBounds>(
          "OneDLinearInterpolateWithBounds", "As OneDLinearInterpolate; the bounds decide what is outside.",
          "aeOutOfBoundsBehaviour"_a, "arXVals"_a, "arYVals"_a, "arX"_a, "anLowerBound"_a, "anUpperBound"_a)
      .Method<&C::OneDPolynomialFit, Calls::kLong>(
          "OneDPolynomialFit", "Fits a polynomial; element k of arCoeffs belongs to x^(k - 1).", "arX"_a,
          "arY"_a, "anFitOrder"_a, "arCoeffs"_a, "arStdDev"_a)
      .Method<&C::OneDPolynomialInterpolate, Calls::kLong>(
          "OneDPolynomialInterpolate", "The sum of arCoeffs(k) * arX^(k - 1) from k = 1 on.", "arX"_a,
          "arCoeffs"_a)
      .Method<&C::TwoDPolynomialFit, Calls::kLong>(
          "TwoDPolynomialFit", "Fits a surface; element (i, j) of arCoeffs belongs to y^i * x^j.",
          "arXData"_a, "arYData"_a, "arZData"_a, "anFitOrder"_a, "arCoeffs"_a, "arRMSDeviation"_a)
      .Method<&C::TwoDPolynomialInterpolate, Calls::kLong>("TwoDPolynomialInterpolate",
                                                           "The sum of arCoeffs(i, j) * arY^i * arX^j.",
                                                           "arX"_a, "arY"_a, "arCoeffs"_a);
}

}  // namespace vorquill21::python
