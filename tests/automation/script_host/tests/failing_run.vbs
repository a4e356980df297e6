Expect "right", 1, "Integer 1"
  Err.Raise 1000, "CLog.AddEntry", "Log not initialised"
