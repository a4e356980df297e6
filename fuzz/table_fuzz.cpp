// Any text is a table or refused, exactly as its lines and cells say, in memory of a small multiple of the
// text; and a table that was read can be written and read again.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/require.hpp"
#include "tests/filestream/literal_table.hpp"
#include "tests/support/fake_platform.hpp"
#include "tests/support/replaced_new.hpp"
#include "vorquill21/filestream/file_stream.hpp"

namespace vorquill21 {
namespace {

using test::BytesAskedBy;
using test::Require;
using test::SameBits;

/// What memory reading a table may take: eight bytes for each character, since a cell has one at least, and
/// something for the look-up, a message and separators that are replaced cell by cell.
std::size_t AllowedBytes(std::size_t length) {
  constexpr std::size_t kConstant = std::size_t{1} << 14;
  constexpr std::size_t kFactor = 40;
  return kConstant + kFactor * length;
}

void RequireCells(const BoundedArray<double>& table, const std::vector<std::vector<double>>& expected) {
  Require(table.BoundsOf(1) == Bounds{0, static_cast<std::int32_t>(expected.size()) - 1});
  Require(table.BoundsOf(2) == Bounds{0, static_cast<std::int32_t>(expected.front().size()) - 1});
  auto cell = table.Elements().begin();
  for (const auto& row : expected) {
    for (const double number : row) Require(SameBits(*cell++, number));
  }
}

/// The number that is left of a cell after writing and reading.
double Rewritten(double number) {
  if (static_cast<float>(number) == 0.0F) return 0.0;
  return TextToNumber(NumberToText(number, u'.'), u'.').value_or(0.0);
}

void WriteAndRead(CFileStream& stream, const BoundedArray<double>& table) {
  bool isWithinSinglePrecision = true;
  for (const double number : table.Elements())
    isWithinSinglePrecision &= !std::isinf(static_cast<float>(number));
  Require(stream.AddTable2d(u"COPY", table) == isWithinSinglePrecision);
  if (!isWithinSinglePrecision) return;
  const Variant read = stream.GetTable2d(u"COPY");
  const auto copy = read.As<BoundedArray<double>>().Elements();
  Require(copy.size() == table.Elements().size());
  for (std::size_t i = 0; i < copy.size(); ++i) Require(copy[i] == Rewritten(table.Elements()[i]));
}

}  // namespace
}  // namespace vorquill21

/// The first byte chooses the separators, the others are the text behind the name of the table.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vorquill21;
  if (size == 0) return 0;
  constexpr TextView kSeparators[] = {u".", u",", u";", u"E", u"1", u"ab", u"-"};
  const Text written(kSeparators[data[0] / 2 % std::size(kSeparators)]);
  test::FakePlatform fake;
  fake.locale.decimalSeparator = data[0] % 2 == 0 ? u'.' : u',';
  const Text record = FromCodePage(fake.locale, std::string(data + 1, data + size));

  CFileStream stream(fake.platform);
  stream.SetContents(Text(u"[DEC SEP]\t").append(written).append(u"\r\n[T]\t").append(record));
  Variant read;
  Require(BytesAskedBy([&] { read = stream.GetTable2d(u"T"); }) <= AllowedBytes(record.size()));

  Text fieldText = record.substr(0, record.find(u'['));
  while (!fieldText.empty() && fieldText.front() == u'\t') fieldText.erase(0, 1);
  fieldText.erase(fieldText.find_last_not_of(u"\r\n\t ") + 1);
  const auto expected = test::LiteralTable(fieldText, written, fake.locale.decimalSeparator);
  Require(read.IsEmpty() == !expected.has_value());
  Require(fake.desktop.messages.size() == (expected ? 0 : 1));
  if (!expected) return 0;
  const BoundedArray<double>& table = read.As<BoundedArray<double>>();
  Require(table.Elements().size() <= record.size());
  RequireCells(table, *expected);

  CFileStream other(fake.platform);
  other.Initialise(u"", BoundedArray<Variant>::Empty());
  WriteAndRead(other, table);
  return 0;
}
