#pragma once

#include "vorquill21/vorquill21.hpp"

namespace example {

/// What a host has for as long as it runs: the library's objects, the log among them.
struct Session {
  explicit Session(vorquill21::Platform& usedPlatform) : platform(usedPlatform), library(usedPlatform) {}

  vorquill21::CLog& Log() const { return *library.LibLog(); }

  vorquill21::Platform& platform;  // for objects that Main does not hand out
  vorquill21::Main library;
};

}  // namespace example
