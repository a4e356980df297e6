#pragma once

#include <algorithm>
#include <vector>

#include "vorquill21/platform/files.hpp"

namespace vorquill21::test {

/// The names in a folder in order.
inline std::vector<Text> NamesIn(Files& files, TextView folder) {
  std::vector<Text> names;
  for (const DirectoryEntry& entry : files.List(Text(folder).append(u"\\*"))) names.push_back(entry.name);
  std::ranges::sort(names);
  return names;
}

}  // namespace vorquill21::test
