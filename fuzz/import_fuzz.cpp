// Any bytes, imported with any options: the outcome is that of the reference, nothing is left open, and
// memory stays within a small multiple of the input.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/require.hpp"
#include "tests/support/fake_platform.hpp"
#include "tests/support/import_reference.hpp"
#include "tests/support/replaced_new.hpp"
#include "vorquill21/import/import_column_data.hpp"

namespace vorquill21::test {
namespace {

constexpr TextView kPath = u"/library/columns.txt";
constexpr std::size_t kOptionBytes = 4;

/// Small numbers mostly, and the ends of the range.
std::int32_t SmallNumber(std::uint8_t byte) {
  if (byte == 0x80) return INT32_MIN;
  if (byte == 0x81) return INT32_MAX;
  return static_cast<std::int8_t>(byte) / 4;
}

ImportOptions OptionsOf(std::string_view bytes) {
  constexpr TextView kDelimiters[] = {u"\t", u",", u";", u" ", u":", u", ",     u"  ", u".",
                                      u"-",  u"e", u"1", u"€", u"Ω", u"\xDC80", u"aa", u"\r"};
  const auto option = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  ImportOptions options;
  options.delimiter = kDelimiters[option(0) % std::size(kDelimiters)];
  options.headerRow = SmallNumber(option(1));
  options.firstValueRow = SmallNumber(option(2));
  options.maxColumns = option(3) < 0xF0 ? std::int32_t{option(3)} : INT32_MAX;
  return options;
}

/// What memory an import may take for its result and on the way: a file of the shortest fields needs a text
/// for each header of two bytes, and lists double when they grow.
std::size_t AllowedBytes(std::size_t inputSize) {
  constexpr std::size_t kConstant = std::size_t{1} << 18;
  constexpr std::size_t kFactor = 100;
  return kConstant + kFactor * inputSize;
}

void RequireOutcome(const CImportColumnData& import, const ImportOutcome& expected) {
  Require(import.ColumnCount() == expected.columnCount);
  Require(import.DataRowCount() == expected.dataRowCount);
  for (std::int32_t column = 0; column < expected.columnCount; ++column) {
    const auto index = static_cast<std::size_t>(column);
    Require(import.ColumnHeaderData(column) == Variant(expected.headers[index]));
    if (!expected.isSuccessful) continue;
    for (std::int32_t row = 0; row < expected.dataRowCount; ++row) {
      const double value = import.ColumnData(column, row).As<double>();
      const double wanted = expected.columns[index][static_cast<std::size_t>(row)];
      Require(SameBits(value, wanted));
    }
  }
}

void Check(std::string_view bytes) {
  const ImportOptions options = OptionsOf(bytes);
  const std::string_view content = bytes.substr(kOptionBytes);
  FakePlatform fake;
  fake.files.Replace(kPath, content);
  CImportColumnData import(fake.platform);
  import.Filepath(kPath);
  import.Delimiter(options.delimiter);
  import.HeaderRow(options.headerRow);
  import.FirstValueRow(options.firstValueRow);
  import.MaxColumns(options.maxColumns);

  Text status;
  bool succeeded = false;
  Require(BytesAskedBy([&] { succeeded = import.Import(&status); }) <= AllowedBytes(content.size()));

  const ImportOutcome expected = ImportReference::Import(content, options, fake.locale);
  Require(succeeded == expected.isSuccessful && import.LastImportSuccessful() == succeeded);
  Require(status == expected.status);
  Require(fake.files.OpenReaders() == 0 && fake.desktop.messages.empty());
  RequireOutcome(import, expected);
}

}  // namespace
}  // namespace vorquill21::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < vorquill21::test::kOptionBytes) return 0;
  vorquill21::test::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
