#include <string>
#include <utility>
#include <vector>

#include "tests/filestream/file_stream_fixture.hpp"
#include "tests/support/for_each_shortage.hpp"

namespace vorquill21 {
namespace {

using test::ArrayOf;
using test::FakePlatform;
using test::ForEachShortage;
using test::MemoryShortage;
using test::NoVersions;
using test::TableOf;

constexpr TextView kPath = u"/library/data.txt";
constexpr TextView kLongName = u"A NAME THAT NEEDS MEMORY OF ITS OWN";

/// A platform, and an object with a few records that was asked often enough to look them up in an index.
struct Setting {
  Setting() {
    fake.files.Replace(kPath, "[DEC SEP]\t.\r\n[NEW]\t1.25\r\n\r\n");
    fake.desktop.messages.reserve(100);
    stream.Initialise(u"A VERSION OF MANY LETTERS 1.5", ArrayOf({u"ANOTHER VERSION 1.4"}));
    for (const TextView name : {kLongName, TextView(u"B"), TextView(u"C")}) stream.AddField(name, 1.5);
    stream.AddField(u"LIST", ArrayOf({u"a value of many letters", u"", u"c"}));
    stream.AddTable2d(u"T PAGE 1", TableOf<double>({{1.5, 2}, {3, 4}}));
    stream.AddField(u"LAST", u"last value");
    for (int i = 0; i < 50; ++i) stream.FieldExists(u"LAST");
    EXPECT_TRUE(fake.desktop.messages.empty());
  }

  FakePlatform fake;
  CFileStream stream{fake.platform};
};

using Operation = void (*)(CFileStream&);

const Variant kValues = ArrayOf({1.5, u"some text of many letters", true});
const Variant kTable = TableOf<double>({{1.5, 2}});
const Variant kCube = BoundedArray<double>({0, 1}, {0, 1}, {0, 2});
const Variant kDefaults = ArrayOf({1, 2.5, 3, 4});
const BoundedArray<Variant> kVersions = ArrayOf({1.5});
const Variant kUnknownVersion = u"NO SUCH VERSION EVER";

const std::vector<std::pair<std::string, Operation>> kOperations = {
    {"AddField", [](CFileStream& stream) { stream.AddField(kLongName, kValues); }},
    {"AddTable2d", [](CFileStream& stream) { stream.AddTable2d(kLongName, kTable); }},
    {"AddTable3d", [](CFileStream& stream) { stream.AddTable3d(kLongName, kCube); }},
    {"FieldExists", [](CFileStream& stream) { stream.FieldExists(kLongName); }},
    {"FileRead",
     [](CFileStream& stream) {
       Text text;
       stream.FileRead(kPath, &text);
     }},
    {"FileWrite", [](CFileStream& stream) { stream.FileWrite(kPath); }},
    {"GetContents", [](CFileStream& stream) { stream.GetContents(); }},
    {"GetFieldNumber", [](CFileStream& stream) { stream.GetFieldNumber(u"LIST", kDefaults); }},
    {"GetFieldString", [](CFileStream& stream) { stream.GetFieldString(u"LIST", kDefaults); }},
    {"GetTable2d", [](CFileStream& stream) { stream.GetTable2d(u"T PAGE 1"); }},
    {"GetTable3d", [](CFileStream& stream) { stream.GetTable3d(u"T", 1, 1, 1); }},
    {"Initialise",
     [](CFileStream& stream) { stream.Initialise(u"A VERSION OF MANY LETTERS 1.6", kVersions); }},
    {"IsCompatibleVersion",
     [](CFileStream& stream) {
       Text status;
       stream.IsCompatibleVersion(false, kUnknownVersion, Missing{}, Missing{}, &status);
     }},
    {"RemoveField", [](CFileStream& stream) { stream.RemoveField(kLongName); }},
    {"SetContents",
     [](CFileStream& stream) { stream.SetContents(u"[FILEVERSION]\tA LONGER VERSION 3\r\n"); }},
    {"FileVersion", [](CFileStream& stream) { stream.FileVersion(); }},
    {"FileVersionNumber", [](CFileStream& stream) { stream.FileVersionNumber(); }},
    {"FileVersionType", [](CFileStream& stream) { stream.FileVersionType(); }},
};

class CFileStreamMemoryTest : public ::testing::TestWithParam<std::pair<std::string, Operation>> {};
INSTANTIATE_TEST_SUITE_P(Every, CFileStreamMemoryTest, ::testing::ValuesIn(kOperations),
                         [](const auto& info) { return info.param.first; });

TEST_P(CFileStreamMemoryTest, ShortageLeavesTheObjectUsableAndRaisesNothingButErrorSeven) {
  ForEachShortage([&](MemoryShortage& shortage) {
    Setting setting;
    const std::int32_t raised = shortage.RaisedDuring([&] { GetParam().second(setting.stream); });
    EXPECT_TRUE(raised == 0 || (shortage.Hit() && raised == kOutOfMemory)) << raised;
    EXPECT_EQ(setting.fake.files.OpenReaders(), 0);
    setting.stream.AddField(u"AFTER", u"the shortage");
    EXPECT_EQ(setting.stream.GetFieldString(u"AFTER"), Variant(u"the shortage"));
    EXPECT_NE(setting.stream.GetContents().find(u"[AFTER]\tthe shortage\r\n"), Text::npos);
  });
}

std::vector<test::ShownMessage> OneMessage(TextView text) {
  return {test::ErrorMessage(text)};
}

TEST(CFileStreamMemoryTest, ObjectThatCannotBeMadeRaisesErrorSeven) {
  FakePlatform fake;
  EXPECT_EQ(MemoryShortage(1).RaisedDuring([&] { CFileStream stream(fake.platform); }), kOutOfMemory);
}

TEST(CFileStreamMemoryTest, TableIsWrittenWholeOrNotAtAll) {
  Setting untouched;
  const Text before = untouched.stream.GetContents();
  const Variant table = BoundedArray<double>({0, 99}, {0, 99});
  const auto addTable = [&](MemoryShortage& shortage) {
    Setting setting;
    const bool isAdded =
        shortage.During([&] { return setting.stream.AddTable2d(u"A TABLE THAT IS NEW", table); });
    EXPECT_EQ(isAdded, !shortage.Hit());
    if (isAdded) return;
    EXPECT_EQ(setting.fake.desktop.messages,
              OneMessage(u"An error occurred while adding table: A TABLE THAT IS NEW to the filestream"));
    EXPECT_EQ(setting.stream.GetContents(), before);
  };
  ForEachShortage(addTable, {1});
}

TEST(CFileStreamMemoryTest, FileThatIsReadIsInTheTextAndInTheDocumentOrInNeither) {
  const Text content = u"[DEC SEP]\t.\r\n[NEW]\t1.25\r\n\r";
  ForEachShortage([&](MemoryShortage& shortage) {
    Setting setting;
    Text text;
    shortage.RaisedDuring([&] { setting.stream.FileRead(kPath, &text); });
    const bool isRead = text == content;
    EXPECT_TRUE(isRead || (shortage.Hit() && text.empty()));
    EXPECT_EQ(setting.stream.FieldExists(u"NEW"), isRead);
    EXPECT_EQ(setting.stream.FieldExists(u"LAST"), !isRead);
  });
}

TEST(CFileStreamMemoryTest, LookUpThatFailsIsReportedWithTheFieldsName) {
  // The first look-ups search the text; the one that builds the index is the first to need memory.
  const auto lookUpOften = [](CFileStream& stream) {
    for (int i = 0; i < 50; ++i) stream.FieldExists(kLongName);
  };
  const Text records = Text(u"[A]\t1\r\n[").append(kLongName).append(u"]\t2\r\n");
  const Text finding = Text(u"An error occurred while finding field: ").append(kLongName);
  const Text getting = Text(u"An error occurred while getting field: ")
                           .append(kLongName)
                           .append(u"\r\nError was: Out of memory");
  const auto messagesOfShortage = [&](int count) {
    FakePlatform fake;
    fake.desktop.messages.reserve(10);
    CFileStream stream(fake.platform);
    stream.SetContents(records);
    MemoryShortage shortage(1, count);
    const std::int32_t raised = shortage.RaisedDuring([&] { lookUpOften(stream); });
    EXPECT_TRUE(shortage.Hit());
    EXPECT_EQ(raised, count == 3 ? kOutOfMemory : 0);
    return fake.desktop.messages;
  };
  EXPECT_EQ(messagesOfShortage(1), OneMessage(finding));
  EXPECT_EQ(messagesOfShortage(2), OneMessage(getting));
  EXPECT_TRUE(messagesOfShortage(3).empty());
}

TEST(CFileStreamMemoryTest, RemovalThatFailsIsReportedAndLeavesTheField) {
  const auto remove = [](MemoryShortage& shortage) {
    Setting setting;
    const bool isRemoved = shortage.During([&] { return setting.stream.RemoveField(kLongName); });
    EXPECT_EQ(isRemoved, !shortage.Hit());
    if (isRemoved) return;
    EXPECT_EQ(setting.fake.desktop.messages,
              OneMessage(Text(u"An error occurred while removing field: ").append(kLongName)));
    EXPECT_EQ(setting.stream.GetFieldNumber(kLongName), Variant(1.5));
  };
  EXPECT_EQ(ForEachShortage(remove, {1}), 1);
}

TEST(CFileStreamMemoryTest, ValuesThatCannotBeHandedOutAreReportedWithTheIndexReached) {
  const auto getValues = [](MemoryShortage& shortage) {
    Setting setting;
    const Variant values = shortage.During([&] { return setting.stream.GetFieldString(u"LIST"); });
    EXPECT_EQ(values.IsEmpty(), shortage.Hit());
    if (shortage.Hit()) {
      EXPECT_EQ(setting.fake.desktop.messages, OneMessage(u"An error occurred while getting sub field:  0"));
    }
  };
  ForEachShortage(getValues, {1});
}

}  // namespace
}  // namespace vorquill21
