#pragma once

#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21::test {

/// Which of the coming platform calls is to fail, and with what error.
class FaultPlan {
 public:
  /// The call number `call` (1 is the next one) fails with the runtime error `number`.
  void FailAt(int call, RuntimeErrorNumber number) {
    countdown_ = call;
    number_ = number;
    hit_ = false;
  }

  /// True once the planned fault was met.
  bool Hit() const noexcept { return hit_; }

  /// Counts one call and raises the planned fault when it is the one.
  void Count() {
    if (countdown_ == 0 || --countdown_ > 0) return;
    hit_ = true;
    throw LibraryError(number_);
  }

 private:
  int countdown_ = 0;  // 0: no fault planned
  RuntimeErrorNumber number_ = kDeviceInputOutput;
  bool hit_ = false;
};

/// Forwards to another platform's files and counts every call that may fail, reads of an open file included.
class FaultyFiles : public Files {
 public:
  FaultyFiles(Files& base, FaultPlan& plan) : base_(base), plan_(plan) {}

  std::vector<DirectoryEntry> List(TextView pattern) override;
  bool FolderExists(TextView path) override;
  std::unique_ptr<ByteReader> OpenForReading(TextView path) override;
  void Replace(TextView path, std::string_view bytes) override;
  void Append(TextView path, std::string_view bytes) override;
  void Delete(TextView pattern) override;
  void MakeFolder(TextView path) override;
  void RemoveFolder(TextView path) override;

 private:
  class Reader;

  Files& base_;
  FaultPlan& plan_;
};

class FaultySettings : public Settings {
 public:
  FaultySettings(Settings& base, FaultPlan& plan) : base_(base), plan_(plan) {}

  /// A store that cannot be read gives the default: Get has no fault to raise.
  Text Get(TextView application, TextView section, TextView key, TextView defaultText) const override {
    return base_.Get(application, section, key, defaultText);
  }
  void Set(TextView application, TextView section, TextView key, TextView value) override;

 private:
  Settings& base_;
  FaultPlan& plan_;
};

/// `base` with faults in its files and its settings.
struct FaultyPlatform {
  FaultyPlatform(Platform& base, FaultPlan& plan)
      : files(base.GetFiles(), plan),
        settings(base.GetSettings(), plan),
        platform(files, base.GetDesktop(), base.GetLocale(), base.GetProcess(), settings) {}

  FaultyFiles files;
  FaultySettings settings;
  Platform platform;
};

/// Calls `attempt` again and again, the 1st, the 2nd, ... platform call failing with `number`, until a run
/// meets no fault. `attempt(plan)` arranges its own fresh state, calls the operation, and checks what it
/// promises in both cases, asking `plan.Hit()` afterwards. Returns the number of faults that were met.
template <typename Attempt>
int ForEachFault(RuntimeErrorNumber number, Attempt attempt) {
  for (int call = 1;; ++call) {
    FaultPlan plan;
    plan.FailAt(call, number);
    attempt(plan);
    if (!plan.Hit()) return call - 1;
  }
}

}  // namespace vorquill21::test
