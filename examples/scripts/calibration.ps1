# Imports a calibration, fits it, stores it in a data file, and logs what it does:
#
#     powershell -ExecutionPolicy Bypass -File calibration.ps1
#
# The component must be registered for the bitness of this PowerShell. Results by reference need [ref].
$ErrorActionPreference = 'Stop'
$emsPositive = 0
$logNormal = 1
$logException = 2

$dataFile = Join-Path $env:TEMP 'vorquill21 calibration.txt'
$logFile = Join-Path $env:TEMP 'vorquill21 calibration.log'
$library = New-Object -ComObject Vorquill21.Main

$log = $library.LibLog()
$log.Initialise($logFile, 100000, $false, $false, 'Calibration of a load cell')
$log.StartLogging()

$importer = New-Object -ComObject Vorquill21.CImportColumnData
$importer.Filepath = Join-Path $PSScriptRoot '..\data\load-cell-calibration.txt'
$importer.Delimiter = "`t"
$importer.HeaderRow = 9
$importer.FirstValueRow = 11
if (-not $importer.Import()) { throw "$($importer.Filepath) cannot be imported" }
[double[]]$loads = $importer.ColumnData(0)
[double[]]$deflections = $importer.ColumnData(1)
"$($importer.ColumnCount) columns of $($importer.DataRowCount) rows"

$utils = $library.LibMathUtils()
$reason = ''
if (-not $utils.ArrayIsMonotonic1D($loads, $emsPositive, 'Load', [ref]$reason)) { $log.AddEntry($reason, $logException) }

$statistics = $library.LibStatistics()
"Deflections from $($statistics.Minimum($deflections)) to $($statistics.Maximum($deflections))"

$interpolate = $library.LibInterpolate()
$coefficients = $null
$deviation = 0.0
$interpolate.OneDPolynomialFit($loads, $deflections, 2, [ref]$coefficients, [ref]$deviation)
"At a load of 1000000: $($interpolate.OneDPolynomialInterpolate(1000000, $coefficients))"

$stream = $library.LibFilestream()
[void]$stream.Initialise('CALIBRATION 1.2', @('CALIBRATION 1.1'))
$stream.AddField('INSTRUMENT', 'Load cell')
$stream.AddField('DEVIATION', $deviation)
try {
  [void]$stream.FileWrite($dataFile)
  $log.AddEntry("stored $dataFile", $logNormal)
} catch {
  $log.AddEntry($_.Exception.Message, $logException)
}
$log.StopLogging()
$log.Text
