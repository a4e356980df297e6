#pragma once

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// What the scripting file-system object, "Scripting.FileSystemObject", answers to "FolderExists", called
/// late bound; false when the object cannot be had or the call fails.
bool FileSystemObjectFolderExists(TextView path);

}  // namespace vorquill21
