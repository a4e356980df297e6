#include <benchmark/benchmark.h>
#include <fast_float/fast_float.h>
#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "vorquill21/filestream/file_stream.hpp"

namespace vorquill21 {
namespace {

constexpr std::int32_t kSide = 1000;

void ReportItems(benchmark::State& state, std::size_t itemsPerRound) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(itemsPerRound));
}

// --- Tables ----------------------------------------------------------------------------------------------

/// Numbers as they come out of measurements and computations: half of them with all their digits, half
/// rounded.
const BoundedArray<double>& SampleTable() {
  static const BoundedArray<double> table = [] {
    std::mt19937_64 random(21);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    std::uniform_int_distribution<int> exponent(-6, 6);
    BoundedArray<double> sample({0, kSide - 1}, {0, kSide - 1});
    bool isRounded = false;
    for (double& cell : sample.Elements()) {
      cell = mantissa(random) * std::pow(10.0, exponent(random));
      if (isRounded) cell = std::round(cell * 1000.0) / 1000.0;
      isRounded = !isRounded;
    }
    return sample;
  }();
  return table;
}

void AddTable2dOfOurs(benchmark::State& state) {
  test::FakePlatform fake;
  const Variant table = SampleTable();
  for (auto _ : state) {
    CFileStream stream(fake.platform);
    benchmark::DoNotOptimize(stream.AddTable2d(u"TABLE", table));
  }
  ReportItems(state, SampleTable().Elements().size());
}
BENCHMARK(AddTable2dOfOurs)->Name("AddTable2d 1000 x 1000/ours")->Unit(benchmark::kMillisecond);

/// The same text in bytes.
void AppendTable(const BoundedArray<double>& table, fmt::memory_buffer& bytes) {
  const double* cell = table.Elements().data();
  for (int row = 0; row < kSide; ++row) {
    for (int column = 0; column < kSide; ++column) {
      if (column > 0) bytes.push_back('\t');
      fmt::format_to(std::back_inserter(bytes), "{:.15g}", *cell++);
    }
    bytes.push_back('\r');
    bytes.push_back('\n');
  }
}

void AddTable2dOfFmt(benchmark::State& state) {
  const BoundedArray<double>& table = SampleTable();
  for (auto _ : state) {
    fmt::memory_buffer bytes;
    AppendTable(table, bytes);
    benchmark::DoNotOptimize(bytes.data());
  }
  ReportItems(state, table.Elements().size());
}
BENCHMARK(AddTable2dOfFmt)->Name("AddTable2d 1000 x 1000/fmt")->Unit(benchmark::kMillisecond);

void GetTable2dOfOurs(benchmark::State& state) {
  test::FakePlatform fake;
  CFileStream stream(fake.platform);
  stream.AddTable2d(u"TABLE", SampleTable());
  for (auto _ : state) benchmark::DoNotOptimize(stream.GetTable2d(u"TABLE"));
  ReportItems(state, SampleTable().Elements().size());
}
BENCHMARK(GetTable2dOfOurs)->Name("GetTable2d 1000 x 1000/ours")->Unit(benchmark::kMillisecond);

void GetTable2dOfFastFloat(benchmark::State& state) {
  fmt::memory_buffer bytes;
  AppendTable(SampleTable(), bytes);
  for (auto _ : state) {
    std::vector<double> cells;
    cells.reserve(SampleTable().Elements().size());
    const char* at = bytes.begin();
    while (at < bytes.end()) {
      double number = 0.0;
      at = fast_float::from_chars(at, bytes.end(), number).ptr;
      cells.push_back(number);
      at += *at == '\t' ? 1 : 2;
    }
    benchmark::DoNotOptimize(cells.data());
  }
  ReportItems(state, SampleTable().Elements().size());
}
BENCHMARK(GetTable2dOfFastFloat)->Name("GetTable2d 1000 x 1000/fast_float")->Unit(benchmark::kMillisecond);

// --- Fields ----------------------------------------------------------------------------------------------

struct Sample {
  std::string name;
  Text wideName;
  double number = 0.0;
  std::string numberText;
};

std::vector<Sample> SampleFields(std::size_t count) {
  std::mt19937_64 random(7);
  std::vector<Sample> samples;
  for (std::size_t i = 0; i < count; ++i) {
    Sample sample;
    sample.name = "LATERAL FORCE DATA " + std::to_string(i);
    sample.wideName = FromUtf8(sample.name);
    sample.number = static_cast<double>(random() % 100'000'000) / 1000.0;
    sample.numberText = fmt::format("{:.15g}", sample.number);
    samples.push_back(std::move(sample));
  }
  return samples;
}

std::vector<Sample> ShuffledFields(std::size_t count) {
  std::vector<Sample> samples = SampleFields(count);
  std::shuffle(samples.begin(), samples.end(), std::mt19937_64(9));
  return samples;
}

std::size_t FieldsOf(const benchmark::State& state) {
  return static_cast<std::size_t>(state.range(0));
}

void AddEach(CFileStream& stream, const std::vector<Sample>& samples) {
  for (const Sample& sample : samples) stream.AddField(sample.wideName, sample.number);
}

// Both build the text of a file.

void BuildingOfOurs(benchmark::State& state) {
  test::FakePlatform fake;
  const std::vector<Sample> samples = SampleFields(FieldsOf(state));
  for (auto _ : state) {
    CFileStream stream(fake.platform);
    AddEach(stream, samples);
    benchmark::DoNotOptimize(stream.GetContents());
  }
  ReportItems(state, samples.size());
}
BENCHMARK(BuildingOfOurs)->Name("data file built field by field/ours")->Arg(100)->Arg(10'000);

void BuildingOfJson(benchmark::State& state) {
  const std::vector<Sample> samples = SampleFields(FieldsOf(state));
  for (auto _ : state) {
    nlohmann::json json;
    for (const Sample& sample : samples) json[sample.name] = sample.number;
    benchmark::DoNotOptimize(json.dump());
  }
  ReportItems(state, samples.size());
}
BENCHMARK(BuildingOfJson)->Name("data file built field by field/nlohmann_json")->Arg(100)->Arg(10'000);

void GetFieldNumberOfOurs(benchmark::State& state) {
  test::FakePlatform fake;
  CFileStream stream(fake.platform);
  AddEach(stream, SampleFields(FieldsOf(state)));
  const std::vector<Sample> sought = ShuffledFields(FieldsOf(state));
  for (auto _ : state) {
    for (const Sample& sample : sought) benchmark::DoNotOptimize(stream.GetFieldNumber(sample.wideName));
  }
  ReportItems(state, sought.size());
}
BENCHMARK(GetFieldNumberOfOurs)->Name("GetFieldNumber/ours")->Arg(100)->Arg(10'000);

void GetFieldNumberOfMap(benchmark::State& state) {
  std::unordered_map<std::string, std::string> map;
  for (const Sample& sample : SampleFields(FieldsOf(state))) map[sample.name] = sample.numberText;
  const std::vector<Sample> sought = ShuffledFields(FieldsOf(state));
  for (auto _ : state) {
    for (const Sample& sample : sought) {
      benchmark::DoNotOptimize(std::strtod(map.find(sample.name)->second.c_str(), nullptr));
    }
  }
  ReportItems(state, sought.size());
}
BENCHMARK(GetFieldNumberOfMap)->Name("GetFieldNumber/unordered_map")->Arg(100)->Arg(10'000);

void ReplacingOfOurs(benchmark::State& state) {
  test::FakePlatform fake;
  CFileStream stream(fake.platform);
  const std::vector<Sample> samples = ShuffledFields(FieldsOf(state));
  AddEach(stream, samples);
  for (auto _ : state) AddEach(stream, samples);
  ReportItems(state, samples.size());
}
BENCHMARK(ReplacingOfOurs)->Name("AddField over an existing field/ours")->Arg(10'000);

void ReplacingOfJson(benchmark::State& state) {
  nlohmann::json json;
  for (const Sample& sample : SampleFields(FieldsOf(state))) json[sample.name] = sample.number;
  const std::vector<Sample> samples = ShuffledFields(FieldsOf(state));
  for (auto _ : state) {
    for (const Sample& sample : samples) json[sample.name] = sample.number;
    benchmark::DoNotOptimize(json);
  }
  ReportItems(state, samples.size());
}
BENCHMARK(ReplacingOfJson)->Name("AddField over an existing field/nlohmann_json")->Arg(10'000);

// --- Files -----------------------------------------------------------------------------------------------

/// A data file of 100 MB, as long as it lives.
class LargeFile {
 public:
  LargeFile() : path_(std::filesystem::temp_directory_path() / "vorquill21_file_stream_bench.txt") {
    constexpr std::size_t kLength = 100'000'000;
    std::ofstream file(path_, std::ios::binary);
    std::string line = "[DEC SEP]\t.\r\n";
    for (std::size_t written = 0; written + line.size() < kLength; ++count_) {
      file << line;
      written += line.size();
      line = "[LATERAL FORCE DATA " + std::to_string(count_) + "]\t" + std::to_string(count_) + ".5" + "\r\n";
    }
    file << "[LAST FIELD]\t4.25\r\n\r\n";
  }
  ~LargeFile() { std::filesystem::remove(path_); }
  LargeFile(const LargeFile&) = delete;
  LargeFile& operator=(const LargeFile&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::size_t Length() const { return static_cast<std::size_t>(std::filesystem::file_size(path_)); }

 private:
  std::filesystem::path path_;
  std::size_t count_ = 0;
};

void FileReadOfOurs(benchmark::State& state) {
  const LargeFile file;
  const Text path = FromUtf8(file.Path().string());
  for (auto _ : state) {
    CFileStream stream;
    stream.FileRead(path);
    if (stream.GetFieldNumber(u"LAST FIELD") != Variant(4.25)) state.SkipWithError("field not found");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.Length()));
}
BENCHMARK(FileReadOfOurs)->Name("FileRead of 100 MB and one look-up/ours")->Unit(benchmark::kMillisecond);

void FileReadOfTheSystem(benchmark::State& state) {
  const LargeFile file;
  for (auto _ : state) {
    const auto bytes = std::make_unique_for_overwrite<char[]>(file.Length());
    std::FILE* const stream = std::fopen(file.Path().string().c_str(), "rb");
    std::setvbuf(stream, nullptr, _IONBF, 0);
    if (std::fread(bytes.get(), 1, file.Length(), stream) != file.Length())
      state.SkipWithError("file not read");
    std::fclose(stream);
    benchmark::DoNotOptimize(bytes[file.Length() / 2]);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.Length()));
}
BENCHMARK(FileReadOfTheSystem)
    ->Name("FileRead of 100 MB and one look-up/read")
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vorquill21
