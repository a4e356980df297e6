#pragma once

#include <exception>

#include "automation/interface.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21::automation {

/// Error numbers of hosts that the library itself does not raise.
inline constexpr std::int32_t kArrayLocked = 10;
inline constexpr std::int32_t kObjectNotSet = 91;

/// The error of an argument that is a null pointer and must not be one; it reaches the host as E_POINTER.
LibraryError NullPointer();

/// The error of an array that is locked or of fixed size and would have to change its size.
LibraryError ArrayLocked();

/// The error of a missing object, where one is used.
LibraryError ObjectNotSet();

/// The error that stands for the failed call of a system function.
LibraryError SystemFailure(HRESULT result);

/// `pointer`, which must not be null.
template <typename T>
T* Checked(T* pointer) {
  if (pointer == nullptr) throw NullPointer();
  return pointer;
}

/// A negative number as it is, a positive one as 0x800A0000 + number: what hosts show as the number that it
/// was.
HRESULT ResultOf(const LibraryError& error) noexcept;

/// The number that ResultOf made this of.
std::int32_t NumberOf(HRESULT result) noexcept;

/// Makes `error` what the thread's caller learns about the failed call of a member of `interfaceId`.
HRESULT Report(const LibraryError& error, REFIID interfaceId) noexcept;

/// Reports the exception that is being handled: a LibraryError as it is, a lack of memory as error 7,
/// anything else as E_UNEXPECTED with its words.
HRESULT ReportCurrentException(REFIID interfaceId) noexcept;

#ifdef VORQUILL21_AUTOMATION_HOOK
/// Called at the start of each guarded operation; may throw. Only in the server that is built for tests,
/// which has it.
void CallHook();
#endif

/// The boundary that no exception crosses: calls `operation` and reports what it throws.
template <typename Operation>
HRESULT Guarded(REFIID interfaceId, Operation&& operation) noexcept {
  try {
#ifdef VORQUILL21_AUTOMATION_HOOK
    CallHook();
#endif
    operation();
    return S_OK;
  } catch (...) {
    return ReportCurrentException(interfaceId);
  }
}

}  // namespace vorquill21::automation
