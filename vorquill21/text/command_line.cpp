#include <algorithm>
#include <utility>
#include <vector>

#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {
namespace {

/// Takes the next argument and what ends it off the front of `line`, which begins with neither blank nor end.
Variant TakeArgument(TextView& line) {
  const bool isQuoted = line.front() == u'"';
  if (isQuoted) line.remove_prefix(1);
  const std::size_t end = std::min(line.find(isQuoted ? u'"' : u' '), line.size());
  Text argument(line.substr(0, end));
  line.remove_prefix(std::min(end + 1, line.size()));
  std::erase(argument, u'"');
  return argument.empty() ? Variant() : Variant(std::move(argument));
}

BoundedArray<Variant> ArgumentList(TextView line) {
  std::vector<Variant> arguments(1);
  for (;;) {
    line.remove_prefix(std::min(line.find_first_not_of(u' '), line.size()));
    if (line.empty()) return BoundedArray<Variant>(std::move(arguments));
    arguments.push_back(TakeArgument(line));
  }
}

}  // namespace

std::int32_t CString::CommandLineArgumentIndex(const Variant& avCommandArgs, TextView asArgName) const {
  return TranslatingMemoryErrors([&] {
    const char16_t separator = platform_.GetLocale().DecimalSeparator();
    const Bounds bounds = ArrayBounds(avCommandArgs);
    for (std::int64_t i = bounds.lower; i <= bounds.upper; ++i) {
      const auto index = static_cast<std::int32_t>(i);
      if (EqualIgnoringCase(ToText(ArrayElement(avCommandArgs, index), separator), asArgName)) return index;
    }
    return std::int32_t{0};
  });
}

Variant CString::CommandLineArgumentsParse(bool abIsTestMode, TextView asTestCommandLine) const {
  return TranslatingMemoryErrors([&]() -> Variant {
    if (abIsTestMode) return ArgumentList(asTestCommandLine);
    return ArgumentList(platform_.GetProcess().CommandLine());
  });
}

}  // namespace vorquill21
