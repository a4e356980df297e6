#include "python/binding.hpp"
#include "python/module.hpp"
#include "vorquill21/numeric/geometry.hpp"
#include "vorquill21/numeric/statistics.hpp"
#include "vorquill21/numeric/trigonometry.hpp"

namespace vorquill21::python {
namespace {

void AddTrigonometry(py::module_& module) {
  using C = CTrigonometry;
  Class<C>(module, "CTrigonometry",
           "Angles and the plane: inverse functions, conversions, polar coordinates. Radians.")
      .Constructor()
      .Method<&C::ArcCos>("ArcCos", "The angle whose cosine is arValue; 0 from 1 on, pi up to -1.",
                          "arValue"_a)
      .Method<&C::ArcSin>("ArcSin", "The angle whose sine is arValue; half of pi beyond 1, with its sign.",
                          "arValue"_a)
      .Method<&C::ArcTan2>(
          "ArcTan2",
          "The angle of the point (arX, arY), abscissa first. Left of the vertical axis no half turn\n"
          "is added on and above the horizontal one.",
          "arX"_a, "arY"_a)
      .Method<&C::Degrees>("Degrees", "arRadians * (360 / pi): a half turn is 360 degrees.", "arRadians"_a)
      .Method<&C::Pi>("Pi", "The class's own pi, 3.14159265358979.")
      .Method<&C::PolarToXY>("PolarToXY", "The point at an angle and a radius.", "arRadians"_a, "arRradius"_a,
                             "arX"_a, "arY"_a)
      .Method<&C::Radians>("Radians", "arDegrees * (pi / 360), the inverse of Degrees.", "arDegrees"_a)
      .Method<&C::XYToPolar>("XYToPolar", "The angle (see ArcTan2) and the radius of a point.", "arX"_a,
                             "arY"_a, "arRadians"_a, "arRadius"_a);
}

void AddStatistics(py::module_& module) {
  using C = CStatistics;
  Class<C, Calls::kLong>(
      module, "CStatistics",
      "Descriptive statistics of a one-dimensional array of numbers. Without elements they are 0.")
      .Constructor()
      .Method<&C::ArithmeticMean>("ArithmeticMean", "The mean in its running form.", "arVals"_a)
      .Method<&C::Maximum>("Maximum", "The largest element, and the index of the first one.", "arValues"_a,
                           "anMaxIndex"_a)
      .Method<&C::Minimum>("Minimum", "The smallest element, and the index of the first one.", "arValues"_a,
                           "anMinIndex"_a)
      .Method<&C::StandardDeviation>("StandardDeviation", "The square root of Variance.", "arValues"_a)
      .Method<&C::StandardDeviationPop>("StandardDeviationPop", "The square root of VariancePop.",
                                        "arValues"_a)
      .Method<&C::Variance>("Variance", "The variance of a sample: divided by one less than the number.",
                            "arValues"_a)
      .Method<&C::VariancePop>("VariancePop", "The variance of a population: divided by the number.",
                               "arValues"_a)
      .Method<&C::RMS>("RMS", "The root mean square.", "arValues"_a);
}

void AddGeometry(py::module_& module) {
  using C = CGeometry;
  Class<C>(module, "CGeometry",
           "Vectors, lines and rotations in space. Angles are in degrees; matrices are read and written from "
           "index 1 on.")
      .Constructor()
      .Method<&C::AngleBetweenLines>("AngleBetweenLines", "The angle between two lines, 0 to 180 degrees.",
                                     "arLine1Point1X"_a, "arLine1Point1Y"_a, "arLine1Point1Z"_a,
                                     "arLine1Point2X"_a, "arLine1Point2Y"_a, "arLine1Point2Z"_a,
                                     "arLine2Point1X"_a, "arLine2Point1Y"_a, "arLine2Point1Z"_a,
                                     "arLine2Point2X"_a, "arLine2Point2Y"_a, "arLine2Point2Z"_a)
      .Method<&C::AngleBetweenVectors>(
          "AngleBetweenVectors", "The angle between two vectors, 0 to 180 degrees.", "arVector1X"_a,
          "arVector1Y"_a, "arVector1Z"_a, "arVector2X"_a, "arVector2Y"_a, "arVector2Z"_a)
      .Method<&C::BuildTransformationMatrix>(
          "BuildTransformationMatrix",
          "The matrix, bounds 1 to 3, that turns about the fixed axes X, Y, then Z.", "arDegX"_a, "arDegY"_a,
          "arDegZ"_a, "aaRotMatrix"_a)
      .Method<&C::IntersectNormalPointToLine>(
          "IntersectNormalPointToLine", "The foot of the perpendicular from a point to a line.", "arLine1X"_a,
          "arLine1Y"_a, "arLine1Z"_a, "arLine2X"_a, "arLine2Y"_a, "arLine2Z"_a, "arPointX"_a, "arPointY"_a,
          "arPointZ"_a, "arInterX"_a, "arInterY"_a, "arInterZ"_a)
      .Method<&C::LineDistanceToPoint>("LineDistanceToPoint", "The distance of a point from a line.",
                                       "arLine1X"_a, "arLine1Y"_a, "arLine1Z"_a, "arLine2X"_a, "arLine2Y"_a,
                                       "arLine2Z"_a, "arPointX"_a, "arPointY"_a, "arPointZ"_a)
      .Method<&C::MatrixMultiply, Calls::kLong>("MatrixMultiply",
                                                "The product of two matrices, indices from 1 on.",
                                                "aaMatrixA"_a, "aaMatrixB"_a, "aaMatrixResult"_a)
      .Method<&C::TransformPoint>("TransformPoint", "A point turned by a matrix.", "arOriginalPointX"_a,
                                  "arOriginalPointY"_a, "arOriginalPointZ"_a, "aaRotMatrix"_a,
                                  "arNewPointX"_a, "arNewPointY"_a, "arNewPointZ"_a)
      .Method<&C::UnitVector3d>("UnitVector3d", "A vector divided by its magnitude.", "arVectorX"_a,
                                "arVectorY"_a, "arVectorZ"_a, "arUnitX"_a, "arUnitY"_a, "arUnitZ"_a)
      .Method<&C::VectorAdd3d>("VectorAdd3d", "Vector 1 + vector 2.", "arVector1X"_a, "arVector1Y"_a,
                               "arVector1Z"_a, "arVector2X"_a, "arVector2Y"_a, "arVector2Z"_a, "arResultX"_a,
                               "arResultY"_a, "arResultZ"_a)
      .Method<&C::VectorCrossProduct3d>("VectorCrossProduct3d", "Vector 1 x vector 2.", "arVector1X"_a,
                                        "arVector1Y"_a, "arVector1Z"_a, "arVector2X"_a, "arVector2Y"_a,
                                        "arVector2Z"_a, "arResultX"_a, "arResultY"_a, "arResultZ"_a)
      .Method<&C::VectorDotProduct3d>("VectorDotProduct3d", "The scalar product.", "arVector1X"_a,
                                      "arVector1Y"_a, "arVector1Z"_a, "arVector2X"_a, "arVector2Y"_a,
                                      "arVector2Z"_a, "arResult"_a)
      .Method<&C::VectorMagnitude3d>("VectorMagnitude3d", "The length of a vector.", "arVectorX"_a,
                                     "arVectorY"_a, "arVectorZ"_a)
      .Method<&C::VectorSubtract3d>("VectorSubtract3d", "Vector 1 - vector 2.", "arVector1X"_a,
                                    "arVector1Y"_a, "arVector1Z"_a, "arVector2X"_a, "arVector2Y"_a,
                                    "arVector2Z"_a, "arResultX"_a, "arResultY"_a, "arResultZ"_a);
}

}  // namespace

void AddNumeric(py::module_& module) {
  AddTrigonometry(module);
  AddStatistics(module);
  AddGeometry(module);
}

}  // namespace vorquill21::python
