#include "vorquill21/frame/types/library_error.hpp"

#include <string>
#include <utility>

namespace vorquill21 {

struct LibraryError::Content {
  std::int32_t number;
  Text source;
  Text description;
  std::string what;
};

LibraryError::LibraryError(std::int32_t number, Text source, Text description) {
  std::string what = ToUtf8(description);
  content_ = std::make_shared<const Content>(
      Content{number, std::move(source), std::move(description), std::move(what)});
}

LibraryError::LibraryError(RuntimeErrorNumber number) {
  // When memory has run out there may be none left for saying so.
  static const LibraryError outOfMemory(kOutOfMemory, Text(), Text(RuntimeErrorDescription(kOutOfMemory)));
  *this = number == kOutOfMemory ? outOfMemory : TranslatingMemoryErrors([number] {
    return LibraryError(number, Text(), Text(RuntimeErrorDescription(number)));
  });
}

namespace {

/// Makes the error of a lack of memory while there is some.
const LibraryError kMadeBeforehand(kOutOfMemory);

}  // namespace

std::int32_t LibraryError::Number() const noexcept {
  return content_->number;
}

const Text& LibraryError::Source() const noexcept {
  return content_->source;
}

const Text& LibraryError::Description() const noexcept {
  return content_->description;
}

const char* LibraryError::what() const noexcept {
  return content_->what.c_str();
}

void Raise(RuntimeErrorNumber number) {
  throw LibraryError(number);
}

TextView RuntimeErrorDescription(std::int32_t number) noexcept {
  switch (number) {
    case kInvalidProcedureCall:
      return u"Invalid procedure call or argument";
    case kOverflow:
      return u"Overflow";
    case kOutOfMemory:
      return u"Out of memory";
    case kSubscriptOutOfRange:
      return u"Subscript out of range";
    case kDivisionByZero:
      return u"Division by zero";
    case kTypeMismatch:
      return u"Type mismatch";
    case kBadFileName:
      return u"Bad file name or number";
    case kFileNotFound:
      return u"File not found";
    case kDeviceInputOutput:
      return u"Device I/O error";
    case kDiskFull:
      return u"Disk full";
    case kInputPastEnd:
      return u"Input past end of file";
    case kTooManyFiles:
      return u"Too many files";
    case kPermissionDenied:
      return u"Permission denied";
    case kPathFileAccess:
      return u"Path/File access error";
    case kPathNotFound:
      return u"Path not found";
    default:
      return u"Application-defined or object-defined error";
  }
}

}  // namespace vorquill21
