#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "vorquill21/frame/types/number_text.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"

namespace vorquill21 {

inline constexpr TextView kLineEnd = u"\r\n";

/// Appends to a text piece by piece. The pieces are collected and reach the text in blocks, the last of them
/// with Flush.
class RecordWriter {
 public:
  RecordWriter(char16_t decimalSeparator, Text& text) : decimalSeparator_(decimalSeparator), text_(text) {}
  RecordWriter(const RecordWriter&) = delete;
  RecordWriter& operator=(const RecordWriter&) = delete;

  void Write(char16_t unit) {
    MakeRoom(1);
    block_[used_++] = unit;
  }

  void Write(TextView words) {
    if (words.size() > block_.size()) {
      Flush();
      text_ += words;
      return;
    }
    MakeRoom(words.size());
    std::copy(words.begin(), words.end(), block_.data() + used_);
    used_ += words.size();
  }

  /// Writes what a record begins with.
  void WriteName(TextView name) {
    Write(u'[');
    Write(name);
    Write(u']');
  }

  void Write(double number) {
    MakeRoom(kNumberTextCapacity);
    const char16_t* const end = WriteNumber(number, decimalSeparator_, block_.data() + used_);
    used_ = static_cast<std::size_t>(end - block_.data());
  }

  void Write(const Variant& value) {
    if (const double* number = value.If<double>()) return Write(*number);
    if (const Text* words = value.If<Text>()) return Write(TextView(*words));
    Write(TextView(ToText(value, decimalSeparator_)));
  }

  void Flush() {
    text_.append(block_.data(), used_);
    used_ = 0;
  }

  char16_t DecimalSeparator() const noexcept { return decimalSeparator_; }

 private:
  void MakeRoom(std::size_t count) {
    if (block_.size() - used_ < count) Flush();
  }

  std::array<char16_t, 2048> block_;
  std::size_t used_ = 0;
  char16_t decimalSeparator_;
  Text& text_;
};

}  // namespace vorquill21
