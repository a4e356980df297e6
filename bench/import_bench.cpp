#include <benchmark/benchmark.h>
#include <fast_float/fast_float.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "vorquill21/import/import_column_data.hpp"

namespace vorquill21 {
namespace {

constexpr int kRows = 1000000;
constexpr std::size_t kColumns = 8;

/// A file of 1e6 rows of 8 tab-separated values under a header line, removed when the program ends. The same
/// bytes are made by import_pandas.py.
class SampleFile {
 public:
  static const std::filesystem::path& Path() {
    static const SampleFile file;
    return file.path_;
  }

 private:
  SampleFile() : path_(std::filesystem::temp_directory_path() / "vorquill21-import-bench.txt") {
    std::ofstream file(path_, std::ios::binary);
    file << "Row\tTime\tStrain\tAngle\tPosition\tCurrent\tLoad\tTemperature\r\n";
    std::array<char, 256> line;
    for (int row = 0; row < kRows; ++row) {
      const std::array random{Random(100000),   Random(90),       Random(100), Random(9),
                              Random(10000000), Random(10000000), Random(9),   Random(100000),
                              Random(20),       Random(1000000),  Random(300), Random(100)};
      const int length = std::snprintf(
          line.data(), line.size(),
          "%d\t%d.%03d\t0.%05u\t-%u.%02u\t%u.%07u%07u\t%u.%05uE-%02u\t%u\t%u.%02u\r\n", row, row / 1000,
          row % 1000, random[0], random[1], random[2], 1 + random[3], random[4], random[5], 1 + random[6],
          random[7], 1 + random[8], random[9], random[10], random[11]);
      file.write(line.data(), length);
    }
  }
  ~SampleFile() { std::filesystem::remove(path_); }

  unsigned Random(unsigned count) {
    state_ = state_ * 1664525 + 1013904223;
    return (state_ >> 8) % count;
  }

  std::filesystem::path path_;
  std::uint32_t state_ = 1;
};

void Ours(benchmark::State& state) {
  const Text path = FromUtf8(SampleFile::Path().string());
  for (auto _ : state) {
    CImportColumnData import;
    import.Filepath(path);
    import.Delimiter(u"\t");
    import.HeaderRow(1);
    import.FirstValueRow(2);
    if (!import.Import() || import.DataRowCount() != kRows) state.SkipWithError("the import failed");
  }
  state.SetItemsProcessed(state.iterations() * kRows * std::int64_t{kColumns});
}
BENCHMARK(Ours)->Name("Import 1e6 x 8/ours")->Unit(benchmark::kMillisecond);

using Columns = std::array<std::vector<double>, kColumns>;

/// Takes the rows of whole lines, which end in CR LF, apart.
bool ParseLines(const char* next, const char* end, Columns& columns) {
  while (next != end) {
    for (std::size_t column = 0; column < kColumns; ++column) {
      double value;
      const auto parsed = fast_float::from_chars(next, end, value);
      const char delimiter = column + 1 < kColumns ? '\t' : '\r';
      if (parsed.ec != std::errc() || *parsed.ptr != delimiter) return false;
      columns[column].push_back(value);
      next = parsed.ptr + 1;
    }
    ++next;
  }
  return true;
}

/// The straightforward reader of such a file: blocks of whole lines, and a number after the other.
bool ReadWithFastFloat(const char* path, Columns& columns) {
  constexpr std::size_t kBlockLength = std::size_t{1} << 16;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rb"), &std::fclose);
  if (file == nullptr) return false;
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  std::vector<char> block(kBlockLength);
  std::size_t held = 0;
  bool isFirst = true;
  for (;;) {
    held += std::fread(block.data() + held, 1, block.size() - held, file.get());
    if (held == 0) return true;
    const std::string_view bytes(block.data(), held);
    const std::size_t from = isFirst ? bytes.find('\n') + 1 : 0;
    const std::size_t to = bytes.rfind('\n') + 1;
    if (to == 0 || !ParseLines(block.data() + from, block.data() + to, columns)) return false;
    isFirst = false;
    held -= to;
    std::memmove(block.data(), block.data() + to, held);
  }
}

void FastFloat(benchmark::State& state) {
  const std::string path = SampleFile::Path().string();
  for (auto _ : state) {
    Columns columns;
    if (!ReadWithFastFloat(path.c_str(), columns) || columns[7].size() != kRows) {
      state.SkipWithError("the reading failed");
    }
    benchmark::DoNotOptimize(columns);
  }
  state.SetItemsProcessed(state.iterations() * kRows * std::int64_t{kColumns});
}
BENCHMARK(FastFloat)->Name("Import 1e6 x 8/fast_float")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vorquill21
