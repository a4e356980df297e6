Option Explicit

Dim interpolate, x, y, coefficients, deviation, place, kind, other
Set interpolate = CreateObject("Vorquill21.CInterpolate")
x = Array(1, 2, 3)
y = Array(2.2, 10.5, 30.5)

Expect "OneDLinearInterpolate", interpolate.OneDLinearInterpolate(0, x, y, 2.5), "Double 20.5"
Expect "clipped", interpolate.OneDLinearInterpolate(0, x, y, -1), "Double 2.2"
Expect "extrapolated", interpolate.OneDLinearInterpolate(1, x, y, 4), "Double 50.5"
Expect "extrapolated below", interpolate.OneDLinearInterpolate(1, x, y, 0), "Double -6.1000000000000005"
Expect "another behaviour", interpolate.OneDLinearInterpolate(2, x, y, 4), "Double 0"
For Each kind In Array("Double", "Single", "Long", "Variant")
  Expect kind, interpolate.OneDLinearInterpolate(0, ArrayOf(kind & "(5 to 7)", x), ArrayOf("Double(5 to 7)", y), 2.5), "Double 20.5"
  Expect kind & ", a row", interpolate.OneDLinearInterpolate(0, ArrayOf(kind & "(1 to 1, 5 to 7)", x), ArrayOf("Double(5 to 7)", y), "2.5"), "Double 20.5"
Next
Expect "OneDLinearInterpolateFromPoints", interpolate.OneDLinearInterpolateFromPoints(1, 2, 10.5, 30.5, 1.5), "Double 20.5"
Expect "one point", interpolate.OneDLinearInterpolateFromPoints(1, 1, 5, 5, 1), "Double 5"
Expect "OneDLinearInterpolateWithBounds", _
  interpolate.OneDLinearInterpolateWithBounds(1, Array(0, 1, 2, 3, 4), Array(0, 10, 30, 60, 100), -1, 1, 3), "Double -30"
Expect "clipped at a bound", _
  interpolate.OneDLinearInterpolateWithBounds(0, Array(0, 1, 2, 3, 4), Array(0, 10, 30, 60, 100), 5, 1, 3), "Double 60"

' Fits: the coefficients come back in an array that begins at 1, an element for each point.
interpolate.OneDPolynomialFit Array(1, 2, 3, 4), Array(0, 5, 15, 80), 2, coefficients, deviation
Expect "OneDPolynomialFit", coefficients, "Variant(1 to 4) Double 37.5, Double -50, Double 15, Double 0"
Expect "its deviation", Abs(deviation - 6.455) < 0.0005, "Boolean True"
Expect "OneDPolynomialInterpolate", interpolate.OneDPolynomialInterpolate(2.5, coefficients), "Double 6.25"
coefficients = ArrayOf("Double()", Array())
interpolate.OneDPolynomialFit ArrayOf("Long(0 to 4)", Array(0, 1, 2, 3, 4)), Array(1, 3, 5, 7, 9), 1, coefficients
Expect "without its deviation, into doubles", coefficients, "Double(1 to 5) 1, 2, 0, 0, 0"
Expect "a value of it", interpolate.OneDPolynomialInterpolate(10, coefficients), "Double 21"
Expect "the element at 0 does not count", interpolate.OneDPolynomialInterpolate(3, Array(99, 1, 2)), "Double 7"

coefficients = Empty
interpolate.TwoDPolynomialFit Array(0, 1, 0, 2), Array(0, 0, 1, 3), Array(2, 5, 7, 23), 1, coefficients, deviation
Expect "TwoDPolynomialFit", coefficients, "Variant(0 to 1, 0 to 1) Double 2, Double 3, Double 5, Double 0"
Expect "its deviation", deviation, "Double 0"
Expect "the power of y comes first", coefficients(1, 0), "Double 5"
Expect "TwoDPolynomialInterpolate", interpolate.TwoDPolynomialInterpolate(10, 100, coefficients), "Double 532"
place = 10
Expect "at a variable", interpolate.TwoDPolynomialInterpolate(place, "100", coefficients), "Double 532"
Expect "the variable", place, "Integer 10"
interpolate.TwoDPolynomialFit Array(0, 1, 0), Array(0, 0, 1), Array(2, 5, 7), 1, coefficients
Expect "without its deviation", coefficients(0, 1), "Double 3"

' The object that looks tables up.
Expect "moUtils", interpolate.moUtils, "Object CMathUtils"
Expect "the same one every time", interpolate.moUtils Is interpolate.moUtils, "Boolean True"
Set other = CreateObject("Vorquill21.CMathUtils")
Set interpolate.moUtils = other
Expect "another one", interpolate.moUtils Is other, "Boolean True"
Expect "a table after that", interpolate.OneDLinearInterpolate(0, x, y, 2.5), "Double 20.5"

Sub ExpectErrors()
  On Error Resume Next
  Dim result
  result = interpolate.OneDLinearInterpolateFromPoints(1, 1, 5, 6, 1)
  ExpectError "coincident points", Err, 380, "Vorquill21.CMathUtils.OneDLinearInterpolateFromPoints", "X values are coincident"
  result = interpolate.OneDLinearInterpolate(1, Array(1, 2, 2), Array(1, 2, 3), 3)
  ExpectError "coincident nodes", Err, 380, "Vorquill21.CMathUtils.OneDLinearInterpolateFromPoints", "X values are coincident"
  result = interpolate.OneDLinearInterpolate(0, ArrayOf("Double(-1 to 0)", Array(1, 2)), ArrayOf("Double(-1 to 0)", Array(1, 2)), 1)
  ExpectError "a negative bound", Err, -2147220991, "Vorquill21MathUtils.ArrayLocate", "One or more array bounds are below 0"
  result = interpolate.OneDLinearInterpolate(0, x, Array(1, 2), 2.5)
  ExpectError "values that are missing", Err, 9, "", "Subscript out of range"
  result = interpolate.OneDLinearInterpolateWithBounds(0, x, y, 2, 0, 3)
  ExpectError "a bound outside", Err, 9, "", "Subscript out of range"
  interpolate.OneDPolynomialFit Array(1, 1), Array(1, 2), 1, coefficients, deviation
  ExpectError "too few different points", Err, 11, "", "Division by zero"
  Expect "what they support", coefficients, "Variant(1 to 2) Double 0, Double 0"
  interpolate.TwoDPolynomialFit Array(0, 1, 2), Array(0, 1, 2), Array(0, 1, 2), 1, coefficients
  ExpectError "points on a line", Err, 11, "", "Division by zero"
  result = interpolate.OneDPolynomialInterpolate(1E+200, Array(0, 1, 1, 1))
  ExpectError "a power that is too large", Err, 6, "", "Overflow"
  result = interpolate.OneDPolynomialInterpolate("x", Array(0, 1))
  ExpectError "no number", Err, 13, "", "Type mismatch"
  Set interpolate.moUtils = Nothing
  Expect "moUtils may be nothing", interpolate.moUtils, "Object Nothing"
  result = interpolate.OneDLinearInterpolate(0, x, y, 2.5)
  ExpectError "nothing that looks tables up", Err, 5, "", "Invalid procedure call or argument"
  Expect "no other error", Err.Number, "Long 0"
End Sub
ExpectErrors
