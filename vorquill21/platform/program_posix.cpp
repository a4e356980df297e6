#include "vorquill21/platform/program_posix.hpp"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <thread>

#include "vorquill21/platform/error_posix.hpp"

extern char** environ;

namespace vorquill21 {
namespace {

/// What the new process does before the program starts: standard output goes to a descriptor, or nowhere for
/// kNowhere, and standard input is empty.
class StartActions {
 public:
  static constexpr int kNowhere = -1;

  explicit StartActions(int output) {
    ::posix_spawn_file_actions_init(&actions_);
    if (output == kNowhere) {
      ::posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    } else {
      ::posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    }
    // Last, as the output may be this very descriptor in a host without standard input.
    ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  StartActions(const StartActions&) = delete;
  StartActions& operator=(const StartActions&) = delete;
  ~StartActions() { ::posix_spawn_file_actions_destroy(&actions_); }

  const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

/// The new process neither blocks nor ignores the signals that this one does.
class StartAttributes {
 public:
  StartAttributes() {
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_init(&attributes_);
    ::posix_spawnattr_setsigmask(&attributes_, &none);
    ::posix_spawnattr_setsigdefault(&attributes_, &all);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  StartAttributes(const StartAttributes&) = delete;
  StartAttributes& operator=(const StartAttributes&) = delete;
  ~StartAttributes() { ::posix_spawnattr_destroy(&attributes_); }

  const posix_spawnattr_t* Get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

/// The process, or nothing when the program could not be started.
std::optional<pid_t> Start(const std::vector<std::string>& arguments, int output) {
  std::vector<char*> argumentList;
  for (const std::string& argument : arguments) argumentList.push_back(const_cast<char*>(argument.c_str()));
  argumentList.push_back(nullptr);
  pid_t process = 0;
  const int error = ::posix_spawnp(&process, argumentList.front(), StartActions(output).Get(),
                                   StartAttributes().Get(), argumentList.data(), environ);
  if (error != 0) return std::nullopt;
  return process;
}

std::string ReadToEnd(int pipe) {
  std::string output;
  std::array<char, 4096> buffer;
  for (;;) {
    const ssize_t count = Uninterrupted([&] { return ::read(pipe, buffer.data(), buffer.size()); });
    if (count <= 0) return output;
    output.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

/// As Start, with all that the program writes to standard output.
std::optional<pid_t> StartAndRead(const std::vector<std::string>& arguments, std::string& output) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) == -1) return std::nullopt;
  const auto [readEnd, writeEnd] = ends;
  const std::optional<pid_t> process = Start(arguments, writeEnd);
  ::close(writeEnd);
  if (process) output = ReadToEnd(readEnd);
  ::close(readEnd);
  return process;
}

/// The exit code of a process; nothing while it runs, which only happens with the option WNOHANG.
std::optional<int> ExitCode(pid_t process, int options) {
  constexpr int kEndedBySignal = 128;
  int status = 0;
  const pid_t ended = Uninterrupted([&] { return ::waitpid(process, &status, options); });
  if (ended == 0) return std::nullopt;
  // A host that ignores its children gets no exit codes.
  if (ended != process) return 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : kEndedBySignal + WTERMSIG(status);
}

}  // namespace

std::optional<pid_t> StartProgram(const std::vector<std::string>& arguments) {
  return Start(arguments, StartActions::kNowhere);
}

std::optional<int> ExitCodeOf(pid_t process, std::chrono::milliseconds patience) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::milliseconds kPause(5);
  const Clock::time_point end = Clock::now() + patience;
  for (;;) {
    const std::optional<int> exitCode = ExitCode(process, WNOHANG);
    if (exitCode || Clock::now() >= end) return exitCode;
    std::this_thread::sleep_for(kPause);
  }
}

std::optional<int> RunProgram(const std::vector<std::string>& arguments, std::string* output) {
  const std::optional<pid_t> process =
      output == nullptr ? StartProgram(arguments) : StartAndRead(arguments, *output);
  if (!process) return std::nullopt;
  return ExitCode(*process, 0);
}

}  // namespace vorquill21
