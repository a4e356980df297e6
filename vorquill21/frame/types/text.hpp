#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "vorquill21/export.hpp"

namespace vorquill21 {

/// A text is a sequence of 16-bit units; lengths and positions count units. A character beyond the basic
/// plane takes two of them, and nothing in the library refuses a unit that has lost its partner.
using Text = std::u16string;

/// A text that is only read.
using TextView = std::u16string_view;

/// UTF-8 form of `text`. Units U+DC80 to U+DCFF that stand alone become the single bytes 80 to FF (see
/// FromUtf8); any other unit without its partner becomes U+FFFD.
VORQUILL21_API std::string ToUtf8(TextView text);

/// Text of UTF-8 bytes. A byte that belongs to no well-formed sequence becomes the unit U+DC00 + byte, so
/// that `ToUtf8(FromUtf8(bytes)) == bytes` for every byte sequence (file names on Linux are such sequences).
VORQUILL21_API Text FromUtf8(std::string_view utf8);

/// The capital form of one unit: one-to-one over the letters of ASCII, Latin-1 and Windows-1252; every other
/// unit, "ß" and "µ" among them, is its own capital.
VORQUILL21_API char16_t UpperCase(char16_t unit) noexcept;

/// `text` with UpperCase applied to each unit; the length does not change.
VORQUILL21_API Text UpperCase(TextView text);

/// True when both texts have the same capital form.
VORQUILL21_API bool EqualIgnoringCase(TextView left, TextView right) noexcept;

/// 0-based position of the first occurrence of `sought` in `text` at or after `from`, comparing capital
/// forms; `TextView::npos` when there is none. Cost: at most the product of both lengths.
VORQUILL21_API std::size_t FindIgnoringCase(TextView text, TextView sought, std::size_t from = 0) noexcept;

/// `text` without the blanks (U+0020 only) at both of its ends.
VORQUILL21_API TextView TrimBlanks(TextView text) noexcept;

}  // namespace vorquill21
