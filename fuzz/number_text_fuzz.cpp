// Any bytes as a text and as a number: what is read agrees with the standard library to the bit, whole texts
// and beginnings of texts agree with each other, and what is written agrees with the standard library and is
// read back.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "fuzz/require.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

using test::Require;
using test::SameBits;

/// A copy without room behind it, so that reading on is noticed.
template <typename Unit>
std::vector<Unit> Tight(TextView text) {
  std::vector<Unit> units;
  units.reserve(text.size());
  for (const char16_t unit : text) units.push_back(static_cast<Unit>(unit));
  return units;
}

// --- From texts to numbers ---------------------------------------------------------------------------------

bool IsOneOf(TextView text, std::size_t at, TextView units) {
  return at < text.size() && units.find(text[at]) != TextView::npos;
}

bool IsDigit(TextView text, std::size_t at) {
  return IsOneOf(text, at, u"0123456789");
}

struct Number {
  std::size_t length = 0;
  double value = 0.0;
};

/// The longest number at the beginning of the text, by the standard library.
Number NumberAtBeginning(TextView text, char16_t separator) {
  std::string plain = "0";
  std::size_t at = IsOneOf(text, 0, u"+-") ? 1 : 0;
  bool hasDigit = false;
  bool hasSeparator = false;
  for (; at < text.size(); ++at) {
    if (!IsDigit(text, at) && (text[at] != separator || hasSeparator)) break;
    hasDigit |= IsDigit(text, at);
    hasSeparator |= !IsDigit(text, at);
    plain += IsDigit(text, at) ? static_cast<char>(text[at]) : '.';
  }
  if (!hasDigit) return {};
  if (IsOneOf(text, at, u"EeDd")) {
    std::size_t digit = at + (IsOneOf(text, at + 1, u"+-") ? 2 : 1);
    if (IsDigit(text, digit)) {
      plain += IsOneOf(text, at + 1, u"-") ? "e-" : "e";
      for (; IsDigit(text, digit); ++digit) plain += static_cast<char>(text[digit]);
      at = digit;
    }
  }
  double size = 0.0;
  const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), size);
  if (result.ec == std::errc::result_out_of_range) size = std::strtod(plain.c_str(), nullptr);
  return {at, IsOneOf(text, 0, u"-") ? -size : size};
}

constexpr TextView kWhiteSpace = u" \t\r\n";

template <typename Unit>
void CheckReading(TextView text, char16_t separator) {
  const std::vector<Unit> units = Tight<Unit>(text);
  const Unit* const begin = units.data();
  const std::basic_string_view<Unit> view(begin, units.size());
  const auto unitSeparator = static_cast<Unit>(separator);

  const Number expected = NumberAtBeginning(text, separator);
  const auto parsed = ParseNumber(begin, begin + units.size(), unitSeparator);
  Require(parsed.end == begin + expected.length);
  Require(SameBits(parsed.value, expected.value));

  const std::size_t start = std::min(text.find_first_not_of(kWhiteSpace), text.size());
  const Number inside = NumberAtBeginning(text.substr(start), separator);
  const bool isWhole = inside.length > 0 && std::isfinite(inside.value) &&
                       text.find_first_not_of(kWhiteSpace, start + inside.length) == TextView::npos;
  const auto whole = TextToNumber(view, unitSeparator);
  Require(whole.has_value() == isWhole);
  Require(!isWhole || SameBits(*whole, inside.value));

  const std::size_t blanks = std::min(text.find_first_not_of(u' '), text.size());
  const double leading = NumberAtBeginning(text.substr(blanks), u'.').value;
  try {
    Require(SameBits(LeadingNumber(view), leading));
  } catch (const LibraryError& error) {
    Require(error.Number() == kOverflow && std::isinf(leading));
  }
}

// --- From numbers to texts ---------------------------------------------------------------------------------

void CheckWriting(double value) {
  std::vector<char16_t> units(kNumberTextCapacity);
  const TextView written(units.data(),
                         static_cast<std::size_t>(WriteNumber(value, u'.', units.data()) - units.data()));
  Require(written == NumberToText(value, u'.'));
  if (!std::isfinite(value)) return Require(!TextToNumber(written, u'.'));

  char expected[40];
  const auto end = std::to_chars(expected, expected + sizeof expected, value == 0.0 ? 0.0 : value,
                                 std::chars_format::general, 15);
  Text upper(expected, end.ptr);
  for (char16_t& unit : upper) unit = unit == u'e' ? u'E' : unit;
  Require(written == upper);

  const auto read = TextToNumber(written, u'.');
  if (!read) return Require(std::abs(value) > 1.79769313486231e308);  // rounded up beyond the largest double
  Require(NumberToText(*read, u'.') == written || std::abs(value) < 1e-307);
}

void Check(const std::uint8_t* data, std::size_t size) {
  constexpr char16_t kSeparators[] = {u'.', u',', u'.', u',', u'\x66B',  u'\xFF',   u'\xB7',  u'\0',
                                      u'E', u'-', u'5', u' ', u'\xFFFF', u'\x8000', u'\x12E', u'x'};
  const char16_t separator = kSeparators[data[0] % std::size(kSeparators)];
  ++data;
  --size;
  const Text text(data, data + size);
  CheckReading<char16_t>(text, separator);
  if (separator <= 0xFF) CheckReading<char>(text, separator);

  Text pairs(size / sizeof(char16_t), u'\0');
  std::memcpy(pairs.data(), data, pairs.size() * sizeof(char16_t));
  CheckReading<char16_t>(pairs, separator);

  double value = 0.0;
  std::memcpy(&value, data, std::min(size, sizeof value));
  CheckWriting(value);
}

}  // namespace
}  // namespace vorquill21

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  vorquill21::Check(data, size);
  return 0;
}
