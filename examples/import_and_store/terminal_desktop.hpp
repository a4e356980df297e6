#pragma once

#include "vorquill21/vorquill21.hpp"

namespace example {

/// A host without windows: what a message box would say goes to the terminal.
class TerminalDesktop : public vorquill21::Desktop {
 public:
  void ShowMessage(vorquill21::TextView text, vorquill21::MessageStyle style,
                   vorquill21::TextView title) override;
  void Beep() override {}

  // Nothing is opened or browsed for here.
  std::int32_t OpenDocument(const vorquill21::DocumentRequest&) override { return kNoProgram; }
  std::optional<vorquill21::Text> BrowseForFolder(std::int32_t, vorquill21::TextView) override { return {}; }
  std::int32_t SpecialFolder(std::int32_t, vorquill21::Text&) override { return kMissingFolder; }

  int MessageCount() const { return messageCount_; }

  /// The style of the last message box; an exclamation mark before there was one.
  vorquill21::MessageStyle LastStyle() const { return lastStyle_; }

 private:
  static constexpr std::int32_t kNoProgram = 31;
  static constexpr std::int32_t kMissingFolder = 1;

  int messageCount_ = 0;
  vorquill21::MessageStyle lastStyle_ = vorquill21::kExclamation;
};

}  // namespace example
