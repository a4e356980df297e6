#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>

#include "tests/filestream/file_stream_fixture.hpp"
#include "tests/support/replaced_new.hpp"

namespace vorquill21 {
namespace {

using test::BytesAskedBy;
using test::FakePlatform;

constexpr std::size_t kSmallChange = std::size_t{1} << 18;
constexpr TextView kPath = u"/library/data.txt";

// --- Ragged tables ---------------------------------------------------------------------------------------

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

/// A record of about a megabyte in a file: `wholeShare` of it are rows of many cells, the first among them,
/// the rest are the short rows.
Text RaggedRecord(std::size_t columns, double wholeShare, TextView shortRow) {
  const Text wholeRow = Text(u"\r") + Text(columns - 1, u'\t') + u"1";
  Text record = Text(u"[T]\t") + wholeRow;
  const auto wholeLength = static_cast<std::size_t>(wholeShare * kMegabyte);
  while (record.size() + wholeRow.size() < wholeLength) record += wholeRow;
  do {
    record += shortRow;
  } while (record.size() < kMegabyte);
  return record + u"1";
}

TEST(CFileStreamMemoryUseTest, RaggedTableOfAMegabyteAsksForEightAtTheMost) {
  for (const std::size_t columns : {2u, 40u, 1'000u, 500'000u}) {
    for (const double wholeShare : {0.0, 0.5, 0.9, 1.0}) {
      for (const TextView shortRow : {u"\r1", u"\r\n", u"\r"}) {
        FakePlatform fake;
        CFileStream stream(fake.platform);
        stream.SetContents(RaggedRecord(columns, wholeShare, shortRow));
        bool isRefused = false;
        const std::size_t asked = BytesAskedBy([&] { isRefused = stream.GetTable2d(u"T").IsEmpty(); });
        EXPECT_TRUE(isRefused);
        EXPECT_EQ(fake.desktop.messages.size(), 1u);
        EXPECT_LE(asked, 8 * kMegabyte + kSmallChange)
            << columns << ' ' << wholeShare << ' ' << ToUtf8(shortRow);
      }
    }
  }
}

// --- Tables that begin far away --------------------------------------------------------------------------

TEST(CFileStreamMemoryUseTest, TableWhoseNumberOfRowsOverflowsIsRefusedAtOnce) {
  constexpr std::int32_t kLast = std::numeric_limits<std::int32_t>::max();
  const Variant table = BoundedArray<double>({kLast, kLast}, {-1, -1});
  FakePlatform fake;
  CFileStream stream(fake.platform);
  EXPECT_LE(BytesAskedBy([&] { EXPECT_FALSE(stream.AddTable2d(u"T", table)); }), kSmallChange);
  EXPECT_EQ(fake.desktop.messages,
            std::vector{test::ErrorMessage(u"An error occurred while adding table: T to the filestream")});
}

// --- Long texts ------------------------------------------------------------------------------------------

const BoundedArray<double> kTable(Bounds{0, 299}, Bounds{0, 299});
const BoundedArray<double> kCube(Bounds{0, 29}, Bounds{0, 29}, Bounds{0, 100});
const BoundedArray<double> kList(Bounds{0, 99'999});

struct Writing {
  std::string name;
  std::function<void(CFileStream&)> write;
};

const std::vector<Writing> kWritings = {
    {"AddField", [](CFileStream& stream) { stream.AddField(u"LIST", kList); }},
    {"AddFieldOften",
     [](CFileStream& stream) {
       for (int i = 0; i < 10'000; ++i) stream.AddField(FromUtf8("FIELD " + std::to_string(i)), 1.5);
     }},
    {"AddTable2d", [](CFileStream& stream) { stream.AddTable2d(u"TABLE", kTable); }},
    {"AddTable3d", [](CFileStream& stream) { stream.AddTable3d(u"TABLE", kCube); }},
};

class CFileStreamLongTextsTest : public ::testing::TestWithParam<Writing> {};
INSTANTIATE_TEST_SUITE_P(Every, CFileStreamLongTextsTest, ::testing::ValuesIn(kWritings),
                         [](const auto& info) { return info.param.name; });

// What would copy a text for each piece that it grows by would ask for thousands of times its length.

TEST_P(CFileStreamLongTextsTest, WritingAsksForAFewTimesTheLengthOfTheText) {
  FakePlatform fake;
  CFileStream stream(fake.platform);
  const std::size_t asked = BytesAskedBy([&] { GetParam().write(stream); });
  const std::size_t length = stream.GetContents().size() * sizeof(char16_t);
  EXPECT_GT(length, std::size_t{100'000});
  EXPECT_LE(asked, 8 * length + kSmallChange);
}

TEST_P(CFileStreamLongTextsTest, FilesAskForAFewTimesTheLengthOfTheText) {
  FakePlatform fake;
  CFileStream stream(fake.platform);
  GetParam().write(stream);
  const std::size_t length = stream.GetContents().size() * sizeof(char16_t);
  EXPECT_LE(BytesAskedBy([&] { stream.FileWrite(kPath); }), 2 * length + kSmallChange);
  CFileStream other(fake.platform);
  EXPECT_LE(BytesAskedBy([&] { EXPECT_TRUE(other.FileRead(kPath)); }), 2 * length + kSmallChange);
}

}  // namespace
}  // namespace vorquill21
