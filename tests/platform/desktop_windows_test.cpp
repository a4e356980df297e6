#include "vorquill21/platform/desktop_windows.hpp"

#include <gtest/gtest.h>
#include <windows.h>

#include <condition_variable>
#include <cstdio>
#include <filesystem>
#include <mutex>
#include <thread>

#include "tests/platform/file_folder_windows.hpp"
#include "tests/support/fake_platform.hpp"

namespace vorquill21 {
namespace {

Text TextOf(HWND window) {
  wchar_t text[1024];
  const int length = GetWindowTextW(window, text, static_cast<int>(std::size(text)));
  return Text(text, text + length);
}

/// Answers the dialogs that this thread shows: reads each one when it is up, and presses a button. A dialog
/// that stays all the same ends the program.
class DialogAnswerer {
 public:
  explicit DialogAnswerer(WORD button) : button_(button) {
    current_ = this;
    hook_ = SetWindowsHookExW(WH_CBT, &DialogAnswerer::OnEvent, nullptr, GetCurrentThreadId());
  }
  DialogAnswerer(const DialogAnswerer&) = delete;
  DialogAnswerer& operator=(const DialogAnswerer&) = delete;
  ~DialogAnswerer() {
    UnhookWindowsHookEx(hook_);
    current_ = nullptr;
    const std::lock_guard lock(mutex_);
    isOver_ = true;
    over_.notify_one();
  }

  int dialogs = 0;
  Text title;
  std::vector<Text> texts;  // of all controls
  HICON icon = nullptr;
  int buttons = 0;

  bool Shows(TextView text) const { return std::ranges::find(texts, text) != texts.end(); }

 private:
  static std::wstring ClassOf(HWND window) {
    wchar_t name[32];
    return {name, static_cast<std::size_t>(GetClassNameW(window, name, static_cast<int>(std::size(name))))};
  }

  /// The dialog may be activated before it has its controls: it is read from its own message loop.
  static LRESULT CALLBACK OnEvent(int code, WPARAM parameter, LPARAM details) {
    const auto window = reinterpret_cast<HWND>(parameter);
    if (code == HCBT_ACTIVATE && window != current_->dialog_ && ClassOf(window) == L"#32770") {
      current_->dialog_ = window;
      SetTimer(window, reinterpret_cast<UINT_PTR>(current_), 1, &DialogAnswerer::OnTime);
    }
    return CallNextHookEx(nullptr, code, parameter, details);
  }

  static void CALLBACK OnTime(HWND dialog, UINT, UINT_PTR self, DWORD) {
    KillTimer(dialog, self);
    current_->Answer();
  }

  static BOOL CALLBACK OnControl(HWND control, LPARAM) {
    current_->texts.push_back(TextOf(control));
    if (ClassOf(control) == L"Button") ++current_->buttons;
    const auto icon = reinterpret_cast<HICON>(SendMessageW(control, STM_GETICON, 0, 0));
    if (icon != nullptr && ClassOf(control) == L"Static") current_->icon = icon;
    return TRUE;
  }

  void Answer() {
    ++dialogs;
    title = TextOf(dialog_);
    EnumChildWindows(dialog_, &DialogAnswerer::OnControl, 0);
    PostMessageW(dialog_, WM_COMMAND, button_, 0);
  }

  void EndWhenStuck() {
    constexpr std::chrono::seconds kPatience(30);
    std::unique_lock lock(mutex_);
    if (over_.wait_for(lock, kPatience, [this] { return isOver_; })) return;
    std::fputs("a dialog stayed unanswered\n", stderr);
    std::_Exit(1);
  }

  static inline thread_local DialogAnswerer* current_ = nullptr;

  WORD button_;
  HHOOK hook_ = nullptr;
  HWND dialog_ = nullptr;
  std::mutex mutex_;
  std::condition_variable over_;
  bool isOver_ = false;
  std::jthread watcher_{[this] { EndWhenStuck(); }};
};

class WindowsDesktopTest : public ::testing::Test {
 protected:
  test::ChosenLocale locale_;
  WindowsDesktop desktop_{locale_};
};

TEST_F(WindowsDesktopTest, AMessageBoxShowsTextTitleAndIcon) {
  struct Case {
    MessageStyle style;
    int icon;  // number of the system's icon
  };
  const Case cases[] = {{kExclamation, 32515}, {kInformation, 32516}};
  for (const Case& each : cases) {
    DialogAnswerer answerer(IDOK);
    desktop_.ShowMessage(u"All \u6570 passed", each.style, u"Title \u0416");
    EXPECT_EQ(answerer.dialogs, 1);
    EXPECT_EQ(answerer.title, u"Title \u0416");
    EXPECT_TRUE(answerer.Shows(u"All \u6570 passed"));
    EXPECT_NE(answerer.icon, nullptr);
    EXPECT_EQ(answerer.icon, LoadIconW(nullptr, MAKEINTRESOURCEW(each.icon)));
    EXPECT_EQ(answerer.buttons, 1);
  }
}

TEST_F(WindowsDesktopTest, WithoutAVisibleWindowStationAMessageIsALineOnStandardError) {
  const HWINSTA visible = GetProcessWindowStation();
  const HWINSTA hidden = CreateWindowStationW(nullptr, 0, GENERIC_ALL, nullptr);
  ASSERT_NE(hidden, nullptr);
  ASSERT_TRUE(SetProcessWindowStation(hidden));
  ::testing::internal::CaptureStderr();
  desktop_.ShowMessage(u"one\r\ntwo\rthree\n", kExclamation, u"Title");
  const std::string line = ::testing::internal::GetCapturedStderr();
  const std::optional<Text> folder = desktop_.BrowseForFolder(0, u"Pick one");
  SetProcessWindowStation(visible);
  CloseWindowStation(hidden);
  EXPECT_EQ(line, "Title: one two three \n");
  EXPECT_EQ(folder, std::nullopt);
}

TEST_F(WindowsDesktopTest, AFolderDialogThatIsCancelledPicksNothing) {
  DialogAnswerer answerer(IDCANCEL);
  EXPECT_EQ(desktop_.BrowseForFolder(0, u"Pick one"), std::nullopt);
  EXPECT_EQ(answerer.dialogs, 1);
  EXPECT_TRUE(answerer.Shows(u"Pick one"));
}

TEST_F(WindowsDesktopTest, AFolderDialogGivesThePathOfThePickedFolder) {
  DialogAnswerer answerer(IDOK);
  const std::optional<Text> folder = desktop_.BrowseForFolder(0, u"Caf\u00E9 folder");
  EXPECT_EQ(answerer.dialogs, 1);
  EXPECT_TRUE(answerer.Shows(u"Caf\u00E9 folder"));
  ASSERT_TRUE(folder.has_value());
  EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(*folder))) << ToUtf8(*folder);
}

TEST_F(WindowsDesktopTest, OpeningAMissingDocumentFindsNoFile) {
  const test::FileFolder folder;
  EXPECT_EQ(desktop_.OpenDocument({.document = folder.Below(u"missing.txt"),
                                   .verb = u"Open",
                                   .parameters = u"",
                                   .folder = u"C:\\",
                                   .showMode = 1,
                                   .ownedByDesktop = true}),
            2);
}

TEST_F(WindowsDesktopTest, OpeningADocumentWithoutAProgramSaysSo) {
  const test::FileFolder folder;
  folder.Write(u"data.vq21unknown", "0");
  EXPECT_EQ(desktop_.OpenDocument({.document = folder.Below(u"data.vq21unknown"),
                                   .verb = u"open",
                                   .parameters = u"0",
                                   .folder = u"0",
                                   .showMode = 5,
                                   .ownedByDesktop = false}),
            31);
}

DocumentRequest Open(const Text& document) {
  return {.document = document,
          .verb = u"Open",
          .parameters = u"",
          .folder = u"C:\\",
          .showMode = 0,
          .ownedByDesktop = false};
}

TEST_F(WindowsDesktopTest, OpeningADocumentWhosePathIsTooLongForTheShellFindsNoFile) {
  constexpr std::size_t kGreatestPath = 259;
  const test::FileFolder folder;
  folder.Write(u"data.vq21unknown", "0");
  Text path = folder.Below(u"data.vq21unknown");
  const Text::size_type name = path.rfind(u'\\');
  path.insert(name, path.size() % 2 == 0 ? u"\\" : u"");
  while (path.size() < kGreatestPath) path.insert(name, u"\\.");
  ASSERT_EQ(path.size(), kGreatestPath);
  EXPECT_EQ(desktop_.OpenDocument(Open(path)), 31);
  path.insert(name, u"\\");
  EXPECT_EQ(desktop_.OpenDocument(Open(path)), 2);
  EXPECT_EQ(desktop_.OpenDocument(Open(Text(9'999, u'x'))), 2);
}

/// A kind of address that the shell opens with a program that does nothing, as long as this lives.
class AddressKind {
 public:
  AddressKind() {
    constexpr wchar_t kCommand[] = L"C:\\windows\\system32\\cmd.exe /c exit";
    RegSetKeyValueW(HKEY_CLASSES_ROOT, L"vq21test", L"URL Protocol", REG_SZ, L"", sizeof(wchar_t));
    RegSetKeyValueW(HKEY_CLASSES_ROOT, L"vq21test\\shell\\open\\command", nullptr, REG_SZ, kCommand,
                    sizeof kCommand);
  }
  AddressKind(const AddressKind&) = delete;
  AddressKind& operator=(const AddressKind&) = delete;
  ~AddressKind() { RegDeleteTreeW(HKEY_CLASSES_ROOT, L"vq21test"); }
};

TEST_F(WindowsDesktopTest, OpeningAnAddressThatIsLongerThanAPathIsLeftToTheShell) {
  const AddressKind kind;
  const Text address = u"vq21test:" + Text(500, u'x');
  EXPECT_GT(desktop_.OpenDocument(Open(address)), 32);
  EXPECT_EQ(desktop_.OpenDocument(Open(u"C" + address.substr(8))), 2) << "a path";
  EXPECT_EQ(desktop_.OpenDocument(Open(u"vq21 test" + address.substr(8))), 2) << "neither";
  EXPECT_EQ(desktop_.OpenDocument(Open(address + Text(1'575, u'x'))), 2) << "more than the shell takes";
}

TEST_F(WindowsDesktopTest, OpeningAProgramStartsItWithParametersAndFolder) {
  const test::FileFolder folder;
  constexpr std::int32_t kHidden = 0;
  const std::int32_t result = desktop_.OpenDocument({.document = u"C:\\windows\\system32\\cmd.exe",
                                                     .verb = u"Open",
                                                     .parameters = u"/c echo started > started.txt",
                                                     .folder = folder.Path().u16string(),
                                                     .showMode = kHidden,
                                                     .ownedByDesktop = false});
  EXPECT_GT(result, 32);
  for (int tries = 0; tries < 200 && folder.Bytes(u"started.txt").empty(); ++tries) Sleep(50);
  EXPECT_TRUE(folder.Bytes(u"started.txt").starts_with("started"));
  Sleep(200);  // the program may still stand in the folder
}

TEST_F(WindowsDesktopTest, SpecialFoldersOfTheSystemAndTheUserAreFound) {
  constexpr std::int32_t kCreate = 32768;
  constexpr std::int32_t kIdentifiers[] = {5, 26, 28, 32, 33, 34, 35, 36, 37, 38, 39, 43, 46, 47, 48};
  for (const std::int32_t identifier : kIdentifiers) {
    Text path;
    EXPECT_EQ(desktop_.SpecialFolder(identifier + kCreate, path), 0) << identifier;
    EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(path))) << identifier << ToUtf8(path);
  }
}

TEST_F(WindowsDesktopTest, ASpecialFolderThatIsMissingIsMadeWhenThatIsAskedFor) {
  constexpr std::int32_t kAdministrativeTools = 48;
  constexpr std::int32_t kCreate = 32768;
  Text folder;
  ASSERT_EQ(desktop_.SpecialFolder(kAdministrativeTools + kCreate, folder), 0);
  if (!std::filesystem::is_empty(std::filesystem::path(folder)))
    GTEST_SKIP() << "somebody has put files there";
  std::filesystem::remove(std::filesystem::path(folder));
  Text path = u"kept";
  EXPECT_NE(desktop_.SpecialFolder(kAdministrativeTools, path), 0);
  EXPECT_EQ(path, u"kept");
  EXPECT_EQ(desktop_.SpecialFolder(kAdministrativeTools + kCreate, path), 0);
  EXPECT_EQ(path, folder);
  EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(folder)));
}

TEST_F(WindowsDesktopTest, AnUnknownSpecialFolderKeepsThePath) {
  Text path = u"kept";
  const std::int32_t result = desktop_.SpecialFolder(0x7E, path);
  EXPECT_NE(result, 0);
  EXPECT_NE(result, 1);
  EXPECT_EQ(path, u"kept");
}

}  // namespace
}  // namespace vorquill21
