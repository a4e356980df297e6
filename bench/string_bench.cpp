#include <benchmark/benchmark.h>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <random>
#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {
namespace {

constexpr std::size_t kUnits = 64 * 1024;

/// Words of 1 to 10 letters, separated by `separator` 1 to 3 times.
Text Words(TextView separator) {
  std::mt19937 random(21);
  const auto below = [&random](unsigned end) { return static_cast<unsigned>(random() % end); };
  Text text;
  while (text.size() < kUnits) {
    for (unsigned letters = 1 + below(10); letters > 0; --letters)
      text += static_cast<char16_t>(u'a' + below(26));
    for (unsigned times = 1 + below(3); times > 0; --times) text += separator;
  }
  text.resize(kUnits);
  text.back() = u'z';  // no delimiter at the end: all ways of splitting give the same elements
  return text;
}

void Report(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kUnits));
}

std::vector<Text> SplitByPeer(const Text& text) {
  std::vector<Text> elements;
  boost::split(elements, text, boost::is_any_of(u" "));
  return elements;
}

bool SameElements(const Variant& ours, const std::vector<Text>& theirs) {
  return std::ranges::equal(ours.As<BoundedArray<Text>>().Elements(), theirs);
}

void Split5OfOurs(benchmark::State& state) {
  test::FakePlatform fake;
  const CString strings(fake.platform);
  const Text text = Words(u" ");
  if (!SameElements(strings.Split5(text), SplitByPeer(text)))
    return state.SkipWithError("different elements");
  for (auto _ : state) benchmark::DoNotOptimize(strings.Split5(text));
  Report(state);
}
BENCHMARK(Split5OfOurs)->Name("split with Split5/ours");

void SplitMultiOfOurs(benchmark::State& state) {
  test::FakePlatform fake;
  const CString strings(fake.platform);
  const Text text = Words(u" ");
  if (!SameElements(strings.SplitMulti(text), SplitByPeer(text)))
    return state.SkipWithError("different elements");
  for (auto _ : state) benchmark::DoNotOptimize(strings.SplitMulti(text));
  Report(state);
}
BENCHMARK(SplitMultiOfOurs)->Name("split with SplitMulti/ours");

void SplitOfPeer(benchmark::State& state) {
  const Text text = Words(u" ");
  for (auto _ : state) benchmark::DoNotOptimize(SplitByPeer(text));
  Report(state);
}
BENCHMARK(SplitOfPeer)->Name("split with Split5/boost");
BENCHMARK(SplitOfPeer)->Name("split with SplitMulti/boost");

/// One pass by hand over what std::u16string offers.
Text ReplaceRunsByHand(const Text& text, const Text& find, const Text& replacement) {
  Text result;
  result.reserve(text.size());
  std::size_t from = 0;
  for (std::size_t at; (at = text.find(find, from)) != Text::npos;) {
    result.append(text, from, at - from).append(replacement);
    from = at + find.size();
    while (text.compare(from, find.size(), find) == 0) from += find.size();
  }
  return result.append(text, from);
}

void ReplaceMultiOfOurs(benchmark::State& state, const Text& find) {
  test::FakePlatform fake;
  const CString strings(fake.platform);
  const Text text = Words(find);
  if (strings.ReplaceMulti(text, find, u",") != ReplaceRunsByHand(text, find, u",")) {
    return state.SkipWithError("different texts");
  }
  for (auto _ : state) benchmark::DoNotOptimize(strings.ReplaceMulti(text, find, u","));
  Report(state);
}
BENCHMARK_CAPTURE(ReplaceMultiOfOurs, blanks, u" ")->Name("replace runs of blanks/ours");
BENCHMARK_CAPTURE(ReplaceMultiOfOurs, lineEnds, u"\r\n")->Name("replace runs of line ends/ours");

void ReplaceRunsOfPeer(benchmark::State& state, const Text& find) {
  const Text text = Words(find);
  for (auto _ : state) benchmark::DoNotOptimize(ReplaceRunsByHand(text, find, u","));
  Report(state);
}
BENCHMARK_CAPTURE(ReplaceRunsOfPeer, blanks, u" ")->Name("replace runs of blanks/by hand");
BENCHMARK_CAPTURE(ReplaceRunsOfPeer, lineEnds, u"\r\n")->Name("replace runs of line ends/by hand");

}  // namespace
}  // namespace vorquill21
