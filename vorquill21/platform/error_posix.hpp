#pragma once

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {

/// What the refused operation was about: the same refusal has one number for a file and another for a folder.
enum class Subject { kFile, kFolder };

/// The runtime error that a system error code stands for; 57 for every code without a number of its own.
RuntimeErrorNumber RuntimeErrorOf(int code, Subject subject) noexcept;

/// The runtime error of the calling thread's last refused system call.
RuntimeErrorNumber LastError(Subject subject) noexcept;

/// True when a signal cut the last refused system call short, so that it may simply be made again.
bool LastCallWasInterrupted() noexcept;

/// Makes a system call until no signal cuts it short.
template <typename Call>
auto Uninterrupted(Call call) {
  for (;;) {
    const auto result = call();
    if (result != -1 || !LastCallWasInterrupted()) return result;
  }
}

}  // namespace vorquill21
