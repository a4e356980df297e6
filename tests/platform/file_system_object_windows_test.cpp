#include "vorquill21/platform/file_system_object_windows.hpp"

#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

#include "tests/platform/file_folder_windows.hpp"
#include "vorquill21/platform/com_apartment_windows.hpp"

namespace vorquill21 {
namespace {

struct Apartment {
  HRESULT result = E_FAIL;
  APTTYPE type = APTTYPE_CURRENT;
  friend bool operator==(const Apartment&, const Apartment&) = default;
};

Apartment CurrentApartment() {
  Apartment apartment;
  APTTYPEQUALIFIER qualifier;
  apartment.result = CoGetApartmentType(&apartment.type, &qualifier);
  if (FAILED(apartment.result)) apartment.type = APTTYPE_CURRENT;
  return apartment;
}

TEST(FileSystemObjectTest, KnowsFoldersFromFilesAndFromNothing) {
  const test::FileFolder folder;
  folder.Write(u"file.txt", "0");
  EXPECT_TRUE(FileSystemObjectFolderExists(folder.Path().u16string()));
  EXPECT_TRUE(FileSystemObjectFolderExists(folder.Path().u16string() + u"\\"));
  EXPECT_FALSE(FileSystemObjectFolderExists(folder.Below(u"file.txt")));
  EXPECT_FALSE(FileSystemObjectFolderExists(folder.Below(u"missing")));
  EXPECT_FALSE(FileSystemObjectFolderExists(u""));
  EXPECT_FALSE(FileSystemObjectFolderExists(u"Q:\\"));
  EXPECT_FALSE(FileSystemObjectFolderExists(folder.Below(u"a*|?")));
  EXPECT_FALSE(FileSystemObjectFolderExists(folder.Path().u16string() + Text(1, u'\0')));
}

/// Looks at a folder on a thread of its own, which enters an apartment of this kind first, and checks that
/// the thread is afterwards where it was.
void LookFromApartment(DWORD kind) {
  std::thread([kind] {
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, kind)));
    const Apartment before = CurrentApartment();
    EXPECT_TRUE(FileSystemObjectFolderExists(u"C:\\"));
    EXPECT_EQ(CurrentApartment(), before);
    EXPECT_TRUE(SUCCEEDED(before.result));
    CoUninitialize();
    EXPECT_TRUE(FAILED(CurrentApartment().result)) << "an entry was left behind";
  }).join();
}

TEST(FileSystemObjectTest, LeavesASingleThreadedCallerAsItIs) {
  LookFromApartment(COINIT_APARTMENTTHREADED);
}

TEST(FileSystemObjectTest, LeavesAMultiThreadedCallerAsItIs) {
  LookFromApartment(COINIT_MULTITHREADED);
}

TEST(FileSystemObjectTest, LeavesACallerOutsideComOutside) {
  std::thread([] {
    const Apartment before = CurrentApartment();
    EXPECT_TRUE(FAILED(before.result));
    EXPECT_TRUE(FileSystemObjectFolderExists(u"C:\\"));
    EXPECT_EQ(CurrentApartment(), before);
  }).join();
}

TEST(ComApartmentTest, IsThereWhileItsObjectLives) {
  std::thread([] {
    {
      const ComApartment outer;
      const Apartment apartment = CurrentApartment();
      EXPECT_TRUE(apartment.type == APTTYPE_STA || apartment.type == APTTYPE_MAINSTA) << apartment.type;
      const ComApartment inner;
      EXPECT_TRUE(SUCCEEDED(CurrentApartment().result));
    }
    EXPECT_TRUE(FAILED(CurrentApartment().result));
  }).join();
}

}  // namespace
}  // namespace vorquill21
