Option Explicit

Dim import, path, status, index, failure, column
Set import = CreateObject("Vorquill21.CImportColumnData")
path = ScratchFolder & "\columns.txt"
failure = "CImportColumnData.ImportData: An error occurred while importing data"

' A new object.
Expect "Filepath", import.Filepath, "String ''"
Expect "Delimiter", import.Delimiter, "String ''"
Expect "HeaderRow", import.HeaderRow, "Long 0"
Expect "FirstValueRow", import.FirstValueRow, "Long 0"
Expect "MaxColumns", import.MaxColumns, "Long 20"
Expect "LastImportSuccessful", import.LastImportSuccessful, "Boolean False"
Expect "ColumnCount", import.ColumnCount, "Long 0"
Expect "DataRowCount", import.DataRowCount, "Long 0"

' An import.
WriteFile path, Replace("title|t;a;b|units|0;1.5;2|12:30;3.5kg;n/a||9;9;9|", "|", vbCrLf)
import.Filepath = path
import.Delimiter = ";"
import.HeaderRow = "2"
import.FirstValueRow = 4.0
Expect "Filepath as it was set", import.Filepath, "String '" & path & "'"
Expect "Delimiter as it was set", import.Delimiter, "String ';'"
Expect "HeaderRow as it was set", import.HeaderRow, "Long 2"
Expect "FirstValueRow as it was set", import.FirstValueRow, "Long 4"
status = "untouched"
Expect "Import", import.Import(status), "Boolean True"
Expect "its status", status, "String 'untouched'"
Expect "LastImportSuccessful after that", import.LastImportSuccessful, "Boolean True"
Expect "ColumnCount after that", import.ColumnCount, "Long 3"
Expect "DataRowCount after that", import.DataRowCount, "Long 2"
Expect "ColumnHeaderData", import.ColumnHeaderData(1), "String 'a'"
Expect "ColumnData", import.ColumnData(0), "Variant(0 to 1) Double 0, Double 12.3"
Expect "with its default", import.ColumnData(2, -1), "Variant(0 to 1) Double 2, Double 0"
Expect "a value", import.ColumnData(1, 1), "Double 3.5"
index = 0
Expect "at a variable", import.ColumnData(1, index), "Double 1.5"
Expect "the variable", index, "Integer 0"
column = import.ColumnData(1)
Expect "an element of a column", column(0), "Double 1.5"
import.OffsetColumnData 1, 1.5
Expect "OffsetColumnData", import.ColumnData(1), "Variant(0 to 1) Double 0, Double 2"

' Too many columns, and failures.
import.MaxColumns = 3
Expect "too many columns", import.Import(status), "Boolean True"
Expect "the status", status, "String 'Maximum number of data columns exceeded. Columns 3 and above will be ignored.'"
Expect "the columns", import.ColumnCount, "Long 2"
Expect "the greatest number", import.MaxColumns, "Long 3"
import.Filepath = path & ".missing"
Expect "a missing file", import.Import(status), "Boolean False"
Expect "the status", status, "String '" & failure & "'"
Expect "without a status", import.Import, "Boolean False"
Expect "the last import that succeeded", import.ColumnData(1, 0), "Double 1.5"

' The user's settings.
import.HeaderRow = 3
import.FirstValueRow = 5
import.Delimiter = vbTab & ";"
import.SettingsWriteToRegistry
Set import = CreateObject("Vorquill21.CImportColumnData")
import.SettingsReadFromRegistry
Expect "HeaderRow from the settings", import.HeaderRow, "Long 3"
Expect "FirstValueRow from the settings", import.FirstValueRow, "Long 5"
Expect "Delimiter from the settings", import.Delimiter, "String '<TAB>;'"

Sub ExpectErrors()
  On Error Resume Next
  Dim result
  result = import.ColumnHeaderData(0)
  ExpectError "no header", Err, 9, "", "Subscript out of range"
  result = import.ColumnData(0)
  ExpectError "no column", Err, 9, "", "Subscript out of range"
  import.OffsetColumnData 0, 1
  ExpectError "no column to lower", Err, 9, "", "Subscript out of range"
  import.HeaderRow = "second"
  ExpectError "no row", Err, 13, "", "Type mismatch"
  import.HeaderRow = 1E+10
  ExpectError "too large a row", Err, 6, "", "Overflow"
  Expect "the row after that", import.HeaderRow, "Long 3"
  import.ColumnCount = 5
  Expect "ColumnCount cannot be set", Err.Number <> 0, "Boolean True"
  Err.Clear
End Sub
ExpectErrors
