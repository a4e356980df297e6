#include "vorquill21/text/replace_runs.hpp"

#include <cstddef>
#include <vector>

#include "vorquill21/text/occurrences.hpp"

namespace vorquill21 {
namespace {

/// For each length k up to the whole of `pattern`: the longest text shorter than k that the first k units
/// both begin and end with.
std::vector<std::size_t> BorderLengths(TextView pattern) {
  std::vector<std::size_t> borders(pattern.size() + 1, 0);
  std::size_t length = 0;
  for (std::size_t k = 1; k < pattern.size(); ++k) {
    while (length > 0 && pattern[length] != pattern[k]) length = borders[length];
    if (pattern[length] == pattern[k]) ++length;
    borders[k + 1] = length;
  }
  return borders;
}

constexpr std::size_t kChunk = 16;

/// Copies the first `count` units of `source` to `out`. A short piece is copied as a whole chunk where
/// `source` goes on that long: `out` has room for kChunk units.
inline void CopyPiece(TextView source, std::size_t count, char16_t* out) {
  if (count <= kChunk && source.size() >= kChunk) {
    source.copy(out, kChunk);
  } else {
    source.copy(out, count);
  }
}

/// Length that the result of ReplaceRuns does not exceed.
std::size_t LargestResult(TextView text, TextView find, TextView replacement) {
  if (replacement.size() <= find.size()) return text.size();
  std::size_t count = 0;
  Occurrences occurrences(text, find);
  std::size_t from = 0;
  for (std::size_t at; (at = occurrences.Next(from)) != TextView::npos; from = at + find.size()) ++count;
  return text.size() + count * (replacement.size() - find.size());
}

}  // namespace

bool HasBorder(TextView find) {
  return find.size() > 1 && BorderLengths(find).back() > 0;
}

// The order in which doubled occurrences are replaced does not matter. Two that overlap in less than one
// `find` read FPF' with F = PB = BQ and F' = QF, and become PF whichever goes first (FQF = PFF, FPF = FFQ,
// PF = FQ); two that overlap in more lie in a repetition of one shorter text, of which either removes the
// same length. So every order ends in the same text, and doubled occurrences can go as soon as they are
// complete.
Text CollapseDoubled(TextView text, TextView find) {
  const std::vector<std::size_t> borders = BorderLengths(find);
  Text collapsed;
  std::vector<std::size_t> matched{0};  // how many units of `find` the first k units of `collapsed` end in
  for (const char16_t unit : text) {
    std::size_t length = matched.back();
    if (length == find.size()) length = borders[length];
    while (length > 0 && find[length] != unit) length = borders[length];
    if (find[length] == unit) ++length;
    collapsed.push_back(unit);
    matched.push_back(length);
    if (length == find.size() && matched[collapsed.size() - find.size()] == find.size()) {
      collapsed.resize(collapsed.size() - find.size());
      matched.resize(collapsed.size() + 1);
    }
  }
  return collapsed;
}

// Whether an occurrence goes on with a run is hard to predict, so there is no branch on it: the replacement
// is written for each of them, and the next piece overwrites it when it does not count.
Text ReplaceRuns(TextView text, TextView find, TextView replacement) {
  const Text padded = Text(replacement).append(kChunk, u'\0');
  Text result(LargestResult(text, find, replacement) + padded.size(), u'\0');
  char16_t* out = result.data();
  Occurrences occurrences(text, find);
  std::size_t runEnd = TextView::npos;  // of the run before
  std::size_t from = 0;
  for (std::size_t at; (at = occurrences.Next(from)) != TextView::npos; from = runEnd = at + find.size()) {
    CopyPiece(text.substr(from), at - from, out);
    out += at - from;
    CopyPiece(padded, replacement.size(), out);
    out += at == runEnd ? 0 : replacement.size();
  }
  CopyPiece(text.substr(from), text.size() - from, out);
  out += text.size() - from;
  result.resize(static_cast<std::size_t>(out - result.data()));
  return result;
}

}  // namespace vorquill21
