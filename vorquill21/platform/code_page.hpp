#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// The unit that each byte stands for.
using CodePageUnits = std::array<char16_t, 256>;

/// Windows-1252, its five undefined bytes standing for the code points of the same number.
CodePageUnits Windows1252Units() noexcept;

/// An 8-bit code page of single bytes. Texts of ASCII alone are converted 16 units at a time.
class CodePage {
 public:
  explicit CodePage(const CodePageUnits& units);

  /// Appends one unit for each byte.
  void AppendText(std::string_view bytes, Text& text) const;

  /// Appends one byte for each unit: the lowest that stands for it, "?" when none does.
  void AppendBytes(TextView text, std::string& bytes) const;

 private:
  CodePageUnits unitOfByte_;
  std::vector<char> byteOfUnit_;
  bool holdsAscii_;  // the first 128 bytes are ASCII
};

}  // namespace vorquill21
