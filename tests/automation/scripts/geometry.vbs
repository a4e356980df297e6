Option Explicit

Dim geometry, x, y, z, matrix, product, dot
Set geometry = CreateObject("Vorquill21.CGeometry")

geometry.VectorAdd3d 1, 2, 3, 4, -5, 6.5, x, y, z
Expect "VectorAdd3d", Array(x, y, z), "Variant(0 to 2) Double 5, Double -3, Double 9.5"
geometry.VectorSubtract3d 1, 2, 3, 4, -5, 6.5, x, y, z
Expect "VectorSubtract3d", Array(x, y, z), "Variant(0 to 2) Double -3, Double 7, Double -3.5"
geometry.VectorCrossProduct3d 1, 2, 3, 4, -5, 6.5, x, y, z
Expect "VectorCrossProduct3d", Array(x, y, z), "Variant(0 to 2) Double 28, Double 5.5, Double -13"
geometry.VectorDotProduct3d 1, 2, 3, 4, -5, 6.5, dot
Expect "VectorDotProduct3d", dot, "Double 13.5"
Expect "VectorMagnitude3d", geometry.VectorMagnitude3d(3, 4, 12), "Double 13"
geometry.UnitVector3d 3, -4, 12, x, y, z
Expect "UnitVector3d", Array(x, y, z), _
  "Variant(0 to 2) Double 0.23076923076923078, Double -0.3076923076923077, Double 0.9230769230769231"

Expect "AngleBetweenVectors", geometry.AngleBetweenVectors(1, 0, 0, -1, 0, 0), "Double 179.9999999764967"
Expect "AngleBetweenLines", geometry.AngleBetweenLines(1, 0, 0, 0, 2, 2, 0, 0, 0, 1, 2, 2), "Double 38.94244126389646"
Expect "LineDistanceToPoint", geometry.LineDistanceToPoint(1, 1, 1, 3, 0, 4, 1, 2, 1), "Double 0.9636241116594315"
Expect "LineDistanceToPoint of no line", geometry.LineDistanceToPoint(1, 2, 3, 1, 2, 3, 7, 8, 9), "Double 0"
geometry.IntersectNormalPointToLine 0.1, 0.2, 0.3, 1.7, -2.2, 5.1, 9, 8, 7, x, y, z
Expect "IntersectNormalPointToLine", Array(x, y, z), _
  "Variant(0 to 2) Double 1.5122448979591847, Double -1.9183673469387774, Double 4.536734693877554"

' A variable receives an array of variants, which scripts can look into; an array of doubles stays one.
geometry.BuildTransformationMatrix 30, 45, 60, matrix
Expect "BuildTransformationMatrix", matrix, "Variant(1 to 3, 1 to 3) Double 0.3535533904732831, Double -0.5732233047357718," & _
  " Double 0.7391989197723754, Double 0.612372435681338, Double 0.7391989197123021, Double 0.28033008599483433," & _
  " Double -0.7071067812590626, Double 0.35355339059888286, Double 0.6123724356088229"
Expect "an element", matrix(3, 1), "Double -0.7071067812590626"
geometry.TransformPoint 1.1, -2.2, 3.3, matrix, x, y, z
Expect "TransformPoint", Array(x, y, z), _
  "Variant(0 to 2) Double 4.089356435188148, Double -0.027538660334639586, Double 0.465194118806604"
matrix = ArrayOf("Double(0 to 0)", Array(7))
geometry.BuildTransformationMatrix 0, 0, 0, matrix
Expect "the identity in an array of doubles", matrix, "Double(1 to 3, 1 to 3) 1, 0, 0, 0, 1, 0, -0, 0, 1"
matrix = ArrayOf("Single(0 to 0)", Array(7))
geometry.BuildTransformationMatrix 0, 0, 0, matrix
Expect "and in one of singles", matrix, "Single(1 to 3, 1 to 3) 1, 0, 0, 0, 1, 0, -0, 0, 1"

geometry.MatrixMultiply ArrayOf("Double(1 to 2, 1 to 3)", Array(1, 2, 3, 4, 5, 6)), _
  ArrayOf("Long(1 to 3, 1 to 2)", Array(1, 2, 3, 4, 5, 6)), product
Expect "MatrixMultiply", product, "Variant(1 to 2, 1 to 2) Double 22, Double 28, Double 49, Double 64"
geometry.MatrixMultiply product, product, product
Expect "MatrixMultiply of itself", product, "Variant(1 to 2, 1 to 2) Double 1856, Double 2408, Double 4214, Double 5468"

Sub ExpectErrors()
  On Error Resume Next
  x = 77
  geometry.IntersectNormalPointToLine 1, 2, 3, 1, 2, 3, 7, 8, 9, x, y, z
  ExpectError "no line", Err, 11, "", "Division by zero"
  Expect "its foot", x, "Integer 77"
  geometry.VectorAdd3d 1, 1.7E+308, 1, 2, 1.7E+308, 2, x, y, z
  ExpectError "a sum that is too large", Err, 6, "", "Overflow"
  Expect "the sum before it", x, "Double 3"
  geometry.TransformPoint 1, 2, 3, ArrayOf("Double(0 to 2, 0 to 2)", Array(1, 2, 3, 4, 5, 6, 7, 8, 9)), x, y, z
  ExpectError "a matrix from 0", Err, 9, "", "Subscript out of range"
  geometry.TransformPoint 1, 2, 3, "matrix", x, y, z
  ExpectError "no matrix", Err, 13, "", "Type mismatch"
  product = ArrayOf("Double(0 to 0)", Array(7))
  geometry.MatrixMultiply ArrayOf("Double(1 to 3)", Array(1, 2, 3)), product, product
  ExpectError "no table", Err, 9, "", "Subscript out of range"
  Expect "the product", product, "Double(0 to 0) 7"
  Expect "no other error", Err.Number, "Long 0"
End Sub
ExpectErrors
