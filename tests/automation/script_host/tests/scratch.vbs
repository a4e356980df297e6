Option Explicit

Dim files
Set files = CreateObject("Scripting.FileSystemObject")
Expect "the scratch folder is there", files.FolderExists(ScratchFolder), "Boolean True"
Expect "the script's name", files.FileExists(WScript.ScriptFullName), "Boolean True"
Expect "the first argument", Arguments(0), "String 'first one'"
Echo "scratch folder:", ScratchFolder
WriteFile ScratchFolder & "\empty.txt", ""
SetVariable "VORQUILL21_SCRIPT_TEST", "a value"
Expect "a variable of the environment", _
  Left(CreateObject("WScript.Shell").ExpandEnvironmentStrings("%VORQUILL21_SCRIPT_TEST%"), 7), "String 'a value'"
Expect "a file was written", files.GetFile(ScratchFolder & "\empty.txt").Size, "Long 0"
