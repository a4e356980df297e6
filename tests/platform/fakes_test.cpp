#include <gtest/gtest.h>

#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/raised_number.hpp"

namespace vorquill21::test {
namespace {

TEST(FaultyFilesTest, EveryCallThatMayFailIsCounted) {
  MemoryFiles files;
  files.Replace(u"/a", "12");
  using Operation = void (*)(Files&);
  struct Case {
    Operation operation;
    int calls;
  };
  const Case cases[] = {
      {[](Files& each) { each.List(u"/*"); }, 1},
      {[](Files& each) { each.FolderExists(u"/"); }, 1},
      {[](Files& each) { each.OpenForReading(u"/a"); }, 1},
      {[](Files& each) { ReadWholeFile(each, u"/a"); }, 3},
      {[](Files& each) { each.Replace(u"/b", ""); }, 1},
      {[](Files& each) { each.Append(u"/b", ""); }, 1},
      {[](Files& each) { each.Delete(u"/b"); }, 1},
      {[](Files& each) { each.MakeFolder(u"/c"); }, 1},
      {[](Files& each) { each.RemoveFolder(u"/c"); }, 1},
  };
  for (const Case& each : cases) {
    const int faults = ForEachFault(kDiskFull, [&](FaultPlan& plan) {
      FaultyFiles faulty(files, plan);
      const std::int32_t number = RaisedNumber([&] { each.operation(faulty); });
      EXPECT_EQ(number, plan.Hit() ? kDiskFull : 0);
    });
    EXPECT_EQ(faults, each.calls) << &each - cases;
    EXPECT_EQ(files.OpenReaders(), 0);
  }
}

TEST(FaultyFilesTest, AFaultChangesNothing) {
  MemoryFiles files;
  files.Replace(u"/a", "old");
  FaultPlan plan;
  FaultyFiles faulty(files, plan);
  plan.FailAt(1, kDeviceInputOutput);
  EXPECT_EQ(RaisedNumber([&] { faulty.Replace(u"/a", "new"); }), 57);
  EXPECT_TRUE(plan.Hit());
  EXPECT_EQ(files.Content(u"/a"), "old");
}

TEST(FaultySettingsTest, OnlyStoringMeetsTheFault) {
  FakePlatform fake;
  FaultPlan plan;
  FaultyPlatform faulty(fake.platform, plan);
  plan.FailAt(1, kPermissionDenied);
  EXPECT_EQ(faulty.platform.GetSettings().Get(u"a", u"s", u"k", u"default"), u"default");
  EXPECT_EQ(RaisedNumber([&] { faulty.platform.GetSettings().Set(u"a", u"s", u"k", u"v"); }), 70);
  EXPECT_EQ(fake.settings.Get(u"a", u"s", u"k", u"default"), u"default");
}

TEST(MemoryFilesTest, CountsItsOpenReaders) {
  MemoryFiles files;
  files.Replace(u"/a", "x");
  {
    const auto first = files.OpenForReading(u"/a");
    const auto second = files.OpenForReading(u"/a");
    EXPECT_EQ(files.OpenReaders(), 2);
  }
  EXPECT_EQ(files.OpenReaders(), 0);
}

TEST(MemoryFilesTest, EveryPathBeginsAtTheRoot) {
  MemoryFiles files;
  files.Replace(u"a.txt", "x");
  EXPECT_TRUE(files.FileIsThere(u"/a.txt"));
  EXPECT_EQ(files.Content(u"\\\\a.txt"), "x");
  EXPECT_EQ(files.List(u"*").size(), 1u);
}

TEST(MemoryFilesTest, NamesWithAPointInFrontAreHidden) {
  MemoryFiles files;
  files.Replace(u"/.a", "x");
  const auto entries = files.List(u"/.a");
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_TRUE(entries[0].isHidden);
  EXPECT_EQ(RaisedNumber([&] { files.Delete(u"/.a"); }), 53);
}

TEST(RecordingDesktopTest, RemembersAndAnswers) {
  FakePlatform fake;
  fake.platform.ShowError(u"text");
  EXPECT_EQ(fake.desktop.messages, std::vector{ErrorMessage(u"text")});
  EXPECT_EQ(fake.desktop.messages[0], (ShownMessage{u"text", 48, u"Vorquill21"}));
  fake.desktop.specialFolders[5] = u"/documents";
  Text path;
  EXPECT_EQ(fake.desktop.SpecialFolder(5, path), 0);
  EXPECT_EQ(path, u"/documents");
  EXPECT_EQ(fake.desktop.SpecialFolder(6, path), -2147024809);
}

}  // namespace
}  // namespace vorquill21::test
