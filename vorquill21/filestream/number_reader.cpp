#include "vorquill21/filestream/number_reader.hpp"

#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

/// Whether the character can stand in or around a number beside its separator.
constexpr bool BelongsToNumbers(char16_t unit) {
  switch (unit) {
    case u'+':
    case u'-':
    case u'E':
    case u'e':
    case u'D':
    case u'd':
    case u' ':
    case u'\t':
    case u'\r':
    case u'\n':
      return true;
    default:
      return unit >= u'0' && unit <= u'9';
  }
}

}  // namespace

Text ReplaceAll(TextView text, TextView sought, TextView replacement) {
  Text replaced;
  std::size_t from = 0;
  for (std::size_t at; (at = text.find(sought, from)) != TextView::npos; from = at + sought.size()) {
    replaced.append(text, from, at - from).append(replacement);
  }
  return replaced.append(text, from);
}

NumberReader::NumberReader(TextView writtenSeparator, char16_t userSeparator) noexcept
    : writtenSeparator_(writtenSeparator),
      userSeparator_(userSeparator),
      isStrange_(writtenSeparator.size() != 1 || BelongsToNumbers(writtenSeparator[0])) {}

double NumberReader::operator()(TextView text) const {
  if (isStrange_) {
    const Text replaced = ReplaceAll(text, writtenSeparator_, TextView(&userSeparator_, 1));
    return TextToNumber(replaced, userSeparator_).value_or(0.0);
  }
  // A text that holds both separators would hold two of the user's: no number either way.
  const char16_t writtenSeparator = writtenSeparator_[0];
  if (const auto number = TextToNumber(text, writtenSeparator)) return *number;
  if (writtenSeparator == userSeparator_) return 0.0;
  return TextToNumber(text, userSeparator_).value_or(0.0);
}

}  // namespace vorquill21
