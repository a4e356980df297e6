#pragma once

#include <string>
#include <string_view>

namespace vorquill21::tool {

/// The standard streams of the program.
class Terminal {
 public:
  Terminal();

  /// Writes to standard output. False when its reader has closed it, which is no failure: it has seen what it
  /// wanted. Anything else that keeps bytes back is a Failure.
  bool Write(std::string_view bytes);

  /// A line on standard error that begins with the program's name.
  void Complain(std::string_view message) const;

  bool OutputIsTerminal() const noexcept { return outputIsTerminal_; }
  bool ErrorIsTerminal() const noexcept { return errorIsTerminal_; }

  /// Colours are for terminals that know them, unless NO_COLOR is set to anything.
  bool OutputHasColour() const noexcept { return outputIsTerminal_ && allowsColour_; }

  /// Columns and lines of the terminal; 80 by 24 where there is none.
  struct Size {
    int columns = 80;
    int lines = 24;
  };
  Size OutputSize() const;

 private:
  bool outputIsTerminal_;
  bool errorIsTerminal_;
  bool allowsColour_;
};

}  // namespace vorquill21::tool
