#pragma once

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/frame/types/variant.hpp"

namespace vorquill21 {

// The built-in checks of CString. Not exported; templates, so that the tests can run them on an object that
// gets things wrong.

template <typename Strings>
bool TakesCommandLinesApart(const Strings& strings) {
  const auto hasArguments = [&strings](TextView line, std::initializer_list<TextView> arguments) {
    const Variant list = strings.CommandLineArgumentsParse(true, line);
    std::int32_t index = 0;
    return std::ranges::all_of(
        arguments, [&](TextView argument) { return ArrayElement(list, ++index) == Variant(argument); });
  };
  const Variant none = strings.CommandLineArgumentsParse(true, u"");
  return hasArguments(u"\"/q1\" /s2 /s3 \"/q 4\"", {u"/q1", u"/s2", u"/s3", u"/q 4"}) &&
         hasArguments(u"/s1 /s2 /s3 \"/q 4\"", {u"/s1", u"/s2"}) && ArrayBounds(none).upper == 0;
}

template <typename Strings>
bool TakesTextBetweenBrackets(const Strings& strings) {
  return strings.MidBracketed(u"q;lwefj;alf<goodbit>poaifasf", u"<", u">") == u"goodbit" &&
         strings.MidBracketed(u"q;lwefj;alf'goodbit'poaifasf", u"'", u"'") == u"goodbit";
}

template <typename Strings>
bool ReplacesRuns(const Strings& strings) {
  return strings.ReplaceMulti(u"", u"", u"").empty() && strings.ReplaceMulti(u"aaaa", u"", u"") == u"aaaa" &&
         strings.ReplaceMulti(u"aaaa", u"a", u"").empty() &&
         strings.ReplaceMulti(u"aaabaaaba", u"a", u"x") == u"xbxbx";
}

template <typename Strings>
bool SplitsWithAndWithoutEmptyElements(const Strings& strings) {
  struct Row {
    TextView text;
    TextView delimiter;
    bool treatMultipleAsOne;
    std::int32_t index;
    TextView element;
    std::int32_t upperBound;
  };
  constexpr Row kRows[] = {
      {u"1 2 3 4", u"", false, 0, u"1 2 3 4", 0},
      {u"1 2 3 4", u" ", false, 0, u"1", 3},
      {u"1 2  3 4", u" ", false, 2, u"", 4},
      {u"1 2  3 4", u" ", true, 2, u"3", 3},
  };
  return std::ranges::all_of(kRows, [&strings](const Row& row) {
    const Variant elements = strings.SplitMulti(row.text, row.delimiter, row.treatMultipleAsOne);
    return ArrayElement(elements, row.index) == Variant(row.element) &&
           ArrayBounds(elements).upper == row.upperBound;
  });
}

template <typename Strings>
bool TrimsCharactersAtTheEnd(const Strings& strings) {
  struct Row {
    TextView text;
    std::vector<Variant> characters;
    TextView expected;
  };
  const Row rows[] = {
      {u"   mid   ", {u""}, u"   mid   "},      {u"   mid   ", {u" "}, u"   mid"},
      {u"   midx", {u"x"}, u"   mid"},          {u"   midxyz", {u"y", u"z"}, u"   midx"},
      {u"   midxyz", {u"z", u"y"}, u"   midx"},
  };
  return std::ranges::all_of(rows, [&strings](const Row& row) {
    return strings.RTrimMulti(row.text, BoundedArray<Variant>(row.characters)) == row.expected;
  });
}

template <typename Strings>
bool PassesWithoutError(const Strings& strings, bool (*passes)(const Strings&)) {
  try {
    return TranslatingMemoryErrors([&] { return passes(strings); });
  } catch (const LibraryError&) {
    return false;
  }
}

template <typename Strings>
void RunStringChecks(const Strings& strings, FailedTests& failedTests) {
  const auto check = [&](TextView nameOnFailure, bool (*passes)(const Strings&)) {
    if (!PassesWithoutError(strings, passes)) failedTests.emplace_back(nameOnFailure);
  };
  check(u"SelfTest_CommandLineArgumentsParse", TakesCommandLinesApart);
  check(u"SelfTest_CommandLineArgumentsParse", TakesTextBetweenBrackets);
  check(u"SelfTest_ReplaceMulti", ReplacesRuns);
  check(u"SelfTest_SplitMulti", SplitsWithAndWithoutEmptyElements);
  check(u"SelfTest_RTrimMulti", TrimsCharactersAtTheEnd);
}

}  // namespace vorquill21
