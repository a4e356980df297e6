#pragma once

#include <string_view>

namespace vorquill21::tool {

/// How the importer takes a field: a number, a number with something behind it, or 0 as it begins with none.
enum class FieldKind { kNumber, kPartlyNumber, kNoNumber, kTooLarge };

FieldKind KindOf(std::string_view field);

/// Takes the next field off the front of `line`, as the importer does: delimiters before it go, too, and
/// `doubled` tells whether there were any. False when there is no further field.
inline bool TakeField(std::string_view& line, std::string_view delimiter, std::string_view& field,
                      bool& doubled) {
  doubled = false;
  while (!line.empty() && line.starts_with(delimiter)) {
    line.remove_prefix(delimiter.size());
    doubled = true;
  }
  const std::size_t end = line.find(delimiter);
  field = line.substr(0, end);
  line.remove_prefix(end == std::string_view::npos ? line.size() : end + delimiter.size());
  return !field.empty();
}

}  // namespace vorquill21::tool
