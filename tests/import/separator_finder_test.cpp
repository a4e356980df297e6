#include "vorquill21/import/separator_finder.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace vorquill21 {
namespace {

std::vector<std::size_t> Found(const std::string& text, char delimiter) {
  SeparatorFinder separators(text, delimiter);
  const char* const end = text.data() + text.size();
  std::vector<std::size_t> found;
  for (const char* at = separators.Next(); at != end; at = separators.Next()) {
    found.push_back(static_cast<std::size_t>(at - text.data()));
  }
  EXPECT_EQ(separators.Next(), end);
  return found;
}

TEST(SeparatorFinderTest, FindsTheDelimiterAndLineEndsOnly) {
  EXPECT_EQ(Found("1\t2,3\r\n\t;\n\r", '\t'), (std::vector<std::size_t>{1, 5, 6, 7, 9, 10}));
  EXPECT_EQ(Found("1\t2,3\r\n\t;\n\r", ','), (std::vector<std::size_t>{3, 5, 6, 9, 10}));
  EXPECT_EQ(Found("", ','), std::vector<std::size_t>());
  EXPECT_EQ(Found(std::string(1000, 'x'), ','), std::vector<std::size_t>());
  EXPECT_EQ(Found(std::string("\xAC\0\x2C", 3), '\xAC'), std::vector<std::size_t>{0});
}

TEST(SeparatorFinderTest, FindsOneAtEveryPlaceOfATextOfEveryLength) {
  for (const char separator : {'\t', '\r', '\n'}) {
    for (std::size_t length = 1; length < 200; ++length) {
      for (std::size_t at = 0; at < length; ++at) {
        std::string text(length, 'x');
        text[at] = separator;
        ASSERT_EQ(Found(text, '\t'), std::vector<std::size_t>{at}) << length;
      }
    }
  }
}

TEST(SeparatorFinderTest, FindsAllInRandomBytes) {
  std::mt19937 random(1);
  for (int run = 0; run < 2000; ++run) {
    std::string text(random() % 300, '\0');
    std::vector<std::size_t> expected;
    for (std::size_t i = 0; i < text.size(); ++i) {
      text[i] = random() % 3 == 0 ? "\t\r\n"[random() % 3] : static_cast<char>(random() % 256);
      if (text[i] == '\t' || text[i] == '\r' || text[i] == '\n') expected.push_back(i);
    }
    ASSERT_EQ(Found(text, '\t'), expected);
  }
}

}  // namespace
}  // namespace vorquill21
