#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// Numbers of the runtime's own errors, as they arrive in LibraryError::Number.
enum RuntimeErrorNumber : std::int32_t {
  kInvalidProcedureCall = 5,  ///< negative length, root of a negative number, invalid floating operation
  kOverflow = 6,              ///< integer or floating overflow, conversion out of range
  kOutOfMemory = 7,           ///< memory could not be had
  kSubscriptOutOfRange = 9,   ///< index or dimension outside the bounds, array never dimensioned
  kDivisionByZero = 11,       ///< a zero divisor, whatever the dividend
  kTypeMismatch = 13,         ///< text that is no number, array where a scalar is needed, and the other way
  kBadFileName = 52,          ///< malformed path
  kFileNotFound = 53,         ///< opening a missing file for reading
  kDeviceInputOutput = 57,    ///< the device failed, or read or wrote less than asked
  kDiskFull = 61,             ///< no space left, or the user's share of it used up
  kInputPastEnd = 62,         ///< a line read at the end of a file
  kTooManyFiles = 67,         ///< no file handle left
  kPermissionDenied = 70,     ///< the file may not be opened this way
  kPathFileAccess = 75,       ///< creating a folder that exists, a root or the empty name; folder permissions
  kPathNotFound = 76,         ///< a missing parent folder, a missing drive
};

/// The only exception that the library throws. Copying it never throws.
class VORQUILL21_API LibraryError : public std::exception {
 public:
  /// An error of a class of the library: `source` reads "CLog.AddEntry".
  LibraryError(std::int32_t number, Text source, Text description);

  /// An error of the runtime: no source, and the standard description of `number`.
  explicit LibraryError(RuntimeErrorNumber number);

  // Copied even where it could be moved: an error is whole as long as it lives.
  LibraryError(const LibraryError&) noexcept = default;
  LibraryError& operator=(const LibraryError&) noexcept = default;
  ~LibraryError() override = default;

  std::int32_t Number() const noexcept;
  const Text& Source() const noexcept;
  const Text& Description() const noexcept;

  /// The description in UTF-8.
  const char* what() const noexcept override;

 private:
  struct Content;
  std::shared_ptr<const Content> content_;
};

/// The standard description of a runtime error, such as "Overflow" for 6; for any other number
/// "Application-defined or object-defined error".
VORQUILL21_API TextView RuntimeErrorDescription(std::int32_t number) noexcept;

/// Throws the error of the runtime. What is inlined into many callers raises by this, so that a check costs
/// them no more than its comparison.
[[noreturn]] VORQUILL21_API void Raise(RuntimeErrorNumber number);

/// Calls `operation` and returns its result; std::bad_alloc and std::length_error leave as LibraryError 7.
/// A method that promises to catch every run-time error wraps its work in this.
template <typename Operation>
decltype(auto) TranslatingMemoryErrors(Operation&& operation) {
  try {
    return std::forward<Operation>(operation)();
  } catch (const std::bad_alloc&) {
    throw LibraryError(kOutOfMemory);
  } catch (const std::length_error&) {
    throw LibraryError(kOutOfMemory);
  }
}

/// std::make_shared, but a lack of memory is LibraryError 7.
template <typename T, typename... Arguments>
std::shared_ptr<T> MakeShared(Arguments&&... arguments) {
  return TranslatingMemoryErrors([&] { return std::make_shared<T>(std::forward<Arguments>(arguments)...); });
}

}  // namespace vorquill21
