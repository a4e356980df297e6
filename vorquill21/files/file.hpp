#pragma once

#include <cstdint>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

/// Paths taken apart, and whole files and folders: tested, made, read, written, listed, compared.
///
/// Text files are 8-bit text in the platform's code page. Texts are compared ignoring letter case
/// (EqualIgnoringCase). What a path may look like, which files are hidden, and in what order a listing comes
/// is the platform's affair (see Files); the path parsing works on the text alone.
///
/// Only DirMakeNested and EnsureExtension raise errors. Every other operation turns its errors into its
/// failure value and, where it has an argument `abSilent` that is False, a message box (exclamation mark, OK,
/// library title). An object holds no state but its platform.
class VORQUILL21_API CFile {
 public:
  explicit CFile(Platform& platform = Platform::Native());

  /// Lets the user pick a folder in a dialog with the title `asTitleText`, in front of the window with the
  /// handle `anOwnerFormhWnd` (0: none; of no meaning on POSIX systems). `asFolder` receives its path.
  ///
  /// When the choice is cancelled, cannot be offered or fails, `asFolder` keeps its value; no error is
  /// raised.
  void BrowseForFolder(std::int32_t anOwnerFormhWnd, TextView asTitleText, Text& asFolder) const;

  /// True when both files can be read by FileReadAsString and their texts are equal ignoring letter case.
  /// Files that differ only in letter case, or only in one final line end, compare equal; an empty file
  /// equals nothing.
  bool CompareFiles(TextView asFilePath1, TextView asFilePath2) const;

  /// The CRC-32 of the text's bytes in the code page (reflected form, polynomial EDB88320 hexadecimal, preset
  /// to FFFFFFFF, inverted at the end) in upper-case hexadecimal without leading zeros: "CBF43926" for
  /// 123456789, "0" for the empty text. Cost: linear; memory for one block of the text, not for the whole.
  Text Crc32Make(TextView asCheckText) const;

  /// True when the path names a folder. A path that cannot be looked at is False.
  bool DirExists(TextView asPath) const;

  /// Creates one folder; its parent must exist. True when the folder existed already or was created.
  bool DirMake(TextView asDirPath) const;

  /// Creates every missing folder along a path whose levels are separated by "\". A level that exists already
  /// (error 75), a root or the empty name before a leading "\" among them, is passed over.
  ///
  /// Raises the error that creating a level gives otherwise, such as 76 on a missing drive or below something
  /// that is a file, with its standard description; the levels created before it stay.
  void DirMakeNested(TextView asPath) const;

  /// True when the name stands for an ordinary file: no folder, neither hidden nor system. The name may hold
  /// the wildcards "*" and "?" in its last part; then it is True when any such file matches. False for the
  /// empty name and for a name that ends in "\".
  bool FileExists(TextView asFileName) const;

  /// Reads a whole file. Of its end one line end (CR LF, or a lone LF or CR) is removed, never more.
  ///
  /// `asFileString` is emptied first and receives the text on success only. A file that FileExists does not
  /// find (a hidden one, too) gives False and no message. Any other failure gives False and, when not silent,
  /// "An error occurred while reading file: " and the path. An empty file fails in this way, and so does one
  /// that holds nothing but a line feed; one that holds CR LF or a lone CR reads as the empty text. A
  /// character of several bytes that the file's end cuts off is converted with a NUL behind it.
  bool FileReadAsString(TextView asFilePath, Text& asFileString, bool abSilent = true) const;

  /// Makes the text, followed by CR LF, the content of the file, creating or replacing it (see
  /// Files::Replace); FileReadAsString gives the text back, where the code page holds all of it ("?" stands
  /// for what it does not).
  ///
  /// On failure False and, when not silent, "An error occurred while writing file: " and the path.
  bool FileWriteAsString(TextView asFilePath, TextView asFileString, bool abSilent = true) const;

  /// Lists the files of the folder `asDir`, hidden ones among them, that match "*." and `asExtension` (which
  /// may hold wildcards, too). `asFilesList` receives their names without folder at the indices 0 to
  /// `anFilesCount` - 1, in the order of the platform's listing.
  ///
  /// When there is none, or the folder cannot be listed, `anFilesCount` is 0 and `asFilesList` stays exactly
  /// as it was passed. An array that cannot be resized to these bounds (a lower bound other than 0, two or
  /// three dimensions) stays as it was, too, with `anFilesCount` 1: the first file was counted before its
  /// place was missing. No error is raised in any case.
  void ListFilesMatchingExt(TextView asDir, TextView asExtension, BoundedArray<Text>& asFilesList,
                            std::int32_t& anFilesCount) const;

  /// Opens a document with the program meant for it, in a normal window. True when it was handed over;
  /// `asMsg` is then left alone. Otherwise `asMsg` receives what the result of the shell means:
  ///
  /// | result | asMsg                                    | result | asMsg                               |
  /// |--------|------------------------------------------|--------|-------------------------------------|
  /// | 2      | "File not found"                         | 28     | "DDE Time out"                      |
  /// | 3      | "Path not found"                         | 29     | "DDE transaction failed"            |
  /// | 5      | "Access denied"                          | 30     | "DDE busy"                          |
  /// | 8      | "Out of memory"                          | 31     | "No association for file extension" |
  /// | 11     | "Invalid EXE file or error in EXE image" | 32     | "DLL not found"                     |
  /// | 26     | "A sharing violation occurred"           | any    |                                     |
  /// | 27     | "Incomplete or invalid file association" | other  | "Unknown error"                     |
  ///
  /// On POSIX systems the results are 2, 3, 5, 31 (no program, or no display to open it on) and 0. Raises
  /// nothing: an error of the desktop is an unknown one.
  bool OpenDoc(TextView asDocName, Text* asMsg = nullptr) const;

  /// The folder part of a path: everything up to and including its last "\"; empty when there is none. A "/"
  /// is an ordinary character.
  Text ParseFileDir(TextView asFilePath) const;

  /// The extension: what follows the last "."; empty when there is no "." after the last "\". A "/" is an
  /// ordinary character, so the extension of "a.b/z" is "b/z".
  Text ParseFileExt(TextView asFilePath) const;

  /// ParseFileTitle and, when ParseFileExt is not empty, "." and the extension. Both have their own
  /// separators, so the name of "a.b/z" is "z.b/z".
  Text ParseFileName(TextView asFilePath) const;

  /// The name without folder and extension: what follows the last "\", of that what follows the last "/", of
  /// that what stands before the last "." if there is one.
  Text ParseFileTitle(TextView asFilePath) const;

  /// The path with the extension `asExt` (without dot). What follows the last "." of the path is replaced,
  /// even when that "." belongs to a folder; a path without "." gets "." and `asExt` appended. A path whose
  /// text after the last "." (or whose whole text, when it has no ".") equals `asExt` ignoring letter case
  /// comes back unchanged. The empty path is error 9.
  Text EnsureExtension(TextView asFilePath, TextView asExt) const;

 private:
  friend class MSupport;

  /// Runs the checks of this class in the folder "self test" under the library folder, which it makes when it
  /// is missing, and appends the name of each that fails. No file stays there.
  void SelfTest_Main(FailedTests& aoFailedTests) const;

  Platform& platform_;
};

}  // namespace vorquill21
