Option Explicit

Dim trigonometry, x, y, angle
Set trigonometry = CreateObject("Vorquill21.CTrigonometry")

Expect "Pi", trigonometry.Pi, "Double 3.14159265358979"
Expect "Pi()", trigonometry.Pi(), "Double 3.14159265358979"

Expect "ArcSin", trigonometry.ArcSin(-0.5), "Double -0.5235987755982989"
Expect "ArcSin of an integer", trigonometry.ArcSin(1), "Double 1.570796326794895"
Expect "ArcSin outside", trigonometry.ArcSin(-7), "Double -1.570796326794895"
Expect "ArcCos", trigonometry.ArcCos(0.5), "Double 1.047197551196596"
Expect "ArcCos of 0", trigonometry.ArcCos(0), "Double 1.570796326794895"
Expect "ArcCos of a boolean", trigonometry.ArcCos(True), "Double 3.14159265358979"
Expect "ArcCos of a text", trigonometry.ArcCos("0.1"), "Double 1.4706289056333353"
Expect "ArcCos of empty", trigonometry.ArcCos(Empty), "Double 1.570796326794895"
angle = 0.5
Expect "ArcSin of a variable", trigonometry.ArcSin(angle), "Double 0.5235987755982989"

Expect "ArcTan2", trigonometry.ArcTan2(3, -4), "Double -0.9272952180016122"
Expect "ArcTan2 left below", trigonometry.ArcTan2(-3, -4), "Double -2.2142974355881777"
Expect "ArcTan2 left above", trigonometry.ArcTan2(-1, 1), "Double -0.7853981633974483"
Expect "ArcTan2 left", trigonometry.ArcTan2(-2, 0), "Double -0"
Expect "ArcTan2 on the vertical axis", trigonometry.ArcTan2(0, 3), "Double 1.570796326794895"

Expect "Degrees", trigonometry.Degrees(trigonometry.Pi), "Double 360"
Expect "Degrees of 1", trigonometry.Degrees(1), "Double 114.59155902616476"
Expect "Radians", trigonometry.Radians(180), "Double 1.570796326794895"
Expect "Radians of 37", trigonometry.Radians(37), "Double 0.32288591161895064"

' Results by reference: in variables that hold nothing, a number or a text; a literal takes none.
trigonometry.PolarToXY 1, 2, x, y
Expect "PolarToXY, X", x, "Double 1.0806046117362795"
Expect "PolarToXY, Y", y, "Double 1.682941969615793"
x = 7
y = 0.5
trigonometry.PolarToXY 0.5, -3, x, y
Expect "PolarToXY over an integer", x, "Double -2.6327476856711183"
Expect "PolarToXY over a double", y, "Double -1.438276615812609"
x = "7"
trigonometry.XYToPolar -3, -4, angle, x
Expect "XYToPolar, angle", angle, "Double -2.2142974355881777"
Expect "XYToPolar over a text", x, "Double 5"
trigonometry.PolarToXY 1, 2, 0, 0
trigonometry.PolarToXY 0, 2, (x), y
Expect "an expression takes no result", x, "Double 5"
Expect "the next argument does", y, "Double 0"

Sub ExpectErrors()
  On Error Resume Next
  angle = trigonometry.ArcSin("half")
  ExpectError "a text that is no number", Err, 13, "", "Type mismatch"
  angle = trigonometry.ArcSin(Array(1))
  ExpectError "an array", Err, 13, "", "Type mismatch"
  angle = trigonometry.ArcSin(trigonometry)
  ExpectError "an object", Err, 13, "", "Type mismatch"
  angle = trigonometry.ArcTan2(1E-300, 1E+300)
  ExpectError "a quotient that is too large", Err, 6, "", "Overflow"
  angle = trigonometry.Degrees(1E+307)
  ExpectError "degrees that are too many", Err, 6, "", "Overflow"
  x = 1
  angle = 1
  trigonometry.XYToPolar 1E+200, 1E+200, angle, x
  ExpectError "a radius that is too large", Err, 6, "", "Overflow"
  Expect "what was known before the error", angle, "Double 0.7853981633974483"
  Expect "what was not", x, "Integer 1"
  angle = trigonometry.ArcSin()
  Expect "an argument that is missing", Err.Number <> 0, "Boolean True"
  Err.Clear
  angle = trigonometry.Tangent(1)
  Expect "no such member", Err.Number, "Long 438"
End Sub
ExpectErrors
