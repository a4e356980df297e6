#pragma once

#include <cstdint>
#include <optional>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// Buttons and icon of a message box.
enum MessageStyle : std::int32_t {
  kExclamation = 48,  ///< exclamation mark, OK button
  kInformation = 64,  ///< information mark, OK button
};

/// How a document is handed to the program that opens it.
struct DocumentRequest {
  Text document;
  Text verb = u"Open";
  Text parameters;
  Text folder;                  ///< working folder
  std::int32_t showMode = 1;    ///< 1 normal window, 5 shown as it is
  bool ownedByDesktop = false;  ///< whether the desktop's window is the owner
};

/// What the library asks of the user's desktop. None of it raises an error, and none of it waits for a user
/// where no desktop exists.
class VORQUILL21_API Desktop {
 public:
  virtual ~Desktop() = default;

  /// Shows a message box and waits until it is answered. Where there is no display the text goes to standard
  /// error as one line.
  virtual void ShowMessage(TextView text, MessageStyle style, TextView title) = 0;

  virtual void Beep() = 0;

  /// Opens a document with the program meant for it. A result above 32 is success; up to 32 it is one of the
  /// shell's codes: 2 file not found, 3 path not found, 5 access denied, 31 no program for it, ...
  virtual std::int32_t OpenDocument(const DocumentRequest& request) = 0;

  /// The folder that the user picked, or nothing when the choice was cancelled or could not be offered.
  virtual std::optional<Text> BrowseForFolder(std::int32_t ownerWindow, TextView title) = 0;

  /// Path of a special folder of the system or the user (identifiers as in EOSUtilsSpecialFolders, 32768
  /// added to have it created). Returns 0 with `path` set, 1 when the folder does not exist, and another
  /// number when the system knows no such folder; `path` then keeps its value.
  virtual std::int32_t SpecialFolder(std::int32_t identifier, Text& path) = 0;
};

}  // namespace vorquill21
