#include <gtest/gtest.h>

#include <bit>
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

 private:
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

TEST(ImportRandomTest, EveryImportComesToWhatTheReferenceComesTo) {
  Generator generator;
  int successes = 0;
  int values = 0;
  for (int run = 0; run < 4000; ++run) {
    test::FakePlatform fake;
    const ImportOptions options = generator.Options();
    const std::string content = generator.Content(ToCodePage(fake.locale, options.delimiter));
    const ImportOutcome expected = ImportReference::Import(content, options, fake.locale);

    fake.files.Replace(kPath, content);
    CImportColumnData import(fake.platform);
    import.Filepath(kPath);
    import.Delimiter(options.delimiter);
    import.HeaderRow(options.headerRow);
    import.FirstValueRow(options.firstValueRow);
    import.MaxColumns(options.maxColumns);
    Text status;
    ASSERT_EQ(import.Import(&status), expected.isSuccessful) << content;
    ASSERT_EQ(status, expected.status) << content;
    ASSERT_EQ(import.ColumnCount(), expected.columnCount) << content;
    ASSERT_EQ(import.DataRowCount(), expected.dataRowCount) << content;
    ASSERT_EQ(HeadersOf(import), expected.headers) << content;
    if (!expected.isSuccessful) continue;
    ++successes;
    for (std::int32_t column = 0; column < expected.columnCount; ++column) {
      for (std::int32_t row = 0; row < expected.dataRowCount; ++row, ++values) {
        const auto value = import.ColumnData(column, row).As<double>();
        const double wanted =
            expected.columns[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)];
        ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(wanted)) << content;
      }
    }
  }
  EXPECT_GT(successes, 1000);
  EXPECT_GT(values, 20000);
}

}  // namespace
}  // namespace vorquill21
