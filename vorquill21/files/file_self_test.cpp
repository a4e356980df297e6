#include "vorquill21/files/file.hpp"
#include "vorquill21/files/guarded.hpp"
#include "vorquill21/files/path_self_test.hpp"

namespace vorquill21 {
namespace {

Text InLibraryFolder(const Platform& platform, TextView name) {
  return platform.GetProcess().LibraryFolder().append(name);
}

bool ListsFilesByExtension(const CFile& file, Platform& platform) {
  constexpr TextView kNames[] = {u"\\test1.tt1", u"\\test2.tt1", u"\\test3.tt1"};
  const Text folder = InLibraryFolder(platform, u"\\self test");
  file.DirMake(folder);
  for (const TextView name : kNames) file.FileWriteAsString(Text(folder).append(name), u"0");

  BoundedArray<Text> names;
  std::int32_t count = 0;
  file.ListFilesMatchingExt(folder, u"tt1", names, count);

  Files& files = platform.GetFiles();
  Succeeds([&] { files.Delete(Text(folder).append(u"\\*.tt1")); });
  Succeeds([&] { files.RemoveFolder(folder); });
  return count == 3 && EqualIgnoringCase(names(2), u"test3.tt1");
}

bool ReadsBackWhatWasWritten(const CFile& file, Platform& platform) {
  constexpr TextView kLines =
      u"first line of the sample\r\n"
      u"second line of the sample\r\n"
      u"third line of the sample";
  const Text folder = InLibraryFolder(platform, u"\\self test\\");
  const Text path = Text(folder).append(u"delme.txt");
  file.DirMake(folder);
  Text readBack;
  const bool isReadBack = file.FileWriteAsString(path, kLines) && file.FileReadAsString(path, readBack);
  Succeeds([&] { platform.GetFiles().Delete(path); });
  return isReadBack && EqualIgnoringCase(readBack, kLines);
}

bool MakesAFolder(const CFile& file, Platform& platform) {
  const Text folder = InLibraryFolder(platform, u"/DirMakeTest");
  const bool made = file.DirMake(folder) && file.DirExists(folder);
  const bool removed = Succeeds([&] { platform.GetFiles().RemoveFolder(folder); });
  return made && removed;
}

struct Check {
  TextView nameOnFailure;
  bool (*passes)(const CFile&, Platform&);
};

constexpr Check kChecks[] = {
    {u"ListFilesMathchingType", ListsFilesByExtension},
    {u"", ReadsBackWhatWasWritten},
    {u"SelfTest_DirMake", MakesAFolder},
    {u"SelfTest_ParseFileTitle", [](const CFile& file, Platform&) { return ParsesFileTitles(file); }},
    {u"SelfTest_EnsureExtension", [](const CFile& file, Platform&) { return EnsuresExtensions(file); }},
};

}  // namespace

void CFile::SelfTest_Main(FailedTests& aoFailedTests) const {
  for (const Check& check : kChecks) {
    const bool passed = ResultOr(false, [&] { return check.passes(*this, platform_); });
    if (!passed) aoFailedTests.emplace_back(check.nameOnFailure);
  }
}

}  // namespace vorquill21
