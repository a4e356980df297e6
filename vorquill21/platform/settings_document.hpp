#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// Settings as text, made to be read and changed by hand too:
///
///     # a comment
///     [Import Settings]
///     Delimiter=\t
///     HeaderRow=1
///
/// Lines are UTF-8 and end with LF or CR LF; white space around names and values does not count. In names and
/// values "\\", "\t", "\r" and "\n" stand for the backslash, tab, CR and LF, and "\u" with four hexadecimal
/// digits for any unit; a "\" before anything else stands for itself. Every text can be a name or a value.
/// Names match ignoring case; of equal ones the first counts. Lines that say nothing are kept as they are.
class SettingsDocument {
 public:
  SettingsDocument() = default;
  explicit SettingsDocument(std::string_view bytes);

  std::optional<Text> Find(TextView section, TextView key) const;

  /// Changes the value where it stands, or adds it behind the other values of its section; a section that is
  /// missing is added at the end.
  void Put(TextView section, TextView key, TextView value);

  std::string ToBytes() const;

 private:
  struct Place {
    std::size_t line;  // where the value stands or, when it is missing, belongs
    bool hasSection;
    bool hasValue;
  };
  Place FindPlace(TextView section, TextView key) const;

  std::vector<std::string> lines_;
};

}  // namespace vorquill21
