#include "vorquill21/platform/error_windows.hpp"

#include <gtest/gtest.h>
#include <windows.h>

namespace vorquill21 {
namespace {

struct Case {
  DWORD code;
  RuntimeErrorNumber ofFile;
  RuntimeErrorNumber ofFolder;
};

TEST(WindowsErrorTest, EverySystemCodeHasItsNumber) {
  constexpr Case kCases[] = {
      {ERROR_INVALID_NAME, kBadFileName, kBadFileName},
      {ERROR_BAD_PATHNAME, kBadFileName, kBadFileName},
      {ERROR_FILENAME_EXCED_RANGE, kBadFileName, kBadFileName},
      {ERROR_BUFFER_OVERFLOW, kBadFileName, kBadFileName},
      {ERROR_INVALID_PARAMETER, kBadFileName, kBadFileName},
      {ERROR_META_EXPANSION_TOO_LONG, kBadFileName, kBadFileName},
      {ERROR_FILE_NOT_FOUND, kFileNotFound, kPathNotFound},
      {ERROR_NO_MORE_FILES, kFileNotFound, kPathNotFound},
      {ERROR_PATH_NOT_FOUND, kPathNotFound, kPathNotFound},
      {ERROR_DIRECTORY, kPathNotFound, kPathNotFound},
      {ERROR_INVALID_DRIVE, kPathNotFound, kPathNotFound},
      {ERROR_NOT_READY, kPathNotFound, kPathNotFound},
      {ERROR_BAD_UNIT, kPathNotFound, kPathNotFound},
      {ERROR_BAD_NETPATH, kPathNotFound, kPathNotFound},
      {ERROR_BAD_NET_NAME, kPathNotFound, kPathNotFound},
      {ERROR_ACCESS_DENIED, kPermissionDenied, kPathFileAccess},
      {ERROR_WRITE_PROTECT, kPermissionDenied, kPathFileAccess},
      {ERROR_SHARING_VIOLATION, kPermissionDenied, kPathFileAccess},
      {ERROR_LOCK_VIOLATION, kPermissionDenied, kPathFileAccess},
      {ERROR_USER_MAPPED_FILE, kPermissionDenied, kPathFileAccess},
      {ERROR_NETWORK_ACCESS_DENIED, kPermissionDenied, kPathFileAccess},
      {ERROR_PRIVILEGE_NOT_HELD, kPermissionDenied, kPathFileAccess},
      {ERROR_FILE_EXISTS, kPathFileAccess, kPathFileAccess},
      {ERROR_ALREADY_EXISTS, kPathFileAccess, kPathFileAccess},
      {ERROR_DIR_NOT_EMPTY, kPathFileAccess, kPathFileAccess},
      {ERROR_CURRENT_DIRECTORY, kPathFileAccess, kPathFileAccess},
      {ERROR_DISK_FULL, kDiskFull, kDiskFull},
      {ERROR_HANDLE_DISK_FULL, kDiskFull, kDiskFull},
      {1295, kDiskFull, kDiskFull},  // the user's share of the disk used up
      {ERROR_HANDLE_EOF, kInputPastEnd, kInputPastEnd},
      {ERROR_BROKEN_PIPE, kInputPastEnd, kInputPastEnd},
      {ERROR_TOO_MANY_OPEN_FILES, kTooManyFiles, kTooManyFiles},
      {ERROR_NOT_ENOUGH_MEMORY, kOutOfMemory, kOutOfMemory},
      {ERROR_OUTOFMEMORY, kOutOfMemory, kOutOfMemory},
      {ERROR_NO_SYSTEM_RESOURCES, kOutOfMemory, kOutOfMemory},
      {ERROR_COMMITMENT_LIMIT, kOutOfMemory, kOutOfMemory},
      {ERROR_CRC, kDeviceInputOutput, kDeviceInputOutput},
      {ERROR_IO_DEVICE, kDeviceInputOutput, kDeviceInputOutput},
      {ERROR_GEN_FAILURE, kDeviceInputOutput, kDeviceInputOutput},
  };
  for (const Case& each : kCases) {
    EXPECT_EQ(RuntimeErrorOf(each.code, Subject::kFile), each.ofFile) << each.code;
    EXPECT_EQ(RuntimeErrorOf(each.code, Subject::kFolder), each.ofFolder) << each.code;
    const RuntimeErrorNumber ofNewFile = each.ofFile == kFileNotFound ? kPathNotFound : each.ofFile;
    EXPECT_EQ(RuntimeErrorOf(each.code, Subject::kNewFile), ofNewFile) << each.code;
  }
}

TEST(WindowsErrorTest, TheLastErrorIsTheThreadsOwn) {
  SetLastError(ERROR_DISK_FULL);
  EXPECT_EQ(LastError(Subject::kFile), kDiskFull);
}

}  // namespace
}  // namespace vorquill21
