#include <gtest/gtest.h>

#include "tests/platform/contract.hpp"
#include "tests/support/fake_platform.hpp"

namespace vorquill21 {
namespace {

using Implementation = test::Implementation<Process*>;

Process* Fixed() {
  static test::FixedProcess process;
  return &process;
}

Process* Native() {
  return &Platform::Native().GetProcess();
}

class ProcessContractTest : public ::testing::TestWithParam<Implementation> {
 protected:
  const Process& process_ = *GetParam().get();
};

TEST_P(ProcessContractTest, TheClockStaysWithinTheDay) {
  const double seconds = process_.SecondsSinceMidnight();
  EXPECT_GE(seconds, 0.0);
  EXPECT_LT(seconds, 86'400.0);
}

TEST_P(ProcessContractTest, TheLibraryFolderHasNoFinalSeparator) {
  const Text folder = process_.LibraryFolder();
  ASSERT_FALSE(folder.empty());
  EXPECT_EQ(TextView(u"\\/").find(folder.back()), TextView::npos) << ToUtf8(folder);
}

TEST_P(ProcessContractTest, TheProgramsOwnNameIsNoArgument) {
  // Test programs are called with options alone.
  const Text commandLine = process_.CommandLine();
  EXPECT_TRUE(commandLine.empty() || commandLine.front() == u'-' || commandLine.front() == u'"')
      << ToUtf8(commandLine);
}

INSTANTIATE_TEST_SUITE_P(Implementations, ProcessContractTest,
                         ::testing::Values(Implementation{"Fixed", Fixed}, Implementation{"Native", Native}),
                         test::kNameOfImplementation);

TEST(NativeProcessTest, TheLibraryFolderOfTheRealSystemIsThere) {
  EXPECT_TRUE(Platform::Native().GetFiles().FolderExists(Platform::Native().GetProcess().LibraryFolder()));
}

TEST(NativeProcessTest, TheClockOfTheRealSystemHasFractionsAndGoesOn) {
  const Process& process = Platform::Native().GetProcess();
  const double start = process.SecondsSinceMidnight();
  double now = start;
  for (int i = 0; i < 100'000'000 && now == start; ++i) now = process.SecondsSinceMidnight();
  EXPECT_NE(now, start);
  const bool acrossMidnight = now < start;
  EXPECT_TRUE(acrossMidnight || now - start < 1.0) << now - start;
}

}  // namespace
}  // namespace vorquill21
