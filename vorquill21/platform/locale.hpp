#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// The user's settings for numbers, time and date, and the system's 8-bit code page.
class VORQUILL21_API Locale {
 public:
  virtual ~Locale() = default;

  /// The decimal separator of numbers, "." or "," in practice.
  virtual char16_t DecimalSeparator() const = 0;

  /// The current time of day (hours and minutes) and the current date in the user's short formats.
  virtual Text ShortTime() const = 0;
  virtual Text ShortDate() const = 0;

  /// True when each byte of the code page is one unit of text, so that a part of a file can be told by its
  /// length. A locale that does not know says False, and files are then converted from their beginning.
  virtual bool HasSingleBytes() const { return false; }

  /// Appends the text of `bytes` to `text` and returns how many bytes that took. On a page of single bytes
  /// that is all of them, one unit a byte, and every byte survives the way there and back; on a multi-byte
  /// page a character cut off at the end is left for the next call.
  virtual std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const = 0;

  /// Appends the bytes of `text` to `bytes`; what the code page cannot hold becomes "?".
  virtual void AppendToCodePage(TextView text, std::string& bytes) const = 0;
};

/// Text of all `bytes`; a character cut off at the end becomes the units of its bytes.
VORQUILL21_API Text FromCodePage(const Locale& locale, std::string_view bytes);

/// Bytes of `text`.
VORQUILL21_API std::string ToCodePage(const Locale& locale, TextView text);

}  // namespace vorquill21
