#include "vorquill21/filestream/number_reader.hpp"

namespace vorquill21 {

Text ReplaceAll(TextView text, TextView sought, TextView replacement) {
  Text replaced;
  std::size_t from = 0;
  for (std::size_t at; (at = text.find(sought, from)) != TextView::npos; from = at + sought.size()) {
    replaced.append(text, from, at - from).append(replacement);
  }
  return replaced.append(text, from);
}

double NumberReader::WithReplacement(TextView text) const {
  const Text replaced = ReplaceAll(text, writtenSeparator_, TextView(&userSeparator_, 1));
  return TextToNumber(replaced, userSeparator_).value_or(0.0);
}

}  // namespace vorquill21
