MsgBox "nobody asked", 16, "Title"
