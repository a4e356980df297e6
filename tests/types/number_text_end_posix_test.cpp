#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

/// Memory that ends where reading on, or before, ends the program.
class FencedMemory {
 public:
  FencedMemory() {
    void* const all = ::mmap(nullptr, 3 * pageSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (all == MAP_FAILED) return;
    start_ = static_cast<char*>(all);
    isUsable_ = ::mprotect(start_ + pageSize_, pageSize_, PROT_READ | PROT_WRITE) == 0;
  }
  FencedMemory(const FencedMemory&) = delete;
  FencedMemory& operator=(const FencedMemory&) = delete;
  ~FencedMemory() {
    if (start_ != nullptr) ::munmap(start_, 3 * pageSize_);
  }

  bool IsUsable() const { return isUsable_; }

  /// The text at the beginning and at the end of the memory.
  template <typename Unit>
  std::vector<std::basic_string_view<Unit>> Copies(std::string_view text) {
    auto* const first = reinterpret_cast<Unit*>(start_ + pageSize_);
    auto* const last = reinterpret_cast<Unit*>(start_ + 2 * pageSize_) - text.size();
    std::ranges::copy(text, first);
    std::ranges::copy(text, last);
    return {{first, text.size()}, {last, text.size()}};
  }

 private:
  std::size_t pageSize_ = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  char* start_ = nullptr;
  bool isUsable_ = false;
};

/// The longest number at the front of a text and where it ends, as one text.
template <typename Unit>
std::string ParsedFrom(std::basic_string_view<Unit> text) {
  const auto [value, end] = ParseNumber(text.data(), text.data() + text.size(), static_cast<Unit>('.'));
  return std::to_string(end - text.data()) + ": " + std::to_string(std::bit_cast<std::uint64_t>(value));
}

std::vector<std::string> Texts() {
  std::vector<std::string> texts;
  for (const std::string sign : {"", "-", "+"}) {
    for (std::size_t digits = 0; digits <= 40; ++digits) {
      const std::string number = sign + std::string(digits, '7');
      for (const char* const end :
           {"", ".", ".5", ".5e", ".5e-", ".5e-1", "e", "e+", "E4", "x", "7777777."}) {
        texts.push_back(number + end);
      }
    }
  }
  return texts;
}

TEST(ParseNumberTest, NothingBeforeOrBehindTheTextIsReadOnTheRealSystem) {
  FencedMemory memory;
  if (!memory.IsUsable()) GTEST_SKIP() << "the system fences no memory";
  for (const std::string& text : Texts()) {
    const std::string expected = ParsedFrom<char>(text);
    for (const std::string_view copy : memory.Copies<char>(text))
      EXPECT_EQ(ParsedFrom(copy), expected) << text;
    for (const TextView copy : memory.Copies<char16_t>(text)) EXPECT_EQ(ParsedFrom(copy), expected) << text;
  }
}

}  // namespace
}  // namespace vorquill21
