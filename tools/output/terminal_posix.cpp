#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "failure.hpp"
#include "output/result.hpp"
#include "output/terminal.hpp"

namespace vorquill21::tool {
namespace {

bool AllowsColour() {
  const char* const refusal = std::getenv("NO_COLOR");
  const char* const kind = std::getenv("TERM");
  return (refusal == nullptr || *refusal == '\0') && kind != nullptr && std::strcmp(kind, "dumb") != 0;
}

}  // namespace

Terminal::Terminal()
    : outputIsTerminal_(::isatty(STDOUT_FILENO) == 1),
      errorIsTerminal_(::isatty(STDERR_FILENO) == 1),
      allowsColour_(AllowsColour()) {
  ::signal(SIGPIPE, SIG_IGN);  // a closed pipe is told by write()
}

bool Terminal::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EPIPE) {
      return false;
    } else if (errno != EINTR) {
      throw Failure(ExitCode::kInputOutput,
                    std::string("cannot write standard output: ") + std::strerror(errno));
    }
  }
  return true;
}

void Terminal::Complain(std::string_view message) const {
  const bool inColour = errorIsTerminal_ && allowsColour_;
  std::cerr << (inColour ? "\033[31mvorquill21:\033[0m " : "vorquill21: ") << Visible(message) << '\n';
}

Terminal::Size Terminal::OutputSize() const {
  winsize size{};
  if (!outputIsTerminal_ || ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return {};
  return {size.ws_col, size.ws_row};
}

}  // namespace vorquill21::tool
