Option Explicit

Dim main, log, stream, request
Set main = CreateObject("Vorquill21.Main")

' Each accessor hands out the one object of its class.
Expect "LibFile", main.LibFile, "Object CFile"
Expect "LibGeometry", main.LibGeometry, "Object CGeometry"
Expect "LibInterpolate", main.LibInterpolate, "Object CInterpolate"
Expect "LibMathUtils", main.LibMathUtils(), "Object CMathUtils"
Expect "LibStatistics", main.LibStatistics, "Object CStatistics"
Expect "LibTrigonometry", main.LibTrigonometry, "Object CTrigonometry"
Expect "LibString", main.LibString, "Object CString"
Expect "LibLog", main.LibLog, "Object CLog"
Expect "LibFilestream", main.LibFilestream, "Object CFileStream"
Expect "LibOSUtils", main.LibOSUtils, "Object COSUtils"
Expect "Main itself", main, "Object Main"
Expect "the same object every time", main.LibLog Is main.LibLog, "Boolean True"
Expect "names ignore letter case", main.LIBLOG Is main.liblog, "Boolean True"

' What is set through one accessor is seen through the next.
main.LibLog.Initialise ScratchFolder & "\host.log", 1000, True, False, ""
Expect "state is kept", main.LibLog.Filepath, "String '" & ScratchFolder & "\host.log'"

' Another Main has objects of its own; objects outlive the Main that they come from.
Expect "another Main", CreateObject("Vorquill21.Main").LibLog.Filepath, "String ''"
Set log = main.LibLog
Set stream = main.LibFilestream
Set main = Nothing
Expect "an object without its Main", log.Filepath, "String '" & ScratchFolder & "\host.log'"
stream.Initialise "V 1", Array()
Expect "another one", stream.FileVersion, "String 'V 1'"

' The self-tests: in silence, and with their report.
Set main = CreateObject("Vorquill21.Main.1")
Expect "without arguments", main.Initialise(), "Empty"
For Each request In Array(0, 3, -1, 1.5, "0", False, True, Empty)
  Expect "no request " & Shown(request), main.Initialise(request), "Empty"
Next
Expect "in silence", main.Initialise(1), "Empty"
Expect "with a report", main.Initialise(2), "Empty"
ExpectBox "the report", 64, "Vorquill21", "All self tests passed"
request = 2
main.Initialise request
ExpectBox "asked for by a variable", 64, "Vorquill21", "All self tests passed"
main.Initialise "2", "more", Array(1)
ExpectBox "asked for by a text, with arguments that do not count", 64, "Vorquill21", "All self tests passed"
main.Initialise , 2

' A host that is installed where it cannot write names another folder for the self-tests.
Dim files, reference
Set files = CreateObject("Scripting.FileSystemObject")
SetVariable "VORQUILL21_LIBRARY_FOLDER", ScratchFolder & "\missing"
main.Initialise 1
main.Initialise 2
ExpectBox "checks that cannot run", 48, "Self Tests in Kestrovan", "Failed the following tests:" & vbCr & _
  "ListFilesMathchingType" & vbCr & vbCr & "SelfTest_DirMake" & vbCr & "SelfTest_Main" & vbCr & "SelfTest_ReadWrite" & vbCr & _
  "SelfTest_IsCompatibleVersion" & vbCr & "SelfTest_3dTable" & vbCr
SetVariable "VORQUILL21_LIBRARY_FOLDER", ScratchFolder
main.Initialise 2
ExpectBox "a folder without the reference file", 48, "Self Tests in Kestrovan", _
  "Failed the following tests:" & vbCr & "SelfTest_3dTable" & vbCr
reference = files.GetParentFolderName(WScript.ScriptFullName) & "\..\..\..\vorquill21\filestream\data\3d ref.txt"
files.CopyFile reference, ScratchFolder & "\self test\3d ref.txt"
main.Initialise 2
ExpectBox "a folder with it", 64, "Vorquill21", "All self tests passed"
Expect "what they leave there", files.FileExists(ScratchFolder & "\self test\3d try.txt"), "Boolean True"

Sub ExpectErrors()
  On Error Resume Next
  main.Initialise "abc"
  ExpectError "a text that is no number", Err, 13, "", "Type mismatch"
  main.Initialise Array(2)
  ExpectError "an array", Err, 13, "", "Type mismatch"
  main.Initialise main
  ExpectError "an object", Err, 13, "", "Type mismatch"
End Sub
ExpectErrors
