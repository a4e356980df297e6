#pragma once

#include <algorithm>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

// The built-in checks of CFile that look at paths alone. Not exported; templates, so that the tests can run
// them on an object that gets things wrong.

template <typename Paths>
bool ParsesFileTitles(const Paths& paths) {
  constexpr TextView kPaths[] = {
      u"D:\\Zelmora\\front_susp.txt",
      u"D:\\Zelmora\\front_susp",
      u"front_susp.txt",
      u"front_susp",
      u"one\\two\\three\\four\\five\\front_susp",
      u"one/two/three/four/five/front_susp",
      u"one\\two/three\\four/five\\front_susp",
  };
  const bool titlesFit = std::ranges::all_of(kPaths, [&paths](TextView path) {
    return EqualIgnoringCase(paths.ParseFileTitle(path), u"front_susp");
  });
  return titlesFit && paths.ParseFileTitle(u"").empty();
}

template <typename Paths>
bool EnsuresExtensions(const Paths& paths) {
  struct Row {
    TextView path;
    TextView expected;
  };
  constexpr Row kRows[] = {
      {u"D:\\Zelmora\\front_susp.tx", u"D:\\Zelmora\\front_susp.txt"},
      {u"D:\\Zelmora\\front_susp", u"D:\\Zelmora\\front_susp.txt"},
      {u"D:\\Zelmora\\front_susp.", u"D:\\Zelmora\\front_susp.txt"},
      {u"front_susp", u"front_susp.txt"},
      {u"D:\\Zelmora\\front.susp.", u"D:\\Zelmora\\front.susp.txt"},
  };
  return std::ranges::all_of(kRows, [&paths](const Row& row) {
    return EqualIgnoringCase(paths.EnsureExtension(row.path, u"txt"), row.expected);
  });
}

}  // namespace vorquill21
