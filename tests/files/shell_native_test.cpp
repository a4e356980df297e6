#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/temporary_folder.hpp"
#include "vorquill21/files/file.hpp"
#include "vorquill21/files/os_utils.hpp"

namespace vorquill21 {
namespace {

TEST(NativeShellTest, AMissingDocumentIsNotFoundOnTheRealSystem) {
  const test::TemporaryFolder folder;
  Text message;
  EXPECT_FALSE(CFile().OpenDoc(folder.Below(u"missing.txt"), &message));
  EXPECT_EQ(message, u"File not found");
}

TEST(NativeShellTest, SpecialFoldersAreFoundOrSaidToBeMissingOnTheRealSystem) {
  for (const std::int32_t identifier : {eSpecialFolder_PERSONAL, eSpecialFolder_APPDATA,
                                        eSpecialFolder_LOCAL_APPDATA, eSpecialFolder_COMMON_APPDATA}) {
    Text path;
    if (COSUtils().GetSpecialFolderPath(identifier, path)) {
      EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(path))) << ToUtf8(path);
    } else {
      EXPECT_EQ(path, u"Folder Does Not Exist") << identifier;
    }
  }
}

TEST(NativeShellTest, AnIdentifierThatMeansNothingIsNotValidOnTheRealSystem) {
  Text path;
  EXPECT_FALSE(COSUtils().GetSpecialFolderPath(255, path));
  EXPECT_EQ(path, u"Folder Not Valid on this OS");
}

}  // namespace
}  // namespace vorquill21
