Option Explicit
Dim a
a = = 1
