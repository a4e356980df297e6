Expect "right", 1, "Integer 1"
Expect "wrong", 2, "Integer 1"
