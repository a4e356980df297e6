#pragma once

#include <cstddef>
#include <cstdint>
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

  /// What is held of the lines to come, when not AtEnd: the beginning of the next one at least.
  std::string_view Held() const noexcept { return {next_, static_cast<std::size_t>(filled_ - next_)}; }

  /// Passes over what lies before `position` in Held(): whole lines, the last of which does not end with a CR
  /// that is the last character of Held().
  void SkipLinesTo(const char* position) noexcept { next_ = position; }

  /// Number of bytes in the lines so far, their ends among them.
  std::uint64_t BytesPassed() const noexcept {
    return bytesRead_ - static_cast<std::uint64_t>(filled_ - next_);
  }

  /// Length of the file; 0 when that is not known.
  std::uint64_t Length() const { return file_->Length(); }

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
  std::uint64_t bytesRead_ = 0;
  bool fileIsRead_ = false;
  bool passesLineFeed_ = false;  // the last line ended in CR: a LF at next_ belongs to it
};

}  // namespace vorquill21
