// The command line taken apart, against a machine that goes from unit to unit.
//
// Input: the line; each byte of it is one unit.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {
namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

Variant ParseStepByStep(TextView line) {
  std::vector<Text> texts(1);
  bool inArgument = false;
  bool inQuote = false;
  for (const char16_t unit : line) {
    const bool wasInArgument = inArgument;
    if (wasInArgument && unit == (inQuote ? u'"' : u' ')) inArgument = inQuote = false;
    if (!wasInArgument && unit != u' ') {
      texts.emplace_back();
      inArgument = true;
      inQuote = unit == u'"';
    }
    if (inArgument && unit != u'"') texts.back() += unit;
  }
  std::vector<Variant> list;
  for (const Text& text : texts) list.push_back(text.empty() ? Variant() : Variant(text));
  return BoundedArray<Variant>(std::move(list));
}

void Check(const Text& line) {
  test::FakePlatform fake;
  fake.process.commandLine = line;
  const CString strings(fake.platform);
  const Variant list = strings.CommandLineArgumentsParse(true, line);
  Require(list == ParseStepByStep(line));
  Require(list == strings.CommandLineArgumentsParse());

  const std::int32_t last = ArrayBounds(list).upper;
  const Text name = ToText(ArrayElement(list, last), u'.');
  const std::int32_t found = strings.CommandLineArgumentIndex(list, UpperCase(name));
  Require(found <= last && EqualIgnoringCase(ToText(ArrayElement(list, found), u'.'), name));
}

}  // namespace
}  // namespace vorquill21

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vorquill21::Check(vorquill21::Text(data, data + size));
  return 0;
}
