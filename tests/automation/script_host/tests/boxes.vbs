Option Explicit

MsgBox "it went well", 64, "Title"
MsgBox "it went badly", 48, "Other title"
ExpectBox "the first box", 64, "Title", "it went well"
ExpectBox "the second box", 48, "Other title", "it went badly"
