#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/import_reference.hpp"
#include "vorquill21/import/import_column_data.hpp"

namespace vorquill21 {
namespace {

using test::ImportOptions;
using test::ImportOutcome;
using test::ImportReference;

constexpr TextView kPath = u"/library/columns.txt";

class Generator {
 public:
  ImportOptions Options() {
    constexpr const char16_t* kDelimiters[] = {u"\t", u",",  u",",  u";", u" ", u"  ", u", ", u":", u".",
                                               u"-",  u"e5", u"aa", u"€", u"Ω", u"?",  u"\n", u""};
    ImportOptions options;
    options.delimiter = Pick(kDelimiters);
    options.headerRow = Number(8) > 0 ? 1 : Number(4) - 1;
    options.firstValueRow = Number(8) > 0 ? options.headerRow + 1 : Number(6) - 1;
    options.maxColumns = Number(8) > 0 ? 20 : Number(6) - 1;
    return options;
  }

  std::string Content(const std::string& delimiter) {
    std::string content;
    const int columns = Number(24);
    const int lines = Number(8);
    for (int line = 0; line < lines; ++line) {
      const int fields = Number(8) > 0 ? columns : Number(24);
      for (int field = 0; field < fields; ++field) {
        content += Field();
        for (int i = Number(10) > 0 ? 1 : Number(3); i > 0; --i) content += delimiter;
      }
      constexpr const char* kLineEnds[] = {"\r\n", "\n", "\r", "\r\n", "\n", "\n\n", ""};
      content += Pick(kLineEnds);
    }
    return content;
  }

  /// Rows of numbers that fill more than one block of the file, and now and then something else among them.
  ImportOptions LongFile(std::string& content) {
    constexpr const char16_t* kDelimiters[] = {u"\t", u",", u";", u" ", u"|", u":", u", ", u"e"};
    constexpr const char* kLineEnds[] = {"\r\n", "\n", "\r"};
    constexpr const char* kOddities[] = {"\n", "1\n", "12:30", " 7", "x", "1E310", "+1", "", ".", "-."};
    ImportOptions options;
    options.delimiter = Pick(kDelimiters);
    const std::string delimiter(options.delimiter.begin(), options.delimiter.end());
    const std::string lineEnd = Pick(kLineEnds);
    const int columns = 1 + Number(12);
    for (int column = 0; column < columns; ++column) content += "x" + delimiter;
    content += lineEnd;
    const std::size_t length = 60000 + random_() % 150000;
    const int rarity = 50 << Number(12);
    while (content.size() < length) {
      for (int column = 0; column < columns; ++column) {
        content += (column > 0 ? delimiter : "") + (Number(rarity) == 0 ? Pick(kOddities) : UsualNumber());
      }
      content += lineEnd;
    }
    content.resize(content.size() - random_() % 20);
    return options;
  }

 private:
  std::string UsualNumber() {
    std::array<char, 64> text;
    const double size = std::ldexp(static_cast<double>(random_()) - 0x1p31, Number(40) - 32);
    constexpr const char* kFormats[] = {"%.0f", "%.2f", "%.5f", "%.7g", "%.15g", "%.17g", "%.6E", "%.3e"};
    std::snprintf(text.data(), text.size(), Pick(kFormats), size);
    return text.data();
  }

  int Number(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

  template <typename T, std::size_t N>
  T Pick(T (&choices)[N]) {
    return choices[random_() % N];
  }

  std::string Field() {
    constexpr const char* kFields[] = {"1",  "-2.5", "12:30",   "1:2:3",  "3.5kg", "x", " 7", "7 ",
                                       ".5", "1E3",  "1e",      "1D-2",   "\x80",  "?", "-",  "+1",
                                       "aa", "5e5",  "0.11019", "150000", "1.5.5", "",  " ",  "1E310"};
    if (Number(40) == 0) return std::string(kFields[random_() % std::size(kFields)]);
    if (Number(4) > 0)
      return std::to_string(Number(2000000) - 1000000) + "." + std::to_string(Number(100000));
    return kFields[random_() % (std::size(kFields) - 1)];
  }

  std::mt19937 random_{20261121};
};

std::vector<Text> HeadersOf(const CImportColumnData& import) {
  std::vector<Text> headers;
  for (std::int32_t i = 0; i < import.ColumnCount(); ++i) {
    headers.push_back(import.ColumnHeaderData(i).As<Text>());
  }
  return headers;
}

/// Imports `content`, checks everything against the reference, and returns the number of values; nothing
/// when the import fails.
std::optional<int> ValuesOfCheckedImport(const std::string& content, const ImportOptions& options) {
  test::FakePlatform fake;
  const ImportOutcome expected = ImportReference::Import(content, options, fake.locale);
  fake.files.Replace(kPath, content);
  CImportColumnData import(fake.platform);
  import.Filepath(kPath);
  import.Delimiter(options.delimiter);
  import.HeaderRow(options.headerRow);
  import.FirstValueRow(options.firstValueRow);
  import.MaxColumns(options.maxColumns);
  Text status;
  EXPECT_EQ(import.Import(&status), expected.isSuccessful);
  EXPECT_EQ(status, expected.status);
  EXPECT_EQ(import.ColumnCount(), expected.columnCount);
  EXPECT_EQ(import.DataRowCount(), expected.dataRowCount);
  EXPECT_EQ(HeadersOf(import), expected.headers);
  if (!expected.isSuccessful || testing::Test::HasFailure()) return std::nullopt;
  for (std::int32_t column = 0; column < expected.columnCount; ++column) {
    for (std::int32_t row = 0; row < expected.dataRowCount; ++row) {
      const auto value = import.ColumnData(column, row).As<double>();
      const double wanted = expected.columns[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)];
      EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(wanted))
          << "column " << column << ", row " << row;
    }
  }
  return expected.columnCount * expected.dataRowCount;
}

/// Checks imports until one goes wrong; `next` makes the content of each and returns its options.
template <typename Next>
void ExpectTheReference(int runs, int leastSuccesses, int leastValues, Next next) {
  int successes = 0;
  int values = 0;
  for (int run = 0; run < runs; ++run) {
    std::string content;
    const ImportOptions options = next(content);
    const std::optional<int> count = ValuesOfCheckedImport(content, options);
    ASSERT_FALSE(testing::Test::HasFailure()) << content;
    successes += count.has_value() ? 1 : 0;
    values += count.value_or(0);
  }
  EXPECT_GT(successes, leastSuccesses);
  EXPECT_GT(values, leastValues);
}

TEST(ImportRandomTest, EveryImportComesToWhatTheReferenceComesTo) {
  Generator generator;
  ExpectTheReference(4000, 1000, 20000, [&](std::string& content) {
    const ImportOptions options = generator.Options();
    content = generator.Content(ToCodePage(test::FakePlatform().locale, options.delimiter));
    return options;
  });
}

TEST(ImportRandomTest, EveryImportOfALongFileComesToWhatTheReferenceComesTo) {
  Generator generator;
  ExpectTheReference(60, 30, 200000, [&](std::string& content) { return generator.LongFile(content); });
}

}  // namespace
}  // namespace vorquill21
