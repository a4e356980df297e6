Option Explicit

Dim os, path, identifier
Set os = CreateObject("Vorquill21.COSUtils")

Expect "GetSpecialFolderPath", os.GetSpecialFolderPath(36, path), "Boolean True"
Expect "the folder of Windows", UCase(path), "String 'C:\WINDOWS'"
identifier = 37
path = 5
Expect "by a variable", os.GetSpecialFolderPath(identifier, path), "Boolean True"
Expect "the folder of the system", UCase(path), "String 'C:\WINDOWS\SYSTEM32'"
Expect "the variable", identifier, "Integer 37"
Expect "an application's data, made when it is missing", os.GetSpecialFolderPath(26 + 32768, path), "Boolean True"
Expect "it is there", CreateObject("Vorquill21.CFile").DirExists(path), "Boolean True"
Expect "no such folder", os.GetSpecialFolderPath(9999, path), "Boolean False"
Expect "why", path, "String 'Folder Not Valid on this OS'"
Expect "without a variable", os.GetSpecialFolderPath(36, ""), "Boolean True"

Sub ExpectErrors()
  On Error Resume Next
  Dim result
  result = os.GetSpecialFolderPath("documents", path)
  ExpectError "no number", Err, 13, "", "Type mismatch"
  result = os.GetSpecialFolderPath(1E+10, path)
  ExpectError "too large a number", Err, 6, "", "Overflow"
  Expect "no other error", Err.Number, "Long 0"
End Sub
ExpectErrors
