// Numbers written as 15 digits and read back. The peers work on 8-bit text, ours on 16-bit text.

#include <benchmark/benchmark.h>
#include <fast_float/fast_float.h>
#include <fmt/compile.h>
#include <fmt/format.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

// Enough that the branch predictor cannot learn them by heart.
constexpr std::size_t kNumbers = 16384;

/// 15 significant digits, magnitudes from 1E-20 to 1E+20.
double LongNumber(std::mt19937_64& random) {
  std::uniform_real_distribution<double> significand(1.0, 10.0);
  std::uniform_int_distribution<int> exponent(-20, 19);
  const double size = significand(random) * std::pow(10.0, exponent(random));
  return random() % 2 == 0 ? size : -size;
}

/// What stands in data files: 0.11019, 1500000, -12.75, 0, 4.
double EngineeringNumber(std::mt19937_64& random) {
  constexpr double kScales[] = {1.0, 1.0, 10.0, 100.0, 100.0, 1000.0, 10000.0, 100000.0};
  std::uniform_int_distribution<std::int64_t> digits(1, 6);
  const double size = std::round(std::pow(10.0, static_cast<double>(digits(random))));
  const auto integer = static_cast<double>(random() % static_cast<std::uint64_t>(size));
  const double number = integer / kScales[random() % std::size(kScales)];
  return random() % 4 == 0 ? -number : number;
}

/// The same numbers as doubles and as texts, one after the other with tabs between them.
template <typename Unit>
struct Row {
  std::basic_string<Unit> text;
  std::vector<std::basic_string_view<Unit>> cells;

  explicit Row(const std::vector<double>& numbers) {
    std::vector<std::size_t> lengths;
    for (const double number : numbers) {
      char16_t units[kNumberTextCapacity];
      char16_t* const end = WriteNumber(number, u'.', units);
      lengths.push_back(static_cast<std::size_t>(end - units));
      text.append(units, end);
      text += static_cast<Unit>('\t');
    }
    std::size_t from = 0;
    for (const std::size_t length : lengths) {
      cells.push_back(std::basic_string_view<Unit>(text).substr(from, length));
      from += length + 1;
    }
  }
};

struct Sample {
  std::vector<double> numbers;
  Row<char16_t> units;
  Row<char> bytes;

  explicit Sample(std::vector<double> content)
      : numbers(std::move(content)), units(numbers), bytes(numbers) {}
};

/// Half long numbers, half engineering ones, in no order.
const Sample& Mixed() {
  static const Sample sample([] {
    std::mt19937_64 random(21);
    std::vector<double> numbers(kNumbers);
    for (double& number : numbers)
      number = random() % 2 == 0 ? LongNumber(random) : EngineeringNumber(random);
    return numbers;
  }());
  return sample;
}

const Sample& Engineering() {
  static const Sample sample([] {
    std::mt19937_64 random(22);
    std::vector<double> numbers(kNumbers);
    for (double& number : numbers) number = EngineeringNumber(random);
    return numbers;
  }());
  return sample;
}

using SampleMaker = const Sample& (*)();

void Report(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kNumbers));
}

std::string WrittenByFmt(double number) {
  std::string text = fmt::format(FMT_COMPILE("{:.15g}"), number);
  for (char& c : text) c = c == 'e' ? 'E' : c;
  return text == "-0" ? "0" : text;
}

void WriteWithOurs(benchmark::State& state, SampleMaker sample) {
  for (const double number : sample().numbers) {
    if (ToUtf8(NumberToText(number, u'.')) != WrittenByFmt(number))
      return state.SkipWithError("different texts");
  }
  char16_t text[kNumberTextCapacity];
  for (auto _ : state) {
    for (const double number : sample().numbers) {
      benchmark::DoNotOptimize(WriteNumber(number, u'.', text));
      benchmark::ClobberMemory();
    }
  }
  Report(state);
}

void WriteWithFmt(benchmark::State& state, SampleMaker sample) {
  char text[64];
  for (auto _ : state) {
    for (const double number : sample().numbers) {
      benchmark::DoNotOptimize(fmt::format_to(text, FMT_COMPILE("{:.15g}"), number));
      benchmark::ClobberMemory();
    }
  }
  Report(state);
}

bool SameBits(double left, double right) {
  return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

double ReadByPeer(std::string_view text) {
  double number = 0.0;
  fast_float::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

void ReadTextsWithOurs(benchmark::State& state, SampleMaker maker) {
  const Sample& sample = maker();
  for (std::size_t i = 0; i < kNumbers; ++i) {
    const auto ours = TextToNumber(sample.units.cells[i], u'.');
    if (!ours || !SameBits(*ours, ReadByPeer(sample.bytes.cells[i])))
      return state.SkipWithError("different numbers");
  }
  for (auto _ : state) {
    for (const TextView text : sample.units.cells) benchmark::DoNotOptimize(TextToNumber(text, u'.'));
  }
  Report(state);
}

void ReadTextsWithPeer(benchmark::State& state, SampleMaker sample) {
  for (auto _ : state) {
    for (const std::string_view text : sample().bytes.cells) benchmark::DoNotOptimize(ReadByPeer(text));
  }
  Report(state);
}

template <typename Unit>
void ReadRowWithOurs(benchmark::State& state, const Row<Unit>& row) {
  for (auto _ : state) {
    const Unit* at = row.text.data();
    const Unit* const end = at + row.text.size();
    while (at != end) {
      const auto parsed = ParseNumber(at, end, static_cast<Unit>('.'));
      benchmark::DoNotOptimize(parsed.value);
      at = parsed.end + 1;
    }
  }
  Report(state);
}

void ReadUnitRowWithOurs(benchmark::State& state, SampleMaker sample) {
  ReadRowWithOurs(state, sample().units);
}

void ReadByteRowWithOurs(benchmark::State& state, SampleMaker sample) {
  ReadRowWithOurs(state, sample().bytes);
}

void ReadRowWithPeer(benchmark::State& state, SampleMaker sample) {
  const std::string& text = sample().bytes.text;
  for (auto _ : state) {
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
      double number = 0.0;
      at = fast_float::from_chars(at, end, number).ptr + 1;
      benchmark::DoNotOptimize(number);
    }
  }
  Report(state);
}

BENCHMARK_CAPTURE(WriteWithOurs, mixed, Mixed)->Name("number to text/ours");
BENCHMARK_CAPTURE(WriteWithFmt, mixed, Mixed)->Name("number to text/fmt");
BENCHMARK_CAPTURE(WriteWithOurs, engineering, Engineering)->Name("number to text, engineering/ours");
BENCHMARK_CAPTURE(WriteWithFmt, engineering, Engineering)->Name("number to text, engineering/fmt");

BENCHMARK_CAPTURE(ReadTextsWithOurs, mixed, Mixed)->Name("text to number/ours");
BENCHMARK_CAPTURE(ReadTextsWithPeer, mixed, Mixed)->Name("text to number/fast_float");
BENCHMARK_CAPTURE(ReadTextsWithOurs, engineering, Engineering)->Name("text to number, engineering/ours");
BENCHMARK_CAPTURE(ReadTextsWithPeer, engineering, Engineering)
    ->Name("text to number, engineering/fast_float");

BENCHMARK_CAPTURE(ReadUnitRowWithOurs, mixed, Mixed)->Name("text to number, row of 16-bit text/ours");
BENCHMARK_CAPTURE(ReadRowWithPeer, mixed, Mixed)->Name("text to number, row of 16-bit text/fast_float");
BENCHMARK_CAPTURE(ReadByteRowWithOurs, mixed, Mixed)->Name("text to number, row of bytes/ours");
BENCHMARK_CAPTURE(ReadRowWithPeer, mixed, Mixed)->Name("text to number, row of bytes/fast_float");

}  // namespace
}  // namespace vorquill21
