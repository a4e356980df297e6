#include "tests/filestream/memory_shortage.hpp"

#include <functional>
#include <optional>

#include "tests/filestream/file_stream_fixture.hpp"

namespace vorquill21 {
namespace {

using test::ArrayOf;
using test::FakePlatform;
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

/// What one call did while memory was short.
struct Outcome {
  bool wasHit = false;
  std::optional<std::int32_t> raised;
};

Outcome CallDuringShortage(const std::function<void()>& call, int first, int count) {
  Outcome outcome;
  const MemoryShortage shortage(first, count);
  try {
    call();
  } catch (const LibraryError& error) {
    outcome.raised = error.Number();
  }
  outcome.wasHit = MemoryShortage::Hit();
  return outcome;
}

using Operation = std::function<void(CFileStream&)>;

/// Runs the operation with its 1st, 2nd, ... allocation failing, and `count` - 1 after it, until none is left
/// to fail; `check` sees each outcome.
void ForEachShortage(int count, const Operation& operation,
                     const std::function<void(Setting&, const Outcome&)>& check) {
  for (int first = 1;; ++first) {
    Setting setting;
    const Outcome outcome = CallDuringShortage([&] { operation(setting.stream); }, first, count);
    if (!outcome.wasHit) return;
    SCOPED_TRACE(first);
    check(setting, outcome);
  }
}

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
  for (const int count : {1, 2, 3, 1000}) {
    ForEachShortage(count, GetParam().second, [](Setting& setting, const Outcome& outcome) {
      EXPECT_EQ(outcome.raised.value_or(kOutOfMemory), kOutOfMemory);
      EXPECT_EQ(setting.fake.files.OpenReaders(), 0);
      setting.stream.AddField(u"AFTER", u"the shortage");
      EXPECT_EQ(setting.stream.GetFieldString(u"AFTER"), Variant(u"the shortage"));
      EXPECT_NE(setting.stream.GetContents().find(u"[AFTER]\tthe shortage\r\n"), Text::npos);
    });
  }
}

std::vector<test::ShownMessage> OneMessage(TextView text) {
  return {test::ErrorMessage(text)};
}

TEST(CFileStreamMemoryTest, ObjectThatCannotBeMadeRaisesErrorSeven) {
  FakePlatform fake;
  const Outcome outcome = CallDuringShortage([&] { CFileStream stream(fake.platform); }, 1, 1);
  EXPECT_EQ(outcome.raised, kOutOfMemory);
}

TEST(CFileStreamMemoryTest, TableIsWrittenWholeOrNotAtAll) {
  Setting untouched;
  const Text before = untouched.stream.GetContents();
  const Variant table = BoundedArray<double>({0, 99}, {0, 99});
  bool isAdded = false;
  const auto addTable = [&](CFileStream& stream) {
    isAdded = stream.AddTable2d(u"A TABLE THAT IS NEW", table);
  };
  ForEachShortage(1, addTable, [&](Setting& setting, const Outcome& outcome) {
    EXPECT_FALSE(isAdded);
    EXPECT_FALSE(outcome.raised.has_value());
    EXPECT_EQ(setting.fake.desktop.messages,
              OneMessage(u"An error occurred while adding table: A TABLE THAT IS NEW to the filestream"));
    EXPECT_EQ(setting.stream.GetContents(), before);
  });
  EXPECT_TRUE(isAdded);
}

TEST(CFileStreamMemoryTest, FileThatIsReadIsInTheTextAndInTheDocumentOrInNeither) {
  const Text content = u"[DEC SEP]\t.\r\n[NEW]\t1.25\r\n\r";
  for (const int count : {1, 2, 3, 1000}) {
    Text text;
    const auto read = [&](CFileStream& stream) {
      text.clear();
      stream.FileRead(kPath, &text);
    };
    ForEachShortage(count, read, [&](Setting& setting, const Outcome&) {
      const bool isRead = text == content;
      EXPECT_TRUE(isRead || text.empty());
      EXPECT_EQ(setting.stream.FieldExists(u"NEW"), isRead);
      EXPECT_EQ(setting.stream.FieldExists(u"LAST"), !isRead);
    });
    EXPECT_EQ(text, content);
  }
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
    const Outcome outcome = CallDuringShortage([&] { lookUpOften(stream); }, 1, count);
    EXPECT_TRUE(outcome.wasHit);
    EXPECT_EQ(outcome.raised.has_value(), count == 3);
    return fake.desktop.messages;
  };
  EXPECT_EQ(messagesOfShortage(1), OneMessage(finding));
  EXPECT_EQ(messagesOfShortage(2), OneMessage(getting));
  EXPECT_TRUE(messagesOfShortage(3).empty());
}

TEST(CFileStreamMemoryTest, RemovalThatFailsIsReportedAndLeavesTheField) {
  const auto remove = [](CFileStream& stream) {
    EXPECT_FALSE(stream.RemoveField(kLongName) && MemoryShortage::Hit());
  };
  int shortages = 0;
  ForEachShortage(1, remove, [&](Setting& setting, const Outcome&) {
    ++shortages;
    EXPECT_EQ(setting.fake.desktop.messages,
              OneMessage(Text(u"An error occurred while removing field: ").append(kLongName)));
    EXPECT_EQ(setting.stream.GetFieldNumber(kLongName), Variant(1.5));
  });
  EXPECT_EQ(shortages, 1);
}

TEST(CFileStreamMemoryTest, ValuesThatCannotBeHandedOutAreReportedWithTheIndexReached) {
  const auto getValues = [](CFileStream& stream) {
    const Variant values = stream.GetFieldString(u"LIST");
    EXPECT_EQ(values.IsEmpty(), MemoryShortage::Hit());
  };
  ForEachShortage(1, getValues, [](Setting& setting, const Outcome&) {
    EXPECT_EQ(setting.fake.desktop.messages, OneMessage(u"An error occurred while getting sub field:  0"));
  });
}

}  // namespace
}  // namespace vorquill21
