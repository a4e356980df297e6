Option Explicit

Dim files, folder, content, list, count, picked, message, path, never()
Set files = CreateObject("Vorquill21.CFile")
folder = ScratchFolder & "\"

' Paths taken apart.
path = "C:\data\tyre.front.txt"
Expect "ParseFileDir", files.ParseFileDir(path), "String 'C:\data\'"
Expect "ParseFileExt", files.ParseFileExt(path), "String 'txt'"
Expect "ParseFileName", files.ParseFileName(path), "String 'tyre.front.txt'"
Expect "ParseFileTitle", files.ParseFileTitle(path), "String 'tyre.front'"
Expect "a slash", files.ParseFileName("a.b/z"), "String 'z.b/z'"
Expect "EnsureExtension", files.EnsureExtension(path, "csv"), "String 'C:\data\tyre.front.csv'"
Expect "its argument", path, "String 'C:\data\tyre.front.txt'"
Expect "an extension of several parts", files.EnsureExtension("a.tar.gz", "tar.gz"), "String 'a.tar.tar.gz'"

' Checksums.
Expect "Crc32Make", files.Crc32Make("123456789"), "String 'CBF43926'"
Expect "of a number", files.Crc32Make(123456789), "String 'CBF43926'"
Expect "of nothing", files.Crc32Make(""), "String '0'"

' Folders.
Expect "DirExists", files.DirExists(ScratchFolder), "Boolean True"
Expect "a missing folder", files.DirExists(folder & "sub"), "Boolean False"
Expect "DirMake", files.DirMake(folder & "sub"), "Boolean True"
Expect "again", files.DirMake(folder & "sub"), "Boolean True"
Expect "below a missing folder", files.DirMake(folder & "x\y"), "Boolean False"
files.DirMakeNested folder & "one\two\three"
Expect "DirMakeNested", files.DirExists(folder & "one\two\three"), "Boolean True"

' Files.
path = folder & "a.txt"
content = "Größe" & vbCrLf & "2"
Expect "FileExists", files.FileExists(path), "Boolean False"
Expect "FileWriteAsString", files.FileWriteAsString(path, content), "Boolean True"
Expect "FileExists after that", files.FileExists(path), "Boolean True"
Expect "by a pattern", files.FileExists(folder & "*.txt"), "Boolean True"
Expect "a folder", files.FileExists(ScratchFolder), "Boolean False"
Expect "FileReadAsString", files.FileReadAsString(path, content), "Boolean True"
Expect "the content", content, "String 'Größe<CR><LF>2'"
Expect "a literal", files.FileWriteAsString(folder & "b.txt", "GRÖßE" & vbCrLf & 2, True), "Boolean True"
Expect "CompareFiles", files.CompareFiles(path, folder & "b.txt"), "Boolean True"
Expect "a missing file", files.CompareFiles(path, folder & "c.txt"), "Boolean False"
Expect "reading a missing file", files.FileReadAsString(folder & "c.txt", content, False), "Boolean False"
Expect "the content then", content, "String ''"

' Messages, unless they are to be silent.
Expect "writing into a missing folder", files.FileWriteAsString(folder & "x\c.txt", "text", False), "Boolean False"
ExpectBox "its message", 48, "Vorquill21", "An error occurred while writing file: " & folder & "x\c.txt"
Expect "in silence", files.FileWriteAsString(folder & "x\c.txt", "text", True), "Boolean False"
Expect "by default", files.FileWriteAsString(folder & "x\c.txt", "text"), "Boolean False"
WriteFile folder & "empty.txt", ""
Expect "reading an empty file", files.FileReadAsString(folder & "empty.txt", content, False), "Boolean False"
ExpectBox "its message", 48, "Vorquill21", "An error occurred while reading file: " & folder & "empty.txt"

' Listings.
files.ListFilesMatchingExt ScratchFolder, "txt", list, count
Expect "ListFilesMatchingExt", count, "Long 3"
Expect "the names", list, "Variant(0 to 2) String 'a.txt', String 'b.txt', String 'empty.txt'"
list = ArrayOf("String(0 to 0)", Array("x"))
files.ListFilesMatchingExt folder & "", "tx?", list, count
Expect "into an array of texts", list, "String(0 to 2) 'a.txt', 'b.txt', 'empty.txt'"
list = ArrayOf("String(0 to 0)", Array("untouched"))
files.ListFilesMatchingExt ScratchFolder, "csv", list, count
Expect "none", count, "Long 0"
Expect "the list then", list, "String(0 to 0) 'untouched'"

' Documents and folders of the desktop.
message = "untouched"
Expect "OpenDoc", files.OpenDoc(folder & "missing.txt", message), "Boolean False"
Expect "its message", message, "String 'File not found'"
Expect "without a message", files.OpenDoc(folder & "missing.txt"), "Boolean False"
picked = "untouched"
CancelNextDialog
files.BrowseForFolder 0, "Pick one", picked
ExpectBox "BrowseForFolder, cancelled", 0, "Browse for Folder", "Pick one"
Expect "the folder", picked, "String 'untouched'"
files.BrowseForFolder 0, "Pick another one", picked
ExpectBox "BrowseForFolder", 0, "Browse for Folder", "Pick another one"
Expect "the folder", files.DirExists(picked), "Boolean True"

Sub ExpectErrors()
  On Error Resume Next
  Dim result
  result = files.EnsureExtension("", "txt")
  ExpectError "the empty path", Err, 9, "", "Subscript out of range"
  files.DirMakeNested path & "\below a file"
  ExpectError "below a file", Err, 76, "", "Path not found"
  files.DirMakeNested "Q:\missing drive"
  ExpectError "a missing drive", Err, 76, "", "Path not found"
  result = files.FileExists(Array(1))
  ExpectError "an array as path", Err, 13, "", "Type mismatch"
  result = files.FileExists(Null)
  ExpectError "null as path", Err, 13, "", "Type mismatch"
  Expect "no other error", Err.Number, "Long 0"
End Sub
ExpectErrors
