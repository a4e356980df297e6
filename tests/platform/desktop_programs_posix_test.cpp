// The desktop with the programs that a real system has: xdg-open with a document type of the test's own, and
// zenity on a display that nobody sees.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "tests/platform/system_posix.hpp"
#include "tests/support/temporary_folder.hpp"
#include "vorquill21/platform/desktop_posix.hpp"
#include "vorquill21/platform/files_posix.hpp"
#include "vorquill21/platform/program_posix.hpp"

namespace vorquill21 {
namespace {

using test::ContentOf;
using test::ScopedVariable;
using test::WriteContent;

bool IsInstalled(const std::string& program) {
  return RunProgram({"sh", "-c", "command -v \"$1\"", "sh", program}) == 0;
}

/// The first of `programs` that is missing; empty when all are there.
std::string Missing(std::initializer_list<const char*> programs) {
  for (const char* program : programs) {
    if (!IsInstalled(program)) return program;
  }
  return {};
}

class DesktopProgramsTest : public ::testing::Test {
 protected:
  std::string At(const std::string& name) const { return folder_.Path().string() + '/' + name; }

  test::TemporaryFolder folder_;
  ScopedVariable home_{"HOME", folder_.Path().c_str()};
  ScopedVariable config_{"XDG_CONFIG_HOME", nullptr};
  ScopedVariable data_{"XDG_DATA_HOME", nullptr};
  ScopedVariable cache_{"XDG_CACHE_HOME", nullptr};
  ScopedVariable desktopName_{"XDG_CURRENT_DESKTOP", nullptr};
  ScopedVariable wayland_{"WAYLAND_DISPLAY", nullptr};
  FileCalls calls_;
  PosixFiles files_{calls_};
  PosixDesktop desktop_{files_, calls_, std::chrono::minutes(2)};
};

// --- xdg-open --------------------------------------------------------------------------------------------

class XdgOpenTest : public DesktopProgramsTest {
 protected:
  /// Makes a viewer of plain texts that notes what it is to show.
  void MakeViewer() {
    std::filesystem::create_directories(At(".local/share/applications"));
    std::filesystem::create_directories(At(".config"));
    WriteContent(At("viewer"), "#!/bin/sh\nprintf '%s' \"$1\" > '" + At("shown") + "'\n");
    ::chmod(At("viewer").c_str(), 0755);
    WriteContent(At(".local/share/applications/viewer-of-the-test.desktop"),
                 "[Desktop Entry]\nType=Application\nName=Viewer\nExec=" + At("viewer") +
                     " %f\nMimeType=text/plain;\n");
    WriteContent(At(".config/mimeapps.list"),
                 "[Default Applications]\ntext/plain=viewer-of-the-test.desktop\n");
  }

  std::int32_t Open(TextView document) {
    DocumentRequest request;
    request.document = document;
    return desktop_.OpenDocument(request);
  }

  ScopedVariable display_{"DISPLAY", ":4711"};
  ScopedVariable browser_{"BROWSER", "false"};
};

TEST_F(XdgOpenTest, ADocumentIsShownByTheProgramOfItsType) {
  const std::string missing = Missing({"xdg-open", "file"});
  if (!missing.empty()) GTEST_SKIP() << missing << " is not installed";
  MakeViewer();
  WriteContent(At("a document.txt"), "plain text\n");
  EXPECT_EQ(Open(folder_.Below(u"a document.txt")), 33);
  EXPECT_EQ(ContentOf(At("shown")), At("a document.txt"));
}

TEST_F(XdgOpenTest, ADocumentWithoutAProgramIsNotOpened) {
  const std::string missing = Missing({"xdg-open", "file"});
  if (!missing.empty()) GTEST_SKIP() << missing << " is not installed";
  MakeViewer();
  WriteContent(At("a.vq21unknown"), std::string("\x01\x02\0\xFF", 4));
  EXPECT_EQ(Open(folder_.Below(u"a.vq21unknown")), 31);
  EXPECT_EQ(Open(folder_.Below(u"missing.txt")), 2);
  EXPECT_FALSE(std::filesystem::exists(At("shown")));
}

// --- zenity ----------------------------------------------------------------------------------------------

/// A display that nobody sees, for as long as it lives. It has a number of its own: of two servers that look
/// for a free one at the same time, the first to end would take the other one's socket along.
class InvisibleDisplay {
 public:
  InvisibleDisplay() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) == -1) return;
    server_ = ::fork();
    if (server_ == 0) {
      const std::string descriptor = std::to_string(ends[1]);
      ::execlp("Xvfb", "Xvfb", name_.c_str(), "-displayfd", descriptor.c_str(), "-screen", "0", "800x600x24",
               "-nolisten", "tcp", static_cast<char*>(nullptr));
      ::_exit(127);
    }
    ::close(ends[1]);
    // It tells its number when it is ready.
    for (char sign = 0; !isUp_ && ::read(ends[0], &sign, 1) == 1;) isUp_ = sign == '\n';
    ::close(ends[0]);
  }
  InvisibleDisplay(const InvisibleDisplay&) = delete;
  InvisibleDisplay& operator=(const InvisibleDisplay&) = delete;
  ~InvisibleDisplay() {
    if (server_ <= 0) return;
    ::kill(server_, SIGTERM);
    ::waitpid(server_, nullptr, 0);
  }

  bool IsUp() const { return isUp_; }
  const std::string& Name() const { return name_; }

 private:
  static constexpr int kLeastNumber = 100;
  static constexpr int kNumbers = 50'000;

  std::string name_ = ":" + std::to_string(kLeastNumber + ::getpid() % kNumbers);
  pid_t server_ = -1;
  bool isUp_ = false;
};

/// Answers the dialog of a title by keys, again and again until it is gone.
class DialogAnswerer {
 public:
  DialogAnswerer(std::string title, std::string typed, std::string key)
      : title_(std::move(title)), typed_(std::move(typed)), key_(std::move(key)) {}
  DialogAnswerer(const DialogAnswerer&) = delete;
  DialogAnswerer& operator=(const DialogAnswerer&) = delete;
  ~DialogAnswerer() { isOver_ = true; }

  /// Whether the dialog was seen.
  bool HasAnswered() const { return hasAnswered_; }

 private:
  void Answer() {
    constexpr int kTries = 60;
    for (int tries = 0; !isOver_; ++tries) {
      std::this_thread::sleep_for(std::chrono::milliseconds(500));
      if (RunProgram({"xdotool", "search", "--name", title_, "windowfocus"}) != 0) continue;
      hasAnswered_ = true;
      if (!typed_.empty()) RunProgram({"xdotool", "key", "ctrl+a", "type", "--delay", "20", typed_});
      RunProgram({"xdotool", "key", key_});
      if (tries > kTries) RunProgram({"xdotool", "search", "--name", title_, "windowkill"});
      std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    }
  }

  std::string title_;
  std::string typed_;
  std::string key_;
  std::atomic<bool> isOver_ = false;
  std::atomic<bool> hasAnswered_ = false;
  std::jthread thread_{[this] { Answer(); }};
};

class ZenityTest : public DesktopProgramsTest {
 protected:
  void SetUp() override {
    const std::string missing = Missing({"zenity", "Xvfb", "xdotool"});
    if (!missing.empty()) GTEST_SKIP() << missing << " is not installed";
    screen_.emplace();
    if (!screen_->IsUp()) GTEST_SKIP() << "Xvfb does not start";
    display_.emplace("DISPLAY", screen_->Name().c_str());
  }

  std::optional<InvisibleDisplay> screen_;
  std::optional<ScopedVariable> display_;
  ScopedVariable settings_{"GSETTINGS_BACKEND", "memory"};
  ScopedVariable bridge_{"NO_AT_BRIDGE", "1"};
};

TEST_F(ZenityTest, AMessageIsShownUntilItIsConfirmed) {
  for (const MessageStyle style : {kExclamation, kInformation}) {
    const DialogAnswerer answerer("Box of the test", "", "Return");
    ::testing::internal::CaptureStderr();
    desktop_.ShowMessage(u"An error occurred while reading file: <a>\r\n\u20AC", style, u"Box of the test");
    const std::string errorOutput = ::testing::internal::GetCapturedStderr();
    EXPECT_TRUE(answerer.HasAnswered());
    EXPECT_EQ(errorOutput.find("Box of the test: "), std::string::npos) << errorOutput;
  }
}

TEST_F(ZenityTest, AMessageThatIsClosedOtherwiseGoesToStandardErrorToo) {
  const DialogAnswerer answerer("Box of the test", "", "Escape");
  ::testing::internal::CaptureStderr();
  desktop_.ShowMessage(u"text", kExclamation, u"Box of the test");
  const std::string errorOutput = ::testing::internal::GetCapturedStderr();
  EXPECT_TRUE(answerer.HasAnswered());
  EXPECT_NE(errorOutput.find("Box of the test: text\n"), std::string::npos) << errorOutput;
}

TEST_F(ZenityTest, TheFolderThatIsTypedInIsPicked) {
  std::filesystem::create_directory(At("picked"));
  const DialogAnswerer answerer("Pick one of the test", At("picked"), "Return");
  EXPECT_EQ(desktop_.BrowseForFolder(0, u"Pick one of the test"), FromUtf8(At("picked")));
  EXPECT_TRUE(answerer.HasAnswered());
}

TEST_F(ZenityTest, AChoiceThatIsCancelledPicksNothing) {
  const DialogAnswerer answerer("Pick one of the test", "", "Escape");
  EXPECT_EQ(desktop_.BrowseForFolder(0, u"Pick one of the test"), std::nullopt);
  EXPECT_TRUE(answerer.HasAnswered());
}

}  // namespace
}  // namespace vorquill21
