#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#ifdef VORQUILL21_BENCH_GLOG
#include <glog/logging.h>
#endif

#include "tests/support/temporary_folder.hpp"
#include "vorquill21/log/log.hpp"

namespace vorquill21 {
namespace {

constexpr std::int64_t kEntries = 100'000;
constexpr std::size_t kLogLength = std::size_t{100} << 20;

/// 80 characters.
constexpr std::string_view kLine =
    "channel 17: 2985.25 N at a slip angle of 4.5 degrees and a camber of -1.25 deg ";

std::size_t SizeOf(const std::filesystem::path& path) {
  return static_cast<std::size_t>(std::filesystem::file_size(path));
}

// --- One entry -------------------------------------------------------------------------------------------

/// Adds kEntries lines in each turn to a file that begins empty and must then hold all of them.
template <typename AddEntry>
void AddEntries(benchmark::State& state, const std::filesystem::path& path, AddEntry addEntry) {
  for (auto _ : state) {
    for (std::int64_t i = 0; i < kEntries; ++i) addEntry();
    state.PauseTiming();
    if (SizeOf(path) != kEntries * (kLine.size() + 2)) state.SkipWithError("lines are missing");
    std::filesystem::remove(path);
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kEntries);
}

void OursAddEntry(benchmark::State& state) {
  const test::TemporaryFolder folder;
  CLog log;
  log.Initialise(folder.Below(u"host.log"), 0, false, true, u"");
  const Text entry = FromUtf8(kLine);
  AddEntries(state, folder.Path() / "host.log", [&] { log.AddEntry(entry, logNormal); });
}
BENCHMARK(OursAddEntry)->Name("log entry/ours")->Unit(benchmark::kMillisecond);

void BareCalls(benchmark::State& state) {
  const test::TemporaryFolder folder;
  const std::string path = (folder.Path() / "host.log").string();
  const std::string line = std::string(kLine) + "\r\n";
  AddEntries(state, path, [&] {
    const int file = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (::write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) std::perror("write");
    ::close(file);
  });
}
BENCHMARK(BareCalls)->Name("log entry/open, write, close")->Unit(benchmark::kMillisecond);

void StandardStream(benchmark::State& state) {
  const test::TemporaryFolder folder;
  const std::filesystem::path path = folder.Path() / "host.log";
  AddEntries(state, path, [&] { std::ofstream(path, std::ios::binary | std::ios::app) << kLine << "\r\n"; });
}
BENCHMARK(StandardStream)->Name("log entry/std::ofstream for each")->Unit(benchmark::kMillisecond);

#ifdef VORQUILL21_BENCH_GLOG
/// The peer keeps its file open and puts time, thread and place before each line.
void Glog(benchmark::State& state) {
  static const test::TemporaryFolder folder;
  static const bool isReady = [] {
    FLAGS_logbufsecs = 0;
    FLAGS_stderrthreshold = google::NUM_SEVERITIES;
    google::InitGoogleLogging("vorquill21_bench");
    google::SetLogDestination(google::GLOG_INFO, (folder.Path() / "glog.").c_str());
    google::SetLogSymlink(google::GLOG_INFO, "");
    return true;
  }();
  if (!isReady) state.SkipWithError("not ready");
  for (auto _ : state) {
    for (std::int64_t i = 0; i < kEntries; ++i) LOG(INFO) << kLine;
  }
  state.SetItemsProcessed(state.iterations() * kEntries);
}
BENCHMARK(Glog)->Name("log entry/glog, flushed, file kept open")->Unit(benchmark::kMillisecond);
#endif

// --- The cut when a log is started -----------------------------------------------------------------------

/// Makes a log of kLogLength bytes, of which the last `kept` are written and the rest is empty.
void MakeLongLog(const std::filesystem::path& path, std::size_t kept) {
  std::ofstream(path, std::ios::binary).close();
  std::filesystem::resize_file(path, kLogLength - kept);
  std::ofstream(path, std::ios::binary | std::ios::app) << std::string(kept, 'x');
}

template <typename Cut>
void CutLongLog(benchmark::State& state, const std::filesystem::path& path, Cut cut) {
  const auto kept = static_cast<std::size_t>(state.range(0)) << 20;
  for (auto _ : state) {
    state.PauseTiming();
    MakeLongLog(path, kept);
    state.ResumeTiming();
    cut(kept);
    state.PauseTiming();
    if (SizeOf(path) < kept || SizeOf(path) > kept + 1000) state.SkipWithError("not cut");
    state.ResumeTiming();
  }
}

void OursStartLogging(benchmark::State& state) {
  const test::TemporaryFolder folder;
  CLog log;
  CutLongLog(state, folder.Path() / "host.log", [&](std::size_t kept) {
    log.Initialise(folder.Below(u"host.log"), static_cast<std::int32_t>(kept), false, true, u"TITLE");
    log.StartLogging();
  });
}
BENCHMARK(OursStartLogging)
    ->Name("StartLogging of 100 MiB, MiB kept/ours")
    ->Arg(1)
    ->Arg(50)
    ->Unit(benchmark::kMillisecond);

/// Reads what is kept, writes it to a file of its own, waits for the disk, renames that file, and waits for
/// the disk to know its name.
void BareCut(benchmark::State& state) {
  const test::TemporaryFolder folder;
  const std::string path = (folder.Path() / "host.log").string();
  const std::string temporary = path + ".new";
  CutLongLog(state, path, [&](std::size_t kept) {
    std::string bytes(kept, '\0');
    const int from = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const ssize_t read = ::pread(from, bytes.data(), kept, static_cast<off_t>(kLogLength - kept));
    ::close(from);
    const int to = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    const ssize_t written = ::write(to, bytes.data(), kept);
    if (read != written || ::fsync(to) != 0) std::perror("cut");
    ::close(to);
    ::rename(temporary.c_str(), path.c_str());
    const int names = ::open(folder.Path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (::fsync(names) != 0) std::perror("cut");
    ::close(names);
  });
}
BENCHMARK(BareCut)
    ->Name("StartLogging of 100 MiB, MiB kept/read, write, sync, rename")
    ->Arg(1)
    ->Arg(50)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vorquill21
