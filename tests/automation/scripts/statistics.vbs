Option Explicit

Dim statistics, values(5), index, kind, never(), row
Set statistics = CreateObject("Vorquill21.CStatistics")
values(0) = 0.9
values(1) = 1.3
values(2) = 1.4
values(3) = 1.2
values(4) = 0.8
values(5) = 1

Expect "ArithmeticMean", statistics.ArithmeticMean(values), "Double 1.0999999999999999"
Expect "Variance", statistics.Variance(values), "Double 0.05599999999999998"
Expect "VariancePop", statistics.VariancePop(values), "Double 0.046666666666666655"
Expect "StandardDeviation", statistics.StandardDeviation(values), "Double 0.2366431913239846"
Expect "StandardDeviationPop", statistics.StandardDeviationPop(values), "Double 0.21602468994692864"
Expect "RMS", statistics.RMS(values), "Double 1.1210114480533493"
Expect "Maximum", statistics.Maximum(values, index), "Double 1.4"
Expect "its index", index, "Long 2"
Expect "Minimum", statistics.Minimum(values, index), "Double 0.8"
Expect "its index", index, "Long 4"
Expect "Maximum without index", statistics.Maximum(values), "Double 1.4"
Expect "Minimum with an expression", statistics.Minimum(values, 0), "Double 0.8"
Expect "the array is as it was", values, "Variant(0 to 5) Double 0.9, Double 1.3, Double 1.4, Double 1.2, Double 0.8, Integer 1"

' Every kind of array that a host may have, with its bounds.
Expect "an array that is passed on", statistics.ArithmeticMean(Array(3, 9, 9)), "Double 7"
Expect "texts and booleans", statistics.ArithmeticMean(Array("3", 9.0, True, Empty)), "Double 2.75"
For Each kind In Array("Double", "Single", "Long", "Integer", "Byte", "Currency", "String", "Variant")
  Expect kind, statistics.StandardDeviation(ArrayOf(kind & "(5 to 7)", Array(3, 9, 9))), "Double 3.4641016151377544"
  Expect kind & ", largest", statistics.Maximum(ArrayOf(kind & "(5 to 7)", Array(3, 9, 9)), index), "Double 9"
  Expect kind & ", index", index, "Long 6"
  Expect kind & ", a row", statistics.VariancePop(ArrayOf(kind & "(1 to 1, 1 to 3)", Array(3, 9, 9))), "Double 8"
  Expect kind & ", a column", statistics.Variance(ArrayOf(kind & "(0 to 2, 0 to 0)", Array(3, 9, 9))), "Double 12"
Next
index = "7"
Expect "a row of its own bounds", statistics.Maximum(ArrayOf("Double(1 to 1, 4 to 6)", Array(3, 9, 9)), index), "Double 9"
Expect "their index", index, "Long 5"
row = ArrayOf("Double(-7 to -5)", Array(3, 9, 9))
Expect "negative bounds", statistics.Minimum(row, index), "Double 3"
Expect "their index", index, "Long -7"
Expect "booleans", statistics.RMS(ArrayOf("Boolean(0 to 1)", Array(True, True))), "Double 1"
Expect "no elements", statistics.ArithmeticMean(Array()), "Double 0"
Expect "no elements", statistics.RMS(Array()), "Double 0"

Sub ExpectErrors()
  On Error Resume Next
  Dim result
  index = 77
  result = statistics.Maximum(Array(), index)
  ExpectError "the largest of nothing", Err, 9, "", "Subscript out of range"
  Expect "its index", index, "Long 0"
  result = statistics.ArithmeticMean(never)
  ExpectError "never dimensioned", Err, 9, "", "Subscript out of range"
  result = statistics.ArithmeticMean(ArrayOf("Double(0 to 1, 0 to 1)", Array(1, 2, 3, 4)))
  ExpectError "a table", Err, 9, "", "Subscript out of range"
  result = statistics.ArithmeticMean(5)
  ExpectError "a number", Err, 13, "", "Type mismatch"
  result = statistics.ArithmeticMean(Array(1, "x"))
  ExpectError "an element that is no number", Err, 13, "", "Type mismatch"
  result = statistics.ArithmeticMean(Array(1, Null))
  ExpectError "an element that is null", Err, 13, "", "Type mismatch"
  result = statistics.RMS(Array(1E+200, 1))
  ExpectError "squares that are too large", Err, 6, "", "Overflow"
  Expect "no other error", Err.Number, "Long 0"
End Sub
ExpectErrors
