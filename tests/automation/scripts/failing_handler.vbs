Dim log
Sub Log_EntryLogged(message, action)
  Err.Raise 1001, "the handler", message
End Sub
Set log = WScript.CreateObject("Vorquill21.CLog", "Log_")
log.Initialise ScratchFolder & "\host.log", 1000, True, False, ""
log.AddEntry "first", 1
log.AddEntry "second", 1
ExpectHandlerError "asked for", 1001, "the handler", "first"
