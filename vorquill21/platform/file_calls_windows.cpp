#include "vorquill21/platform/file_calls_windows.hpp"

#include <aclapi.h>
#include <windows.h>

#include <cwchar>
#include <memory>
#include <type_traits>

#include "vorquill21/platform/wide_windows.hpp"

namespace vorquill21 {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kReadingAccess = GENERIC_READ;
constexpr DWORD kWritingAccess = GENERIC_WRITE | FILE_READ_ATTRIBUTES;
constexpr DWORD kMakingAccess = GENERIC_WRITE | DELETE | WRITE_DAC;

struct LocalMemoryFree {
  void operator()(void* memory) const { LocalFree(memory); }
};
template <typename T>
using LocalMemory = std::unique_ptr<T, LocalMemoryFree>;

NativeHandle NullWhenInvalid(HANDLE handle) {
  return handle == INVALID_HANDLE_VALUE ? nullptr : handle;
}

/// For the calls that return their error instead of leaving it as the last one.
bool Succeeded(DWORD error) {
  SetLastError(error);
  return error == ERROR_SUCCESS;
}

DWORD DispositionOf(FileCalls::Opening opening) {
  switch (opening) {
    case FileCalls::Opening::kForWritingOrMade:
      return OPEN_ALWAYS;
    case FileCalls::Opening::kForWritingWhenMade:
      return CREATE_NEW;
    default:
      return OPEN_EXISTING;
  }
}

bool KnowsPermissions(HANDLE file) {
  DWORD flags = 0;
  return GetVolumeInformationByHandleW(file, nullptr, 0, nullptr, nullptr, &flags, nullptr, 0) != 0 &&
         (flags & FILE_PERSISTENT_ACLS) != 0;
}

bool WriteFrom(HANDLE file, const char* bytes, std::uint32_t size, std::uint32_t& count,
               OVERLAPPED* position) {
  DWORD written = 0;
  const bool done = WriteFile(file, bytes, size, &written, position) != 0;
  count = written;
  return done;
}

void Describe(const WIN32_FIND_DATAW& data, FoundName& found) {
  found.name = FromWide(data.cFileName);
  found.attributes = data.dwFileAttributes;
}

}  // namespace

NativeHandle FileCalls::Open(const std::wstring& path, Opening opening) {
  const bool reading = opening == Opening::kForReading;
  const DWORD access = reading ? kReadingAccess : kWritingAccess;
  const DWORD flags = reading ? FILE_FLAG_SEQUENTIAL_SCAN : FILE_ATTRIBUTE_NORMAL;
  return NullWhenInvalid(
      CreateFileW(path.c_str(), access, kShareAll, nullptr, DispositionOf(opening), flags, nullptr));
}

NativeHandle FileCalls::Make(const std::wstring& path, std::uint32_t attributes) {
  constexpr DWORD kKept = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                          FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_ENCRYPTED;
  const DWORD kept = attributes & kKept;
  return NullWhenInvalid(CreateFileW(path.c_str(), kMakingAccess, FILE_SHARE_READ, nullptr, CREATE_NEW,
                                     kept != 0 ? kept : FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool FileCalls::Close(NativeHandle file) {
  return CloseHandle(file) != 0;
}

std::optional<FileTraits> FileCalls::Traits(NativeHandle file) {
  BY_HANDLE_FILE_INFORMATION information;
  if (GetFileType(file) != FILE_TYPE_DISK || GetFileInformationByHandle(file, &information) == 0) {
    return std::nullopt;
  }
  const std::uint64_t highLength = information.nFileSizeHigh;
  return FileTraits{information.dwFileAttributes, information.nNumberOfLinks,
                    highLength << 32 | information.nFileSizeLow};
}

std::optional<std::wstring> FileCalls::FinalPath(NativeHandle file) {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const auto room = static_cast<DWORD>(path.size());
    const DWORD length = GetFinalPathNameByHandleW(file, path.data(), room, FILE_NAME_NORMALIZED);
    if (length == 0) return std::nullopt;
    path.resize(length);
    if (length < room) return path;
  }
}

bool FileCalls::CopyPermissions(NativeHandle from, NativeHandle to) {
  if (!KnowsPermissions(from)) return true;
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (!Succeeded(GetSecurityInfo(from, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list,
                                 nullptr, &descriptor))) {
    return false;
  }
  const LocalMemory<void> owner(descriptor);
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  if (GetSecurityDescriptorControl(descriptor, &control, &revision) == 0) return false;
  const DWORD inheritance = (control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION
                                                               : UNPROTECTED_DACL_SECURITY_INFORMATION;
  return Succeeded(SetSecurityInfo(to, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inheritance, nullptr,
                                   nullptr, list, nullptr));
}

bool FileCalls::Read(NativeHandle file, char* buffer, std::uint32_t size, std::uint32_t& count) {
  DWORD read = 0;
  const bool done = ReadFile(file, buffer, size, &read, nullptr) != 0;
  count = read;
  return done;
}

bool FileCalls::Move(NativeHandle file, std::int64_t distance) {
  LARGE_INTEGER wide;
  wide.QuadPart = distance;
  return SetFilePointerEx(file, wide, nullptr, FILE_CURRENT) != 0;
}

bool FileCalls::Write(NativeHandle file, const char* bytes, std::uint32_t size, std::uint32_t& count) {
  return WriteFrom(file, bytes, size, count, nullptr);
}

bool FileCalls::WriteAtEnd(NativeHandle file, const char* bytes, std::uint32_t size, std::uint32_t& count) {
  OVERLAPPED atEnd{};
  atEnd.Offset = 0xFFFFFFFF;
  atEnd.OffsetHigh = 0xFFFFFFFF;
  return WriteFrom(file, bytes, size, count, &atEnd);
}

bool FileCalls::SetLength(NativeHandle file, std::uint64_t length) {
  FILE_END_OF_FILE_INFO end;
  end.EndOfFile.QuadPart = static_cast<LONGLONG>(length);
  return SetFileInformationByHandle(file, FileEndOfFileInfo, &end, sizeof end) != 0;
}

bool FileCalls::Flush(NativeHandle file) {
  return FlushFileBuffers(file) != 0;
}

bool FileCalls::IsThere(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool FileCalls::Rename(const std::wstring& from, const std::wstring& to) {
  return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

bool FileCalls::Delete(const std::wstring& path) {
  return DeleteFileW(path.c_str()) != 0;
}

bool FileCalls::MakeFolder(const std::wstring& path) {
  return CreateDirectoryW(path.c_str(), nullptr) != 0;
}

bool FileCalls::RemoveFolder(const std::wstring& path) {
  return RemoveDirectoryW(path.c_str()) != 0;
}

NativeHandle FileCalls::FindFirst(const std::wstring& pattern, FoundName& found) {
  WIN32_FIND_DATAW data;
  const NativeHandle listing = NullWhenInvalid(FindFirstFileW(pattern.c_str(), &data));
  if (listing != nullptr) Describe(data, found);
  return listing;
}

bool FileCalls::FindNext(NativeHandle listing, FoundName& found) {
  WIN32_FIND_DATAW data;
  if (FindNextFileW(listing, &data) == 0) return false;
  Describe(data, found);
  return true;
}

void FileCalls::FindClose(NativeHandle listing) {
  ::FindClose(listing);
}

}  // namespace vorquill21
