// The part of the server for tests that makes its members fail at their start.

#include <new>
#include <stdexcept>

#include "automation/failure.hpp"

namespace vorquill21::automation {
namespace {

int g_failure = 0;

}  // namespace

void CallHook() {
  switch (g_failure) {
    case 1:
      throw LibraryError(1000, u"Source", u"Description");
    case 2:
      throw std::bad_alloc();
    case 3:
      throw std::length_error("long");
    case 4:
      throw std::runtime_error("other");
    case 5:
      throw 5;
    default:
      return;
  }
}

}  // namespace vorquill21::automation

/// From now on every guarded operation fails in this way: 0 not at all, 1 to 5 as above.
extern "C" __declspec(dllexport) void SetFailure(int failure) {
  vorquill21::automation::g_failure = failure;
}
