Option Explicit

Dim strings, list, once, method, parts

Class FailedTests
  Public Count
  Public Sub Add(name)
    Count = Count + 1
  End Sub
End Class

Set strings = CreateObject("Vorquill21.CString")

' Command lines.
list = strings.CommandLineArgumentsParse(True, "/s1 ""/q 4"" """" ab""c d""")
Expect "CommandLineArgumentsParse", list, "Variant(0 to 5) Empty, String '/s1', String '/q 4', Empty, String 'abc', String 'd'"
Expect "an argument", list(2), "String '/q 4'"
Expect "CommandLineArgumentIndex", strings.CommandLineArgumentIndex(list, "/Q 4"), "Long 2"
Expect "absent", strings.CommandLineArgumentIndex(list, "/q"), "Long 0"
Expect "in an array of texts", strings.CommandLineArgumentIndex(ArrayOf("Variant(5 to 6)", Array("a", "b")), "B"), "Long 6"
Expect "test mode without a line", strings.CommandLineArgumentsParse(True), "Variant(0 to 0) Empty"
list = strings.CommandLineArgumentsParse
Expect "the line of this process", strings.CommandLineArgumentIndex(list, "first one") > 0, "Boolean True"
Expect "as it is outside test mode", Shown(strings.CommandLineArgumentsParse(False, "ignored")), "String '" & Shown(list) & "'"
Expect "with an argument left out", Shown(strings.CommandLineArgumentsParse(, "ignored")), "String '" & Shown(list) & "'"

' Parts of texts.
Expect "MidBracketed", strings.MidBracketed("a<b>c", "<", ">"), "String 'b'"
Expect "a longer bracket", strings.MidBracketed("a<<b>>c", "<<", ">>"), "String '<b'"
Expect "a number as text", strings.MidBracketed(12345, 2, "5"), "String '34'"
Expect "ReplaceMulti", strings.ReplaceMulti("a  b   c", " ", ","), "String 'a,b,c'"
Expect "patterns that overlap", strings.ReplaceMulti("aaaaa", "aa", "x"), "String 'xa'"
Expect "RTrimMulti", strings.RTrimMulti("midxy", Array("x", "y")), "String 'mid'"
Expect "other bounds", strings.RTrimMulti("midxy", ArrayOf("Variant(-7 to -6)", Array("x", "y"))), "String 'mid'"
Expect "an array of texts", strings.RTrimMulti("midxy", ArrayOf("Variant(0 to 1)", Array("x", "y"))), "String 'mid'"
Expect "twice the same", strings.RTrimMulti("abx", Array("x", "x")), "String 'a'"
Expect "beyond 8 bits", strings.RTrimMulti("aΩ", Array("Ω")), "String 'a'"

' Splitting; arrays that are results hold variants, which scripts can look into.
Expect "Split5", strings.Split5("x y z"), "Variant(0 to 2) String 'x', String 'y', String 'z'"
Expect "with a delimiter", strings.Split5("a, b,c", ", "), "Variant(0 to 1) String 'a', String 'b,c'"
Expect "with a limit", strings.Split5("x y z", " ", 2), "Variant(0 to 1) String 'x', String 'y'"
Expect "with a limit and a default", strings.Split5("x y z", , 2), "Variant(0 to 1) String 'x', String 'y'"
Expect "ignoring case", strings.Split5("axbXc", "x", -1, 1), "Variant(0 to 2) String 'a', String 'b', String 'c'"
Expect "runs as one", strings.Split5("  a  b ", , , , True), "Variant(0 to 1) String 'a', String 'b'"
once = True
method = 1
Expect "by variables", strings.Split5("XxaxxbX", "x", 2, method, once), "Variant(0 to 1) String 'a', String 'b'"
Expect "the variables", Array(method, once), "Variant(0 to 1) Integer 1, Boolean True"
Expect "nothing", strings.Split5(""), "Variant(0 to 0) String ''"
Expect "SplitMulti", strings.SplitMulti("1 2  3"), "Variant(0 to 3) String '1', String '2', String '', String '3'"
Expect "with a delimiter", strings.SplitMulti(",a,", ","), "Variant(0 to 2) String '', String 'a', String ''"
Expect "nothing", strings.SplitMulti(""), "Variant(0 to -1)"
parts = strings.SplitMulti("1 2  3", " ", True)
Expect "runs as one", parts, "Variant(0 to 2) String '1', String '2', String '3'"
Expect "a part", parts(2), "String '3'"
Expect "101 empty variants", UBound(strings.SplitMulti("   ", , once)), "Long 100"

' The self-test adds the names of checks that fail to any object with a method Add.
Dim failedTests
Set failedTests = New FailedTests
Expect "SelfTest_Main", strings.SelfTest_Main(failedTests), "Empty"
Expect "failed checks", failedTests.Count, "Empty"

Sub ExpectErrors()
  On Error Resume Next
  Dim result
  result = strings.Split5("a", " ", 0)
  ExpectError "no element", Err, 9, "", "Subscript out of range"
  result = strings.Split5("abc", "")
  ExpectError "no delimiter and no limit", Err, 5, "", "Invalid procedure call or argument"
  result = strings.Split5("a b", " ", -1, 2)
  ExpectError "no such way to compare", Err, 5, "", "Invalid procedure call or argument"
  result = strings.Split5("a b", " ", "many")
  ExpectError "no limit", Err, 13, "", "Type mismatch"
  result = strings.RTrimMulti("", Array(""))
  ExpectError "nothing left to trim", Err, 5, "", "Invalid procedure call or argument"
  result = strings.RTrimMulti("a", Array(Array("a")))
  ExpectError "an array among the characters", Err, 13, "", "Type mismatch"
  result = strings.RTrimMulti("a", "a")
  ExpectError "no array of characters", Err, 13, "", "Type mismatch"
  result = strings.CommandLineArgumentIndex("a", "a")
  ExpectError "no list of arguments", Err, 13, "", "Type mismatch"
  result = strings.MidBracketed(Array("a"), "<", ">")
  ExpectError "an array as text", Err, 13, "", "Type mismatch"
  Expect "no other error", Err.Number, "Long 0"
End Sub
ExpectErrors
