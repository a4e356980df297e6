#include "vorquill21/platform/program_posix.hpp"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "vorquill21/platform/error_posix.hpp"
#include "vorquill21/platform/open_file_posix.hpp"

extern char** environ;

namespace vorquill21 {
namespace {

/// What the new process does before the program starts: standard input is empty, standard output a pipe.
class StartActions {
 public:
  explicit StartActions(int output) {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
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

std::string ReadToEnd(int pipe) {
  std::string output;
  std::array<char, 4096> buffer;
  for (;;) {
    const ssize_t count = Uninterrupted([&] { return ::read(pipe, buffer.data(), buffer.size()); });
    if (count <= 0) return output;
    output.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

int WaitForEnd(pid_t process) {
  constexpr int kEndedBySignal = 128;
  int status = 0;
  const pid_t ended = Uninterrupted([&] { return ::waitpid(process, &status, 0); });
  // A host that ignores its children gets no exit codes.
  if (ended != process) return 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : kEndedBySignal + WTERMSIG(status);
}

}  // namespace

std::optional<ProgramResult> RunProgram(const std::vector<std::string>& arguments) {
  std::vector<char*> argumentList;
  argumentList.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) argumentList.push_back(const_cast<char*>(argument.c_str()));
  argumentList.push_back(nullptr);

  std::array<int, 2> pipeEnds{};
  if (::pipe2(pipeEnds.data(), O_CLOEXEC) == -1) return std::nullopt;
  const auto [readEnd, writeEnd] = pipeEnds;
  pid_t process = 0;
  const int error = ::posix_spawnp(&process, argumentList.front(), StartActions(writeEnd).Get(),
                                   StartAttributes().Get(), argumentList.data(), environ);
  ::close(writeEnd);
  std::optional<ProgramResult> result;
  if (error == 0) {
    std::string output = ReadToEnd(readEnd);
    result = ProgramResult{WaitForEnd(process), std::move(output)};
  }
  ::close(readEnd);
  return result;
}

}  // namespace vorquill21
