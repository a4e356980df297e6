// What a host is told when calls of the system fail beneath the shell.

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <set>

#include "tests/platform/faulty_calls_posix.hpp"
#include "tests/platform/system_posix.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/temporary_folder.hpp"
#include "vorquill21/files/file.hpp"
#include "vorquill21/files/os_utils.hpp"
#include "vorquill21/platform/desktop_posix.hpp"

namespace vorquill21 {
namespace {

using test::FaultyCalls;
using test::ScopedVariable;

/// The native platform with another desktop.
Platform With(Desktop& desktop) {
  Platform& native = Platform::Native();
  return Platform(native.GetFiles(), desktop, native.GetLocale(), native.GetProcess(), native.GetSettings());
}

TEST(ShellFaultsTest, ASpecialFolderIsMadeOrTheReasonIsToldWhateverFails) {
  for (const EOSUtilsSpecialFolders identifier : {eSpecialFolder_PERSONAL, eSpecialFolder_LOCAL_APPDATA}) {
    const int faults = test::ForEachFault(kDeviceInputOutput, [&](test::FaultPlan& plan) {
      const test::TemporaryFolder home;
      const ScopedVariable homeVariable("HOME", home.Path().c_str());
      const ScopedVariable config("XDG_CONFIG_HOME", nullptr);
      const ScopedVariable data("XDG_DATA_HOME", nullptr);
      const ScopedVariable documents("XDG_DOCUMENTS_DIR", nullptr);
      test::FaultyFiles files(Platform::Native().GetFiles(), plan);
      FileCalls calls;
      PosixDesktop desktop(files, calls);
      Platform platform = With(desktop);
      Text path = u"before";
      if (COSUtils(platform).GetSpecialFolderPath(identifier + eSpecialFolder_FLAG_CREATE, path)) {
        EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(path))) << ToUtf8(path);
      } else {
        EXPECT_TRUE(plan.Hit());
        EXPECT_TRUE(path == u"Folder Does Not Exist" || path == u"Folder Not Valid on this OS")
            << ToUtf8(path);
      }
    });
    EXPECT_GE(faults, 3) << "looking, making, looking again";
  }
}

TEST(ShellFaultsTest, ADocumentIsRefusedInWordsWhateverFails) {
  const std::set<Text> words{u"File not found", u"Path not found", u"Access denied",
                             u"No association for file extension"};
  const ScopedVariable display("DISPLAY", nullptr);
  const ScopedVariable wayland("WAYLAND_DISPLAY", nullptr);
  const test::TemporaryFolder folder;
  test::WriteContent((folder.Path() / "a.txt").string(), "x");
  for (const int code : {EIO, EACCES, ENOENT, ENOTDIR, ELOOP, ENOMEM}) {
    bool isMet = true;
    for (int call = 1; isMet; ++call) {
      FaultyCalls calls(FaultyCalls::kFailure, call, code);
      PosixDesktop desktop(Platform::Native().GetFiles(), calls);
      Platform platform = With(desktop);
      Text message;
      EXPECT_FALSE(CFile(platform).OpenDoc(folder.Below(u"a.txt"), &message));
      isMet = !calls.Met().empty();
      EXPECT_TRUE(words.contains(message)) << ToUtf8(message);
      EXPECT_EQ(message == u"No association for file extension", !isMet) << code;
    }
  }
}

}  // namespace
}  // namespace vorquill21
