#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/import/line_reader.hpp"
#include "vorquill21/platform/locale.hpp"

namespace vorquill21 {

/// True when a delimiter can be sought among the bytes of a line instead of in the line's text: the code page
/// holds it, and its bytes occur nowhere as parts of other characters. The latter is so on pages of single
/// bytes, and elsewhere for control characters, the blank, digits and the punctuation below "@".
bool CanBeMatchedAsBytes(TextView delimiter, const Locale& locale);

/// The lines of a file as they are, in the bytes of the code page.
class ByteLines {
 public:
  using Char = char;

  ByteLines(LineReader& reader, const Locale& locale) : reader_(reader), locale_(locale) {}

  bool AtEnd() { return reader_.AtEnd(); }
  std::string_view NextLine() { return reader_.NextLine(); }
  void SkipLine() { reader_.SkipLine(); }

  /// See LineReader.
  std::string_view Held() const { return reader_.Held(); }
  void SkipLinesTo(const char* position) { reader_.SkipLinesTo(position); }

  std::uint64_t BytesPassed() const { return reader_.BytesPassed(); }
  std::uint64_t Length() const { return reader_.Length(); }

  std::string Encoded(TextView text) const { return ToCodePage(locale_, text); }
  Text Decoded(std::string_view bytes) const { return FromCodePage(locale_, bytes); }

 private:
  LineReader& reader_;
  const Locale& locale_;
};

/// The lines of a file as texts.
class TextLines {
 public:
  using Char = char16_t;

  TextLines(LineReader& reader, const Locale& locale) : reader_(reader), locale_(locale) {}

  bool AtEnd() { return reader_.AtEnd(); }
  TextView NextLine() { return line_ = FromCodePage(locale_, reader_.NextLine()); }
  void SkipLine() { reader_.SkipLine(); }

  std::uint64_t BytesPassed() const { return reader_.BytesPassed(); }
  std::uint64_t Length() const { return reader_.Length(); }

  Text Encoded(TextView text) const { return Text(text); }
  Text Decoded(TextView text) const { return Text(text); }

 private:
  LineReader& reader_;
  const Locale& locale_;
  Text line_;
};

}  // namespace vorquill21
