// The text form of the settings: what is put in comes out again, and the rest of the document stays.
//
// Input: the lengths of section, key and value, these three, and the document. Each unit of a name or value
// is one byte, or two after a byte FF.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/require.hpp"
#include "vorquill21/platform/settings_document.hpp"

namespace vorquill21 {
namespace {

using test::Require;

/// Takes the input apart from its start; what is missing at its end is 0 or empty.
class Input {
 public:
  explicit Input(std::string_view bytes) : rest_(bytes) {}

  unsigned char Byte() {
    if (rest_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }

  Text Units(std::size_t count) {
    constexpr unsigned char kWide = 0xFF;
    Text units;
    while (units.size() < count && !rest_.empty()) {
      const unsigned char byte = Byte();
      units += static_cast<char16_t>(byte == kWide ? (Byte() << 8) | Byte() : byte);
    }
    return units;
  }

  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

std::string WithFinalLineEnd(std::string_view document) {
  const bool lacksLineEnd = !document.empty() && document.back() != '\n';
  return std::string(document).append(lacksLineEnd ? "\n" : "");
}

void Check(Input input) {
  constexpr std::size_t kMostUnits = 32;
  const std::size_t sectionLength = input.Byte() % kMostUnits;
  const std::size_t keyLength = input.Byte() % kMostUnits;
  const std::size_t valueLength = input.Byte() % kMostUnits;
  const Text section = input.Units(sectionLength);
  const Text key = input.Units(keyLength);
  const Text value = input.Units(valueLength);
  const Text otherKey = key + u"x";

  SettingsDocument document(input.Rest());
  Require(document.ToBytes() == WithFinalLineEnd(input.Rest()));
  const auto otherBefore = document.Find(section, otherKey);
  const bool wasThere = document.Find(section, key).has_value();

  document.Put(section, key, value);
  const std::string bytes = document.ToBytes();
  const SettingsDocument reread(bytes);
  Require(document.Find(section, key) == value);
  Require(reread.Find(section, key) == value);
  Require(reread.Find(UpperCase(section), UpperCase(key)) == value);
  Require(reread.Find(section, otherKey) == otherBefore);
  Require(reread.ToBytes() == bytes);

  const auto linesBefore = std::ranges::count(WithFinalLineEnd(input.Rest()), '\n');
  const auto linesAfter = std::ranges::count(bytes, '\n');
  Require(wasThere ? linesAfter == linesBefore : linesAfter > linesBefore);

  document.Put(section, key, value);
  Require(document.ToBytes() == bytes);
}

}  // namespace
}  // namespace vorquill21

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vorquill21::Check(vorquill21::Input({reinterpret_cast<const char*>(data), size}));
  return 0;
}
