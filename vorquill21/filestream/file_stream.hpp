#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "vorquill21/export.hpp"
#include "vorquill21/files/file.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

class Document;
class NumberReader;
struct FieldPosition;

/// A structured data file: one text document of named fields in memory, read from and written to text files.
///
/// The document is a run of records, in the order in which they were added:
///
///     [NAME] TAB value TAB value ... CR LF
///
/// A field without values is [NAME] CR LF. A table is the single value that begins with CR LF, followed by a
/// line of TAB-separated cells for each row; the pages of a three-dimensional table are the tables
/// "NAME PAGE 1", "NAME PAGE 2", ... Nothing checks names and values for "[", "]", TAB, CR or LF.
///
/// Reading is looser than writing: a field is the first occurrence of "[NAME]" anywhere in the document, in
/// exactly these letters, and reaches from the "]" to the next "[" (one that follows the "]" at once does not
/// count) or the end of the document. TABs at its beginning and CR, LF, TAB and blanks at its end are cut;
/// what is left is split at TAB into its values. Texts outside of records are ignored.
///
/// Two fields are written by the class itself: "FILEVERSION", the version of the document, and "DEC SEP", the
/// decimal separator that its numbers are written with. Numbers are written in the user's notation (15
/// significant digits, see NumberToText; the separator is taken once, when the object is made). When they are
/// read, every occurrence of the document's separator is replaced by the user's; a text that is then no
/// number (see TextToNumber) reads as 0. The document's separator is the value of "DEC SEP", or "." without
/// one; it is looked up when the first number is read and never again, whatever becomes of the document. A
/// "DEC SEP" with several values is error 13 then.
///
/// Errors: methods that report show a message box (exclamation mark, OK, library title) and return their
/// failure value; which methods let errors pass is said with them.
///
/// Cost: looking a field up, adding and removing take constant time on average and the length of the field,
/// once an object was asked for several fields; a name that holds "[" or "]" is searched through the document
/// each time. An object takes memory for a small multiple of its document.
class VORQUILL21_API CFileStream {
 public:
  explicit CFileStream(Platform& platform = Platform::Native());
  ~CFileStream();
  CFileStream(const CFileStream&) = delete;
  CFileStream& operator=(const CFileStream&) = delete;

  /// Adds a record to the end of the document, after removing the field of that name. The values are one
  /// scalar, or the elements of a one-dimensional array from index 0 (whatever its lower bound) to its upper
  /// bound: numbers in the user's notation, booleans "True" and "False", texts as they are, empty as nothing.
  ///
  /// On an error (a lower bound above 0, an array never dimensioned, a value without text) the message is "An
  /// error occurred while adding field: NAME to the filestream"; the old record is removed and no new one
  /// added.
  void AddField(TextView asFieldName, const Variant& avFieldValues);

  /// Adds a two-dimensional array as a table, in place of the field of that name: the rows and columns from
  /// index 0, whatever the lower bounds, to the upper bounds. A cell that is 0 in single precision (an empty
  /// one, False, 1E-50) is written "0", any other as AddField writes it.
  ///
  /// False with the message "An error occurred while adding table: NAME to the filestream" when the array has
  /// another number of dimensions or lower bounds above 0, or when a cell is no number or beyond single
  /// precision; the document then is as it was.
  bool AddTable2d(TextView asTableName, const Variant& avTable);

  /// Adds the pages 1 to `anEndPageIdx` of a three-dimensional array (row, column, page) as the tables
  /// "NAME PAGE 1", "NAME PAGE 2", ..., each with the rows 0 to `anEndRowIdx` and the columns 0 to
  /// `anEndlnColIdx`. An end that is 0 stands for the upper bound. Page 0 is never written. An empty variant
  /// adds nothing and is True.
  ///
  /// False with the message "An error occurred while adding 3d table: NAME to the filestream" when an index
  /// is outside the array; the pages before stay. A page that AddTable2d refuses is left out with its
  /// message, and the result is True nevertheless.
  bool AddTable3d(TextView asTableName, const Variant& avTable, std::int32_t anEndRowIdx = 0,
                  std::int32_t anEndlnColIdx = 0, std::int32_t anEndPageIdx = 0);

  /// Makes the text of a file the document, without its last character: a file that FileWrite wrote reads as
  /// the document that it was and one CR more. `asFileStream` is emptied first and receives the text, too.
  /// When the document's decimal separator equals the user's, numbers are read without replacing separators
  /// from now on. The version that this object writes does not change (it does in SetContents).
  ///
  /// A file that CFile::FileExists does not find gives False and no message, the document staying as it is.
  /// Any other error gives False and "An error occurred while reading file: " and the path; the document
  /// stays as it is, unless the separator could not be settled. An empty file fails in this way.
  bool FileRead(TextView asFilePath, Text* asFileStream = nullptr);

  /// Completes the document as GetContents does, and writes it, followed by CR LF, in the system's 8-bit code
  /// page ("?" stands for what that cannot hold), replacing the file or, with `abAppend`, adding to its end.
  /// Of fields that stand in a file twice the first counts.
  ///
  /// Raises the error that writing gave with its number, the source "CFileStream.FileWrite" and the
  /// description "An error occurred while writing file: PATH", CR LF, "Error was: " and the original
  /// description.
  bool FileWrite(TextView asFilePath, bool abAppend = false);

  /// The document, completed first: a "FILEVERSION" that is missing or empty is added with the version that
  /// this object writes, then a "DEC SEP" that is missing or empty with the user's separator. Without a
  /// version every call moves the empty record to the end.
  Text GetContents();

  /// The values of a field, each read as a number: one double, or an array of variants (from 0) holding
  /// doubles. Values that are no numbers, and a missing field without a default, are 0.
  ///
  /// `avDefaultValues` stands in as with GetFieldString and goes through the same conversion, by way of its
  /// text: numbers keep 15 digits. The elements of a default array of doubles or variants are replaced in
  /// place, those of an array of texts in an array of variants with the same bounds.
  ///
  /// An empty variant when GetFieldString fails. A default without text, or a "DEC SEP" with several values,
  /// raises error 13, a default array that has not one dimension (where it is returned whole) error 9.
  Variant GetFieldNumber(TextView asFieldName, const Variant& avDefaultValues = Missing{});

  /// The values of a field: the text of one, or an array of variants (from 0) of several. Without a value
  /// (the field missing or empty) it is the default exactly as it was passed, or the empty text.
  ///
  /// In an array of values a default array fills the gaps: an empty value takes the element of its index, and
  /// values that are missing at the end are appended, up to the default's upper bound. They keep the kind
  /// that they have in the default. A scalar default fills no gaps, and an array default makes no array of a
  /// single value.
  ///
  /// When the default has no element for a gap, the message is "An error occurred while getting sub field: ",
  /// a blank and the index of the value (0 when the default was never dimensioned), and the result is empty.
  Variant GetFieldString(TextView asFieldName, const Variant& avDefaultValues = Missing{});

  /// The table as a two-dimensional array of doubles from 0, or an empty variant when there is no such field.
  /// The field's lines end at CR; the first is not part of the table. The columns are counted in the first
  /// row, up to its last cell that is not empty; longer rows are cut. Cells that are no numbers are 0.
  ///
  /// An empty variant and the message "An error occurred while getting table: NAME" when there is no row, the
  /// first row is empty, or a row is shorter than the first. Memory is never taken for more cells than the
  /// field has characters.
  Variant GetTable2d(TextView asTableName);

  /// The pages 1 to `anEndPageIdx` of a three-dimensional table as an array of variants with the bounds 0 to
  /// `anEndRowIdx`, `anEndColIdx` and `anEndPageIdx` (row, column, page); page 0 is left empty. An end of 0
  /// is the index 0 here. Larger pages are cut.
  ///
  /// False (a boolean) and the message "An error occurred while getting 3d table: NAME" when a page is
  /// missing, unreadable or smaller, or an end is negative.
  Variant GetTable3d(TextView asTableName, std::int32_t anEndRowIdx, std::int32_t anEndColIdx,
                     std::int32_t anEndPageIdx);

  /// Starts a new document of the version `asCurrentVersion`, blanks at its ends removed: the records "DEC
  /// SEP" and "FILEVERSION". `aaCompatibleVersions` are the versions that this program reads besides. The
  /// result is always empty. The document's separator that was looked up before stays in force.
  ///
  /// An array never dimensioned raises error 9 and an element without text error 13; the document then is as
  /// it was.
  Variant Initialise(TextView asCurrentVersion, const BoundedArray<Variant>& aaCompatibleVersions);

  /// Whether the document's version is one that this program reads: the actual version followed by a blank
  /// occurs in the compatible versions, each followed by a blank, and the current one, letter case ignored.
  /// So any end of an accepted version is accepted, too ("2.1" for "TYRE DATA 2.1"), and what stands before
  /// one of its blanks ("TYRE DATA"), but not "v1" for "v1.1".
  ///
  /// A version that is passed stands in for the document's "FILEVERSION" (or, where that is empty, its "FILE
  /// VERSION"), for the one of Initialise, and for the compatible ones (one text, separated by blanks);
  /// blanks at their ends are ignored.
  ///
  /// `asStatus` is emptied, and when the result is False it says "Wrong file version", the versions required
  /// and the version available. Unless `abSilent` a message box shows it. An error (an array as a version)
  /// gives False, leaves `asStatus` empty and shows "An error occured while checking for the required file
  /// version: ", the compatible versions of Initialise, CR LF, "Error was " and the description, silent or
  /// not.
  bool IsCompatibleVersion(bool abSilent, const Variant& asActualVersion = Missing{},
                           const Variant& asCurrentVersion = Missing{},
                           const Variant& asCompatibleVersions = Missing{}, Text* asStatus = nullptr);

  /// Removes a field; False when there is none. What goes is the record up to the last character of the field
  /// that is no line end, two characters more, which should be its CR LF, and all CR and LF after them. So of
  /// a record that ends in a lone LF the "[" of the next record goes, too.
  ///
  /// On an error False and "An error occurred while removing field: " and the name.
  bool RemoveField(TextView asFieldName);

  /// Makes `asFileStream` the document, unchecked. When it has a "FILEVERSION" that is not empty, that
  /// becomes the version that this object writes.
  void SetContents(TextView asFileStream);

  /// True when the document has a field of that name, with a value or without.
  bool FieldExists(TextView asFieldName);

  /// The value of "FILEVERSION", the empty text when there is none. With several values error 13 is raised,
  /// here and in the two members below.
  Text FileVersion();

  /// The last word of a version of at least two words (separated by single blanks), read as a number whose
  /// separator is "." and given as text in the user's notation: "2.1" for "TYRE DATA 2.10", "0" when it is no
  /// number. The empty text for one word.
  Text FileVersionNumber();

  /// The first word of a version of at least two words, otherwise the empty text.
  Text FileVersionType();

 private:
  friend class MSupport;

  /// Runs the checks of this class in the folder "self test" under the library folder, which is made when it
  /// is missing, and appends the name of each that fails. Of the files written there "3d try.txt" stays, for
  /// comparison with the file "3d ref.txt", which the check "SelfTest_3dTable" needs there. This object has
  /// no part in them: each check makes its own.
  void SelfTest_Main(FailedTests& aoFailedTests) const;

  /// Where the field is, or nothing; reports its errors.
  std::optional<FieldPosition> FindField(TextView asFieldName);

  /// The text of the field's values, nothing when there is no such field; reports its errors. The text stays
  /// until the document changes or a name that holds brackets is looked up.
  std::optional<TextView> GetField(TextView asFieldName);

  /// What GetFieldString gives for the field's text, or nothing after an error, which was reported.
  std::optional<Variant> ValuesOrDefault(TextView fieldText, const Variant& defaults);

  const Text& FileDecimalSeparator();
  NumberReader ReaderOfNumbers();
  double TextToNumber(TextView text);
  double VariantToNumber(const Variant& value);
  Variant ArrayToNumbers(const Variant& array);

  void CompleteDocument();
  Text ActualVersion();

  Platform& platform_;
  CFile moFile;
  std::unique_ptr<Document> msFileStream;
  char16_t msSystemDecSep;
  Text msFileDecSep;
  Text msCurrentVersion;
  Text msCompatibleVersions;  // each followed by a blank
  bool mbDecSepMatches = false;
  bool mbInitialised = false;
  bool mbQuiet = false;
};

}  // namespace vorquill21
