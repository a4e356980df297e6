#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "vorquill21/filestream/name_index.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// Where a field stands in a document; 0-based, good until the document changes.
struct FieldPosition {
  std::size_t bracket = 0;   ///< the "["
  std::size_t start = 0;     ///< first character after the "]"; the length of the document when there is none
  std::size_t last = 0;      ///< last character of the field that is no line end; at least `start`
  std::size_t next = 0;      ///< the "[" that ends the field, or the length of the document
  bool hasPlainName = true;  ///< whether the name holds no bracket
};

/// The text of a data file: records "[name] value CR LF" in which fields are found, to which records are
/// appended, and from which they are removed. It always reads as if every look-up searched the whole text and
/// every removal cut it.
///
/// Instead, a removed record is filled with "[" and stays until half of the text is made of such records or
/// somebody needs the text. Filled records change no look-up: they spell no name, and a field that ended
/// before the record ends before its first "[". That holds for records which reach from "[" to "[" and follow
/// no "]" directly; other removals cut the text at once. Names that hold brackets can span records, so they
/// are searched in the text without filled ones.
///
/// Cost: Find, Remove and Draft::Add are constant on average, beside the length of the field; a Find costs
/// the length of the text until as many searches were made as building an index pays for. A name that holds
/// brackets costs the length of the text, and so does the removal of a record that does not end in CR LF.
class Document {
 public:
  class Draft;

  /// The first field of that name; error 7 when there is no memory for an index.
  std::optional<FieldPosition> Find(TextView name);

  /// The characters from `start` to `last`.
  TextView TextOf(const FieldPosition& field) const noexcept;

  /// Removes a field that Find has found just before.
  void Remove(const FieldPosition& field);

  /// The whole text. It stays until the document changes.
  TextView AllText() noexcept;

  void Assign(Text text) noexcept;

 private:
  struct Range {
    std::size_t from = 0;
    std::size_t to = 0;
  };

  TextView Content() const noexcept { return TextView(store_).substr(0, length_); }
  std::size_t SearchPlainName(TextView name);
  FieldPosition FieldAt(std::size_t bracket, std::size_t nameLength, bool hasPlainName) const noexcept;
  std::size_t EndOfRemoval(const FieldPosition& field) const noexcept;
  bool IsWholeRecord(const FieldPosition& field) const noexcept;
  void RemoveRecord(const FieldPosition& field);
  void Cut(const FieldPosition& field) noexcept;
  std::size_t FilledBefore(std::size_t position) const noexcept;
  void DropFilled() noexcept;
  void ForgetIndex() noexcept;

  Text store_;              // the text with its filled records, and after it the draft
  std::size_t length_ = 0;  // of the text with its filled records
  std::vector<Range> filled_;
  std::size_t filledUnits_ = 0;
  NameIndex index_;
  std::size_t searchedUnits_ = 0;
};

/// A record that is being written behind the document. Without Add it vanishes again. One at a time; removing
/// is the only change that the document may undergo meanwhile.
class Document::Draft {
 public:
  explicit Draft(Document& document) noexcept : document_(document) {}
  ~Draft() { document_.store_.resize(document_.length_); }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  /// The text to append to. The record begins with "[".
  Text& Target() noexcept { return document_.store_; }

  /// Makes the record the last of the document. Error 7 when there is no memory for its names.
  void Add();

 private:
  Document& document_;
};

}  // namespace vorquill21
