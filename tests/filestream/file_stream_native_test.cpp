#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/filestream/file_stream_fixture.hpp"
#include "tests/support/temporary_folder.hpp"

namespace vorquill21 {
namespace {

using test::ErrorOf;
using test::NoVersions;
using test::RaisedError;
using test::TableOf;

const Variant kTable = TableOf<double>({{1.5, 2}, {-3e-7, 0}});

class NativeFileStreamTest : public ::testing::Test {
 protected:
  std::string Content() const {
    std::ifstream file(folder.Path() / "data.txt", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::size_t NumberOfFiles() const {
    const std::filesystem::directory_iterator files(folder.Path());
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
  }

  const test::TemporaryFolder folder;
  const Text path = folder.Below(u"data.txt");
  CFileStream stream;
};

TEST_F(NativeFileStreamTest, ADocumentComesBackOnTheRealSystem) {
  stream.Initialise(u"TYRE DATA 2.5", NoVersions());
  stream.AddField(u"Größe", 1.25);
  stream.AddField(u"WORDS", u"Überdruck");
  stream.AddTable2d(u"TABLE", kTable);
  EXPECT_TRUE(stream.FileWrite(path));

  CFileStream other;
  Text text;
  EXPECT_TRUE(other.FileRead(path, &text));
  EXPECT_EQ(text, stream.GetContents() + u'\r');
  EXPECT_EQ(other.GetFieldNumber(u"Größe"), Variant(1.25));
  EXPECT_EQ(other.GetFieldString(u"WORDS"), Variant(u"Überdruck"));
  EXPECT_EQ(other.GetTable2d(u"TABLE"), kTable);
  EXPECT_EQ(other.FileVersion(), u"TYRE DATA 2.5");
  EXPECT_EQ(other.FileVersionNumber(), stream.FileVersionNumber());
}

TEST_F(NativeFileStreamTest, WritingReplacesOrAppendsAndLeavesNothingElseOnTheRealSystem) {
  stream.AddField(u"A", Text(100'000, u'a'));
  EXPECT_TRUE(stream.FileWrite(path));
  stream.Initialise(u"V 1", NoVersions());
  const std::string expected = ToUtf8(stream.GetContents()) + "\r\n";
  EXPECT_TRUE(stream.FileWrite(path));
  EXPECT_EQ(Content(), expected);
  EXPECT_TRUE(stream.FileWrite(path, true));
  EXPECT_EQ(Content(), expected + expected);
  EXPECT_EQ(NumberOfFiles(), 1u);
}

TEST_F(NativeFileStreamTest, AMissingFolderIsRaisedOnWritingAndNoFileOnReadingOnTheRealSystem) {
  const Text missing = folder.Below(u"nowhere\\data.txt");
  EXPECT_EQ(
      ErrorOf([&] { stream.FileWrite(missing); }),
      (RaisedError{kPathNotFound, u"CFileStream.FileWrite",
                   u"An error occurred while writing file: " + missing + u"\r\nError was: Path not found"}));
  EXPECT_FALSE(stream.FileRead(missing));
  EXPECT_EQ(NumberOfFiles(), 0u);
}

}  // namespace
}  // namespace vorquill21
