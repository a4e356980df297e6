#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "vorquill21/platform/desktop.hpp"
#include "vorquill21/platform/file_calls_posix.hpp"
#include "vorquill21/platform/files.hpp"

namespace vorquill21 {

/// The user's desktop, reached through the programs zenity, kdialog and xdg-open. There is one when DISPLAY
/// or WAYLAND_DISPLAY is set. A message that no dialog program confirms as read also goes to standard error.
///
/// OpenDocument waits until xdg-open has handed the document on. Where xdg-open itself runs the program that
/// shows the document, it would wait for the user: it counts as done when `patience` is over. Every verb
/// opens the document; parameters, folder and show mode have no meaning. The special folders are those of
/// SpecialFolderPath.
class PosixDesktop : public Desktop {
 public:
  PosixDesktop(Files& files, FileCalls& calls, std::chrono::milliseconds patience = std::chrono::seconds(5))
      : files_(files), calls_(calls), patience_(patience) {}

  void ShowMessage(TextView text, MessageStyle style, TextView title) override;
  void Beep() override;
  std::int32_t OpenDocument(const DocumentRequest& request) override;
  std::optional<Text> BrowseForFolder(std::int32_t ownerWindow, TextView title) override;
  std::int32_t SpecialFolder(std::int32_t identifier, Text& path) override;

 private:
  std::int32_t HandOver(const std::string& document);

  Files& files_;
  FileCalls& calls_;
  std::chrono::milliseconds patience_;
  std::vector<pid_t> showing_;  // what still showed a document when patience was over
};

}  // namespace vorquill21
