#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace vorquill21::tool {

/// A line on the terminal that tells how far a run has come, from half a second on; gone when it is
/// destroyed. It says how much of a known length is done, otherwise for how long the run has been going.
class Progress {
 public:
  /// Says nothing when not `isShown`.
  Progress(std::string what, bool isShown);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Something of `total` steps begins; 0 when that is not known.
  void Begin(std::uint64_t total) noexcept;
  /// Takes the line away for good, as the terminal is to show something else.
  void Stop();

  void Advance(std::uint64_t steps) noexcept { done_ += steps; }

 private:
  void Show();
  std::string Line(int tenths) const;

  std::string what_;
  std::atomic<std::uint64_t> done_ = 0;
  std::atomic<std::uint64_t> total_ = 0;
  std::mutex mutex_;
  std::condition_variable isOver_;
  bool ends_ = false;
  std::thread thread_;
};

}  // namespace vorquill21::tool
