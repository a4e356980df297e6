#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "vorquill21/platform/files.hpp"

namespace vorquill21 {

/// Position of the first CR or LF in [begin, end), or `end`.
const char* FindLineEnd(const char* begin, const char* end) noexcept;

/// Reads a file line by line. A line ends at CR LF, at a lone CR or at a lone LF; the last one needs no end.
/// At any time one block of the file or, where that is longer, one line is held.
class LineReader {
 public:
  explicit LineReader(std::unique_ptr<ByteReader> file);

  /// True when there is no further line.
  bool AtEnd();

  /// The next line without its end, valid until the next call; error 62 when there is none.
  std::string_view NextLine();

  /// Passes over a line without holding it; error 62 when there is none.
  void SkipLine();

 private:
  /// Reads more behind what is held; false at the end of the file.
  bool ReadMore();
  void MakeRoom();
  void RequireLine();
  void PassLineEnd(const char* lineEnd);

  std::unique_ptr<ByteReader> file_;
  std::size_t capacity_;
  std::unique_ptr<char[]> block_;
  const char* next_;  // what is held but not yet returned: [next_, filled_)
  char* filled_;
  bool fileIsRead_ = false;
  bool passesLineFeed_ = false;  // the last line ended in CR: a LF at next_ belongs to it
};

}  // namespace vorquill21
