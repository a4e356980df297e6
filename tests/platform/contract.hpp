#pragma once

#include <ostream>
#include <string>

namespace vorquill21::test {

/// One that has to keep a contract, and how a test comes by it.
template <typename Handle>
struct Implementation {
  const char* name;
  Handle (*get)();

  friend void PrintTo(const Implementation& each, std::ostream* out) { *out << each.name; }
};

/// Calls the tests of an implementation by its name.
inline constexpr auto kNameOfImplementation = [](const auto& each) { return std::string(each.param.name); };

/// Every byte there is, in order.
inline std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

}  // namespace vorquill21::test
