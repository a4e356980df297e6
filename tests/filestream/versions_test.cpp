#include <limits>

#include "tests/filestream/file_stream_fixture.hpp"

namespace vorquill21 {
namespace {

using test::ArrayOf;
using test::ErrorOf;
using test::NoVersions;
using test::RaisedError;

class CFileStreamVersionsTest : public test::WithEachSeparator {
 protected:
  Text RefusalOf(TextView actual, TextView current, TextView compatible) {
    stream.AddField(u"FILEVERSION", actual);
    Text status = u"before";
    EXPECT_FALSE(stream.IsCompatibleVersion(true, Missing{}, current, compatible, &status));
    return status;
  }
};
VORQUILL21_WITH_EACH_SEPARATOR(CFileStreamVersionsTest);

const BoundedArray<Variant> kCompatible = ArrayOf({u"v1.1", u"v1.2", u"v1.3"});

TEST_P(CFileStreamVersionsTest, InitialiseStartsANewDocumentAndReturnsNothing) {
  stream.AddField(u"OLD", 1);
  EXPECT_TRUE(stream.Initialise(u"  TYRE DATA 2.1 ", kCompatible).IsEmpty());
  EXPECT_EQ(stream.GetContents(),
            Text(u"[DEC SEP]\t") + Separator() + u"\r\n[FILEVERSION]\tTYRE DATA 2.1\r\n");
}

TEST_P(CFileStreamVersionsTest, InitialiseWithoutVersionWritesAnEmptyRecord) {
  stream.Initialise(u"", NoVersions());
  stream.AddField(u"A", 1);
  EXPECT_TRUE(stream.FieldExists(u"FILEVERSION"));
  EXPECT_EQ(stream.FileVersion(), u"");
  EXPECT_EQ(stream.GetContents(), Text(u"[DEC SEP]\t") + Separator() + u"\r\n[A]\t1\r\n[FILEVERSION]\t\r\n");
}

TEST_P(CFileStreamVersionsTest, CompatibleVersionsThatCannotBeReadLeaveTheDocument) {
  const Text text = u"[DEC SEP]\t.\r\n[FILEVERSION]\tV 1\r\n";
  stream.SetContents(text);
  EXPECT_EQ(ErrorOf([&] { stream.Initialise(u"V 2", BoundedArray<Variant>()); }),
            (RaisedError{kSubscriptOutOfRange, u"", u"Subscript out of range"}));
  EXPECT_EQ(ErrorOf([&] {
              stream.Initialise(u"V 2", BoundedArray<Variant>({0, 0}, {0, 0}));
            }),
            (RaisedError{kSubscriptOutOfRange, u"", u"Subscript out of range"}));
  EXPECT_EQ(ErrorOf([&] { stream.Initialise(u"V 2", ArrayOf({Missing{}})); }),
            (RaisedError{kTypeMismatch, u"", u"Type mismatch"}));
  EXPECT_EQ(stream.GetContents(), text);
  ExpectMessages({});
}

TEST_P(CFileStreamVersionsTest, InitialiseThatFailedHasTakenTheVersionsBeforeTheFault) {
  stream.Initialise(u"V 1", ArrayOf({u"OLD 0"}));
  EXPECT_EQ(ErrorOf([&] {
              stream.Initialise(u" V 2 ", ArrayOf({u"OLD 1", Missing{}, u"OLD 3"}));
            }).number,
            kTypeMismatch);
  EXPECT_EQ(stream.FileVersion(), u"V 1");
  Text status;
  EXPECT_FALSE(stream.IsCompatibleVersion(true, Missing{}, Missing{}, Missing{}, &status));
  EXPECT_EQ(
      status,
      u"Wrong file version\r\n\r\nFile version required = OLD 1  V 2 \r\nFile version available = V 1 ");
  stream.RemoveField(u"FILEVERSION");
  EXPECT_TRUE(stream.GetContents().ends_with(u"[FILEVERSION]\tV 2\r\n"));
}

TEST_P(CFileStreamVersionsTest, CompatibleVersionsHaveAnyBounds) {
  constexpr std::int32_t kLast = std::numeric_limits<std::int32_t>::max();
  for (const std::int32_t lower : {std::numeric_limits<std::int32_t>::min(), -1, 1, kLast - 2}) {
    stream.Initialise(u"v2", ArrayOf({u"v1.1", u"v1.2", u"v1.3"}, lower));
    for (const TextView version : {u"v1.1", u"v1.2", u"v1.3", u"v2"}) {
      EXPECT_TRUE(stream.IsCompatibleVersion(true, version)) << lower << ToUtf8(version);
    }
  }
}

TEST_P(CFileStreamVersionsTest, DeliberateVersionIsTakenApartAtItsBlanks) {
  const struct {
    TextView version;
    Text number;
    TextView type;
  } rows[] = {
      {u"TYRE DATA 2.1", Localised(u"2.1"), u"TYRE"},
      {u"TYRE DATA 2.10", Localised(u"2.1"), u"TYRE"},
      {u"VERSION 1", u"1", u"VERSION"},
      {u"VERSION x", u"0", u"VERSION"},
      {u"VERSION 1.2.3", u"0", u"VERSION"},
      {u"V  3", u"3", u"V"},
      {u" v2", u"0", u""},
      {u" 2", u"2", u""},
      {u"v2", u"", u""},
      {u"", u"", u""},
  };
  for (const auto& row : rows) {
    CFileStream fresh(fake.platform);
    fresh.Initialise(u"", NoVersions());
    fresh.AddField(u"FILEVERSION", row.version);
    EXPECT_EQ(fresh.FileVersion(), row.version);
    EXPECT_EQ(fresh.FileVersionNumber(), row.number) << ToUtf8(row.version);
    EXPECT_EQ(fresh.FileVersionType(), row.type) << ToUtf8(row.version);
  }
}

TEST_P(CFileStreamVersionsTest, VersionNumberHasAPointWhateverTheDocumentsSeparator) {
  for (const TextView separator : {u".", u",", u";", u"::"}) {
    CFileStream fresh(fake.platform);
    fresh.SetContents(Text(u"[DEC SEP]\t").append(separator).append(u"\r\n[FILEVERSION]\tTYRE DATA 2.5\r\n"));
    EXPECT_EQ(fresh.FileVersionNumber(), Localised(u"2.5")) << ToUtf8(separator);
  }
}

TEST_P(CFileStreamVersionsTest, AbsentVersionIsEmpty) {
  EXPECT_EQ(stream.FileVersion(), u"");
  EXPECT_EQ(stream.FileVersionNumber(), u"");
  EXPECT_EQ(stream.FileVersionType(), u"");
}

TEST_P(CFileStreamVersionsTest, VersionWithSeveralValuesIsATypeMismatch) {
  stream.SetContents(u"[FILEVERSION]\tV 1\tV 2\r\n");
  const RaisedError expected{kTypeMismatch, u"", u"Type mismatch"};
  EXPECT_EQ(ErrorOf([&] { stream.FileVersion(); }), expected);
  EXPECT_EQ(ErrorOf([&] { stream.FileVersionNumber(); }), expected);
  EXPECT_EQ(ErrorOf([&] { stream.FileVersionType(); }), expected);
  ExpectMessages({});
}

// --- Compatibility ---------------------------------------------------------------------------------------

TEST_P(CFileStreamVersionsTest, ListedVersionsAreAccepted) {
  stream.Initialise(u"v2", kCompatible);
  EXPECT_TRUE(stream.IsCompatibleVersion(true));
  const struct {
    TextView version;
    bool isAccepted;
  } rows[] = {
      {u"v1.1", true}, {u"v1.2", true}, {u"v1.3", true},  {u"v2", true},      {u"V1.2", true},
      {u"1.1", true},  {u" v2 ", true}, {u"2", true},     {u"v1.3 v2", true}, {u"v1", false},
      {u"v1.", false}, {u"", false},    {u"v1.4", false}, {u"  ", false},
  };
  for (const auto& row : rows) {
    Text status = u"before";
    stream.AddField(u"FILEVERSION", row.version);
    EXPECT_EQ(stream.IsCompatibleVersion(true, Missing{}, Missing{}, Missing{}, &status), row.isAccepted)
        << ToUtf8(row.version);
    EXPECT_EQ(status.empty(), row.isAccepted);
    EXPECT_EQ(stream.IsCompatibleVersion(true, row.version, u"v2", u"v1.1 v1.2 v1.3"), row.isAccepted);
  }
  ExpectMessages({});
}

TEST_P(CFileStreamVersionsTest, DeliberateLetterCaseIsIgnored) {
  EXPECT_TRUE(stream.IsCompatibleVersion(true, u"v1.1", u"V2", u"V1.1"));
  EXPECT_TRUE(stream.IsCompatibleVersion(true, u"GRÖSSE 1", u"größe 2", u"grösse 1"));
}

TEST_P(CFileStreamVersionsTest, DeliberatePartOfAListedVersionThatEndsAtABlankIsAccepted) {
  stream.Initialise(u"TYRE DATA 2.1", NoVersions());
  for (const TextView version : {u"2.1", u"DATA 2.1", u".1", u"TYRE DATA", u"E"}) {
    EXPECT_TRUE(stream.IsCompatibleVersion(true, version)) << ToUtf8(version);
  }
  for (const TextView version : {u"2", u"TYRE DATA 2", u"TYRE D", u"TYRE  DATA"}) {
    EXPECT_FALSE(stream.IsCompatibleVersion(true, version)) << ToUtf8(version);
  }
}

TEST_P(CFileStreamVersionsTest, DeliberateRefusalNamesTheVersionsWithTheirBlanks) {
  stream.Initialise(u"v2", kCompatible);
  stream.AddField(u"FILEVERSION", u"v1");
  Text status = u"before";
  EXPECT_FALSE(stream.IsCompatibleVersion(true, Missing{}, Missing{}, Missing{}, &status));
  EXPECT_EQ(status,
            u"Wrong file version\r\n\r\nFile version required = V1.1 V1.2 V1.3  V2 \r\nFile version "
            u"available = V1 ");
  ExpectMessages({});

  EXPECT_FALSE(stream.IsCompatibleVersion(false));
  ExpectMessages({status});
}

TEST_P(CFileStreamVersionsTest, MissingVersionIsRefusedInItsOwnWords) {
  stream.Initialise(u"v2", kCompatible);
  stream.RemoveField(u"FILEVERSION");
  Text status = u"before";
  EXPECT_FALSE(stream.IsCompatibleVersion(false, Missing{}, Missing{}, Missing{}, &status));
  EXPECT_EQ(
      status,
      u"Wrong file version\r\n\r\nFile version required = V1.1 V1.2 V1.3  V2 \r\nNo file version available");
  ExpectMessages({status});

  CFileStream fresh(fake.platform);
  for (const Variant& actual : {Variant(u"  "), Variant(), Variant(Missing{})}) {
    status = u"before";
    EXPECT_FALSE(fresh.IsCompatibleVersion(true, actual, Missing{}, Missing{}, &status));
    EXPECT_EQ(status, u"Wrong file version\r\n\r\nFile version required =   \r\nNo file version available");
  }
}

TEST_P(CFileStreamVersionsTest, CompatibleVersionsKeepTheirOwnBlanks) {
  stream.Initialise(u" v2 ", ArrayOf({u" a ", 1, 1.5}, 4));
  stream.AddField(u"FILEVERSION", u"x");
  Text status;
  EXPECT_FALSE(stream.IsCompatibleVersion(true, Missing{}, Missing{}, Missing{}, &status));
  EXPECT_EQ(status, Text(u"Wrong file version\r\n\r\nFile version required =  A  1 ") + TextOf(1.5) +
                        u"  V2 \r\nFile version available = X ");
}

TEST_P(CFileStreamVersionsTest, PassedVersionsAreTrimmed) {
  EXPECT_EQ(RefusalOf(u"x", u"  v2 ", u" v1 v3  "),
            u"Wrong file version\r\n\r\nFile version required = V1 V3  V2 \r\nFile version available = X ");
}

TEST_P(CFileStreamVersionsTest, OlderNameOfTheVersionFieldIsRead) {
  stream.Initialise(u"v2", kCompatible);
  stream.RemoveField(u"FILEVERSION");
  stream.AddField(u"FILE VERSION", u"v1.1");
  EXPECT_TRUE(stream.IsCompatibleVersion(true));
  stream.AddField(u"FILE VERSION", u"v9");
  EXPECT_FALSE(stream.IsCompatibleVersion(true));
  stream.AddField(u"FILEVERSION", u"v2");
  EXPECT_TRUE(stream.IsCompatibleVersion(true));
  EXPECT_EQ(stream.GetContents().find(u"[FILE VERSION]\tv9"), stream.GetContents().find(u"[FILE VERSION]"));
}

TEST_P(CFileStreamVersionsTest, VersionsCanBeNumbers) {
  EXPECT_TRUE(stream.IsCompatibleVersion(true, 2, 2, u""));
  EXPECT_TRUE(stream.IsCompatibleVersion(true, 2.5, u"x", Text(TextOf(2.5))));
}

TEST_P(CFileStreamVersionsTest, VersionThatIsNoTextIsReportedEvenWhenSilent) {
  stream.Initialise(u"v2", kCompatible);
  const Text message =
      u"An error occured while checking for the required file version: v1.1 v1.2 v1.3 \r\nError was Type "
      u"mismatch";
  const Variant list = ArrayOf({u"v1"});
  Text status = u"before";
  EXPECT_FALSE(stream.IsCompatibleVersion(true, list, Missing{}, Missing{}, &status));
  EXPECT_EQ(status, u"");
  ExpectMessages({message});
  EXPECT_FALSE(stream.IsCompatibleVersion(true, Missing{}, list));
  EXPECT_FALSE(stream.IsCompatibleVersion(false, Missing{}, Missing{}, list));
  ExpectMessages({message, message});

  stream.SetContents(u"[FILEVERSION]\tv1\tv2\r\n");
  EXPECT_FALSE(stream.IsCompatibleVersion(true));
  ExpectMessages({message});
}

}  // namespace
}  // namespace vorquill21
