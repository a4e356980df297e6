#include "vorquill21/log/log_event.hpp"

#include <algorithm>
#include <utility>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {
namespace {

constexpr int kDeepest = 100;

/// Counts a level for as long as it lives.
class Level {
 public:
  explicit Level(std::shared_ptr<int> depth) : depth_(std::move(depth)) { ++*depth_; }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;
  ~Level() { --*depth_; }

  bool IsTooDeep() const { return *depth_ > kDeepest; }

 private:
  std::shared_ptr<int> depth_;
};

/// Runs what may throw anything: it is the host's.
template <typename Operation>
void IgnoringEverything(Operation operation) noexcept {
  try {
    operation();
  } catch (...) {
  }
}

}  // namespace

LogEvent::~LogEvent() {
  for (const auto& slot : slots_) slot->isConnected = false;
}

LogEvent::Connection LogEvent::Connect(Handler handler) {
  TranslatingMemoryErrors([&] {
    slots_.push_back(std::make_shared<Slot>(Slot{lastConnection_ + 1, std::move(handler)}));
  });
  return ++lastConnection_;
}

void LogEvent::Disconnect(Connection connection) noexcept {
  const auto isSought = [connection](const auto& slot) { return slot->connection == connection; };
  const auto found = std::ranges::find_if(slots_, isSought);
  if (found == slots_.end()) return;
  const std::shared_ptr<Slot> slot = *found;  // what the handler holds dies when the list is in order again
  slots_.erase(found);
  slot->isConnected = false;
}

void LogEvent::Raise(TextView message, ELogAction action) const noexcept {
  if (slots_.empty()) return;
  IgnoringEverything([&] {
    const Level level(depth_);
    if (level.IsTooDeep()) return;
    const auto slots = slots_;
    for (const auto& slot : slots) {
      if (!slot->isConnected || !slot->handler) continue;
      IgnoringEverything([&] { slot->handler(message, action); });
    }
  });
}

}  // namespace vorquill21
