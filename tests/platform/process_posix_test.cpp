#include "vorquill21/platform/process_posix.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

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

}  // namespace
}  // namespace vorquill21
