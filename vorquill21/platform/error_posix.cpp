#include "vorquill21/platform/error_posix.hpp"

#include <cerrno>

namespace vorquill21 {
namespace {

RuntimeErrorNumber ForSubject(Subject subject, RuntimeErrorNumber ofFile, RuntimeErrorNumber ofFolder) {
  return subject == Subject::kFile ? ofFile : ofFolder;
}

}  // namespace

RuntimeErrorNumber RuntimeErrorOf(int code, Subject subject) noexcept {
  switch (code) {
    case EINVAL:
    case ENAMETOOLONG:
    case ELOOP:
    case EILSEQ:
      return kBadFileName;

    case ENOENT:
      return ForSubject(subject, kFileNotFound, kPathNotFound);

    case ENOTDIR:
      return kPathNotFound;

    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case EBUSY:
    case ETXTBSY:
    case EXDEV:
      return ForSubject(subject, kPermissionDenied, kPathFileAccess);

    case EEXIST:
    case ENOTEMPTY:
    case EMLINK:
      return kPathFileAccess;

    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kDiskFull;

    case EMFILE:
    case ENFILE:
      return kTooManyFiles;

    case ENOMEM:
    case ENOBUFS:
      return kOutOfMemory;

    default:
      return kDeviceInputOutput;
  }
}

RuntimeErrorNumber LastError(Subject subject) noexcept {
  return RuntimeErrorOf(errno, subject);
}

bool LastCallWasInterrupted() noexcept {
  return errno == EINTR;
}

}  // namespace vorquill21
