#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdint>
#include <string>

#include "vorquill21/files/file.hpp"
#include "vorquill21/platform/locale.hpp"

namespace vorquill21 {
namespace {

constexpr std::size_t kLength = std::size_t{64} << 20;

/// Lines of numbers, as data files hold them.
const Text& SampleText() {
  static const Text text = [] {
    Text sample;
    sample.reserve(kLength);
    std::uint32_t state = 1;
    while (sample.size() < kLength) {
      state = state * 1664525 + 1013904223;
      const double value = static_cast<double>(state) / 256 - 8e6;
      const std::string line = std::to_string(value) + "\t\r\n";
      sample.append(line.begin(), line.end());
    }
    sample.resize(kLength);
    return sample;
  }();
  return text;
}

void OursCrc32Make(benchmark::State& state) {
  const Text& text = SampleText();
  const CFile file;
  for (auto _ : state) benchmark::DoNotOptimize(file.Crc32Make(text));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(OursCrc32Make)->Name("Crc32Make 64 MiB/ours")->Unit(benchmark::kMillisecond);

void ZlibCrc32(benchmark::State& state) {
  const std::string bytes = ToCodePage(Platform::Native().GetLocale(), SampleText());
  for (auto _ : state) {
    benchmark::DoNotOptimize(crc32_z(0, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
BENCHMARK(ZlibCrc32)->Name("Crc32Make 64 MiB/zlib")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vorquill21
