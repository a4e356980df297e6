#pragma once

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

/// Vectors, lines and rotations in space. Vectors and points are three doubles in the caller's units;
/// matrices are arrays of two dimensions, row first, and are read and written at the indices from 1 on. An
/// object holds no state that a caller can see.
///
/// Angles of this class are in degrees. Its own constant k = 0.017453292522222223 (bits 3F91DF46A25CA311,
/// which is 3.141592654 / 180) converts them: multiplied into angles that are given, divided out of angles
/// that are returned. With the pi of CTrigonometry, opposite vectors so are 179.9999999764967 degrees apart.
///
/// Sums and products are rounded in the order in which the formulas stand, never fused; powers, sines and
/// cosines are those nearest to the exact values. So every result has the same bits on every system. A result
/// or an intermediate value beyond the largest double is error 6, a division by zero error 11; by-reference
/// results are written as soon as each is known, so that those before the fault are set and those after it
/// are as they were. Arguments that are infinite or NaN pass through as the arithmetic has it.
class VORQUILL21_API CGeometry {
 public:
  explicit CGeometry(Platform& platform = Platform::Native());

  /// The angle in [0, 180] degrees between two lines, each from its first to its second point: for the
  /// directions D1 and D2, ArcCos(D1 . D2 / (|D1| * |D2|)) / k, with the ArcCos of CTrigonometry, which gives
  /// 0 and pi where rounding leaves [-1, 1]. 0 when |D1| * |D2| is 0. Turning one line round turns an angle A
  /// into 180 - A.
  double AngleBetweenLines(double arLine1Point1X, double arLine1Point1Y, double arLine1Point1Z,
                           double arLine1Point2X, double arLine1Point2Y, double arLine1Point2Z,
                           double arLine2Point1X, double arLine2Point1Y, double arLine2Point1Z,
                           double arLine2Point2X, double arLine2Point2Y, double arLine2Point2Z) const;

  /// AngleBetweenLines of two lines that begin in the origin.
  double AngleBetweenVectors(double arVector1X, double arVector1Y, double arVector1Z, double arVector2X,
                             double arVector2Y, double arVector2Z) const;

  /// The matrix that turns a point by arDegX degrees about the fixed X axis, then by arDegY about Y, then by
  /// arDegZ about Z, each by the right-hand rule: with sx = sin(arDegX * k), cx = cos(arDegX * k) and so on,
  ///
  ///     cz*cy   cz*sy*sx - sz*cx   cz*sy*cx + sz*sx
  ///     sz*cy   sz*sy*sx + cz*cx   sz*sy*cx - cz*sx
  ///     -sy     sx*cy              cx*cy
  ///
  /// `aaRotMatrix` takes the bounds 1 to 3 by 1 to 3, whatever it was before.
  void BuildTransformationMatrix(double arDegX, double arDegY, double arDegZ,
                                 BoundedArray<double>& aaRotMatrix) const;

  /// The foot of the perpendicular from the point to the infinite line through Line1 and Line2: with
  /// A = |Line1 - Point|, B = |Line2 - Point|, C = |Line1 - Line2|, T = (A^2 + C^2 - B^2) / (2 * C) and F = T
  /// / C it is F * (Line2 - Line1) + Line1. Two equal points of the line are error 11.
  void IntersectNormalPointToLine(double arLine1X, double arLine1Y, double arLine1Z, double arLine2X,
                                  double arLine2Y, double arLine2Z, double arPointX, double arPointY,
                                  double arPointZ, double& arInterX, double& arInterY,
                                  double& arInterZ) const;

  /// The distance of the point from the infinite line through Line1 and Line2: the magnitude of
  /// (Point - Line1) x U, U being the unit vector of Line1 - Line2. 0 when the points of the line are equal.
  double LineDistanceToPoint(double arLine1X, double arLine1Y, double arLine1Z, double arLine2X,
                             double arLine2Y, double arLine2Z, double arPointX, double arPointY,
                             double arPointZ) const;

  /// The product of two matrices, element (i, j) the sum of A(i, k) * B(k, j), added to 0 in the order of k.
  ///
  /// i runs from 1 to the upper bound of A's first dimension, k to that of its second, j to that of B's
  /// second; elements at the index 0 and rows of B beyond the last k do not count. `aaMatrixResult` takes the
  /// bounds 1 to i by 1 to j; it may be one of the factors. An upper bound below 1, a lower bound above 1 or
  /// too few rows in B are error 9. Where only elements are missing (9), or one overflows (6), the result has
  /// its new bounds and holds the elements before the fault, row by row, and 0 from there on; after other
  /// errors it is as it was, but for what it holds when memory runs out (7). Cost: one product for each i, k
  /// and j.
  void MatrixMultiply(const BoundedArray<double>& aaMatrixA, const BoundedArray<double>& aaMatrixB,
                      BoundedArray<double>& aaMatrixResult) const;

  /// The point turned by the matrix M: M(1,1) * x + M(1,2) * y + M(1,3) * z, and so for the rows 2 and 3. A
  /// matrix that lacks one of these elements is error 9. The results must not be elements of the matrix.
  void TransformPoint(double arOriginalPointX, double arOriginalPointY, double arOriginalPointZ,
                      const BoundedArray<double>& aaRotMatrix, double& arNewPointX, double& arNewPointY,
                      double& arNewPointZ) const;

  /// The vector divided by its magnitude; the zero vector for the zero vector.
  void UnitVector3d(double arVectorX, double arVectorY, double arVectorZ, double& arUnitX, double& arUnitY,
                    double& arUnitZ) const;

  /// Vector 1 + vector 2.
  void VectorAdd3d(double arVector1X, double arVector1Y, double arVector1Z, double arVector2X,
                   double arVector2Y, double arVector2Z, double& arResultX, double& arResultY,
                   double& arResultZ) const;

  /// Vector 1 x vector 2: (Y1*Z2 - Z1*Y2, Z1*X2 - X1*Z2, X1*Y2 - Y1*X2).
  void VectorCrossProduct3d(double arVector1X, double arVector1Y, double arVector1Z, double arVector2X,
                            double arVector2Y, double arVector2Z, double& arResultX, double& arResultY,
                            double& arResultZ) const;

  /// arResult = X1*X2 + Y1*Y2 + Z1*Z2.
  void VectorDotProduct3d(double arVector1X, double arVector1Y, double arVector1Z, double arVector2X,
                          double arVector2Y, double arVector2Z, double& arResult) const;

  /// (X*X + Y*Y + Z*Z) to the power 0.5.
  double VectorMagnitude3d(double arVectorX, double arVectorY, double arVectorZ) const;

  /// Vector 1 - vector 2.
  void VectorSubtract3d(double arVector1X, double arVector1Y, double arVector1Z, double arVector2X,
                        double arVector2Y, double arVector2Z, double& arResultX, double& arResultY,
                        double& arResultZ) const;

 private:
  friend class MSupport;
  void SelfTest_Main(FailedTests& aoFailedTests) const;

  Platform& platform_;
};

}  // namespace vorquill21
