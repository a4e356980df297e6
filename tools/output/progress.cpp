#include "output/progress.hpp"

#include <chrono>
#include <iostream>
#include <utility>

namespace vorquill21::tool {

Progress::Progress(std::string what, bool isShown) : what_(std::move(what)) {
  if (isShown) thread_ = std::thread([this] { Show(); });
}

Progress::~Progress() {
  Stop();
}

void Progress::Stop() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  isOver_.notify_one();
  thread_.join();
}

void Progress::Begin(std::uint64_t total) noexcept {
  done_ = 0;
  total_ = total;
}

void Progress::Show() {
  constexpr int kFirstTenths = 5;
  constexpr int kStepTenths = 2;
  const auto wait = [this](int tenths) {
    std::unique_lock lock(mutex_);
    return isOver_.wait_for(lock, std::chrono::milliseconds(100 * tenths), [this] { return ends_; });
  };
  if (wait(kFirstTenths)) return;
  int tenths = kFirstTenths;
  do {
    std::cerr << "\r\033[K" << Line(tenths) << std::flush;
    tenths += kStepTenths;
  } while (!wait(kStepTenths));
  std::cerr << "\r\033[K" << std::flush;
}

std::string Progress::Line(int tenths) const {
  const std::uint64_t total = total_;
  const std::uint64_t done = done_;
  if (total == 0 || done > total) return what_ + ": " + std::to_string(tenths / 10) + " s";
  return what_ + ": " +
         std::to_string(static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(total))) +
         " %";
}

}  // namespace vorquill21::tool
