Attribute VB_Name = "Calibration"
' The component in the macros of an office program: early bound and late bound.
'
' Early bound needs a reference to "Vorquill21 utilities library" (Tools, References); then the editor knows members and
' enumerations, and the compiler checks them. Late bound needs none. Either needs the component to be registered.
Option Explicit

' Fits a parabola to two columns of numbers; early bound. The result begins at index 1.
Public Function FitParabola(loads() As Double, deflections() As Double, deviation As Double) As Double()
  Dim library As Vorquill21.Main
  Dim coefficients() As Double
  Set library = New Vorquill21.Main
  library.LibInterpolate.OneDPolynomialFit loads, deflections, 2, coefficients, deviation
  FitParabola = coefficients
End Function

' Imports two columns of a text file; early bound. False when the file cannot be imported.
Public Function ImportColumns(path As String, loads() As Double, deflections() As Double) As Boolean
  Dim importer As Vorquill21.CImportColumnData
  Dim utils As Vorquill21.CMathUtils
  Dim status As String
  Set importer = New Vorquill21.CImportColumnData
  Set utils = New Vorquill21.CMathUtils
  importer.Filepath = path
  importer.Delimiter = vbTab
  importer.HeaderRow = 9
  importer.FirstValueRow = 11
  ImportColumns = importer.Import(status)
  If Not ImportColumns Then
    MsgBox status, vbExclamation
    Exit Function
  End If
  utils.CopyArray1D loads, importer.ColumnData(0)
  utils.CopyArray1D deflections, importer.ColumnData(1)
  If Not utils.ArrayIsMonotonic1D(importer.ColumnData(0), emsPositive, "Load", status) Then MsgBox status, vbInformation
End Function

' Stores a calibration; late bound.
Public Sub StoreCalibration(path As String, coefficients() As Double, table As Variant)
  Dim stream As Object
  Set stream = CreateObject("Vorquill21.CFileStream")
  stream.Initialise "CALIBRATION 1.2", Array("CALIBRATION 1.1")
  stream.AddField "INSTRUMENT", "Load cell"
  stream.AddField "ORDER", UBound(coefficients) - 1
  If Not stream.AddTable2d("POINTS", table) Then Exit Sub
  On Error GoTo Failed
  stream.FileWrite path
  Exit Sub
Failed:
  MsgBox Err.Source & ": error " & Err.Number & vbCr & Err.Description, vbExclamation
End Sub

' Asks whether the component works where it is installed: a message box tells.
Public Sub RunSelfTests()
  Dim library As Object
  Set library = CreateObject("Vorquill21.Main")
  library.Initialise 2
End Sub
