#pragma once

#include <cstdint>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {

/// What the refused operation was about: the same refusal has one number for a file and another for a folder,
/// and where a file was to be made only its folder can be missing.
enum class Subject { kFile, kNewFile, kFolder };

/// The runtime error that a system error code stands for; 57 for every code without a number of its own. The
/// end of a listing counts as a file not found, the end of a file as input past its end.
RuntimeErrorNumber RuntimeErrorOf(std::uint32_t code, Subject subject) noexcept;

/// The runtime error of the calling thread's last refused system call.
RuntimeErrorNumber LastError(Subject subject) noexcept;

}  // namespace vorquill21
