#include <iterator>
#include <random>

#include "tests/filestream/file_stream_fixture.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/locales.hpp"

namespace vorquill21 {
namespace {

using test::ErrorOf;
using test::FaultPlan;
using test::ForEachFault;
using test::NoVersions;
using test::RaisedError;
using test::TableOf;

constexpr TextView kPath = u"/library/data.txt";

class CFileStreamFilesTest : public test::WithEachSeparator {
 protected:
  std::string Head() const { return "[DEC SEP]\t" + ToUtf8(Separator()) + "\r\n"; }
};
VORQUILL21_WITH_EACH_SEPARATOR(CFileStreamFilesTest);

// --- Writing ---------------------------------------------------------------------------------------------

TEST_P(CFileStreamFilesTest, FreshObjectWritesItsTwoRecordsAndALineEnd) {
  EXPECT_TRUE(stream.FileWrite(kPath));
  EXPECT_EQ(fake.files.Content(kPath), "[FILEVERSION]\t\r\n" + Head() + "\r\n");
}

TEST_P(CFileStreamFilesTest, WritingReplacesTheFileAndCompletesTheDocument) {
  fake.files.Replace(kPath, "something longer than what is written now, so that nothing of it may stay");
  stream.Initialise(u"V 1", NoVersions());
  stream.RemoveField(u"FILEVERSION");
  EXPECT_TRUE(stream.FileWrite(kPath));
  EXPECT_EQ(fake.files.Content(kPath), Head() + "[FILEVERSION]\tV 1\r\n\r\n");
  EXPECT_TRUE(stream.FieldExists(u"FILEVERSION"));
}

TEST_P(CFileStreamFilesTest, DeliberateAppendedRecordsAreShadowedByEarlierOnes) {
  stream.Initialise(u"V 1", NoVersions());
  stream.AddField(u"A", 1);
  EXPECT_TRUE(stream.FileWrite(kPath, true));
  stream.AddField(u"A", 2);
  stream.AddField(u"B", 3);
  EXPECT_TRUE(stream.FileWrite(kPath, true));
  const std::string head = Head() + "[FILEVERSION]\tV 1\r\n";
  EXPECT_EQ(fake.files.Content(kPath), head + "[A]\t1\r\n\r\n" + head + "[A]\t2\r\n[B]\t3\r\n\r\n");

  CFileStream other(fake.platform);
  EXPECT_TRUE(other.FileRead(kPath));
  EXPECT_EQ(other.GetFieldNumber(u"A"), Variant(1.0));
  EXPECT_EQ(other.GetFieldNumber(u"B"), Variant(3.0));
}

TEST_P(CFileStreamFilesTest, TextsAreWrittenInTheCodePage) {
  stream.AddField(u"Größe", u"€ \u4E2D");
  stream.FileWrite(kPath);
  EXPECT_TRUE(
      fake.files.Content(kPath).starts_with("[Gr\xF6\xDF"
                                            "e]\t\x80 ?\r\n"));
}

TEST_P(CFileStreamFilesTest, DeliberateWritingIntoAMissingFolderRaisesTheErrorUnderItsName) {
  EXPECT_EQ(
      ErrorOf([&] { stream.FileWrite(u"/nowhere/data.txt"); }),
      (RaisedError{kPathNotFound, u"CFileStream.FileWrite",
                   u"An error occurred while writing file: /nowhere/data.txt\r\nError was: Path not found"}));
  ExpectMessages({});
}

TEST_P(CFileStreamFilesTest, EveryFaultOfWritingIsRaisedAndLeavesTheOldFile) {
  for (const RuntimeErrorNumber number : {kDiskFull, kDeviceInputOutput, kPermissionDenied, kOutOfMemory}) {
    for (const bool isAppending : {false, true}) {
      const int faults = ForEachFault(number, [&](FaultPlan& plan) {
        test::PlatformWithSeparator base(GetParam());
        base.files.Replace(kPath, "old");
        test::FaultyPlatform faulty(base.platform, plan);
        CFileStream writer(faulty.platform);
        bool isWritten = false;
        const RaisedError error = ErrorOf([&] { isWritten = writer.FileWrite(kPath, isAppending); });

        EXPECT_EQ(isWritten, !plan.Hit());
        EXPECT_TRUE(base.desktop.messages.empty());
        EXPECT_EQ(base.files.OpenReaders(), 0);
        const Text document = Text(u"[FILEVERSION]\t\r\n[DEC SEP]\t") + Separator() + u"\r\n";
        if (plan.Hit()) {
          EXPECT_EQ(error, (RaisedError{number, u"CFileStream.FileWrite",
                                        Text(u"An error occurred while writing file: /library/data.txt\r\n"
                                             u"Error was: ")
                                            .append(RuntimeErrorDescription(number))}));
          EXPECT_EQ(base.files.Content(kPath), "old");
        } else {
          EXPECT_EQ(error, RaisedError{});
          EXPECT_EQ(base.files.Content(kPath), (isAppending ? "old" : "") + ToUtf8(document) + "\r\n");
        }
        EXPECT_TRUE(writer.FieldExists(u"DEC SEP")) << "the document is complete in any case";
      });
      EXPECT_EQ(faults, 1);
    }
  }
}

// --- Reading ---------------------------------------------------------------------------------------------

TEST_P(CFileStreamFilesTest, DeliberateFileReadsAsTheDocumentAndOneCr) {
  stream.Initialise(u"V 1", NoVersions());
  stream.AddField(u"WORDS", u"Größe €");
  stream.AddField(u"NUMBER", 1.5);
  stream.AddTable2d(u"TABLE", TableOf<double>({{1.5, 2}, {3, 0}}));
  stream.FileWrite(kPath);

  CFileStream other(fake.platform);
  Text text = u"before";
  EXPECT_TRUE(other.FileRead(kPath, &text));
  EXPECT_EQ(text, stream.GetContents() + u"\r");
  EXPECT_EQ(other.GetContents(), text);
  EXPECT_EQ(other.GetFieldString(u"WORDS"), Variant(u"Größe €"));
  EXPECT_EQ(other.GetFieldNumber(u"NUMBER"), Variant(1.5));
  EXPECT_EQ(other.GetTable2d(u"TABLE"), Variant(TableOf<double>({{1.5, 2}, {3, 0}})));
  ExpectMessages({});
}

TEST_P(CFileStreamFilesTest, WritingAndReadingAgainAddsOneLineEndEachTime) {
  stream.FileWrite(kPath);
  const std::string first = fake.files.Content(kPath);
  CFileStream other(fake.platform);
  other.Initialise(u"V 1", NoVersions());
  other.FileRead(kPath);
  other.RemoveField(u"FILEVERSION");
  other.FileWrite(kPath);
  EXPECT_EQ(fake.files.Content(kPath), Head() + "\r[FILEVERSION]\tV 1\r\n\r\n") << first;
}

Text RandomRecords(std::mt19937& random) {
  constexpr TextView kPieces[] = {u"[A]",  u"[B]", u"[A B]", u"[",   u"]", u"\t",    u"\t",
                                  u"\r\n", u"\r",  u"\n",    u"1;5", u"x", u"Größe", u" "};
  Text text;
  for (std::size_t pieces = random() % 40; pieces > 0; --pieces)
    text += kPieces[random() % std::size(kPieces)];
  return text;
}

TEST_P(CFileStreamFilesTest, FieldsReadTheSameThroughAnyNumberOfFiles) {
  std::mt19937 random(7);
  std::size_t found = 0;
  for (int round = 0; round < 2000; ++round) {
    const Text contents = u"[DEC SEP]\t;\r\n[FILEVERSION]\tV 1\r\n" + RandomRecords(random);
    CFileStream first(fake.platform);
    first.SetContents(contents);
    EXPECT_TRUE(first.FileWrite(kPath));
    for (std::size_t generation = 1; generation <= 3; ++generation) {
      CFileStream next(fake.platform);
      EXPECT_TRUE(next.FileRead(kPath));
      EXPECT_EQ(next.GetContents(), contents + Text(generation, u'\r'));
      for (const TextView name : {u"A", u"B", u"A B", u"DEC SEP", u"FILEVERSION", u""}) {
        EXPECT_EQ(next.FieldExists(name), first.FieldExists(name));
        EXPECT_EQ(next.GetFieldString(name), first.GetFieldString(name)) << ToUtf8(contents);
        EXPECT_EQ(next.GetFieldNumber(name), first.GetFieldNumber(name)) << ToUtf8(contents);
        found += next.FieldExists(name) ? 1 : 0;
      }
      EXPECT_TRUE(next.FileWrite(kPath));
    }
  }
  EXPECT_GT(found, 20'000u);
  ExpectMessages({});
}

TEST_P(CFileStreamFilesTest, MissingFileChangesNothing) {
  stream.SetContents(u"[FILEVERSION]\tV 1\r\n");
  Text text = u"before";
  for (const TextView path :
       {u"/library/missing.txt", u"/nowhere/data.txt", u"/library", u"", u"/library\\"}) {
    EXPECT_FALSE(stream.FileRead(path, &text));
    EXPECT_EQ(text, u"");
  }
  ExpectMessages({});
  EXPECT_EQ(stream.FileVersion(), u"V 1");
}

TEST_P(CFileStreamFilesTest, EmptyFileIsReported) {
  fake.files.Replace(kPath, "");
  stream.SetContents(u"[A]\t1\r\n");
  Text text = u"before";
  EXPECT_FALSE(stream.FileRead(kPath, &text));
  EXPECT_EQ(text, u"");
  EXPECT_TRUE(stream.FieldExists(u"A"));
  ExpectMessages({u"An error occurred while reading file: /library/data.txt"});
}

TEST_P(CFileStreamFilesTest, DeliberateLastCharacterOfTheFileIsDropped) {
  for (const auto& [bytes, expected] :
       {std::pair("x", u""), {"[A]\t12", u"[A]\t1"}, {"[A]\t1\n", u"[A]\t1"}}) {
    fake.files.Replace(kPath, bytes);
    Text text = u"before";
    EXPECT_TRUE(stream.FileRead(kPath, &text));
    EXPECT_EQ(text, expected);
  }
}

TEST_P(CFileStreamFilesTest, EveryByteIsReadThroughTheCodePage) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  fake.files.Replace(kPath, bytes + ".");
  Text text;
  EXPECT_TRUE(stream.FileRead(kPath, &text));
  EXPECT_EQ(text, FromCodePage(fake.locale, bytes));
}

TEST_P(CFileStreamFilesTest, FileOfSeveralBlocksIsReadWhole) {
  std::string bytes;
  for (int i = 0; bytes.size() < 1'000'000; ++i)
    bytes += "[FIELD " + std::to_string(i) + "]\t" + std::to_string(i) + "\r\n";
  fake.files.Replace(kPath, bytes + "\r\n");
  Text text;
  EXPECT_TRUE(stream.FileRead(kPath, &text));
  EXPECT_EQ(text, FromUtf8(bytes) + u"\r");
  for (const int i : {0, 1, 777, 40'000}) {
    EXPECT_EQ(stream.GetFieldNumber(FromUtf8("FIELD " + std::to_string(i))), Variant(double(i)));
  }
}

TEST_P(CFileStreamFilesTest, DeliberateReadingKeepsTheCurrentVersionWhereasSettingTakesIt) {
  fake.files.Replace(kPath, "[FILEVERSION]\tTHEIRS 1\r\n\r\n");
  stream.Initialise(u"OURS 2", NoVersions());
  stream.FileRead(kPath);
  stream.RemoveField(u"FILEVERSION");
  stream.GetContents();
  EXPECT_EQ(stream.FileVersion(), u"OURS 2");
  stream.SetContents(u"[FILEVERSION]\tTHEIRS 1\r\n");
  stream.RemoveField(u"FILEVERSION");
  stream.GetContents();
  EXPECT_EQ(stream.FileVersion(), u"THEIRS 1");
}

TEST_P(CFileStreamFilesTest, NumbersOfAFileAreReadWithItsSeparator) {
  for (const std::string separator : {".", ",", ";"}) {
    fake.files.Replace(kPath, "[DEC SEP]\t" + separator + "\r\n[A]\t1" + separator + "5\r\n\r\n");
    CFileStream fresh(fake.platform);
    EXPECT_TRUE(fresh.FileRead(kPath));
    EXPECT_EQ(fresh.GetFieldNumber(u"A"), Variant(1.5));
  }
}

TEST_P(CFileStreamFilesTest, DeliberateSecondFileIsReadWithTheSeparatorOfTheFirst) {
  fake.files.Replace(kPath, "[DEC SEP]\t;\r\n[A]\t1;5\r\n\r\n");
  EXPECT_TRUE(stream.FileRead(kPath));
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(1.5));
  fake.files.Replace(kPath, "[DEC SEP]\t:\r\n[A]\t1:5\r\n[B]\t1;5\r\n\r\n");
  EXPECT_TRUE(stream.FileRead(kPath));
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(0.0));
  EXPECT_EQ(stream.GetFieldNumber(u"B"), Variant(1.5));
}

TEST_P(CFileStreamFilesTest, FileWithSeveralSeparatorsIsReadAndReported) {
  fake.files.Replace(kPath, "[DEC SEP]\t.\t,\r\n[A]\t1\r\n\r\n");
  Text text;
  EXPECT_FALSE(stream.FileRead(kPath, &text));
  ExpectMessages({u"An error occurred while reading file: /library/data.txt"});
  EXPECT_EQ(text, u"[DEC SEP]\t.\t,\r\n[A]\t1\r\n\r");
  EXPECT_TRUE(stream.FieldExists(u"A"));
}

TEST_P(CFileStreamFilesTest, SeparatorThatCouldNotBeSettledIsSettledByTheNextDocument) {
  fake.files.Replace(kPath, "[DEC SEP]\t.\t,\r\n[A]\t1\r\n\r\n");
  EXPECT_FALSE(stream.FileRead(kPath));
  EXPECT_FALSE(stream.FileRead(kPath));
  ExpectMessages({u"An error occurred while reading file: /library/data.txt",
                  u"An error occurred while reading file: /library/data.txt"});
  EXPECT_EQ(ErrorOf([&] { stream.GetFieldNumber(u"A"); }).number, kTypeMismatch);
  fake.files.Replace(kPath, "[DEC SEP]\t;\r\n[A]\t1;5\r\n\r\n");
  EXPECT_TRUE(stream.FileRead(kPath));
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(1.5));
}

TEST_P(CFileStreamFilesTest, NameWithWildcardsIsAFileThatCannotBeOpened) {
  fake.files.Replace(kPath, "[A]\t1\r\n\r\n");
  stream.SetContents(u"[B]\t1\r\n");
  Text text = u"before";
  EXPECT_FALSE(stream.FileRead(u"/library/*.txt", &text));
  EXPECT_EQ(text, u"");
  EXPECT_TRUE(stream.FieldExists(u"B"));
  ExpectMessages({u"An error occurred while reading file: /library/*.txt"});
}

TEST_P(CFileStreamFilesTest, NulsAndWhatTheCodePageCannotHoldInAFile) {
  using namespace std::string_view_literals;
  stream.AddField(u"N\0L"sv, u"\0a\0"sv);
  stream.AddField(u"\xD83D\xDE00", u"\xDE00");
  EXPECT_TRUE(stream.FileWrite(kPath));
  EXPECT_TRUE(fake.files.Content(kPath).starts_with("[N\0L]\t\0a\0\r\n[??]\t?\r\n"sv));
  CFileStream other(fake.platform);
  EXPECT_TRUE(other.FileRead(kPath));
  EXPECT_EQ(other.GetFieldString(u"N\0L"sv), Variant(u"\0a\0"sv));
  EXPECT_EQ(other.GetFieldString(u"??"), Variant(u"?"));
  EXPECT_FALSE(other.FieldExists(u"N"));
}

TEST_P(CFileStreamFilesTest, PathMayBeTheTextThatIsFilled) {
  fake.files.Replace(kPath, "[A]\t1\r\n\r\n");
  Text text(kPath);
  EXPECT_TRUE(stream.FileRead(text, &text));
  EXPECT_EQ(text, u"[A]\t1\r\n\r");
}

TEST_P(CFileStreamFilesTest, EveryFaultOfReadingIsReportedAndLeavesTheDocument) {
  for (const RuntimeErrorNumber number :
       {kDeviceInputOutput, kPermissionDenied, kTooManyFiles, kOutOfMemory}) {
    int run = 0;
    const int faults = ForEachFault(number, [&](FaultPlan& plan) {
      test::PlatformWithSeparator base(GetParam());
      base.files.Replace(kPath, "[NEW]\t1\r\n\r\n");
      test::FaultyPlatform faulty(base.platform, plan);
      CFileStream reader(faulty.platform);
      reader.SetContents(u"[OLD]\t1\r\n");
      Text text = u"before";
      const bool isRead = reader.FileRead(kPath, &text);

      EXPECT_EQ(isRead, !plan.Hit());
      EXPECT_EQ(text, plan.Hit() ? u"" : u"[NEW]\t1\r\n\r");
      EXPECT_EQ(reader.FieldExists(u"OLD"), plan.Hit());
      EXPECT_EQ(base.files.OpenReaders(), 0);
      const bool wasFound = ++run > 1;
      std::vector<test::ShownMessage> messages;
      if (plan.Hit() && wasFound) {
        messages.push_back(test::ErrorMessage(u"An error occurred while reading file: /library/data.txt"));
      }
      EXPECT_EQ(base.desktop.messages, messages);
    });
    EXPECT_EQ(faults, 4);  // finding and opening the file, reading it, and seeing its end
  }
}

// --- Code pages of several bytes -------------------------------------------------------------------------

class CFileStreamCodePageTest : public ::testing::Test {
 protected:
  Text Read(const std::string& bytes) {
    fake.files.Replace(kPath, bytes);
    Text text = u"before";
    EXPECT_TRUE(stream.FileRead(kPath, &text));
    return text;
  }

  test::FakePlatform fake;
  test::TwoByteLocale locale;
  Platform platform = fake.With(locale);
  CFileStream stream{platform};
};

TEST_F(CFileStreamCodePageTest, CharactersCutByABlockAreReadWhole) {
  std::string bytes = "x";
  Text expected = u"x";
  while (bytes.size() < 400'001) {
    bytes += "\x81\x42";
    expected += char16_t{0x8142};
  }
  EXPECT_EQ(Read(bytes + "."), expected);
}

TEST_F(CFileStreamCodePageTest, LastCharacterIsDroppedWhole) {
  EXPECT_EQ(Read("ab\x81\x42"), u"ab");
}

TEST_F(CFileStreamCodePageTest, CharacterCutAtTheEndTakesTheFinalNulWithIt) {
  EXPECT_EQ(Read("ab\x81"), u"a");
}

TEST(CFileStreamPairsTest, FinalNulThatIsNoWholeCharacterIsTheUnitOfItsByte) {
  test::FakePlatform fake;
  test::PairLocale locale;
  Platform platform = fake.With(locale);
  CFileStream stream(platform);
  fake.files.Replace(kPath, std::string("a\0b\0c\0", 6));
  Text text;
  EXPECT_TRUE(stream.FileRead(kPath, &text));
  EXPECT_EQ(text, u"ab");
}

}  // namespace
}  // namespace vorquill21
