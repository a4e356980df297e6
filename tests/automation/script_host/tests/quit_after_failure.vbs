Expect "wrong", 2, "Integer 1"
Quit 0
