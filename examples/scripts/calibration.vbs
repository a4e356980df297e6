' Imports a calibration, checks and fits it, stores it in a data file, reads that back, and logs what it does:
'
'     cscript //nologo calibration.vbs
'
' The data file and the log are written into the folder for temporary files. The component must be registered.
Option Explicit

Const emsPositive = 0, evcBetween = 4, eInterpClip = 0
Const logNormal = 1, logException = 2

Dim fileSystem, dataFile, logFile, library, log
Set fileSystem = CreateObject("Scripting.FileSystemObject")
dataFile = TemporaryFile("vorquill21 calibration.txt")
logFile = TemporaryFile("vorquill21 calibration.log")

Set library = CreateObject("Vorquill21.Main")
Set log = library.LibLog
log.Initialise logFile, 100000, False, False, "Calibration of a load cell"
log.StartLogging
WScript.ConnectObject log, "Log_"

Dim loads, deflections, coefficients
If ImportCalibration(loads, deflections) Then
  CheckCalibration loads, deflections
  coefficients = FitCalibration(loads, deflections)
  StoreCalibration loads, deflections, coefficients
  ReadCalibration
End If

WScript.DisconnectObject log
log.StopLogging
WScript.Echo "The log has " & UBound(Split(log.Text, vbCrLf)) & " lines, warnings among them: " & log.LogContainsExceptions
fileSystem.DeleteFile dataFile
fileSystem.DeleteFile logFile

' Each entry of the log is shown as soon as it is written.
Sub Log_EntryLogged(message, action)
  WScript.Echo "  [log] " & message
End Sub

Function TemporaryFile(name)
  Const temporaryFolder = 2
  TemporaryFile = fileSystem.BuildPath(fileSystem.GetSpecialFolder(temporaryFolder), name)
End Function

' The columns of the measurements, which stand in the folder "data" of the examples.
Function ImportCalibration(loads, deflections)
  Dim importer, status, examples
  examples = fileSystem.GetParentFolderName(fileSystem.GetParentFolderName(WScript.ScriptFullName))
  Set importer = CreateObject("Vorquill21.CImportColumnData")
  importer.Filepath = examples & "\data\load-cell-calibration.txt"
  importer.Delimiter = vbTab
  importer.HeaderRow = 9
  importer.FirstValueRow = 11
  ImportCalibration = importer.Import(status)
  If ImportCalibration Then
    loads = importer.ColumnData(0)
    deflections = importer.ColumnData(1)
    WScript.Echo importer.ColumnHeaderData(0) & " and " & importer.ColumnHeaderData(1) & ": " & importer.DataRowCount & " rows"
  Else
    log.AddEntry status, logException
  End If
End Function

' What is wrong with the measurements is said in words.
Sub CheckCalibration(loads, deflections)
  Dim utils, index, reason
  Set utils = library.LibMathUtils
  If Not utils.ArrayIsMonotonic1D(loads, emsPositive, "Load", reason) Then log.AddEntry reason, logException
  For index = 0 To UBound(deflections)
    If Not utils.IsInBounds(deflections(index), "Deflection", reason, evcBetween, 0, 2.1) Then
      log.AddEntry "row " & (index + 1) & ": " & reason, logException
    End If
  Next
End Sub

' The coefficients of the parabola through all points, the one of the constant first.
Function FitCalibration(loads, deflections)
  Dim deviation, found, terms(2)
  library.LibInterpolate.OneDPolynomialFit loads, deflections, 2, found, deviation
  terms(0) = found(1)
  terms(1) = found(2)
  terms(2) = found(3)
  FitCalibration = terms
  WScript.Echo "The fit is off by less than 0.0003: " & (deviation < 0.0003)
End Function

Sub StoreCalibration(loads, deflections, coefficients)
  Dim stream, row, table(19, 1)
  For row = 0 To UBound(table, 1)
    table(row, 0) = loads(row)
    table(row, 1) = deflections(row)
  Next
  Set stream = library.LibFilestream
  stream.Initialise "CALIBRATION 1.2", Array("CALIBRATION 1.1")
  stream.AddField "INSTRUMENT", "Load cell"
  stream.AddField "COEFFICIENTS", coefficients
  stream.AddTable2d "FIRST RUN", table
  stream.FileWrite dataFile
  log.AddEntry "stored " & fileSystem.GetFileName(dataFile), logNormal
End Sub

' Reads the file as a later program would, and asks it for a load.
Sub ReadCalibration()
  Dim stream, terms, first, load
  Set stream = CreateObject("Vorquill21.CFileStream")
  stream.Initialise "CALIBRATION 2.0", Array("CALIBRATION 1.2")
  If Not stream.FileRead(dataFile) Then Exit Sub
  WScript.Echo "Its version " & stream.FileVersionNumber & " is accepted: " & stream.IsCompatibleVersion(True)
  terms = stream.GetFieldString("COEFFICIENTS")
  WScript.Echo stream.GetFieldString("INSTRUMENT") & ": " & terms(0) & ", " & terms(1) & ", " & terms(2)
  WScript.Echo "Deflection at a load of 1000000: " & DeflectionAt(1000000, stream.GetFieldNumber("COEFFICIENTS"))
  first = stream.GetTable2d("FIRST RUN")
  WScript.Echo "Greatest load of the first run: " & first(UBound(first, 1), 0)
  load = library.LibInterpolate.OneDLinearInterpolate(eInterpClip, Column(first, 1), Column(first, 0), 1)
  WScript.Echo "Load at a deflection of 1, between the points of the first run: " & load
End Sub

Function DeflectionAt(load, coefficients)
  DeflectionAt = coefficients(0) + coefficients(1) * load + coefficients(2) * load * load
End Function

Function Column(table, index)
  Dim row, values(19)
  For row = 0 To UBound(values)
    values(row) = table(row, index)
  Next
  Column = values
End Function
