#include "vorquill21/import/line_reader.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/raised_number.hpp"

namespace vorquill21 {
namespace {

/// Gives its bytes out in pieces of at most `piece` bytes.
class PieceReader : public ByteReader {
 public:
  PieceReader(std::string bytes, std::size_t piece) : bytes_(std::move(bytes)), piece_(piece) {}

  std::uint64_t Length() const override { return bytes_.size(); }

  std::size_t Read(std::span<char> buffer) override {
    EXPECT_FALSE(wasAtEnd_) << "read again after the end";
    EXPECT_FALSE(buffer.empty());
    const std::size_t count = std::min({buffer.size(), piece_, bytes_.size() - at_});
    std::copy_n(bytes_.data() + at_, count, buffer.data());
    at_ += count;
    wasAtEnd_ = count == 0;
    return count;
  }

 private:
  std::string bytes_;
  std::size_t piece_;
  std::size_t at_ = 0;
  bool wasAtEnd_ = false;
};

constexpr std::size_t kWhole = std::size_t{1} << 30;

LineReader ReaderOf(std::string bytes, std::size_t piece = kWhole) {
  return LineReader(std::make_unique<PieceReader>(std::move(bytes), piece));
}

std::vector<std::string> LinesOf(const std::string& bytes, std::size_t piece = kWhole) {
  LineReader reader = ReaderOf(bytes, piece);
  std::vector<std::string> lines;
  while (!reader.AtEnd()) lines.emplace_back(reader.NextLine());
  EXPECT_TRUE(reader.AtEnd());
  return lines;
}

using Lines = std::vector<std::string>;

TEST(LineReaderTest, EveryLineEndEndsALineWhateverThePieces) {
  const struct {
    std::string bytes;
    Lines lines;
  } kCases[] = {
      {"", {}},
      {"a", {"a"}},
      {"a\n", {"a"}},
      {"a\r", {"a"}},
      {"a\r\n", {"a"}},
      {"a\r\nb", {"a", "b"}},
      {"a\rb\nc", {"a", "b", "c"}},
      {"\n", {""}},
      {"\r", {""}},
      {"\r\n", {""}},
      {"\n\r", {"", ""}},
      {"\r\r\n\n", {"", "", ""}},
      {"\r\n\r\n", {"", ""}},
      {"a\r\n\nb", {"a", "", "b"}},
      {std::string("a\0b\nc", 5), {std::string("a\0b", 3), "c"}},
  };
  for (const auto& [bytes, lines] : kCases) {
    for (const std::size_t piece : {std::size_t{1}, std::size_t{2}, std::size_t{3}, kWhole}) {
      EXPECT_EQ(LinesOf(bytes, piece), lines) << testing::PrintToString(bytes) << " by " << piece;
    }
  }
}

TEST(LineReaderTest, FindsALineEndAtEveryPlace) {
  for (const char lineEnd : {'\r', '\n'}) {
    for (std::size_t length = 0; length < 70; ++length) {
      for (std::size_t at = 0; at < length; ++at) {
        std::string bytes(length, 'x');
        bytes[at] = lineEnd;
        bytes.back() = '\n';
        EXPECT_EQ(FindLineEnd(bytes.data(), bytes.data() + length), bytes.data() + at);
        EXPECT_EQ(FindLineEnd(bytes.data(), bytes.data() + at), bytes.data() + at);
      }
    }
  }
}

TEST(LineReaderTest, LinesLongerThanABlockAreReadWhole) {
  for (const std::size_t length : {65535u, 65536u, 65537u, 131072u, 1000000u}) {
    const std::string longLine(length, 'x');
    for (const std::size_t piece : {std::size_t{4099}, kWhole}) {
      EXPECT_EQ(LinesOf("first\r\n" + longLine + "\r\nlast", piece), (Lines{"first", longLine, "last"}));
      EXPECT_EQ(LinesOf(longLine + "\r\n\nlast", piece), (Lines{longLine, "", "last"}));
    }
  }
}

TEST(LineReaderTest, ALineEndAcrossTwoBlocksIsOne) {
  for (std::size_t length = 65530; length < 65540; ++length) {
    const std::string line(length, 'x');
    EXPECT_EQ(LinesOf(line + "\r\nnext"), (Lines{line, "next"}));
    EXPECT_EQ(LinesOf(line + "\r\n"), (Lines{line}));
    EXPECT_EQ(LinesOf(line + "\r\rnext"), (Lines{line, "", "next"}));
  }
}

TEST(LineReaderTest, SkippedLinesAreThoseThatWouldBeRead) {
  const std::string content = "one\r\n\n" + std::string(200000, 'x') + "\rfour\nfive";
  const Lines lines = LinesOf(content);
  ASSERT_EQ(lines.size(), 5u);
  for (const std::size_t piece : {std::size_t{7}, kWhole}) {
    for (std::size_t skipped = 0; skipped <= lines.size(); ++skipped) {
      LineReader reader = ReaderOf(content, piece);
      for (std::size_t i = 0; i < skipped; ++i) reader.SkipLine();
      for (std::size_t i = skipped; i < lines.size(); ++i) EXPECT_EQ(reader.NextLine(), lines[i]);
      EXPECT_TRUE(reader.AtEnd());
    }
  }
}

TEST(LineReaderTest, WholeLinesMayBePassedOverInWhatIsHeld) {
  const std::string content = "one\r\n\n" + std::string(70000, 'x') + "\rfour\nfive";
  const Lines lines = LinesOf(content);
  for (std::size_t first = 0; first < lines.size(); ++first) {
    LineReader reader = ReaderOf(content);
    for (std::size_t i = 0; i < first; ++i) reader.SkipLine();
    ASSERT_FALSE(reader.AtEnd());
    const auto before = static_cast<std::size_t>(reader.BytesPassed());
    const std::string_view held = reader.Held();
    EXPECT_TRUE(content.substr(before).starts_with(held));
    const std::size_t length = held.rfind('\n') + 1;
    reader.SkipLinesTo(held.data() + length);
    EXPECT_EQ(reader.BytesPassed(), before + length);
    Lines rest;
    while (!reader.AtEnd()) rest.emplace_back(reader.NextLine());
    EXPECT_EQ(rest, LinesOf(content.substr(before + length)));
  }
}

TEST(LineReaderTest, CountsTheBytesOfTheLinesSoFar) {
  LineReader reader = ReaderOf("one\n\rthree\nfour", 2);
  EXPECT_EQ(reader.Length(), 15u);
  for (const std::uint64_t passed : {4u, 5u, 11u, 15u}) {
    reader.NextLine();
    EXPECT_EQ(reader.BytesPassed(), passed);
  }
}

TEST(LineReaderTest, ALineAtTheEndIsAnError) {
  for (const char* content : {"", "a", "a\n", "a\r\n"}) {
    for (const bool skips : {false, true}) {
      LineReader reader = ReaderOf(content);
      if (*content != '\0') reader.NextLine();
      for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(
            test::RaisedNumber([&] { skips ? reader.SkipLine() : static_cast<void>(reader.NextLine()); }),
            kInputPastEnd);
      }
    }
  }
}

}  // namespace
}  // namespace vorquill21
