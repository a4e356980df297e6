// The command line taken apart, against a machine that goes from unit to unit.
//
// Input: the line; each byte of it is one unit.

#include <cstddef>
#include <cstdint>

#include "fuzz/require.hpp"
#include "tests/support/fake_platform.hpp"
#include "tests/support/string_reference.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {
namespace {

using test::Require;

void Check(const Text& line) {
  test::FakePlatform fake;
  fake.process.commandLine = line;
  const CString strings(fake.platform);
  const Variant list = strings.CommandLineArgumentsParse(true, line);
  Require(list == test::ParseStepByStep(line));
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
