#include "vorquill21/text/string.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/text/occurrences.hpp"
#include "vorquill21/text/replace_runs.hpp"

namespace vorquill21 {
namespace {

constexpr std::int32_t kUpperBoundWithoutElements = 100;

Text BetweenBrackets(TextView text, TextView openBracket, TextView closeBracket) {
  const std::size_t open = text.find(openBracket);
  const std::size_t start = open == TextView::npos ? 0 : open + 1;
  const std::size_t close = text.find(closeBracket, start);
  if (close == TextView::npos) return {};
  return Text(text.substr(start, close - start));
}

TextView TrimmedAtEnd(TextView text, const BoundedArray<Variant>& entries) {
  const Bounds bounds = entries.BoundsOf(1);
  for (bool done = false; !done;) {
    const Variant last = text.substr(text.empty() ? 0 : text.size() - 1);
    done = true;
    for (std::int64_t i = bounds.lower; i <= bounds.upper; ++i) {
      if (Compare(entries(static_cast<std::int32_t>(i)), last) != 0) continue;
      if (text.empty()) throw LibraryError(kInvalidProcedureCall);
      text.remove_suffix(1);
      done = false;
    }
  }
  return text;
}

struct SplitRules {
  std::size_t delimiterLength;
  std::size_t mostElements = TextView::npos;
  bool skipsEmpty = false;
  bool endsInEmpty = false;  // whether a delimiter at the end of the text is followed by an empty element
};

/// Calls `take` with each element of `text`; `findDelimiter(from)` gives the next position of the delimiter.
template <typename FindDelimiter, typename Take>
void ForEachElement(TextView text, const SplitRules& rules, FindDelimiter findDelimiter, Take take) {
  const std::size_t end = text.size() + (rules.endsInEmpty ? 1 : 0);
  std::size_t taken = 0;
  std::size_t from = 0;
  while (from < end && taken != rules.mostElements) {
    const std::size_t found = std::min(findDelimiter(from), text.size());
    if (found != from || !rules.skipsEmpty) {
      take(text.substr(from, found - from));
      ++taken;
    }
    from = found + rules.delimiterLength;
  }
}

/// The elements of `text`, counted first: moving them into ever larger memory would cost more.
template <typename Element, typename FindDelimiter>
std::vector<Element> Split(TextView text, const SplitRules& rules, const FindDelimiter& findDelimiter) {
  std::size_t count = 0;
  ForEachElement(text, rules, findDelimiter, [&count](TextView) { ++count; });
  std::vector<Element> elements;
  elements.reserve(count);
  ForEachElement(text, rules, findDelimiter,
                 [&elements](TextView element) { elements.emplace_back(element); });
  return elements;
}

template <typename Element>
std::vector<Element> SplitExactly(TextView text, TextView delimiter, const SplitRules& rules) {
  return Split<Element>(text, rules, [occurrences = Occurrences(text, delimiter)](std::size_t from) mutable {
    return occurrences.Next(from);
  });
}

std::vector<Text> SplitIgnoringCase(TextView text, TextView delimiter, const SplitRules& rules) {
  return Split<Text>(text, rules, [=](std::size_t from) { return FindIgnoringCase(text, delimiter, from); });
}

BoundedArray<Text> SplitWithLimit(TextView text, TextView delimiter, std::int32_t limit,
                                  std::int32_t compareMethod, bool skipsEmpty) {
  if (text.empty()) return BoundedArray<Text>(Bounds{0, 0});
  if (limit == 0) throw LibraryError(kSubscriptOutOfRange);
  if (compareMethod != kCompareExact && compareMethod != kCompareIgnoringCase) {
    throw LibraryError(kInvalidProcedureCall);
  }
  if (delimiter.empty()) {
    if (limit < 0 || skipsEmpty) throw LibraryError(kInvalidProcedureCall);
    return BoundedArray<Text>(Bounds{0, limit - 1});
  }
  SplitRules rules{.delimiterLength = delimiter.size(), .skipsEmpty = skipsEmpty};
  if (limit > 0) rules.mostElements = static_cast<std::size_t>(limit);
  std::vector<Text> elements = compareMethod == kCompareExact ? SplitExactly<Text>(text, delimiter, rules)
                                                              : SplitIgnoringCase(text, delimiter, rules);
  if (elements.empty()) throw LibraryError(kSubscriptOutOfRange);
  return BoundedArray<Text>(std::move(elements));
}

template <typename Element>
BoundedArray<Element> SplitEverywhere(TextView text, TextView delimiter, bool skipsEmpty) {
  if (text.empty()) return BoundedArray<Element>::Empty();
  if (delimiter.empty()) return BoundedArray<Element>(std::vector<Element>{Element(text)});
  const SplitRules rules{.delimiterLength = delimiter.size(), .skipsEmpty = skipsEmpty, .endsInEmpty = true};
  return BoundedArray<Element>(SplitExactly<Element>(text, delimiter, rules));
}

BoundedArray<Variant> NonEmptyElements(TextView text, TextView delimiter) {
  BoundedArray<Variant> elements = SplitEverywhere<Variant>(text, delimiter, true);
  if (elements.Elements().empty()) elements.ReDim({0, kUpperBoundWithoutElements});
  return elements;
}

}  // namespace

CString::CString(Platform& platform) : platform_(platform) {}

Text CString::MidBracketed(TextView asText, TextView asOpenBracket, TextView asCloseBracket) const {
  try {
    return TranslatingMemoryErrors([&] { return BetweenBrackets(asText, asOpenBracket, asCloseBracket); });
  } catch (const LibraryError&) {
    return {};
  }
}

Text CString::ReplaceMulti(TextView asOriginal, TextView asFind, TextView asReplaceWith) const {
  return TranslatingMemoryErrors([&] {
    if (asFind.empty()) return Text(asOriginal);
    if (!HasBorder(asFind)) return ReplaceRuns(asOriginal, asFind, asReplaceWith);
    return ReplaceRuns(CollapseDoubled(asOriginal, asFind), asFind, asReplaceWith);
  });
}

Text CString::RTrimMulti(TextView asOriginal, const BoundedArray<Variant>& avTrimChar) const {
  return TranslatingMemoryErrors([&] { return Text(TrimmedAtEnd(asOriginal, avTrimChar)); });
}

Variant CString::Split5(TextView asText, TextView asDelimiter, std::int32_t aiLimit,
                        std::int32_t aeCompareMethod, bool abTreatMultipleDelimitersAsOne) const {
  return TranslatingMemoryErrors([&]() -> Variant {
    return SplitWithLimit(asText, asDelimiter, aiLimit, aeCompareMethod, abTreatMultipleDelimitersAsOne);
  });
}

Variant CString::SplitMulti(TextView asText, TextView asDelimiter,
                            bool abTreatMultipleDelimitersAsOne) const {
  return TranslatingMemoryErrors([&]() -> Variant {
    if (abTreatMultipleDelimitersAsOne) return NonEmptyElements(asText, asDelimiter);
    return SplitEverywhere<Text>(asText, asDelimiter, false);
  });
}

}  // namespace vorquill21
