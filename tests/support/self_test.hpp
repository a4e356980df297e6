#pragma once

#include "vorquill21/frame/types/failed_tests.hpp"

/// The self-test entries are private to the library. An explicit instantiation may name a private member, and
/// so hand it to a friend: VORQUILL21_OPEN_SELF_TEST(CLASS), in the namespace vorquill21, gives
/// SelfTest(object), which runs the entry of an object of CLASS and returns the names of the checks that
/// failed.
#define VORQUILL21_OPEN_SELF_TEST(CLASS)                                      \
  void CallSelfTest(const CLASS& object, FailedTests& failedTests);           \
  template <void (CLASS::*kEntry)(FailedTests&) const>                        \
  struct OpenedSelfTestOf##CLASS {                                            \
    friend void CallSelfTest(const CLASS& object, FailedTests& failedTests) { \
      (object.*kEntry)(failedTests);                                          \
    }                                                                         \
  };                                                                          \
  template struct OpenedSelfTestOf##CLASS<&CLASS::SelfTest_Main>;             \
  inline FailedTests SelfTest(const CLASS& object) {                          \
    FailedTests failedTests;                                                  \
    CallSelfTest(object, failedTests);                                        \
    return failedTests;                                                       \
  }                                                                           \
  static_assert(true)
