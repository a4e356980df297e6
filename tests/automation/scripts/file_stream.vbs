Option Explicit

Dim stream, path, contents, status, grid(1, 2), cube, read, fields, silent, never()
Set stream = CreateObject("Vorquill21.CFileStream")
path = ScratchFolder & "\tyre.txt"

' Versions.
Expect "Initialise", stream.Initialise("  TYRE DATA 2.10 ", Array("TYRE DATA 1.0")), "Empty"
Expect "FileVersion", stream.FileVersion, "String 'TYRE DATA 2.10'"
Expect "FileVersionNumber", stream.FileVersionNumber, "String '2.1'"
Expect "FileVersionType", stream.FileVersionType, "String 'TYRE'"
Expect "GetContents", stream.GetContents, "String '[DEC SEP]<TAB>.<CR><LF>[FILEVERSION]<TAB>TYRE DATA 2.10<CR><LF>'"

' Fields.
stream.SetContents ""
stream.AddField "ONE", "value"
stream.AddField "NUMBER", 1.5
stream.AddField "FLAG", True
stream.AddField "LIST", Array("7J", 16, 2.5, Empty, False)
stream.AddField "NUMBERS", ArrayOf("Double(0 to 2)", Array(1.5, 0, -2E+300))
Expect "AddField", Left(stream.GetContents, 96), "String '[ONE]<TAB>value<CR><LF>[NUMBER]<TAB>1.5<CR><LF>[FLAG]<TAB>True<CR><LF>" & _
  "[LIST]<TAB>7J<TAB>16<TAB>2.5<TAB><TAB>False<CR><LF>[NUMBERS]<TAB>1.5<TAB>0<TAB>-2E+300<CR><LF>[FILEV'"
Expect "FieldExists", stream.FieldExists("LIST"), "Boolean True"
Expect "exactly its letters", stream.FieldExists("list"), "Boolean False"
Expect "GetFieldString", stream.GetFieldString("ONE"), "String 'value'"
Expect "several values", stream.GetFieldString("LIST"), "Variant(0 to 4) String '7J', String '16', String '2.5', String '', String 'False'"
Expect "gaps filled", stream.GetFieldString("LIST", Array(1, 2, 3, 4.5)), _
  "Variant(0 to 4) String '7J', String '16', String '2.5', Double 4.5, String 'False'"
Expect "a default", stream.GetFieldString("ABSENT", 7), "Long 7"
Expect "a default array", stream.GetFieldString("ABSENT", ArrayOf("Double(1 to 2)", Array(1, 2.5))), "Variant(1 to 2) Double 1, Double 2.5"
Expect "no default", stream.GetFieldString("ABSENT"), "String ''"
Expect "GetFieldNumber", stream.GetFieldNumber("NUMBER"), "Double 1.5"
Expect "no number", stream.GetFieldNumber("ONE"), "Double 0"
Expect "several numbers", stream.GetFieldNumber("NUMBERS"), "Variant(0 to 2) Double 1.5, Double 0, Double -2e+300"
Expect "a default", stream.GetFieldNumber("ABSENT", "2.5"), "Double 2.5"
Expect "RemoveField", stream.RemoveField("ONE"), "Boolean True"
Expect "again", stream.RemoveField("ONE"), "Boolean False"

' Tables.
grid(0, 0) = 1
grid(0, 1) = 0.5
grid(0, 2) = "2"
grid(1, 0) = 3
grid(1, 2) = True
Expect "AddTable2d", stream.AddTable2d("GRID", grid), "Boolean True"
Expect "GetTable2d", stream.GetTable2d("GRID"), "Variant(0 to 1, 0 to 2) Double 1, Double 0.5, Double 2, Double 3, Double 0, Double 0"
Expect "a missing table", stream.GetTable2d("ABSENT"), "Empty"
Expect "a row", stream.AddTable2d("ROW", ArrayOf("Single(0 to 0, 0 to 2)", Array(1, 2, 3))), "Boolean True"
Expect "the row", stream.GetTable2d("ROW"), "Variant(0 to 0, 0 to 2) Double 1, Double 2, Double 3"
cube = ArrayOf("Double(0 to 1, 0 to 1, 0 to 2)", Array(0, 1, 2, 0, 3, 4, 0, 5, 6, 0, 7, 8))
Expect "AddTable3d", stream.AddTable3d("CUBE", cube), "Boolean True"
Expect "its second page", stream.GetTable2d("CUBE PAGE 2"), "Variant(0 to 1, 0 to 1) Double 2, Double 4, Double 6, Double 8"
Expect "GetTable3d", stream.GetTable3d("CUBE", 1, 1, 2), "Variant(0 to 1, 0 to 1, 0 to 2) Empty, Double 1, Double 2," & _
  " Empty, Double 3, Double 4, Empty, Double 5, Double 6, Empty, Double 7, Double 8"
Expect "with ends", stream.AddTable3d("SMALL", cube, 1, , 1), "Boolean True"
Expect "no second page", stream.FieldExists("SMALL PAGE 2"), "Boolean False"
Expect "its first page", stream.GetTable2d("SMALL PAGE 1"), "Variant(0 to 1, 0 to 1) Double 1, Double 3, Double 5, Double 7"
Expect "nothing", stream.AddTable3d("NOTHING", Empty), "Boolean True"

' Files.
Expect "FileWrite", stream.FileWrite(path), "Boolean True"
Set read = CreateObject("Vorquill21.CFileStream")
read.Initialise "TYRE DATA 3.0", Array("TYRE DATA 2.10")
Expect "FileRead", read.FileRead(path, contents), "Boolean True"
Expect "what was read", contents = stream.GetContents & vbCr, "Boolean True"
Expect "without a text", read.FileRead(path), "Boolean True"
Expect "a number that was read", read.GetFieldNumber("NUMBER"), "Double 1.5"
Expect "a table that was read", read.GetTable2d("GRID"), "Variant(0 to 1, 0 to 2) Double 1, Double 0.5, Double 2, Double 3, Double 0, Double 0"
Expect "a missing file", read.FileRead(ScratchFolder & "\missing.txt", contents), "Boolean False"
Expect "its text", contents, "String ''"
Expect "FileWrite, appended", read.FileWrite(path, True), "Boolean True"

' Compatible versions.
status = "untouched"
Expect "IsCompatibleVersion", read.IsCompatibleVersion(True), "Boolean True"
Expect "with a status", read.IsCompatibleVersion(True, "2.10", , , status), "Boolean True"
Expect "its status", status, "String ''"
silent = True
Expect "another version", read.IsCompatibleVersion(silent, "v9", "v2", "v1.1 v1.2", status), "Boolean False"
Expect "its status", status, "String 'Wrong file version<CR><LF><CR><LF>File version required = V1.1 V1.2  V2 <CR><LF>File version available = V9 '"
Expect "with a message", read.IsCompatibleVersion(False, "v9", "v2", "v1.1 v1.2"), "Boolean False"
ExpectBox "the message", 48, "Vorquill21", "Wrong file version" & vbCrLf & vbCrLf & "File version required = V1.1 V1.2  V2 " & vbCrLf & _
  "File version available = V9 "
Expect "an array as version", read.IsCompatibleVersion(True, Array("v1"), , , status), "Boolean False"
ExpectBox "its message", 48, "Vorquill21", "An error occured while checking for the required file version: TYRE DATA 2.10 " & vbCrLf & _
  "Error was Type mismatch"

' Messages of the others.
stream.AddField "TABLE", ArrayOf("Long(0 to 0, 0 to 1)", Array(1, 2))
ExpectBox "AddField", 48, "Vorquill21", "An error occurred while adding field: TABLE to the filestream"
stream.AddField "FROM 1", ArrayOf("Variant(1 to 2)", Array(1, 2))
ExpectBox "AddField", 48, "Vorquill21", "An error occurred while adding field: FROM 1 to the filestream"
Expect "too large for single precision", stream.AddTable2d("LARGE", ArrayOf("Double(0 to 0, 0 to 0)", Array(1E+39))), "Boolean False"
ExpectBox "AddTable2d", 48, "Vorquill21", "An error occurred while adding table: LARGE to the filestream"
Expect "no such page", stream.AddTable3d("LARGE", cube, 0, 0, 5), "Boolean False"
ExpectBox "AddTable3d", 48, "Vorquill21", "An error occurred while adding 3d table: LARGE to the filestream"
Expect "no table", stream.GetTable2d("NUMBER"), "Empty"
ExpectBox "GetTable2d", 48, "Vorquill21", "An error occurred while getting table: NUMBER"
Expect "a missing page", stream.GetTable3d("CUBE", 1, 1, 3), "Boolean False"
ExpectBox "GetTable3d", 48, "Vorquill21", "An error occurred while getting 3d table: CUBE"
Expect "a gap without default", stream.GetFieldString("LIST", ArrayOf("Variant(0 to 0)", Array(1))), "Empty"
ExpectBox "GetFieldString", 48, "Vorquill21", "An error occurred while getting sub field:  3"
WriteFile ScratchFolder & "\empty.txt", ""
Expect "an empty file", stream.FileRead(ScratchFolder & "\empty.txt"), "Boolean False"
ExpectBox "FileRead", 48, "Vorquill21", "An error occurred while reading file: " & ScratchFolder & "\empty.txt"

Sub ExpectErrors()
  On Error Resume Next
  Dim result
  result = stream.FileWrite(ScratchFolder & "\missing\tyre.txt")
  ExpectError "FileWrite", Err, 76, "CFileStream.FileWrite", "An error occurred while writing file: " & ScratchFolder & _
    "\missing\tyre.txt" & vbCrLf & "Error was: Path not found"
  stream.Initialise "V 2", never
  ExpectError "versions never dimensioned", Err, 9, "", "Subscript out of range"
  stream.Initialise "V 2", Array(Array(1))
  ExpectError "a version that is no text", Err, 13, "", "Type mismatch"
  stream.Initialise "V 2", "V 1"
  ExpectError "versions that are no array", Err, 13, "", "Type mismatch"
  stream.SetContents "[FILEVERSION]" & vbTab & "a" & vbTab & "b" & vbCrLf
  result = stream.FileVersion
  ExpectError "FileVersion", Err, 13, "", "Type mismatch"
  result = stream.FileVersionNumber
  ExpectError "FileVersionNumber", Err, 13, "", "Type mismatch"
  result = stream.FileVersionType
  ExpectError "FileVersionType", Err, 13, "", "Type mismatch"
  Expect "no other error", Err.Number, "Long 0"
End Sub
ExpectErrors
