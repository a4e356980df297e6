#include "vorquill21/platform/wildcard.hpp"

#include <cstddef>

namespace vorquill21 {

bool HasWildcards(TextView text) noexcept {
  return text.find_first_of(u"*?") != TextView::npos;
}

bool MatchesWildcards(TextView name, TextView pattern) noexcept {
  std::size_t atName = 0;
  std::size_t atPattern = 0;
  std::size_t lastStar = TextView::npos;
  std::size_t takenByStar = 0;  // end of what the last "*" stands for
  while (atName < name.size()) {
    const bool patternLeft = atPattern < pattern.size();
    if (patternLeft && pattern[atPattern] == u'*') {
      lastStar = atPattern++;
      takenByStar = atName;
    } else if (patternLeft &&
               (pattern[atPattern] == u'?' || UpperCase(pattern[atPattern]) == UpperCase(name[atName]))) {
      ++atPattern;
      ++atName;
    } else if (lastStar != TextView::npos) {
      atPattern = lastStar + 1;
      atName = ++takenByStar;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(u'*', atPattern) == TextView::npos;
}

}  // namespace vorquill21
