#include <gtest/gtest.h>

#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_error.hpp"
#include "vorquill21/files/file.hpp"

namespace vorquill21 {
namespace {

class PathParsingTest : public ::testing::Test {
 protected:
  test::FakePlatform fake_;
  CFile file_{fake_.platform};
};

struct ParsedPath {
  TextView path;
  TextView folder;
  TextView extension;
  TextView name;
  TextView title;
};

constexpr ParsedPath kParsedPaths[] = {
    {u"", u"", u"", u"", u""},
    {u"D:\\Zelmora\\front_susp.txt", u"D:\\Zelmora\\", u"txt", u"front_susp.txt", u"front_susp"},
    {u"D:\\Zelmora\\front.susp.txt", u"D:\\Zelmora\\", u"txt", u"front.susp.txt", u"front.susp"},
    {u"D:\\Zelmora\\front_susp", u"D:\\Zelmora\\", u"", u"front_susp", u"front_susp"},
    {u"D:\\Zelmora\\front.susp.", u"D:\\Zelmora\\", u"", u"front.susp", u"front.susp"},
    {u"D:\\Zel.mora\\front_susp", u"D:\\Zel.mora\\", u"", u"front_susp", u"front_susp"},
    {u"D:\\", u"D:\\", u"", u"", u""},
    {u"D:", u"", u"", u"D:", u"D:"},
    {u"\\", u"\\", u"", u"", u""},
    {u"front_susp.txt", u"", u"txt", u"front_susp.txt", u"front_susp"},
    {u"front_susp", u"", u"", u"front_susp", u"front_susp"},
    {u"front_susp.", u"", u"", u"front_susp", u"front_susp"},
    {u".", u"", u"", u"", u""},
    {u".txt", u"", u"txt", u".txt", u""},
    {u"a..b", u"", u"b", u"a..b", u"a."},
    {u"a\\b.c\\", u"a\\b.c\\", u"", u"", u""},
    {u"data/set.1\\run/2.dat", u"data/set.1\\", u"dat", u"2.dat", u"2"},
    {u"one/two/three.txt", u"", u"txt", u"three.txt", u"three"},
};

TEST_F(PathParsingTest, TakesAPathApart) {
  for (const ParsedPath& row : kParsedPaths) {
    SCOPED_TRACE(ToUtf8(row.path));
    EXPECT_EQ(file_.ParseFileDir(row.path), row.folder);
    EXPECT_EQ(file_.ParseFileExt(row.path), row.extension);
    EXPECT_EQ(file_.ParseFileName(row.path), row.name);
    EXPECT_EQ(file_.ParseFileTitle(row.path), row.title);
  }
}

TEST_F(PathParsingTest, TitleAcceptsBothSeparatorsAndTheirMixture) {
  for (const TextView path : {
           u"one\\two\\three\\four\\five\\front_susp",
           u"one/two/three/four/five/front_susp",
           u"one\\two/three\\four/five\\front_susp",
           u"one/two\\three/four\\five/front_susp",
       }) {
    EXPECT_EQ(file_.ParseFileTitle(path), u"front_susp") << ToUtf8(path);
  }
}

TEST_F(PathParsingTest, DeliberateSlashIsAnOrdinaryCharacterInFolderAndExtension) {
  EXPECT_EQ(file_.ParseFileDir(u"a/b"), u"");
  EXPECT_EQ(file_.ParseFileExt(u"a.b/z"), u"b/z");
  EXPECT_EQ(file_.ParseFileTitle(u"a.b/z"), u"z");
}

TEST_F(PathParsingTest, DeliberateNameJoinsTitleAndExtensionOfDifferentSeparators) {
  EXPECT_EQ(file_.ParseFileName(u"a.b/z"), u"z.b/z");
}

// --- Step by step ----------------------------------------------------------------------------------------

Text ExtensionStepByStep(const Text& path) {
  for (std::size_t at = path.size(); at > 0; --at) {
    if (path[at - 1] == u'\\') return {};
    if (path[at - 1] == u'.') return path.substr(at);
  }
  return {};
}

Text TitleStepByStep(Text path) {
  while (path.find(u'\\') != Text::npos) path.erase(0, path.find(u'\\') + 1);
  while (path.find(u'/') != Text::npos) path.erase(0, path.find(u'/') + 1);
  if (path.find(u'.') != Text::npos) path.erase(path.rfind(u'.'));
  return path;
}

Text WithExtensionStepByStep(const Text& path, const Text& extension) {
  std::vector<Text> parts(1);
  for (const char16_t unit : path) {
    if (unit == u'.') {
      parts.emplace_back();
    } else {
      parts.back() += unit;
    }
  }
  if (EqualIgnoringCase(parts.back(), extension)) return path;
  Text joined;
  for (std::size_t i = 0; i + 1 < parts.size() || i == 0; ++i) joined += parts[i] + u'.';
  return joined + extension;
}

TEST_F(PathParsingTest, EveryShortPathOfFiveUnitsFollowsTheSteps) {
  constexpr TextView kUnits = u"aX.\\/";
  constexpr std::size_t kLongest = 6;
  for (std::size_t length = 1, count = kUnits.size(); length <= kLongest; ++length, count *= kUnits.size()) {
    for (std::size_t number = 0; number < count; ++number) {
      Text path;
      for (std::size_t rest = number; path.size() < length; rest /= kUnits.size()) {
        path += kUnits[rest % kUnits.size()];
      }
      const Text extension = ExtensionStepByStep(path);
      const Text title = TitleStepByStep(path);
      ASSERT_EQ(file_.ParseFileDir(path), path.substr(0, path.rfind(u'\\') + 1)) << ToUtf8(path);
      ASSERT_EQ(file_.ParseFileExt(path), extension) << ToUtf8(path);
      ASSERT_EQ(file_.ParseFileTitle(path), title) << ToUtf8(path);
      ASSERT_EQ(file_.ParseFileName(path), extension.empty() ? title : title + u'.' + extension)
          << ToUtf8(path);
      for (const Text& wanted : {Text(), Text(u"x"), Text(u"Xa"), Text(u"a.x"), Text(u"/")}) {
        ASSERT_EQ(file_.EnsureExtension(path, wanted), WithExtensionStepByStep(path, wanted)) << ToUtf8(path);
      }
    }
  }
}

struct EnsuredPath {
  TextView path;
  TextView extension;
  TextView expected;
};

constexpr EnsuredPath kEnsuredPaths[] = {
    {u"D:\\Zelmora\\front_susp.tx", u"txt", u"D:\\Zelmora\\front_susp.txt"},
    {u"D:\\Zelmora\\front_susp", u"txt", u"D:\\Zelmora\\front_susp.txt"},
    {u"D:\\Zelmora\\front_susp.", u"txt", u"D:\\Zelmora\\front_susp.txt"},
    {u"front_susp", u"txt", u"front_susp.txt"},
    {u"D:\\Zelmora\\front.susp.", u"txt", u"D:\\Zelmora\\front.susp.txt"},
    {u"D:\\Zelmora\\front.susp.txt", u"dat", u"D:\\Zelmora\\front.susp.dat"},
    {u"front_susp.txt", u"TXT", u"front_susp.txt"},
    {u"FRONT_SUSP.TXT", u"txt", u"FRONT_SUSP.TXT"},
    {u"a.", u"", u"a."},
    {u"a", u"", u"a."},
    {u"a.txt", u"", u"a."},
    {u".", u"txt", u".txt"},
    {u"a.tar", u"tar.gz", u"a.tar.gz"},
};

TEST_F(PathParsingTest, EnsuresAnExtension) {
  for (const EnsuredPath& row : kEnsuredPaths) {
    EXPECT_EQ(file_.EnsureExtension(row.path, row.extension), row.expected) << ToUtf8(row.path);
  }
}

TEST_F(PathParsingTest, DeliberateDotOfAFolderCountsAsTheExtensionsDot) {
  EXPECT_EQ(file_.EnsureExtension(u"D:\\x.y\\name", u"txt"), u"D:\\x.txt");
}

TEST_F(PathParsingTest, DeliberateExtensionOfSeveralPartsIsAppendedAgain) {
  EXPECT_EQ(file_.EnsureExtension(u"a.tar.gz", u"tar.gz"), u"a.tar.tar.gz");
}

TEST_F(PathParsingTest, DeliberatePathThatIsTheExtensionStaysUnchanged) {
  EXPECT_EQ(file_.EnsureExtension(u"Txt", u"txt"), u"Txt");
}

TEST_F(PathParsingTest, EnsuringAnExtensionOfTheEmptyPathIsError9) {
  EXPECT_EQ(test::ErrorRaisedBy([&] { file_.EnsureExtension(u"", u"txt"); }),
            (test::RaisedError{9, u"", u"Subscript out of range"}));
}

}  // namespace
}  // namespace vorquill21
