#include "vorquill21/platform/error_windows.hpp"

#include <windows.h>

namespace vorquill21 {
namespace {

constexpr DWORD kDiskQuotaExceeded = 1295;  // the system's headers have no name for it

}  // namespace

RuntimeErrorNumber RuntimeErrorOf(std::uint32_t code, Subject subject) noexcept {
  switch (code) {
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_BUFFER_OVERFLOW:
    case ERROR_INVALID_PARAMETER:
    case ERROR_META_EXPANSION_TOO_LONG:
      return kBadFileName;

    case ERROR_FILE_NOT_FOUND:
    case ERROR_NO_MORE_FILES:
      return subject == Subject::kFile ? kFileNotFound : kPathNotFound;

    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY:
    case ERROR_INVALID_DRIVE:
    case ERROR_NOT_READY:
    case ERROR_BAD_UNIT:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return kPathNotFound;

    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_PRIVILEGE_NOT_HELD:
      return subject == Subject::kFolder ? kPathFileAccess : kPermissionDenied;

    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
    case ERROR_DIR_NOT_EMPTY:
    case ERROR_CURRENT_DIRECTORY:
      return kPathFileAccess;

    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kDiskQuotaExceeded:
      return kDiskFull;

    case ERROR_HANDLE_EOF:
    case ERROR_BROKEN_PIPE:
      return kInputPastEnd;

    case ERROR_TOO_MANY_OPEN_FILES:
      return kTooManyFiles;

    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
    case ERROR_NO_SYSTEM_RESOURCES:
    case ERROR_COMMITMENT_LIMIT:
      return kOutOfMemory;

    default:
      return kDeviceInputOutput;
  }
}

RuntimeErrorNumber LastError(Subject subject) noexcept {
  return RuntimeErrorOf(GetLastError(), subject);
}

}  // namespace vorquill21
