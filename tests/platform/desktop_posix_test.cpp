#include "vorquill21/platform/desktop_posix.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/system_posix.hpp"
#include "tests/support/temporary_folder.hpp"
#include "vorquill21/platform/files_posix.hpp"
#include "vorquill21/platform/program_posix.hpp"

namespace vorquill21 {
namespace {

using test::ContentOf;
using test::ScopedVariable;
using test::WriteContent;
using Arguments = std::vector<std::string>;

/// The real desktop, with a display and with programs of the test's own alone.
class PosixDesktopTest : public ::testing::Test {
 protected:
  PosixDesktopTest() { std::filesystem::create_directory(At("bin")); }
  ~PosixDesktopTest() override {
    EXPECT_EQ(test::OpenDescriptors(), openDescriptors_);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
  }

  std::string At(const std::string& name) const { return folder_.Path().string() + '/' + name; }

  /// Makes a program that notes its arguments, writes `output` and ends with `exitCode`.
  void MakeProgram(const std::string& name, const std::string& output = "", int exitCode = 0) {
    const std::string path = At("bin/" + name);
    WriteContent(path, "#!/bin/sh\nprintf '%s\\0' \"$@\" > '" + At(name + ".arguments") + "'\nprintf '%s' '" +
                           output + "'\nexit " + std::to_string(exitCode) + "\n");
    ::chmod(path.c_str(), 0755);
  }

  /// What a program noted; nothing when it was not called.
  std::optional<Arguments> ArgumentsOf(const std::string& name) const {
    if (!std::filesystem::exists(At(name + ".arguments"))) return std::nullopt;
    Arguments arguments;
    std::string rest = ContentOf(At(name + ".arguments"));
    for (std::size_t end; (end = rest.find('\0')) != std::string::npos; rest.erase(0, end + 1)) {
      arguments.push_back(rest.substr(0, end));
    }
    return arguments;
  }

  /// What the message box writes to standard error.
  std::string ErrorOutputOf(TextView text, TextView title = u"Title") {
    ::testing::internal::CaptureStderr();
    desktop_.ShowMessage(text, kExclamation, title);
    return ::testing::internal::GetCapturedStderr();
  }

  std::int32_t Open(TextView document) {
    DocumentRequest request;
    request.document = document;
    return desktop_.OpenDocument(request);
  }

  /// True while a program that was started runs, or nobody has asked for its exit code.
  static bool HasChild() {
    siginfo_t child{};
    return ::waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) == 0;
  }

  test::TemporaryFolder folder_;
  std::size_t openDescriptors_ = test::OpenDescriptors();
  ScopedVariable path_{"PATH", (folder_.Path().string() + "/bin").c_str()};
  ScopedVariable display_{"DISPLAY", ":4711"};
  FileCalls calls_;
  PosixFiles files_{calls_};
  PosixDesktop desktop_{files_, calls_};
};

TEST_F(PosixDesktopTest, AMessageIsShownByZenityWithoutMarkup) {
  MakeProgram("zenity");
  MakeProgram("kdialog");
  EXPECT_EQ(ErrorOutputOf(u"An error occurred"), "");
  EXPECT_EQ(ArgumentsOf("zenity"),
            (Arguments{"--warning", "--no-markup", "--title=Title", "--text=An error occurred"}));
  EXPECT_EQ(ArgumentsOf("kdialog"), std::nullopt);
  desktop_.ShowMessage(u"passed", kInformation, u"T");
  EXPECT_EQ(ArgumentsOf("zenity"), (Arguments{"--info", "--no-markup", "--title=T", "--text=passed"}));
}

TEST_F(PosixDesktopTest, AMessageIsShownByKdialogWhereThatIsAll) {
  MakeProgram("kdialog");
  EXPECT_EQ(ErrorOutputOf(u"C:\\new"), "");
  EXPECT_EQ(ArgumentsOf("kdialog"), (Arguments{"--title=Title", "--sorry=C:\\\\new"}));
  desktop_.ShowMessage(u"passed", kInformation, u"T");
  EXPECT_EQ(ArgumentsOf("kdialog"), (Arguments{"--title=T", "--msgbox=passed"}));
}

TEST_F(PosixDesktopTest, NoCharacterOfAMessageMeansAnythingToAShellOrTheDialog) {
  MakeProgram("zenity");
  const std::string text = "-x '\"`touch a` $(touch b) ; & | <b>%s\\n</b> \xC3\xA4\xE6\x97\xA5 *";
  EXPECT_EQ(ErrorOutputOf(FromUtf8(text), u"--title"), "");
  EXPECT_EQ(ArgumentsOf("zenity"),
            (Arguments{"--warning", "--no-markup", "--title=--title", "--text=" + text}));
}

TEST_F(PosixDesktopTest, LineEndsAreLineEndsInTheDialogAndBlanksOnStandardError) {
  const TextView text = u"one\r\ntwo\rthree\n\nfour\r";
  EXPECT_EQ(ErrorOutputOf(text, u"A\nB"), "A B: one two three  four \n");
  MakeProgram("zenity");
  EXPECT_EQ(ErrorOutputOf(text), "");
  EXPECT_EQ(ArgumentsOf("zenity")->back(), "--text=one\ntwo\nthree\n\nfour\n");
}

TEST_F(PosixDesktopTest, UnitsThatAreNoCharactersAreShownAsSuch) {
  MakeProgram("zenity");
  const Text text = Text(u"a") + u'\0' + u'b' + char16_t{0xD800} + u'c' + char16_t{0xDC85} + u"\U0001F600";
  EXPECT_EQ(ErrorOutputOf(text), "");
  EXPECT_EQ(ArgumentsOf("zenity")->back(),
            "--text=a b\xEF\xBF\xBD"
            "c\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

TEST_F(PosixDesktopTest, AUnitWithoutItsPartnerIsShownAsSuchWhateverFollows) {
  MakeProgram("zenity");
  const char16_t high = 0xD83D;
  const Text text = Text(1, high) + char16_t{0xE000} + high + high + char16_t{0xDE00} + high;
  EXPECT_EQ(ErrorOutputOf(text), "");
  EXPECT_EQ(ArgumentsOf("zenity")->back(),
            "--text=\xEF\xBF\xBD\xEE\x80\x80\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD");
}

TEST_F(PosixDesktopTest, WithoutADisplayAMessageIsOneLineOnStandardError) {
  const ScopedVariable noDisplay("DISPLAY", nullptr);
  MakeProgram("zenity");
  MakeProgram("kdialog");
  EXPECT_EQ(ErrorOutputOf(u"An error occurred while reading file: a.txt"),
            "Title: An error occurred while reading file: a.txt\n");
  EXPECT_EQ(ArgumentsOf("zenity"), std::nullopt);
  EXPECT_EQ(ArgumentsOf("kdialog"), std::nullopt);
  const ScopedVariable emptyDisplay("DISPLAY", "");
  EXPECT_EQ(ErrorOutputOf(u"text"), "Title: text\n");
  EXPECT_EQ(ArgumentsOf("zenity"), std::nullopt);
  const ScopedVariable wayland("WAYLAND_DISPLAY", "wayland-0");
  EXPECT_EQ(ErrorOutputOf(u"text"), "");
  EXPECT_NE(ArgumentsOf("zenity"), std::nullopt);
}

TEST_F(PosixDesktopTest, WithoutADialogProgramAMessageIsOneLineOnStandardError) {
  EXPECT_EQ(ErrorOutputOf(u"text"), "Title: text\n");
}

TEST_F(PosixDesktopTest, AMessageThatNobodyConfirmedIsNotLost) {
  MakeProgram("zenity", "", 1);
  EXPECT_EQ(ErrorOutputOf(u"text"), "Title: text\n");
}

TEST_F(PosixDesktopTest, AMessageTooLongForADialogGoesToStandardError) {
  MakeProgram("zenity");
  MakeProgram("kdialog");
  const std::string text(1'000'000, 'x');
  EXPECT_TRUE(ErrorOutputOf(FromUtf8(text)) == "Title: " + text + "\n");
}

TEST_F(PosixDesktopTest, ABeepIsForTerminalsAlone) {
  ::testing::internal::CaptureStderr();
  desktop_.Beep();
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

/// Standard error is another descriptor, until destroyed.
class RedirectedStandardError {
 public:
  explicit RedirectedStandardError(int descriptor) : kept_(::dup(STDERR_FILENO)) {
    ::dup2(descriptor, STDERR_FILENO);
  }
  RedirectedStandardError(const RedirectedStandardError&) = delete;
  RedirectedStandardError& operator=(const RedirectedStandardError&) = delete;
  ~RedirectedStandardError() {
    ::dup2(kept_, STDERR_FILENO);
    ::close(kept_);
  }

 private:
  int kept_;
};

TEST_F(PosixDesktopTest, ABeepSoundsOnATerminal) {
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal == -1) GTEST_SKIP() << "the system has no terminals";
  ASSERT_EQ(::grantpt(terminal), 0);
  ASSERT_EQ(::unlockpt(terminal), 0);
  const int end = ::open(::ptsname(terminal), O_RDWR | O_NOCTTY);
  ASSERT_NE(end, -1);
  {
    const RedirectedStandardError redirected(end);
    desktop_.Beep();
  }
  char written[8] = {};
  EXPECT_EQ(::read(terminal, written, sizeof written), 1);
  EXPECT_EQ(written[0], '\a');
  ::close(end);
  ::close(terminal);
}

TEST_F(PosixDesktopTest, AMessageThatStandardErrorRefusesHarmsNobody) {
  const ScopedVariable noDisplay("DISPLAY", nullptr);
  const int onlyForReading = ::open("/dev/null", O_RDONLY);
  {
    const RedirectedStandardError redirected(onlyForReading);
    desktop_.ShowMessage(u"text", kExclamation, u"Title");
  }
  ::close(onlyForReading);
  EXPECT_EQ(ErrorOutputOf(u"text"), "Title: text\n");
}

TEST_F(PosixDesktopTest, ADocumentIsHandedToXdgOpen) {
  MakeProgram("xdg-open");
  WriteContent(At("a document.txt"), "x");
  EXPECT_GT(Open(folder_.Below(u"a document.txt")), 32);
  EXPECT_EQ(ArgumentsOf("xdg-open"), Arguments{At("a document.txt")});
  EXPECT_GT(Open(u"https://example.com/a?b=c&d"), 32);
  EXPECT_EQ(ArgumentsOf("xdg-open"), Arguments{"https://example.com/a?b=c&d"});
}

TEST_F(PosixDesktopTest, ADocumentOfTheWorkingFolderIsNeverAnOption) {
  MakeProgram("xdg-open");
  WriteContent(At("--version"), "x");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.Path());
  EXPECT_GT(Open(u"--version"), 32);
  std::filesystem::current_path(before);
  EXPECT_EQ(ArgumentsOf("xdg-open"), Arguments{"./--version"});
}

TEST_F(PosixDesktopTest, TheExitCodeOfXdgOpenBecomesACodeOfTheShell) {
  WriteContent(At("a"), "x");
  struct Case {
    int exitCode;
    std::int32_t result;
  };
  for (const Case& each : {Case{0, 33}, Case{1, 0}, Case{2, 2}, Case{3, 31}, Case{4, 31}, Case{127, 31}}) {
    MakeProgram("xdg-open", "", each.exitCode);
    EXPECT_EQ(Open(folder_.Below(u"a")), each.result) << each.exitCode;
  }
}

TEST_F(PosixDesktopTest, AProgramThatShowsADocumentIsNotWaitedFor) {
  constexpr std::chrono::milliseconds kPatience(100);
  PosixDesktop impatient(files_, calls_, kPatience);
  DocumentRequest request;
  request.document = folder_.Below(u"a");
  WriteContent(At("a"), "x");
  WriteContent(At("bin/xdg-open"),
               "#!/bin/sh\nwhile [ ! -e '" + At("closed") + "' ]; do /bin/sleep 0.05; done\nexit 4\n");
  ::chmod(At("bin/xdg-open").c_str(), 0755);
  EXPECT_EQ(impatient.OpenDocument(request), 33);
  EXPECT_TRUE(HasChild()) << "the program still shows the document";

  WriteContent(At("closed"), "");
  MakeProgram("xdg-open");
  constexpr int kTries = 600;
  for (int tries = 0; tries < kTries && HasChild(); ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(impatient.OpenDocument(request), 33);  // takes note of the end of the first one
  }
  EXPECT_FALSE(HasChild());
}

TEST_F(PosixDesktopTest, WhatCannotBeOpenedHasItsCodeWithoutXdgOpen) {
  MakeProgram("xdg-open");
  std::filesystem::create_directory(At("closed"));
  ::chmod(At("closed").c_str(), 0);
  ::chmod(folder_.Path().c_str(), 0755);
  WriteContent(At("file"), "x");
  std::filesystem::create_symlink("circle", At("circle"));
  struct Case {
    Text document;
    std::int32_t result;
  };
  const Case cases[] = {{folder_.Below(u"missing"), 2},
                        {folder_.Below(u"missing\\a"), 3},
                        {folder_.Below(u"file\\a"), 3},
                        {folder_.Below(u"circle"), 2},
                        {folder_.Below(u"missing/a://b"), 3},
                        {u"C:\\a.txt", 3},
                        {u"", 2},
                        {folder_.Below(u"fi") + u'\0', 2},
                        {folder_.Below(u"closed\\a"), 5}};
  const test::AsOrdinaryUser user;
  for (const Case& each : cases) EXPECT_EQ(Open(each.document), each.result) << ToUtf8(each.document);
  EXPECT_EQ(ArgumentsOf("xdg-open"), std::nullopt);
}

TEST_F(PosixDesktopTest, WithoutDisplayOrXdgOpenNoProgramOpensADocument) {
  WriteContent(At("a"), "x");
  EXPECT_EQ(Open(folder_.Below(u"a")), 31);
  MakeProgram("xdg-open");
  const ScopedVariable noDisplay("DISPLAY", nullptr);
  EXPECT_EQ(Open(folder_.Below(u"a")), 31);
  EXPECT_EQ(ArgumentsOf("xdg-open"), std::nullopt);
}

TEST_F(PosixDesktopTest, TheFolderThatWasPickedComesBack) {
  MakeProgram("zenity", "/home/user/two words\n");
  EXPECT_EQ(desktop_.BrowseForFolder(0, u"Pick\none"), u"/home/user/two words");
  EXPECT_EQ(ArgumentsOf("zenity"), (Arguments{"--file-selection", "--directory", "--title=Pick one"}));
  MakeProgram("zenity", "/ends in a line end\n\n");
  EXPECT_EQ(desktop_.BrowseForFolder(0, u""), u"/ends in a line end\n");
}

TEST_F(PosixDesktopTest, TheFolderIsPickedByKdialogWhereThatIsAll) {
  MakeProgram("kdialog", "/picked\n");
  EXPECT_EQ(desktop_.BrowseForFolder(0, u"Pick"), u"/picked");
  EXPECT_EQ(ArgumentsOf("kdialog"), (Arguments{"--title=Pick", "--getexistingdirectory"}));
}

TEST_F(PosixDesktopTest, AChoiceThatWasCancelledOrCannotBeOfferedIsNone) {
  EXPECT_EQ(desktop_.BrowseForFolder(0, u"Pick"), std::nullopt);
  MakeProgram("zenity", "/ignored\n", 1);
  EXPECT_EQ(desktop_.BrowseForFolder(0, u"Pick"), std::nullopt);
  MakeProgram("zenity", "");
  EXPECT_EQ(desktop_.BrowseForFolder(0, u"Pick"), std::nullopt);
  MakeProgram("zenity", "/ignored\n");
  const ScopedVariable noDisplay("DISPLAY", nullptr);
  EXPECT_EQ(desktop_.BrowseForFolder(0, u"Pick"), std::nullopt);
}

class SpecialFolderTest : public PosixDesktopTest {
 protected:
  /// The path of an identifier, or the number that says why there is none.
  Text Find(std::int32_t identifier) {
    Text path = u"before";
    const std::int32_t result = desktop_.SpecialFolder(identifier, path);
    if (result == 0) return path;
    EXPECT_EQ(path, u"before");
    return FromUtf8(std::to_string(result));
  }
  Text In(const std::string& name) const { return FromUtf8(At(name)); }

  ScopedVariable home_{"HOME", folder_.Path().c_str()};
  ScopedVariable config_{"XDG_CONFIG_HOME", nullptr};
  ScopedVariable data_{"XDG_DATA_HOME", nullptr};
  ScopedVariable cache_{"XDG_CACHE_HOME", nullptr};
  ScopedVariable dataFolders_{"XDG_DATA_DIRS", nullptr};
};

TEST_F(SpecialFolderTest, EachIdentifierMeansItsFolderBelowHome) {
  struct Case {
    std::int32_t identifier;
    const char* folder;
  };
  const Case cases[] = {{5, "Documents"}, {26, ".config"},  {28, ".local/share"},
                        {32, ".cache"},   {39, "Pictures"}, {46, "Public"}};
  for (const Case& each : cases) {
    EXPECT_EQ(Find(each.identifier), u"1") << each.folder;
    EXPECT_EQ(Find(each.identifier + 32768), In(each.folder));
    EXPECT_TRUE(std::filesystem::is_directory(At(each.folder)));
    EXPECT_EQ(Find(each.identifier), In(each.folder));
  }
}

TEST_F(SpecialFolderTest, WhatHasNoFolderHereIsAnInvalidArgument) {
  for (const std::int32_t identifier : {33, 34, 36, 37, 38, 43, 47, 48, 0, -1, 9999, 36 + 32768}) {
    EXPECT_EQ(Find(identifier), u"-2147024809") << identifier;
  }
}

TEST_F(SpecialFolderTest, TheEnvironmentMovesFolders) {
  std::filesystem::create_directory(At("moved"));
  const ScopedVariable config("XDG_CONFIG_HOME", At("moved").c_str());
  const ScopedVariable data("XDG_DATA_HOME", (At("moved") + "//").c_str());
  const ScopedVariable cache("XDG_CACHE_HOME", "relative values do not count");
  const ScopedVariable dataFolders("XDG_DATA_DIRS", (At("moved") + ":/usr/share").c_str());
  const ScopedVariable documents("XDG_DOCUMENTS_DIR", At("moved").c_str());
  for (const std::int32_t identifier : {5, 26, 28, 35})
    EXPECT_EQ(Find(identifier), In("moved")) << identifier;
  EXPECT_EQ(Find(32), u"1");
  const ScopedVariable defaultFolders("XDG_DATA_DIRS", nullptr);
  EXPECT_EQ(Find(35), std::filesystem::is_directory("/usr/local/share") ? u"/usr/local/share" : u"1");
}

TEST_F(SpecialFolderTest, TheUsersChoiceOfFoldersCounts) {
  std::filesystem::create_directories(At(".config"));
  std::filesystem::create_directories(At("My \"own\" texts"));
  WriteContent(At(".config/user-dirs.dirs"),
               "# a comment\n"
               "XDG_DOCUMENTS_DIRECTORY=\"/nowhere\"\n"
               "  XDG_DOCUMENTS_DIR=\"$HOME/My \\\"own\\\" texts\"\n"
               "XDG_PICTURES_DIR=\"" +
                   At("My \\\"own\\\" texts") +
                   "\"\n"
                   "XDG_PUBLICSHARE_DIR=\"$HOME/\"");
  EXPECT_EQ(Find(5), In("My \"own\" texts"));
  EXPECT_EQ(Find(39), In("My \"own\" texts"));
  EXPECT_EQ(Find(46), FromUtf8(folder_.Path().string()));
}

TEST_F(SpecialFolderTest, ALineThatNamesNoFullPathIsNoChoice) {
  std::filesystem::create_directories(At(".config"));
  std::filesystem::create_directories(At("Documents"));
  for (const std::string value : {"", "/no/quotes", "\"\"", "\"", "\"relative\"", "\"\\"}) {
    WriteContent(At(".config/user-dirs.dirs"), "XDG_DOCUMENTS_DIR=" + value);
    EXPECT_EQ(Find(5), In("Documents")) << value;
  }
}

TEST_F(SpecialFolderTest, AValueWithoutItsLastQuoteEndsWithTheLine) {
  std::filesystem::create_directories(At(".config"));
  std::filesystem::create_directories(At("texts"));
  WriteContent(At(".config/user-dirs.dirs"),
               "XDG_DOCUMENTS_DIR=\"$HOME/texts\nXDG_PICTURES_DIR=\"$HOME/te\\xts");
  EXPECT_EQ(Find(5), In("texts"));
  EXPECT_EQ(Find(39), In("texts"));
}

TEST_F(SpecialFolderTest, TheRootKeepsItsSeparator) {
  const ScopedVariable data("XDG_DATA_HOME", "//");
  EXPECT_EQ(Find(28), u"/");
}

TEST_F(SpecialFolderTest, AFolderThatAnotherMakesMeanwhileIsThere) {
  class BusyFiles : public PosixFiles {
   public:
    using PosixFiles::PosixFiles;
    void MakeFolder(TextView path) override {
      PosixFiles::MakeFolder(path);
      PosixFiles::MakeFolder(path);
    }
  };
  BusyFiles files(calls_);
  PosixDesktop desktop(files, calls_);
  Text path;
  EXPECT_EQ(desktop.SpecialFolder(28 + 32768, path), 0);
  EXPECT_EQ(path, In(".local/share"));
}

TEST_F(SpecialFolderTest, WithoutAHomeInTheEnvironmentTheUserDatabaseKnowsIt) {
  const ScopedVariable noHome("HOME", nullptr);
  const ScopedVariable config("XDG_CONFIG_HOME", nullptr);
  Text path;
  const std::int32_t result = desktop_.SpecialFolder(26, path);
  EXPECT_TRUE(result == 1 || (result == 0 && path.ends_with(u"/.config"))) << result;
}

TEST_F(SpecialFolderTest, AFolderThatCannotBeMadeDoesNotExist) {
  WriteContent(At("file"), "x");
  const ScopedVariable config("XDG_CONFIG_HOME", At("file/below").c_str());
  EXPECT_EQ(Find(26 + 32768), u"1");
}

TEST(ProgramTest, OutputAndExitCodeComeBack) {
  std::string output;
  EXPECT_EQ(RunProgram({"sh", "-c", "printf '%s' \"$1\"; exit 7", "sh", "two words"}, &output), 7);
  EXPECT_EQ(output, "two words");
  EXPECT_EQ(RunProgram({"sh", "-c", "printf x; exit 7"}), 7);
}

TEST(ProgramTest, WhatAProgramLeavesRunningIsNotWaitedFor) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(RunProgram({"sh", "-c", "sleep 20 & exit 7"}), 7);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
}

TEST(ProgramTest, AHostWithoutStandardInputGetsTheOutputToo) {
  const int kept = ::dup(STDIN_FILENO);
  ::close(STDIN_FILENO);
  std::string output;
  const auto exitCode = RunProgram({"sh", "-c", "cat; printf x"}, &output);
  ::dup2(kept, STDIN_FILENO);
  ::close(kept);
  EXPECT_EQ(exitCode, 0);
  EXPECT_EQ(output, "x");
}

TEST(ProgramTest, WhatIsNoProgramCannotBeRun) {
  const std::size_t descriptors = test::OpenDescriptors();
  EXPECT_FALSE(RunProgram({"no such program is there"}));
  EXPECT_FALSE(RunProgram({"/dev/null"}));
  EXPECT_EQ(test::OpenDescriptors(), descriptors);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(ProgramTest, WithoutADescriptorForItsOutputNoProgramRuns) {
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  rlimit none = before;
  none.rlim_cur = 0;
  ::setrlimit(RLIMIT_NOFILE, &none);
  std::string output = "before";
  const auto exitCode = RunProgram({"sh", "-c", "printf x"}, &output);
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(exitCode, std::nullopt);
  EXPECT_EQ(output, "before");
}

TEST(ProgramTest, StandardInputIsEmptyAndMuchOutputIsTaken) {
  std::string output;
  EXPECT_EQ(RunProgram({"sh", "-c", "cat; head -c 1000000 /dev/zero"}, &output), 0);
  EXPECT_EQ(output.size(), 1'000'000u);
}

TEST(ProgramTest, SignalsThatTheHostIgnoresOrBlocksReachTheProgram) {
  sigset_t blocked;
  sigset_t before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGUSR1);
  ::sigprocmask(SIG_BLOCK, &blocked, &before);
  const auto handler = ::signal(SIGUSR1, SIG_IGN);
  const auto exitCode = RunProgram({"sh", "-c", "kill -s USR1 $$; sleep 5"});
  ::signal(SIGUSR1, handler);
  ::sigprocmask(SIG_SETMASK, &before, nullptr);
  EXPECT_EQ(exitCode, 128 + SIGUSR1);
}

TEST(ProgramTest, AHostThatIgnoresItsChildrenIsNotHeldUp) {
  const auto handler = ::signal(SIGCHLD, SIG_IGN);
  std::string output;
  const auto exitCode = RunProgram({"sh", "-c", "printf x; exit 7"}, &output);
  ::signal(SIGCHLD, handler);
  EXPECT_EQ(output, "x");
  EXPECT_EQ(exitCode, 0);
}

TEST(ProgramTest, InterruptionsDoNotDisturbTheWaiting) {
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = [](int) {};
  ::sigaction(SIGALRM, &action, &before);
  const itimerval often{{0, 5000}, {0, 5000}};
  const itimerval never{};
  ::setitimer(ITIMER_REAL, &often, nullptr);
  std::string output;
  const auto exitCode = RunProgram({"sh", "-c", "sleep 0.2; printf x; exec >&-; sleep 0.2; exit 7"}, &output);
  ::setitimer(ITIMER_REAL, &never, nullptr);
  ::sigaction(SIGALRM, &before, nullptr);
  EXPECT_EQ(output, "x");
  EXPECT_EQ(exitCode, 7);
}

}  // namespace
}  // namespace vorquill21
