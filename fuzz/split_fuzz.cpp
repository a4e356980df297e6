// Splitting and replacing against implementations that do one step at a time.
//
// Input: a byte of flags, the limit, the lengths of the delimiter and of the replacement, these two, and the
// text; each byte of them is one unit.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "fuzz/require.hpp"
#include "tests/support/fake_platform.hpp"
#include "tests/support/string_reference.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {
namespace {

using test::ReplaceMultiStepByStep;
using test::Require;
using test::SplitStepByStep;

/// Takes the input apart from its start; what is missing at its end is 0 or empty.
class Input {
 public:
  explicit Input(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  std::uint8_t Byte() {
    const Text unit = Units(1);
    return unit.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(unit.front());
  }

  Text Units(std::size_t count) {
    const auto taken = bytes_.first(std::min(count, bytes_.size()));
    bytes_ = bytes_.subspan(taken.size());
    return Text(taken.begin(), taken.end());
  }

  Text Rest() { return Units(bytes_.size()); }

 private:
  std::span<const std::uint8_t> bytes_;
};

Text Join(std::span<const Text> elements, TextView delimiter) {
  Text joined;
  for (const Text& element : elements) joined.append(element).append(delimiter);
  if (!elements.empty()) joined.resize(joined.size() - delimiter.size());
  return joined;
}

/// The elements that Split5 gives; none when it raises the error for that.
std::vector<Text> Split5(const CString& strings, const Text& text, const Text& delimiter, std::int32_t limit,
                         std::int32_t compareMethod, bool skipsEmpty) {
  try {
    const Variant result = strings.Split5(text, delimiter, limit, compareMethod, skipsEmpty);
    const auto elements = result.As<BoundedArray<Text>>().Elements();
    Require(!elements.empty());
    return {elements.begin(), elements.end()};
  } catch (const LibraryError& error) {
    Require(error.Number() == kSubscriptOutOfRange);
    return {};
  }
}

void CheckSplit5(const CString& strings, const Text& text, const Text& delimiter, std::int32_t limit,
                 bool skipsEmpty) {
  const auto exact = Split5(strings, text, delimiter, limit, kCompareExact, skipsEmpty);
  Require(exact == SplitStepByStep(text, delimiter, limit, skipsEmpty));

  auto ignoringCase = Split5(strings, text, delimiter, limit, kCompareIgnoringCase, skipsEmpty);
  for (Text& element : ignoringCase) element = UpperCase(element);
  Require(ignoringCase == SplitStepByStep(UpperCase(text), UpperCase(delimiter), limit, skipsEmpty));

  const Text joined = Join(Split5(strings, text, delimiter, -1, kCompareExact, false), delimiter);
  Require(joined == text || joined + delimiter == text);
}

void CheckSplitMulti(const CString& strings, const Text& text, const Text& delimiter) {
  const Variant everywhere = strings.SplitMulti(text, delimiter);
  const auto elements = everywhere.As<BoundedArray<Text>>().Elements();
  Require(Join(elements, delimiter) == text);
  for (const Text& element : elements) Require(element.find(delimiter) == Text::npos);

  std::vector<Variant> expected;
  for (const Text& element : elements) {
    if (!element.empty()) expected.emplace_back(element);
  }
  if (expected.empty()) expected.resize(101);
  Require(strings.SplitMulti(text, delimiter, true) == Variant(BoundedArray<Variant>(std::move(expected))));
}

void Check(Input input) {
  test::FakePlatform fake;
  const CString strings(fake.platform);
  const bool skipsEmpty = input.Byte() % 2 == 1;
  const auto limit = static_cast<std::int8_t>(input.Byte());
  const std::size_t delimiterLength = 1 + input.Byte() % 16u;
  const std::size_t replacementLength = input.Byte() % 24u;
  const Text delimiter = input.Units(delimiterLength);
  const Text replacement = input.Units(replacementLength);
  const Text text = input.Rest();
  if (text.empty()) return;
  CheckSplit5(strings, text, delimiter, limit, skipsEmpty);
  CheckSplitMulti(strings, text, delimiter);
  Require(strings.ReplaceMulti(text, delimiter, replacement) ==
          ReplaceMultiStepByStep(text, delimiter, replacement));
}

}  // namespace
}  // namespace vorquill21

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vorquill21::Check(vorquill21::Input({data, size}));
  return 0;
}
