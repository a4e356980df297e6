#pragma once

#include <new>

#include "tests/support/fake_platform.hpp"

namespace vorquill21::test {

/// A code page in which a byte from 80 on takes the next byte with it, whatever that is; both are one unit.
class TwoByteLocale : public ChosenLocale {
 public:
  bool HasSingleBytes() const override { return false; }
  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override;
  void AppendToCodePage(TextView text, std::string& bytes) const override;
};

/// A host's own locale, which says no more than it must: every character has two bytes, the lower one first.
class PairLocale : public Locale {
 public:
  char16_t DecimalSeparator() const override { return u'.'; }
  Text ShortTime() const override { return u"09:05"; }
  Text ShortDate() const override { return u"21/11/2026"; }
  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override;
  void AppendToCodePage(TextView text, std::string& bytes) const override;
};

/// A code page for whose conversions no memory is left.
class ExhaustedLocale : public ChosenLocale {
 public:
  std::size_t AppendFromCodePage(std::string_view, Text&) const override { throw std::bad_alloc(); }
  void AppendToCodePage(TextView, std::string&) const override { throw std::bad_alloc(); }
};

}  // namespace vorquill21::test
