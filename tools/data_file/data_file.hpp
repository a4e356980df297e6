#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "data_file/records.hpp"
#include "program/session.hpp"

namespace vorquill21::tool {

/// What a field of a data file holds.
struct Field {
  enum class Kind { kEmpty, kNumber, kNumbers, kText, kTexts, kTable, kBrokenTable };

  Kind kind = Kind::kEmpty;
  std::vector<Text> values;                   ///< of a field that is no table
  std::optional<BoundedArray<double>> table;  ///< of a table that can be read
};

/// The word for a kind in results.
std::string KindName(Field::Kind kind);

/// A table of several pages: the tables "NAME PAGE 1", "NAME PAGE 2", ... of one size.
struct PageRun {
  Text name;
  std::size_t firstRecord = 0;  ///< index of the record of page 1
  std::int32_t pages = 0;
  std::int32_t rows = 0;
  std::int32_t columns = 0;
};

/// A structured data file that the user named. Numbers are read and written in the file's own notation,
/// whoever runs the program.
class DataFile {
 public:
  /// Reads the file ("-" is standard input). A file that the library refuses is a failure, unless it is only
  /// to be inspected.
  enum class Purpose { kUse, kInspect };
  DataFile(Session& session, const std::string& path, Purpose purpose = Purpose::kUse);

  /// A file that is not there yet and will have this version.
  DataFile(Session& session, const std::string& path, const Text& version);

  CFileStream& Stream() noexcept { return *stream_; }
  const std::string& Bytes() const noexcept { return files_.Bytes(); }
  bool IsRefused() const noexcept { return isRefused_; }
  const Text& Contents() const noexcept { return contents_; }
  const std::vector<Record>& Records() const noexcept { return records_; }
  char16_t Separator() const noexcept { return locale_.DecimalSeparator(); }

  /// The first record of each name, as the library finds it; those that begin a line.
  std::vector<Record> Fields() const;

  Field Read(const Record& record);

  /// What the library reads under a name; nothing when there is no such field.
  std::optional<Field> Read(const std::string& name);

  /// The runs of pages of at least one table.
  std::vector<PageRun> PageRuns();

  /// True when the whole text spells a number in the file's notation.
  bool IsNumber(TextView text) const { return TextToNumber(text, Separator()).has_value(); }

  /// Makes room for changes: lets the document end in exactly one line end, as records do.
  void PrepareForChanges();

  /// Writes the document. Refuses when a field other than `changed`, or one of its pages, would read
  /// differently than before.
  void Write(const std::string& path, const Text& changed);

 private:
  DataFile(Session& session, const std::string& path, SnapshotFiles files, Purpose purpose);

  SnapshotFiles files_;
  NotationLocale locale_;
  Platform platform_;
  std::unique_ptr<CFileStream> stream_;
  bool isRefused_ = false;
  Text contents_;
  std::vector<Record> records_;
  std::unordered_map<Text, std::size_t> firstRecords_;  // index of the first record of each name
};

/// Refuses a text that the 8-bit code page of data files does not hold.
void RequireStorable(Session& session, const Text& text);

}  // namespace vorquill21::tool
