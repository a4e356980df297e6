#include "vorquill21/platform/settings_posix.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/platform/system_posix.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/memory_files.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/small_disk_posix.hpp"
#include "tests/support/temporary_folder.hpp"
#include "vorquill21/platform/files_posix.hpp"

namespace vorquill21 {
namespace {

using test::ContentOf;
using test::RaisedNumber;
using test::ScopedVariable;
using test::WriteContent;

TEST(SettingsFileNameTest, IsSafeAndTheSameInAnyCase) {
  EXPECT_EQ(SettingsFileName(u"Vorquill21"), u"vorquill21.conf");
  EXPECT_EQ(SettingsFileName(u"VORQUILL21"), u"vorquill21.conf");
  EXPECT_EQ(SettingsFileName(u"My_App-2"), u"my_app-2.conf");
  EXPECT_EQ(SettingsFileName(u"../a b"), u"%002E%002E%002Fa%0020b.conf");
  EXPECT_EQ(SettingsFileName(u"\u00E4"), SettingsFileName(u"\u00C4"));
  EXPECT_EQ(SettingsFileName(u""), u".conf");
}

class PosixSettingsTest : public ::testing::Test {
 protected:
  std::string At(const std::string& name) const { return folder_.Path().string() + '/' + name; }
  Text Get() const { return settings_.Get(u"App", u"S", u"k", u"default"); }
  void Set(TextView value) { settings_.Set(u"App", u"S", u"k", value); }

  test::TemporaryFolder folder_;
  ScopedVariable config_{"XDG_CONFIG_HOME", At("made/when/needed").c_str()};
  FileCalls calls_;
  PosixFiles files_{calls_};
  PosixSettings settings_{files_};
};

TEST_F(PosixSettingsTest, TheFileLiesInTheConfigurationFolder) {
  EXPECT_EQ(Get(), u"default");
  EXPECT_FALSE(std::filesystem::exists(At("made")));
  Set(u"v");
  EXPECT_EQ(ContentOf(At("made/when/needed/app.conf")), "[S]\nk=v\n");
  EXPECT_EQ(Get(), u"v");
  const ScopedVariable noConfig("XDG_CONFIG_HOME", nullptr);
  const ScopedVariable home("HOME", folder_.Path().c_str());
  EXPECT_EQ(Get(), u"default");
  Set(u"w");
  EXPECT_EQ(ContentOf(At(".config/app.conf")), "[S]\nk=w\n");
}

TEST_F(PosixSettingsTest, AStoreThatCannotBeReadGivesTheDefaultAndIsNotOverwritten) {
  Set(u"precious");
  const std::string path = At("made/when/needed/app.conf");
  ::chmod(path.c_str(), 0222);
  for (const char* name : {"", "made", "made/when", "made/when/needed"}) ::chmod(At(name).c_str(), 0777);
  {
    const test::AsOrdinaryUser user;
    EXPECT_EQ(Get(), u"default");
    EXPECT_EQ(RaisedNumber([&] { Set(u"new"); }), 70);
  }
  ::chmod(path.c_str(), 0644);
  EXPECT_EQ(Get(), u"precious");
}

TEST_F(PosixSettingsTest, AConfigurationFolderThatIsAFileIsAnError) {
  WriteContent(At("made"), "x");
  EXPECT_EQ(Get(), u"default");
  EXPECT_NE(RaisedNumber([&] { Set(u"v"); }), 0);
  EXPECT_EQ(ContentOf(At("made")), "x");
}

TEST_F(PosixSettingsTest, AFullDiskKeepsTheStoreOnTheRealSystem) {
  constexpr std::size_t kRoom = 256 * 1024;
  const test::SmallDisk disk(folder_.Path().string(), kRoom);
  if (!disk.IsMounted()) GTEST_SKIP() << "no disk could be mounted: " << disk.Reason();
  EXPECT_EQ(RaisedNumber([&] { Set(Text(2 * kRoom, u'x')); }), kDiskFull);
  EXPECT_EQ(Get(), u"default");
  Set(u"precious");
  EXPECT_EQ(RaisedNumber([&] { Set(Text(2 * kRoom, u'x')); }), kDiskFull);
  EXPECT_EQ(Get(), u"precious");
  EXPECT_EQ(test::NamesIn(At("made/when/needed")), std::vector<std::string>{"app.conf"});
}

TEST_F(PosixSettingsTest, AStoreBehindALinkStaysThereAndKeepsItsMode) {
  WriteContent(At("real.conf"), "# by hand\n");
  ::chmod(At("real.conf").c_str(), 0640);
  std::filesystem::create_directories(At("made/when/needed"));
  std::filesystem::create_symlink(At("real.conf"), At("made/when/needed/app.conf"));
  Set(u"v");
  EXPECT_TRUE(std::filesystem::is_symlink(At("made/when/needed/app.conf")));
  EXPECT_EQ(ContentOf(At("real.conf")), "# by hand\n[S]\nk=v\n");
  struct stat status {};
  ASSERT_EQ(::stat(At("real.conf").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST(SettingsFaultsTest, AnyFaultOfTheFilesLeavesTheStoreAsItWas) {
  const ScopedVariable config("XDG_CONFIG_HOME", "/made/when");
  for (const bool stored : {false, true}) {
    const Text before = stored ? u"old" : u"default";
    const int faults = test::ForEachFault(kDeviceInputOutput, [&](test::FaultPlan& plan) {
      test::MemoryFiles files;
      PosixSettings plain(files);
      if (stored) plain.Set(u"App", u"S", u"k", u"old");
      test::FaultyFiles faulty(files, plan);
      const auto number = RaisedNumber([&] { PosixSettings(faulty).Set(u"App", u"S", u"k", u"new"); });
      EXPECT_EQ(number, plan.Hit() ? kDeviceInputOutput : 0);
      EXPECT_EQ(plain.Get(u"App", u"S", u"k", u"default"), plan.Hit() ? before : u"new");
      EXPECT_EQ(files.OpenReaders(), 0);
    });
    EXPECT_GE(faults, 4) << stored;
    test::ForEachFault(kDeviceInputOutput, [&](test::FaultPlan& plan) {
      test::MemoryFiles files;
      PosixSettings plain(files);
      plain.Set(u"App", u"S", u"k", u"old");
      test::FaultyFiles faulty(files, plan);
      const Text value = PosixSettings(faulty).Get(u"App", u"S", u"k", u"default");
      EXPECT_EQ(value, plan.Hit() ? u"default" : u"old");
    });
  }
}

}  // namespace
}  // namespace vorquill21
