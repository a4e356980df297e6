#include "failure.hpp"

namespace vorquill21::tool {

ExitCode ExitCodeOf(const LibraryError& error) noexcept {
  switch (error.Number()) {
    case kBadFileName:
    case kFileNotFound:
    case kDeviceInputOutput:
    case kDiskFull:
    case kInputPastEnd:
    case kTooManyFiles:
    case kPermissionDenied:
    case kPathFileAccess:
    case kPathNotFound:
      return ExitCode::kInputOutput;
    default:
      return ExitCode::kRefused;
  }
}

Failure FailureOf(const std::string& what, const LibraryError& error) {
  return {ExitCodeOf(error), what + ": " + ToUtf8(RuntimeErrorDescription(error.Number())) + " (error " +
                                 std::to_string(error.Number()) + ")"};
}

}  // namespace vorquill21::tool
