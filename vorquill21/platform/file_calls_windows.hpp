#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// An open file or listing of the system; null when it could not be opened.
using NativeHandle = void*;

/// One find of a listing, with the system's attribute bits.
struct FoundName {
  Text name;
  std::uint32_t attributes = 0;
};

/// What is known about an open file.
struct FileTraits {
  std::uint32_t attributes = 0;
  std::uint32_t links = 1;   ///< number of names that the file has
  std::uint64_t length = 0;  ///< in bytes
};

/// The calls of the system that the files are made of, each of which may fail: it then gives false, null or
/// nothing, and the reason is the thread's last error. Tests put failing calls in their place.
class FileCalls {
 public:
  virtual ~FileCalls() = default;

  /// How a file is opened: it may be missing only when it is made, and then has to be missing for
  /// kForWritingWhenMade.
  enum class Opening { kForReading, kForWriting, kForWritingOrMade, kForWritingWhenMade };

  virtual NativeHandle Open(const std::wstring& path, Opening opening);
  /// Makes a file that must not exist, with attributes as another file has them, for writing.
  virtual NativeHandle Make(const std::wstring& path, std::uint32_t attributes);
  virtual bool Close(NativeHandle file);

  /// Nothing for what is no file on a disk: a device, a pipe.
  virtual std::optional<FileTraits> Traits(NativeHandle file);
  /// The path behind all links.
  virtual std::optional<std::wstring> FinalPath(NativeHandle file);
  /// Gives one file the permissions of another, where the volume knows permissions.
  virtual bool CopyPermissions(NativeHandle from, NativeHandle to);

  virtual bool Read(NativeHandle file, char* buffer, std::uint32_t size, std::uint32_t& count);
  /// Moves the place of the next read by `distance`.
  virtual bool Move(NativeHandle file, std::int64_t distance);
  virtual bool Write(NativeHandle file, const char* bytes, std::uint32_t size, std::uint32_t& count);
  virtual bool WriteAtEnd(NativeHandle file, const char* bytes, std::uint32_t size, std::uint32_t& count);
  virtual bool SetLength(NativeHandle file, std::uint64_t length);
  /// Waits until everything written has reached the disk.
  virtual bool Flush(NativeHandle file);

  /// True when something of this name is there, be it a link that leads nowhere.
  virtual bool IsThere(const std::wstring& path);
  /// Takes the place of a file at `to` in one step.
  virtual bool Rename(const std::wstring& from, const std::wstring& to);
  virtual bool Delete(const std::wstring& path);
  virtual bool MakeFolder(const std::wstring& path);
  virtual bool RemoveFolder(const std::wstring& path);

  virtual NativeHandle FindFirst(const std::wstring& pattern, FoundName& found);
  virtual bool FindNext(NativeHandle listing, FoundName& found);
  virtual void FindClose(NativeHandle listing);
};

}  // namespace vorquill21
