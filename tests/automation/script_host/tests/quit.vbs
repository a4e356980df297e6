Expect "right", 1, "Integer 1"
Quit 3
Expect "never reached", 2, "Integer 1"
