Option Explicit

Dim untouched, list(2), grid(1, 2), numbers, byType, never()
list(0) = 1
list(1) = "a"
grid(0, 1) = 2.5
grid(1, 2) = True

Expect "empty", untouched, "Empty"
Expect "null", Null, "Null"
Expect "boolean", True, "Boolean True"
Expect "integer", 7, "Integer 7"
Expect "long", 70000, "Long 70000"
Expect "double", 0.1, "Double 0.1"
Expect "double of many digits", 1 / 3, "Double 0.3333333333333333"
Expect "text", "a" & vbTab & "b" & vbCrLf & Chr(1), "String 'a<TAB>b<CR><LF><01>'"
Expect "nothing", Nothing, "Object Nothing"
Expect "array", list, "Variant(0 to 2) Integer 1, String 'a', Empty"
Expect "table", grid, "Variant(0 to 1, 0 to 2) Empty, Double 2.5, Empty, Empty, Empty, Boolean True"
Expect "array that is passed on", Array(1, Array()), "Variant(0 to 1) Integer 1, Variant(0 to -1)"
Expect "array without dimensions", never, "Variant()"

Expect "doubles", ArrayOf("Double(1 to 3)", Array(1, 2.5, 1 / 3)), "Double(1 to 3) 1, 2.5, 0.3333333333333333"
Expect "a row", ArrayOf("Double(1 to 1, 0 to 2)", Array(1, 2, 3)), "Double(1 to 1, 0 to 2) 1, 2, 3"
Expect "texts", ArrayOf("String(-1 to 0)", Array("a", 5)), "String(-1 to 0) 'a', '5'"
Expect "variants", ArrayOf("Variant(1 to 2)", Array("a", 5)), "Variant(1 to 2) String 'a', Integer 5"
Expect "never dimensioned", ArrayOf("Double()", Array()), "Double()"
For Each byType In Array("Single", "Long", "Integer", "Byte", "SignedByte", "Word", "DoubleWord")
  numbers = ArrayOf(byType & "(0 to 1)", Array(1, 2))
  Expect byType, numbers, byType & "(0 to 1) 1, 2"
Next
Expect "booleans", ArrayOf("Boolean(0 to 1)", Array(True, 0)), "Boolean(0 to 1) True, False"
Expect "currency", ArrayOf("Currency(0 to 0)", Array(2)), "Currency(0 to 0) 2"
Expect "shown in the script", Shown(2), "String 'Integer 2'"
