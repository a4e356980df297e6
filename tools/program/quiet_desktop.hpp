#pragma once

#include <string>
#include <vector>

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {

/// A desktop without windows: message boxes are kept, so that a command can say what they say.
class QuietDesktop : public Desktop {
 public:
  void ShowMessage(TextView text, MessageStyle, TextView) override { messages_.emplace_back(text); }
  void Beep() override {}
  std::int32_t OpenDocument(const DocumentRequest&) override { return kNoProgram; }
  std::optional<Text> BrowseForFolder(std::int32_t, TextView) override { return std::nullopt; }
  std::int32_t SpecialFolder(std::int32_t, Text&) override { return kNoProgram; }

  /// The text of the last message box, without the line ends in it; `otherwise` when there was none.
  std::string LastMessage(std::string otherwise) const {
    if (messages_.empty()) return otherwise;
    return ToUtf8(CString().ReplaceMulti(messages_.back(), u"\r\n", u" "));
  }

 private:
  static constexpr std::int32_t kNoProgram = 31;

  std::vector<Text> messages_;
};

}  // namespace vorquill21::tool
