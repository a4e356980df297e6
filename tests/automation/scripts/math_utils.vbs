Option Explicit

Dim utils, table, index, target, grid(1, 1), status, never(), second
Set utils = CreateObject("Vorquill21.CMathUtils")

' ArrayLocate: the interval of a value.
table = Array(0, 1, 2, 3, 4)
Expect "ArrayLocate", utils.ArrayLocate(table, 1.5, index), "Boolean True"
Expect "its interval", index, "Long 1"
Expect "the second node", utils.ArrayLocate(table, 1, index), "Boolean True"
Expect "its interval", index, "Long 0"
Expect "below the table", utils.ArrayLocate(table, -1, index), "Boolean False"
Expect "its interval", index, "Long 3"
Expect "other bounds", utils.ArrayLocate(ArrayOf("Double(7 to 11)", Array(0, 1, 2, 3, 4)), 3.5, index), "Boolean True"
Expect "their interval", index, "Long 10"
Expect "descending integers", utils.ArrayLocate(ArrayOf("Integer(1 to 5)", Array(4, 3, 2, 1, 0)), "2.5", index), "Boolean True"
Expect "their interval", index, "Long 2"
Expect "a row", utils.ArrayLocate(ArrayOf("Double(1 to 1, 0 to 2)", Array(0, 1, 2)), 1.5, index), "Boolean True"
Expect "its interval", index, "Long 1"

' Copies of arrays: a variable holds an array of variants then, an array of doubles stays one.
utils.CopyArray1D target, Array(1, "2.5", True, Empty)
Expect "CopyArray1D", target, "Variant(0 to 3) Double 1, Double 2.5, Double -1, Double 0"
Expect "an element", target(1), "Double 2.5"
utils.CopyArray1D target, ArrayOf("Long(-2 to -1)", Array(5, 6))
Expect "CopyArray1D of integers", target, "Variant(-2 to -1) Double 5, Double 6"
target = ArrayOf("Double(0 to 0)", Array(9))
utils.CopyArray1D target, ArrayOf("String(1 to 2)", Array("1", "4e1"))
Expect "CopyArray1D into doubles", target, "Double(1 to 2) 1, 40"
utils.CopyArray1D target, Empty
Expect "CopyArray1D of nothing", target, "Double(0 to 0) 0"
grid(0, 0) = 1
grid(0, 1) = "2"
grid(1, 0) = 3.5
target = Empty
utils.CopyArray2D target, grid
Expect "CopyArray2D", target, "Variant(0 to 1, 0 to 1) Double 1, Double 2, Double 3.5, Double 0"
utils.CopyArray2D target, ArrayOf("Double(1 to 1, 1 to 3)", Array(1, 2, 3))
Expect "CopyArray2D of a row", target, "Variant(1 to 1, 1 to 3) Double 1, Double 2, Double 3"
target = ArrayOf("Double()", Array())
utils.CopyArray3D target, ArrayOf("Variant(0 to 1, 2 to 2, -1 to 0)", Array(1, "2", Empty, 4))
Expect "CopyArray3D", target, "Double(0 to 1, 2 to 2, -1 to 0) 1, 2, 0, 4"

' Words.
Expect "DWordGetHighWord", utils.DWordGetHighWord(507248979), "Long 7740"
Expect "DWordGetLowWord", utils.DWordGetLowWord(507248979), "Long 339"
Expect "DWordMake", utils.DWordMake(7740, 339), "Long 507248979"
Expect "negative words", utils.DWordMake(-1, -1), "Long -1"
Expect "a double", utils.DWordGetLowWord(65535.0), "Long -1"
Expect "half to even", utils.DWordGetLowWord(2.5), "Long 2"
Expect "half to even", utils.DWordGetLowWord(3.5), "Long 4"

' Comparisons.
Expect "NumbersAreEqual", utils.NumbersAreEqual(10, 10.004, 2), "Boolean True"
Expect "numbers that differ", utils.NumbersAreEqual(10, 10.02, 2), "Boolean False"
Expect "one unit of the last place", utils.NumbersAreEqual("10", 11, 0), "Boolean True"
Expect "a boolean and a number", utils.NumbersAreEqual(True, -1, 5), "Boolean True"
Expect "ArraysAreEqual", utils.ArraysAreEqual(Array(1, 2, 3), Array(1.5, 2.5, 2), 1), "Boolean True"
Expect "with places", utils.ArraysAreEqual(Array(1, 2, 3), ArrayOf("Double(0 to 2)", Array(1.02, 2, 3)), 1, 2), "Boolean False"
index = 2
Expect "places in a variable", utils.ArraysAreEqual(Array(1), Array(1.004), 1, index), "Boolean True"
Expect "the variable", index, "Integer 2"
Expect "other lower bounds", utils.ArraysAreEqual(ArrayOf("Double(0 to 0)", Array(1)), ArrayOf("Double(1 to 1)", Array(1)), 1), "Boolean False"
Expect "a longer one", utils.ArraysAreEqual(Array(1, 2), Array(1, 2, 3), 1), "Boolean True"
Expect "tables", utils.ArraysAreEqual(grid, grid, 2), "Boolean True"
Expect "no arrays", utils.ArraysAreEqual("a", "a", 1), "Boolean False"
Expect "an order that does not exist", utils.ArraysAreEqual("a", "b", 4), "Boolean True"

' Checks, and what they say.
status = "untouched"
Expect "ArrayIsMonotonic1D", utils.ArrayIsMonotonic1D(Array(0, 1, 2), 0, "Speed", status), "Boolean True"
Expect "its status", status, "String 'untouched'"
Expect "not rising", utils.ArrayIsMonotonic1D(Array(0, 1, 1), 0, "Speed", status), "Boolean False"
Expect "its status", status, "String 'Speed must be monotonic positive'"
Expect "falling", utils.ArrayIsMonotonic1D(ArrayOf("Double(4 to 6)", Array(2, 1, 0)), 1, "Speed"), "Boolean True"
Expect "not falling", utils.ArrayIsMonotonic1D(ArrayOf("String(0 to 1)", Array("1", "20")), 1, "Speed", status), "Boolean False"
Expect "its status", status, "String 'Speed must be monotonic negative'"
Expect "another type of scale", utils.ArrayIsMonotonic1D(Array(3, 1, 2), 2, "Speed"), "Boolean True"

Sub ExpectBounds(value, mode, first, last, told)
  Dim isInside
  status = "untouched"
  If IsEmpty(last) Then
    isInside = utils.IsInBounds(value, "X", status, mode, first)
  Else
    isInside = utils.IsInBounds(value, "X", status, mode, first, last)
  End If
  Expect "IsInBounds, mode " & mode, Array(isInside, status), "Variant(0 to 1) Boolean " & (told = "untouched") & ", String '" & told & "'"
End Sub
ExpectBounds 10, 1, 11, Empty, "X must be greater than 11"
ExpectBounds 11, 1, 10.2, Empty, "untouched"
ExpectBounds 10, 2, 9, Empty, "X must be less than 9"
ExpectBounds 13, 4, 10, 12, "X must be greater than 10 and less than 12"
ExpectBounds 5, 9, 5, Empty, "untouched"
ExpectBounds 9, 9, 10, Empty, "X must be greater than 10"
ExpectBounds 11, 10, 10, Empty, "X must be less than 10"
ExpectBounds 10, 12, 1, 5, "X must be equal to or between 1 and5"
ExpectBounds 10.6, 16, "10.6", Empty, "X must not equal 10.6"
ExpectBounds "", 16, "", Empty, "X must not be empty "
ExpectBounds 100, 4, 1, "5", "untouched"
ExpectBounds 10, 3, 10, Empty, "untouched"

Sub ExpectErrors()
  On Error Resume Next
  Dim result
  index = 42
  result = utils.ArrayLocate(ArrayOf("Double(-1 to 1)", Array(0, 1, 2)), 1, index)
  ExpectError "a negative bound", Err, -2147220991, "Vorquill21MathUtils.ArrayLocate", "One or more array bounds are below 0"
  Expect "its interval", index, "Integer 42"
  result = utils.ArrayLocate(Array(), 1, index)
  ExpectError "no elements", Err, -2147220991, "Vorquill21MathUtils.ArrayLocate", "One or more array bounds are below 0"
  result = utils.ArrayLocate(Array(7), 7, index)
  ExpectError "one node", Err, 9, "", "Subscript out of range"
  result = utils.ArrayLocate("table", 1, index)
  ExpectError "no array", Err, 13, "", "Type mismatch"
  target = ArrayOf("Double(0 to 0)", Array(9))
  utils.CopyArray1D target, 1
  ExpectError "a copy of a number", Err, 13, "", "Type mismatch"
  utils.CopyArray1D target, never
  ExpectError "a copy of what was never dimensioned", Err, 9, "", "Subscript out of range"
  utils.CopyArray2D target, Array(1)
  ExpectError "a copy of one dimension", Err, 9, "", "Subscript out of range"
  utils.CopyArray3D target, grid
  ExpectError "a copy of two dimensions", Err, 9, "", "Subscript out of range"
  Expect "the target of all these", target, "Double(0 to 0) 9"
  utils.CopyArray1D target, Array(1, 2, "x", 4)
  ExpectError "an element that is no number", Err, 13, "", "Type mismatch"
  Expect "the elements before it", target, "Double(0 to 3) 1, 2, 0, 0"
  result = utils.DWordMake(32768, 0)
  ExpectError "too large for a word", Err, 6, "", "Overflow"
  result = utils.DWordGetLowWord(2147483648)
  ExpectError "too large for an integer", Err, 6, "", "Overflow"
  result = utils.NumbersAreEqual(1, 1, 400)
  ExpectError "too many places", Err, 6, "", "Overflow"
  result = utils.NumbersAreEqual(1, 1, -324)
  ExpectError "too few places", Err, 11, "", "Division by zero"
  result = utils.NumbersAreEqual(Array(1), 1, 5)
  ExpectError "an array and a number", Err, 13, "", "Type mismatch"
  result = utils.ArrayIsMonotonic1D(Array(1, "x"), 0, "Speed")
  ExpectError "no numbers", Err, 13, "", "Type mismatch"
  result = utils.IsInBounds(5, "X", status, 4, 1)
  ExpectError "without the second limit", Err, 13, "", "Type mismatch"
  Expect "no other error", Err.Number, "Long 0"
End Sub
ExpectErrors
