#pragma once

#include <string>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// True for a path that begins with a drive letter and a colon. No drive is ever there.
bool NamesDrive(TextView path) noexcept;

/// The path for a system call: UTF-8 with "/" as separator. Error 52 when it holds a NUL, 76 for a drive.
std::string SystemPath(TextView path);

/// The front of a system path up to its last "/", which is kept; "./" when there is none.
std::string FolderOf(const std::string& path);

/// What follows the last "/" of a system path; empty when it ends in one.
std::string NameOf(const std::string& path);

}  // namespace vorquill21
