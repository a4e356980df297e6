Option Explicit

Sub ExpectRaised(shape, values, description)
  Dim made
  On Error Resume Next
  made = ArrayOf(shape, values)
  ExpectError shape, Err, -2147024809, "script host", description
  Expect shape & " cleared the error", Err.Number, "Long 0"
End Sub

ExpectRaised "Double", Array(1), "Double is no shape"
ExpectRaised "Thing(0 to 0)", Array(1), "Thing is no element type"
ExpectRaised "Double(0 to 1)", Array(1), "Double(0 to 1) has another number of elements"
ExpectRaised "Double(0 to 1)", Array(1, 2, 3), "Double(0 to 1) has another number of elements"
ExpectRaised "Double(0 to 0)", 1, "the elements are no array"

Sub RaiseOwn()
  On Error Resume Next
  Err.Raise 1000, "CLog.AddEntry", "Log not initialised"
  ExpectError "raised by the script", Err, 1000, "CLog.AddEntry", "Log not initialised"
End Sub
RaiseOwn
