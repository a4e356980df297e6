#include "vorquill21/platform/process_posix.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/platform/system_posix.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {
namespace {

std::string Block(std::initializer_list<const char*> arguments) {
  std::string block;
  for (const char* argument : arguments) block.append(argument).append(1, '\0');
  return block;
}

TEST(JoinedArgumentsTest, TheProgramsNameIsLeftOutAndBlanksAreQuoted) {
  EXPECT_EQ(JoinedArguments(Block({"program"})), u"");
  EXPECT_EQ(JoinedArguments(Block({"program", "a"})), u"a");
  EXPECT_EQ(JoinedArguments(Block({"a program", "a", "two words", "-b"})), u"a \"two words\" -b");
  EXPECT_EQ(JoinedArguments(Block({"program", "", "a", ""})), u"\"\" a \"\"");
  EXPECT_EQ(JoinedArguments(Block({"program", "a\tb", "\xC3\xA4"})), u"a\tb \u00E4");
  EXPECT_EQ(JoinedArguments(Block({"", "a"})), u"a");
}

TEST(JoinedArgumentsTest, ABlockWithoutAnEndIsTakenAsItIs) {
  EXPECT_EQ(JoinedArguments(""), u"");
  EXPECT_EQ(JoinedArguments("program"), u"");
  EXPECT_EQ(JoinedArguments(Block({"program"}) + "a"), u"a");
}

TEST(PosixProcessTest, TheCommandLineHoldsTheArgumentsOfThisProgram) {
  std::string block;
  for (const std::string& argument : ::testing::internal::GetArgvs()) block += argument + '\0';
  EXPECT_EQ(Platform::Native().GetProcess().CommandLine(), JoinedArguments(block));
}

TEST(PosixProcessTest, TheStaticLibraryLiesWhereTheProgramDoes) {
  const auto program = std::filesystem::canonical("/proc/self/exe");
  EXPECT_EQ(ToUtf8(Platform::Native().GetProcess().LibraryFolder()), program.parent_path().string());
}

TEST(PosixProcessTest, TheEnvironmentMayNameAnotherLibraryFolder) {
  const Process& process = Platform::Native().GetProcess();
  const Text own = process.LibraryFolder();
  struct Case {
    const char* value;
    Text folder;
  };
  const Case cases[] = {{"/home/user/tests", u"/home/user/tests"},
                        {"/home/user/\xC3\xA4//", u"/home/user/\u00E4"},
                        {"/", u""},
                        {"", own},
                        {nullptr, own}};
  for (const Case& each : cases) {
    const test::ScopedVariable named("VORQUILL21_LIBRARY_FOLDER", each.value);
    EXPECT_EQ(process.LibraryFolder(), each.folder) << ToUtf8(each.folder);
  }
  EXPECT_EQ(process.LibraryFolder(), own);
}

TEST(PosixProcessTest, AFaultInReadingTheCommandLineIsRaisedAndLeavesNothingOpen) {
  const std::size_t openBefore = test::OpenDescriptors();
  const int faults = test::ForEachFault(kDeviceInputOutput, [&](test::FaultPlan& plan) {
    test::FaultyFiles files(Platform::Native().GetFiles(), plan);
    const PosixProcess process(files);
    Text commandLine;
    const std::int32_t number = test::RaisedNumber([&] { commandLine = process.CommandLine(); });
    EXPECT_EQ(number, plan.Hit() ? kDeviceInputOutput : 0);
    EXPECT_EQ(commandLine, plan.Hit() ? u"" : Platform::Native().GetProcess().CommandLine());
    EXPECT_EQ(test::OpenDescriptors(), openBefore);
  });
  EXPECT_GE(faults, 2) << "opening, reading";
}

}  // namespace
}  // namespace vorquill21
