#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "vorquill21/files/file.hpp"
#include "vorquill21/files/os_utils.hpp"

namespace vorquill21 {
namespace {

class ShellTest : public testing::Test {
 protected:
  test::FakePlatform fake;
  CFile file{fake.platform};
  COSUtils utils{fake.platform};
};

// --- OpenDoc ---------------------------------------------------------------------------------------------

TEST_F(ShellTest, OpenDocHandsTheDocumentToTheShell) {
  Text message = u"before";
  EXPECT_TRUE(file.OpenDoc(u"D:\\Zelmora\\front_susp.txt", &message));
  EXPECT_EQ(message, u"before") << "left alone on success";
  EXPECT_TRUE(file.OpenDoc(u"x"));
  ASSERT_EQ(fake.desktop.openedDocuments.size(), 2u);
  const DocumentRequest& request = fake.desktop.openedDocuments.front();
  EXPECT_EQ(request.document, u"D:\\Zelmora\\front_susp.txt");
  EXPECT_EQ(request.verb, u"Open");
  EXPECT_EQ(request.parameters, u"");
  EXPECT_EQ(request.folder, u"C:\\");
  EXPECT_EQ(request.showMode, 1);
  EXPECT_TRUE(request.ownedByDesktop);
  EXPECT_TRUE(fake.desktop.messages.empty());
}

TEST_F(ShellTest, OpenDocPutsEveryResultUpToThirtyTwoIntoWords) {
  const std::map<std::int32_t, TextView> words = {
      {2, u"File not found"},
      {3, u"Path not found"},
      {5, u"Access denied"},
      {8, u"Out of memory"},
      {11, u"Invalid EXE file or error in EXE image"},
      {26, u"A sharing violation occurred"},
      {27, u"Incomplete or invalid file association"},
      {28, u"DDE Time out"},
      {29, u"DDE transaction failed"},
      {30, u"DDE busy"},
      {31, u"No association for file extension"},
      {32, u"DLL not found"},
  };
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  std::vector<std::int32_t> results{kLeast, -1};
  for (std::int32_t result = 0; result <= 32; ++result) results.push_back(result);
  for (const std::int32_t result : results) {
    fake.desktop.openResult = result;
    Text message = u"before";
    EXPECT_FALSE(file.OpenDoc(u"x", &message)) << result;
    const auto found = words.find(result);
    EXPECT_EQ(message, found == words.end() ? u"Unknown error" : found->second) << result;
    EXPECT_FALSE(file.OpenDoc(u"x")) << "a caller may leave the message out";
  }
  for (const std::int32_t result : {33, 42, std::numeric_limits<std::int32_t>::max()}) {
    fake.desktop.openResult = result;
    EXPECT_TRUE(file.OpenDoc(u"x")) << result;
  }
}

TEST_F(ShellTest, OpenDocTakesAMessageThatIsTheNameItself) {
  fake.desktop.openResult = 2;
  Text name = u"a name that is long enough not to fit into a text of its own";
  EXPECT_FALSE(file.OpenDoc(name, &name));
  EXPECT_EQ(name, u"File not found");
}

// --- BrowseForFolder -------------------------------------------------------------------------------------

TEST_F(ShellTest, BrowseForFolderGivesTheFolderThatWasPicked) {
  fake.desktop.browsedFolder = u"D:\\Zelmora";
  Text folder = u"before";
  file.BrowseForFolder(0x1234, u"Pick a folder", folder);
  EXPECT_EQ(folder, u"D:\\Zelmora");
  EXPECT_EQ(fake.desktop.browseTitles, std::vector<Text>{u"Pick a folder"});
  EXPECT_EQ(fake.desktop.browseOwners, std::vector<std::int32_t>{0x1234});
}

TEST_F(ShellTest, BrowseForFolderKeepsTheFolderWhenTheChoiceIsCancelled) {
  Text folder = u"before";
  file.BrowseForFolder(0, u"Pick a folder", folder);
  EXPECT_EQ(folder, u"before");
}

TEST_F(ShellTest, BrowseForFolderTakesATitleThatIsTheFolderItself) {
  fake.desktop.browsedFolder = u"/a folder with a name that is not short";
  Text folder = u"the folder that was picked the last time";
  file.BrowseForFolder(0, folder, folder);
  EXPECT_EQ(folder, u"/a folder with a name that is not short");
}

// --- GetSpecialFolderPath --------------------------------------------------------------------------------

/// Knows one folder, which is missing until it is to be created.
class DesktopWithOneFolder : public test::RecordingDesktop {
 public:
  std::int32_t SpecialFolder(std::int32_t identifier, Text& path) override {
    constexpr std::int32_t kUnknown = -2147024809;  // 80070057 hexadecimal
    if ((identifier & ~eSpecialFolder_FLAG_CREATE) != eSpecialFolder_APPDATA) return kUnknown;
    if (identifier & eSpecialFolder_FLAG_CREATE) isThere = true;
    if (!isThere) return 1;
    path = u"C:\\Users\\Public\\AppData";
    return 0;
  }

  bool isThere = false;
};

TEST(SpecialFolderPathTest, DeliberateGetSpecialFolderPathReturnsTheReasonWhereThePathIsExpected) {
  DesktopWithOneFolder desktop;
  test::FakePlatform fake;
  Platform platform = fake.With(desktop);
  const COSUtils utils(platform);
  struct Row {
    std::int32_t identifier;
    bool isFound;
    TextView path;
  };
  const Row rows[] = {
      {eSpecialFolder_APPDATA, false, u"Folder Does Not Exist"},
      {eSpecialFolder_APPDATA + eSpecialFolder_FLAG_CREATE, true, u"C:\\Users\\Public\\AppData"},
      {eSpecialFolder_APPDATA, true, u"C:\\Users\\Public\\AppData"},
      {eSpecialFolder_WINDOWS, false, u"Folder Not Valid on this OS"},
      {-1, false, u"Folder Not Valid on this OS"},
  };
  for (const Row& row : rows) {
    Text path = u"before";
    EXPECT_EQ(utils.GetSpecialFolderPath(row.identifier, path), row.isFound);
    EXPECT_EQ(path, row.path);
  }
}

TEST(SpecialFolderPathTest, AnyOtherResultMeansAFolderThatIsNotValid) {
  class FailingDesktop : public test::RecordingDesktop {
   public:
    std::int32_t SpecialFolder(std::int32_t, Text& path) override {
      path = u"half a path";
      return result;
    }
    std::int32_t result = 0;
  };
  FailingDesktop desktop;
  test::FakePlatform fake;
  Platform platform = fake.With(desktop);
  for (const std::int32_t result : {-2147024809, -2147467259, 2, -1, 32767}) {
    desktop.result = result;
    Text path;
    EXPECT_FALSE(COSUtils(platform).GetSpecialFolderPath(eSpecialFolder_PERSONAL, path));
    EXPECT_EQ(path, u"Folder Not Valid on this OS") << result;
  }
}

TEST(SpecialFolderPathTest, IdentifiersHaveTheValuesOfTheSystem) {
  const std::pair<EOSUtilsSpecialFolders, std::int32_t> values[] = {
      {eSpecialFolder_PERSONAL, 5},          {eSpecialFolder_APPDATA, 26},
      {eSpecialFolder_LOCAL_APPDATA, 28},    {eSpecialFolder_INTERNET_CACHE, 32},
      {eSpecialFolder_COOKIES, 33},          {eSpecialFolder_HISTORY, 34},
      {eSpecialFolder_COMMON_APPDATA, 35},   {eSpecialFolder_WINDOWS, 36},
      {eSpecialFolder_SYSTEM, 37},           {eSpecialFolder_PROGRAM_FILES, 38},
      {eSpecialFolder_MYPICTURES, 39},       {eSpecialFolder_PROGRAM_FILES_COMMON, 43},
      {eSpecialFolder_COMMON_DOCUMENTS, 46}, {eSpecialFolder_COMMON_ADMINTOOLS, 47},
      {eSpecialFolder_ADMINTOOLS, 48},       {eSpecialFolder_FLAG_CREATE, 32768},
  };
  for (const auto& [identifier, value] : values) EXPECT_EQ(std::int32_t{identifier}, value);
}

// --- A desktop that fails --------------------------------------------------------------------------------

/// Raises an error wherever it can.
class RaisingDesktop : public test::RecordingDesktop {
 public:
  std::int32_t OpenDocument(const DocumentRequest&) override { Raise(); }
  std::optional<Text> BrowseForFolder(std::int32_t, TextView) override { Raise(); }
  std::int32_t SpecialFolder(std::int32_t, Text&) override { Raise(); }

  bool lacksMemory = false;

 private:
  [[noreturn]] void Raise() const {
    if (lacksMemory) throw std::bad_alloc();
    throw LibraryError(kDeviceInputOutput);
  }
};

TEST(FailingShellTest, NothingIsRaised) {
  RaisingDesktop desktop;
  test::FakePlatform fake;
  Platform platform = fake.With(desktop);
  const CFile file(platform);
  for (const bool lacksMemory : {false, true}) {
    desktop.lacksMemory = lacksMemory;
    Text message;
    EXPECT_FALSE(file.OpenDoc(u"x", &message));
    EXPECT_EQ(message, u"Unknown error");
    Text folder = u"before";
    file.BrowseForFolder(0, u"title", folder);
    EXPECT_EQ(folder, u"before");
    EXPECT_FALSE(COSUtils(platform).GetSpecialFolderPath(eSpecialFolder_PERSONAL, folder));
    EXPECT_EQ(folder, u"Folder Not Valid on this OS");
  }
  EXPECT_TRUE(desktop.messages.empty());
}

}  // namespace
}  // namespace vorquill21
