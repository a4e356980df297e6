#pragma once

#include <string>
#include <string_view>

#include "vorquill21/platform/file_calls_posix.hpp"

namespace vorquill21 {

/// Where `path` leads when its last part is a symbolic link, or a chain of them, be it to a missing file;
/// `path` itself when it is none. Error 52 for a chain without end.
std::string FollowLinks(FileCalls& calls, std::string path);

/// Makes `bytes` the whole content of the file at a system path, as PosixFiles::Replace promises.
void ReplaceContent(FileCalls& calls, const std::string& path, std::string_view bytes);

}  // namespace vorquill21
