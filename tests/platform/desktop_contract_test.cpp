#include <gtest/gtest.h>

#include "tests/platform/contract.hpp"
#include "tests/support/fake_platform.hpp"

namespace vorquill21 {
namespace {

using Implementation = test::Implementation<Desktop*>;

Desktop* Recording() {
  static test::RecordingDesktop desktop;
  return &desktop;
}

Desktop* Native() {
  return &Platform::Native().GetDesktop();
}

class DesktopContractTest : public ::testing::TestWithParam<Implementation> {
 protected:
  Desktop& desktop_ = *GetParam().get();
};

TEST_P(DesktopContractTest, AnIdentifierThatMeansNoFolderLeavesThePathAlone) {
  for (const std::int32_t identifier : {255, 32767, 255 + 32768}) {
    Text path = u"before";
    const std::int32_t result = desktop_.SpecialFolder(identifier, path);
    EXPECT_NE(result, 0) << identifier;
    EXPECT_NE(result, 1) << identifier;
    EXPECT_EQ(path, u"before") << identifier;
  }
}

INSTANTIATE_TEST_SUITE_P(Implementations, DesktopContractTest,
                         ::testing::Values(Implementation{"Recording", Recording},
                                           Implementation{"Native", Native}),
                         test::kNameOfImplementation);

TEST(NativeDesktopTest, AMissingDocumentOnTheRealSystemIsNotOpened) {
  const Text folder = Platform::Native().GetProcess().LibraryFolder();
  DocumentRequest request;
  request.document = folder + u"\\no such document.xyz";
  EXPECT_EQ(Platform::Native().GetDesktop().OpenDocument(request), 2);
}

}  // namespace
}  // namespace vorquill21
