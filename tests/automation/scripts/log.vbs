Option Explicit

Const logExact = 0, logNormal = 1, logException = 2, logExceptionError = 3, logDiagnostic = 4
Const rule = "-----------------------------------------------------------"
Dim log, path, entries, lines, mode, other

Sub Log_EntryLogged(message, action)
  entries = entries & action & ":" & message & "|"
  If mode = "log again" Then
    mode = ""
    log.AddEntry "from the handler", logNormal
  ElseIf mode = "disconnect" Then
    DisconnectObject log
  ElseIf mode = "release" Then
    Set other = Nothing
  ElseIf mode = "fail" Then
    Err.Raise 1001, "the handler", "cannot be noted"
  End If
End Sub

Set log = CreateObject("Vorquill21.CLog")
path = ScratchFolder & "\host.log"
Expect "Filepath before Initialise", log.Filepath, "String ''"
Expect "Text before Initialise", log.Text, "String ''"
Expect "LogDiagnostics before Initialise", log.LogDiagnostics, "Boolean False"

Sub ExpectErrors()
  On Error Resume Next
  Dim result
  log.AddEntry "entry", logNormal
  ExpectError "AddEntry", Err, 1000, "CLog.AddEntry", "Log not initialised"
  log.StartLogging
  ExpectError "StartLogging", Err, 1000, "CLog.StartLogging", "Log not initialised"
  log.StopLogging
  ExpectError "StopLogging", Err, 1000, "CLog.StopLogging", "Log not initialised"
  result = log.View
  ExpectError "View", Err, 1000, "CLog.View", "Log not initialised"
  log.Initialise path, 1000, True, False, Array(1)
  ExpectError "a title that is no text", Err, 13, "", "Type mismatch"
  log.Initialise path, "long", True, False, ""
  ExpectError "a bound that is no number", Err, 13, "", "Type mismatch"
  log.Filepath = path
  Expect "Filepath cannot be set", Err.Number <> 0, "Boolean True"
  Err.Clear
  Expect "the path after all these", log.Filepath, "String ''"
End Sub
ExpectErrors

' A logging period, mirrored by the event.
log.Initialise path, 100000, True, False, "Rig 4"
Expect "Filepath", log.Filepath, "String '" & path & "'"
Expect "LogDiagnostics", log.LogDiagnostics, "Boolean True"
ConnectObject log, "Log_"
log.StartLogging
Expect "the banner", Left(entries, 87), "String '1:" & rule & "|1:Rig 4|1:Log started at '"
Expect "its end", Right(entries, 62), "String '1:" & rule & "|'"
entries = ""
log.AddEntry "  exact" & vbTab & "entry" & vbCrLf, logExact
log.AddEntry "normal" & vbTab & "entry" & vbCrLf, logNormal
log.AddEntry "two" & vbCrLf & "lines", "1"
log.AddEntry "diagnostic", logDiagnostic
Expect "LogContainsExceptions", log.LogContainsExceptions, "Boolean False"
log.AddEntry "careful", logException
log.AddEntry "careful", logExceptionError
log.AddEntry "", logNormal
log.AddEntry "no such action", 5
Expect "LogContainsExceptions after warnings", log.LogContainsExceptions, "Boolean True"
Expect "EntryLogged", entries, "String '0:  exact<TAB>entry<CR><LF>|1:normal entry|1:two: lines|4:diagnostic|" & _
  "2:* Warning: careful|3:* Warning: careful Error: 0 |'"
log.StopLogging
lines = Split(log.Text, vbCrLf)
Expect "Text, the first line", lines(0), "String '" & rule & "'"
Expect "the title", lines(1), "String 'Rig 4'"
Expect "the start", Left(lines(2), 15), "String 'Log started at '"
Expect "an exact entry", lines(4), "String '  exact<TAB>entry'"
Expect "its line end", lines(5), "String ''"
Expect "a normal one", lines(6), "String 'normal entry'"
Expect "the warning with its error", lines(10), "String '* Warning: careful Error: 0 '"
Expect "the stop", Left(lines(12), 35), "String 'Log stopped. Time from log start = '"
Expect "lines", UBound(lines), "Long 13"
Expect "View", log.View("not used"), "Boolean True"

' What a handler may do.
mode = "log again"
entries = ""
log.AddEntry "first", logNormal
Expect "a handler logs again", entries, "String '1:first|1:from the handler|'"
entries = ""
mode = "disconnect"
log.AddEntry "second", logNormal
log.AddEntry "third", logNormal
Expect "a handler disconnects", entries, "String '1:second|'"
entries = ""
mode = "release"
Set other = WScript.CreateObject("Vorquill21.CLog", "Log_")
other.Initialise path, 1000, False, True, ""
other.AddEntry "fourth", logNormal
Expect "a handler releases the log", Array(entries, other Is Nothing), "Variant(0 to 1) String '1:fourth|', Boolean True"

entries = ""
mode = "fail"
ConnectObject log, "Log_"
log.AddEntry "fifth", logNormal
Expect "a handler fails", Array(entries, Err.Number), "Variant(0 to 1) String '1:fifth|', Long 0"
log.AddEntry "sixth", logNormal
Expect "it is called again", entries, "String '1:fifth|1:sixth|'"
ExpectHandlerError "its error", 1001, "the handler", "cannot be noted"
ExpectHandlerError "the next one", 1001, "the handler", "cannot be noted"
mode = ""
DisconnectObject log
Expect "the entries stand in the log", Array(InStr(log.Text, "fifth") > 0, InStr(log.Text, "sixth") > 0), _
  "Variant(0 to 1) Boolean True, Boolean True"

' An error that the caller is handling is still its own afterwards.
Sub LogWhileHandling()
  On Error Resume Next
  Err.Raise 1002, "the caller", "own"
  log.AddEntry "handling", logNormal
  log.AddEntry "handling", logException
  log.AddEntry "handling", logExceptionError
  ExpectError "the caller's error", Err, 1002, "the caller", "own"
End Sub
entries = ""
ConnectObject log, "Log_"
LogWhileHandling
DisconnectObject log
Expect "its entries were mirrored", entries, _
  "String '1:handling|2:* Warning: handling|3:* Warning: handling Error: 0 |'"

' Appended to, and redirected.
log.Initialise path, -1, False, True, Empty
log.AddEntry "hidden", logDiagnostic
log.StartLogging
Expect "a start forgets warnings", log.LogContainsExceptions, "Boolean False"
Expect "what was there stays", InStr(log.Text, "fourth") > 0, "Boolean True"
Expect "diagnostics are off", InStr(log.Text, "hidden"), "Long 0"
