#include "tests/filestream/file_stream_fixture.hpp"

namespace vorquill21 {
namespace {

using test::ErrorOf;
using test::NoVersions;

class CFileStreamContentsTest : public test::WithEachSeparator {};
VORQUILL21_WITH_EACH_SEPARATOR(CFileStreamContentsTest);

TEST_P(CFileStreamContentsTest, FreshObjectIsCompletedWithAnEmptyVersionAndTheSeparator) {
  EXPECT_EQ(stream.GetContents(), Text(u"[FILEVERSION]\t\r\n[DEC SEP]\t") + Separator() + u"\r\n");
}

TEST_P(CFileStreamContentsTest, DeliberateEmptyVersionMovesToTheEndWithEveryCall) {
  stream.GetContents();
  const Text second = stream.GetContents();
  EXPECT_EQ(second, Text(u"[DEC SEP]\t") + Separator() + u"\r\n[FILEVERSION]\t\r\n");
  EXPECT_EQ(stream.GetContents(), second);
}

TEST_P(CFileStreamContentsTest, InitialisedDocumentIsComplete) {
  stream.Initialise(u"TYRE DATA 2.1", NoVersions());
  const Text expected = Text(u"[DEC SEP]\t") + Separator() + u"\r\n[FILEVERSION]\tTYRE DATA 2.1\r\n";
  EXPECT_EQ(stream.GetContents(), expected);
  EXPECT_EQ(stream.GetContents(), expected);
}

TEST_P(CFileStreamContentsTest, MissingRecordsAreAddedWithTheCurrentVersion) {
  stream.Initialise(u"  V 3  ", NoVersions());
  stream.RemoveField(u"FILEVERSION");
  stream.RemoveField(u"DEC SEP");
  EXPECT_EQ(stream.GetContents(), Text(u"[FILEVERSION]\tV 3\r\n[DEC SEP]\t") + Separator() + u"\r\n");
}

TEST_P(CFileStreamContentsTest, RecordsThatReadAsEmptyAreReplaced) {
  stream.SetContents(u"[DEC SEP] \r\n[FILEVERSION]\t \t\r\n[A]\t1\r\n");
  EXPECT_EQ(stream.GetContents(), Text(u"[A]\t1\r\n[FILEVERSION]\t\r\n[DEC SEP]\t") + Separator() + u"\r\n");
}

TEST_P(CFileStreamContentsTest, RecordsWithSeveralValuesAreNotEmpty) {
  const Text text = u"[FILEVERSION]\tA\tB\r\n[DEC SEP]\t.\t,\r\n";
  stream.SetContents(text);
  EXPECT_EQ(stream.GetContents(), text);
  ExpectMessages({});
}

TEST_P(CFileStreamContentsTest, SettingTheContentsTakesOverTheVersion) {
  stream.Initialise(u"OLD 1", NoVersions());
  stream.SetContents(u"[FILEVERSION]\tNEW 2 \r\n");
  stream.RemoveField(u"FILEVERSION");
  EXPECT_TRUE(stream.GetContents().starts_with(u"[FILEVERSION]\tNEW 2\r\n"));

  stream.SetContents(u"[FILEVERSION]\t\r\n[A]\t1\r\n");
  EXPECT_TRUE(stream.GetContents().starts_with(u"[A]\t1\r\n[FILEVERSION]\tNEW 2\r\n"));
}

TEST_P(CFileStreamContentsTest, AnyTextCanBeTheContents) {
  for (const TextView text :
       {u"", u"no records at all", u"[", u"]", u"[]", u"[[", u"[FILEVERSION", u"[DEC SEP[]"}) {
    stream.SetContents(text);
    EXPECT_TRUE(stream.GetContents().starts_with(text)) << ToUtf8(text);
  }
  ExpectMessages({});
}

// --- Numbers and the decimal separator -------------------------------------------------------------------

TEST_P(CFileStreamContentsTest, NumbersAreReadWithTheSeparatorOfTheDocument) {
  stream.SetContents(u"[DEC SEP]\t,\r\n[A]\t12345,6\r\n[B]\t0,123\r\n[C]\t1\r\n");
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(12345.6));
  EXPECT_EQ(stream.GetFieldNumber(u"B"), Variant(0.123));
  EXPECT_EQ(stream.GetFieldNumber(u"C"), Variant(1.0));
}

TEST_P(CFileStreamContentsTest, WithoutSeparatorTheDocumentHasPoints) {
  for (const TextView head : {u"", u"[DEC SEP]\t\r\n"}) {
    CFileStream fresh(fake.platform);
    fresh.SetContents(Text(head) + u"[A]\t1.5\r\n");
    EXPECT_EQ(fresh.GetFieldNumber(u"A"), Variant(1.5));
  }
}

TEST_P(CFileStreamContentsTest, DeliberateNumbersInTheUsersNotationAreReadWhateverTheDocumentDeclares) {
  stream.SetContents(Text(u"[DEC SEP]\t;\r\n[A]\t") + TextOf(1.5) + u"\r\n[B]\t1;5\r\n[C]\t1;" + Separator() +
                     u"5");
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(1.5));
  EXPECT_EQ(stream.GetFieldNumber(u"B"), Variant(1.5));
  EXPECT_EQ(stream.GetFieldNumber(u"C"), Variant(0.0));
}

TEST_P(CFileStreamContentsTest, StrangeSeparatorsAreReplacedLiterally) {
  const struct {
    TextView separator;
    TextView number;
    double expected;
  } rows[] = {
      {u"::", u"1::5", 1.5}, {u"::", u"1:::5", 0.0}, {u"7", u"175", 1.5}, {u"7", u"1775", 0.0},
      {u"-", u"1-5", 1.5},   {u"-", u"-15", 0.15},   {u"E", u"1E2", 1.2}, {u"point", u"3point25", 3.25},
      {u"e", u"1E2e5", 0.0}, {u"d", u"1d5E1", 15.0},
  };
  for (const auto& row : rows) {
    CFileStream fresh(fake.platform);
    fresh.AddField(u"DEC SEP", row.separator);
    fresh.AddField(u"F", row.number);
    EXPECT_EQ(fresh.GetFieldNumber(u"F"), Variant(row.expected))
        << ToUtf8(row.separator) << ToUtf8(row.number);
  }
}

TEST_P(CFileStreamContentsTest, DeliberateSeparatorIsLookedUpOnceForEver) {
  stream.SetContents(u"[DEC SEP]\t;\r\n[A]\t1;5\r\n");
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(1.5));
  stream.AddField(u"DEC SEP", u":");
  stream.AddField(u"B", u"1:5");
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(1.5));
  EXPECT_EQ(stream.GetFieldNumber(u"B"), Variant(0.0));
  stream.SetContents(u"[DEC SEP]\t:\r\n[A]\t1;5\r\n[B]\t1:5\r\n");
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(1.5));
  EXPECT_EQ(stream.GetFieldNumber(u"B"), Variant(0.0));
  stream.Initialise(u"", NoVersions());
  stream.AddField(u"A", u"1;5");
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(1.5));
}

TEST_P(CFileStreamContentsTest, TextsAreReadWithoutLookingTheSeparatorUp) {
  stream.SetContents(u"[DEC SEP]\t;\r\n[A]\t1:5\r\n");
  EXPECT_EQ(stream.GetFieldString(u"A"), Variant(u"1:5"));
  stream.AddField(u"DEC SEP", u":");
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(1.5));
}

TEST_P(CFileStreamContentsTest, SeparatorWithSeveralValuesIsATypeMismatch) {
  stream.SetContents(u"[DEC SEP]\t.\t,\r\n[A]\t1\r\n[T]\t\r\n1\r\n");
  const auto expected = test::RaisedError{kTypeMismatch, u"", u"Type mismatch"};
  EXPECT_EQ(ErrorOf([&] { stream.GetFieldNumber(u"A"); }), expected);
  EXPECT_EQ(ErrorOf([&] { stream.GetFieldNumber(u"ABSENT"); }), expected);
  ExpectMessages({});
  EXPECT_TRUE(stream.GetTable2d(u"T").IsEmpty());
  ExpectMessages({u"An error occurred while getting table: T"});
}

TEST_P(CFileStreamContentsTest, UsersSeparatorIsTakenWhenTheObjectIsMade) {
  fake.locale.decimalSeparator = u'!';
  stream.AddField(u"A", 1.5);
  EXPECT_EQ(stream.GetFieldString(u"A"), Variant(TextOf(1.5)));
}

}  // namespace
}  // namespace vorquill21
