#include "vorquill21/import/line_reader.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {
namespace {

constexpr std::size_t kBlockLength = std::size_t{1} << 16;

constexpr bool EndsLine(char byte) {
  return byte == '\r' || byte == '\n';
}

}  // namespace

const char* FindLineEnd(const char* begin, const char* end) noexcept {
#if defined(__SSE2__)
  constexpr std::ptrdiff_t kStep = 16;
  const __m128i carriageReturns = _mm_set1_epi8('\r');
  const __m128i lineFeeds = _mm_set1_epi8('\n');
  for (; end - begin >= kStep; begin += kStep) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(begin));
    const __m128i found =
        _mm_or_si128(_mm_cmpeq_epi8(bytes, carriageReturns), _mm_cmpeq_epi8(bytes, lineFeeds));
    const auto mask = static_cast<unsigned>(_mm_movemask_epi8(found));
    if (mask != 0) return begin + std::countr_zero(mask);
  }
#endif
  return std::find_if(begin, end, EndsLine);
}

LineReader::LineReader(std::unique_ptr<ByteReader> file)
    : file_(std::move(file)),
      capacity_(kBlockLength),
      block_(std::make_unique_for_overwrite<char[]>(capacity_)),
      next_(block_.get()),
      filled_(block_.get()) {}

bool LineReader::AtEnd() {
  for (;;) {
    if (next_ == filled_ && !ReadMore()) return true;
    if (!passesLineFeed_) return false;
    passesLineFeed_ = false;
    if (*next_ != '\n') return false;
    ++next_;
  }
}

std::string_view LineReader::NextLine() {
  RequireLine();
  std::size_t length = 0;
  const char* lineEnd;
  for (;;) {
    lineEnd = FindLineEnd(next_ + length, filled_);
    length = static_cast<std::size_t>(lineEnd - next_);
    if (lineEnd != filled_ || !ReadMore()) break;
  }
  const std::string_view line(next_, length);
  PassLineEnd(next_ + length);
  return line;
}

void LineReader::SkipLine() {
  RequireLine();
  for (;;) {
    const char* lineEnd = FindLineEnd(next_, filled_);
    next_ = lineEnd;
    if (lineEnd != filled_) return PassLineEnd(lineEnd);
    if (!ReadMore()) return;
  }
}

bool LineReader::ReadMore() {
  if (fileIsRead_) return false;
  MakeRoom();
  char* const room = filled_;
  const auto size = static_cast<std::size_t>(block_.get() + capacity_ - room);
  const std::size_t count = file_->Read({room, size});
  filled_ += count;
  bytesRead_ += count;
  fileIsRead_ = count == 0;
  return !fileIsRead_;
}

/// Moves what is held to the front of the block, which grows when it is full.
void LineReader::MakeRoom() {
  const auto held = static_cast<std::size_t>(filled_ - next_);
  if (next_ == block_.get() && held < capacity_) return;
  if (held == capacity_) {
    const std::size_t capacity = 2 * capacity_;
    auto block = std::make_unique_for_overwrite<char[]>(capacity);
    std::memcpy(block.get(), next_, held);
    block_ = std::move(block);
    capacity_ = capacity;
  } else {
    std::memmove(block_.get(), next_, held);
  }
  next_ = block_.get();
  filled_ = block_.get() + held;
}

void LineReader::RequireLine() {
  if (AtEnd()) throw LibraryError(kInputPastEnd);
}

void LineReader::PassLineEnd(const char* lineEnd) {
  next_ = lineEnd;
  if (lineEnd == filled_) return;  // the last line, which has no end
  passesLineFeed_ = *lineEnd == '\r';
  ++next_;
}

}  // namespace vorquill21
