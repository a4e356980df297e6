#include "vorquill21/frame/main.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

#include "tests/frame/installed_library.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/short_of_memory.hpp"

namespace vorquill21::test {
namespace {

BoundedArray<Variant> Arguments(std::vector<Variant> elements, std::int32_t lower = 0) {
  return BoundedArray<Variant>(std::move(elements), lower);
}

// --- The objects -----------------------------------------------------------------------------------------

template <typename Accessor>
void ExpectOneObject(Accessor accessor) {
  const auto object = accessor();
  EXPECT_NE(object, nullptr);
  EXPECT_EQ(object, accessor());
}

TEST(MainTest, EachAccessorGivesItsOneObject) {
  FakePlatform fake;
  const Main main(fake.platform);
  ExpectOneObject([&] { return main.LibFile(); });
  ExpectOneObject([&] { return main.LibGeometry(); });
  ExpectOneObject([&] { return main.LibInterpolate(); });
  ExpectOneObject([&] { return main.LibMathUtils(); });
  ExpectOneObject([&] { return main.LibStatistics(); });
  ExpectOneObject([&] { return main.LibTrigonometry(); });
  ExpectOneObject([&] { return main.LibString(); });
  ExpectOneObject([&] { return main.LibLog(); });
  ExpectOneObject([&] { return main.LibFilestream(); });
  ExpectOneObject([&] { return main.LibOSUtils(); });
}

TEST(MainTest, ObjectsWorkOnThePlatformOfMain) {
  FakePlatform fake;
  fake.process.commandLine = u"a b";
  fake.desktop.specialFolders[eSpecialFolder_PERSONAL] = u"/documents";
  const Main main(fake.platform);
  main.LibFile()->FileWriteAsString(u"/library/a.txt", u"x");
  EXPECT_EQ(fake.files.Content(u"/library/a.txt"), "x\r\n");
  Text path;
  EXPECT_TRUE(main.LibOSUtils()->GetSpecialFolderPath(eSpecialFolder_PERSONAL, path));
  EXPECT_EQ(path, u"/documents");
  EXPECT_EQ(main.LibString()->CommandLineArgumentIndex(main.LibString()->CommandLineArgumentsParse(), u"B"),
            2);
  EXPECT_EQ(main.LibMathUtils()->DWordMake(0, 7), 7);
  EXPECT_EQ(main.LibStatistics()->Maximum(std::vector{1.0, 3.0, 2.0}), 3.0);
  EXPECT_EQ(main.LibTrigonometry()->Degrees(0), 0.0);
  EXPECT_EQ(main.LibGeometry()->VectorMagnitude3d(0, 0, 2), 2.0);
  EXPECT_EQ(main.LibInterpolate()->OneDLinearInterpolateFromPoints(0, 2, 0, 4, 1), 2.0);
}

TEST(MainTest, StateSetThroughOneCallIsSeenThroughTheNext) {
  FakePlatform fake;
  const Main main(fake.platform);
  main.LibLog()->Initialise(u"/library/host.log", 1000, true, false, u"");
  EXPECT_EQ(main.LibLog()->Filepath(), u"/library/host.log");
  main.LibFilestream()->Initialise(u"V 1", BoundedArray<Variant>::Empty());
  main.LibFilestream()->AddField(u"A", u"x");
  EXPECT_EQ(main.LibFilestream()->GetFieldString(u"A"), Variant(u"x"));
}

TEST(MainTest, EachMainHasItsOwnObjects) {
  FakePlatform fake;
  const Main one(fake.platform);
  const Main other(fake.platform);
  EXPECT_NE(one.LibLog(), other.LibLog());
  EXPECT_NE(one.LibFilestream(), other.LibFilestream());
}

TEST(MainTest, ObjectsOutliveMain) {
  FakePlatform fake;
  std::shared_ptr<CLog> log;
  std::weak_ptr<CFile> file;
  {
    const Main main(fake.platform);
    log = main.LibLog();
    file = main.LibFile();
  }
  log->Initialise(u"/library/host.log", 1000, true, true, u"");
  log->AddEntry(u"x", logNormal);
  EXPECT_EQ(fake.files.Content(u"/library/host.log"), "x\r\n");
  EXPECT_TRUE(file.expired()) << "what nobody refers to is gone";
}

TEST(MainTest, ANativeMainCanBeMade) {
  const Main main;
  EXPECT_EQ(main.LibString()->ReplaceMulti(u"aab", u"a", u"x"), u"xb");
}

TEST(MainTest, AShortageOfMemoryRaisesErrorSevenAndNothingElse) {
  FakePlatform fake;
  ExpectNumberOrErrorSeven(0, [&] { const Main main(fake.platform); });
  const Main main(fake.platform);
  const BoundedArray<Variant> text = Arguments({u"a text that is no number"});
  ExpectNumberOrErrorSeven(13, [&] { main.Initialise(text); });
}

TEST(MainTest, ASelfTestThatIsShortOfMemoryRaisesNothingButErrorSeven) {
  bool isHit = true;
  int first = 1;
  for (; isHit; first += 1 + first / 8) {
    InstalledLibrary library;
    const Main main(library.platform);
    const BoundedArray<Variant> request = Arguments({2});
    MemoryShortage shortage(first);
    const std::int32_t number = shortage.RaisedDuring([&] { main.Initialise(request); });
    isHit = shortage.Hit();
    EXPECT_TRUE(number == 0 || (isHit && number == kOutOfMemory)) << first << ", " << number;
    EXPECT_EQ(library.files.OpenReaders(), 0);
  }
  EXPECT_GT(first, 100);
}

// --- Initialise ------------------------------------------------------------------------------------------

/// Whether Initialise has run the self-tests: they fail, and beep, without their reference file.
bool RunsSelfTests(const BoundedArray<Variant>& arguments, std::vector<ShownMessage>* messages = nullptr) {
  FakePlatform fake;
  EXPECT_EQ(Main(fake.platform).Initialise(arguments), Variant());
  EXPECT_EQ(fake.files.FolderExists(u"/library/self test"), fake.desktop.beeps == 1);
  if (messages == nullptr) {
    EXPECT_TRUE(fake.desktop.messages.empty());
  } else {
    *messages = fake.desktop.messages;
  }
  return fake.desktop.beeps == 1;
}

TEST(MainTest, InitialiseWithoutARequestDoesNothing) {
  EXPECT_FALSE(RunsSelfTests(BoundedArray<Variant>::Empty()));
  const Variant requests[] = {Missing{},
                              0,
                              3,
                              -1,
                              1.5,
                              0.999999,
                              true,
                              false,
                              Variant(),
                              u"0",
                              u"-2",
                              std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity()};
  for (const Variant& request : requests) EXPECT_FALSE(RunsSelfTests(Arguments({request})));
  EXPECT_FALSE(RunsSelfTests(Arguments({0, 1, 2}))) << "only the first element counts";
  EXPECT_FALSE(RunsSelfTests(Arguments({Missing{}, 2})));
  EXPECT_FALSE(RunsSelfTests(Arguments({2}, -1))) << "an upper bound below 0";
}

TEST(MainTest, InitialiseWithOneRunsTheSelfTestsInSilence) {
  EXPECT_TRUE(RunsSelfTests(Arguments({1})));
  EXPECT_TRUE(RunsSelfTests(Arguments({1.0, u"ignored", Missing{}})));
  EXPECT_TRUE(RunsSelfTests(Arguments({u" 1 "})));
  EXPECT_TRUE(RunsSelfTests(Arguments({1}, 1))) << "the first element, whatever its index";
}

TEST(MainTest, InitialiseWithTwoReports) {
  for (const Variant& request : {Variant(2), Variant(2.0), Variant(u"2")}) {
    std::vector<ShownMessage> messages;
    EXPECT_TRUE(RunsSelfTests(Arguments({request}), &messages));
    EXPECT_EQ(messages.size(), 1u);
  }
}

TEST(MainTest, ATextIsANumberInTheUsersNotation) {
  FakePlatform fake;
  fake.locale.decimalSeparator = u',';
  const Main main(fake.platform);
  main.Initialise(Arguments({u"1,0"}));
  EXPECT_EQ(fake.desktop.beeps, 1);
  EXPECT_EQ(RaisedNumber([&] { main.Initialise(Arguments({u"1.0"})); }), 13);
}

TEST(MainTest, WhatIsNoNumberIsAnError) {
  FakePlatform fake;
  const Main main(fake.platform);
  const Variant requests[] = {u"abc", u"", ObjectReference(), BoundedArray<double>(Bounds{0, 0})};
  for (const Variant& request : requests) {
    EXPECT_EQ(RaisedNumber([&] { main.Initialise(Arguments({request})); }), 13);
  }
  EXPECT_EQ(RaisedNumber([&] { main.Initialise(BoundedArray<Variant>()); }), 9);
  EXPECT_EQ(fake.desktop.beeps, 0);
}

// --- The report ------------------------------------------------------------------------------------------

TEST(MainTest, PassedSelfTestsAreReportedUnderTheLibrarysTitle) {
  InstalledLibrary library;
  Main(library.platform).Initialise(Arguments({2}));
  EXPECT_EQ(library.desktop.messages,
            (std::vector<ShownMessage>{{u"All self tests passed", 64, u"Vorquill21"}}));
  EXPECT_EQ(library.desktop.beeps, 0);
  Main(library.platform).Initialise(Arguments({1}));
  EXPECT_EQ(library.desktop.messages.size(), 1u);
}

TEST(MainTest, DeliberateFailedSelfTestsAreReportedUnderAnotherTitle) {
  FakePlatform fake;
  Main(fake.platform).Initialise(Arguments({2}));
  EXPECT_EQ(fake.desktop.messages,
            (std::vector<ShownMessage>{
                {u"Failed the following tests:\rSelfTest_3dTable\r", 48, u"Self Tests in Kestrovan"}}));
  EXPECT_EQ(fake.desktop.beeps, 1);
}

/// An explicit instantiation may name a private member, and so hand it to a friend.
bool RunSelfTestsOf(const Main& main, bool showsResult);
template <bool (Main::*kRoutine)(bool) const>
struct OpenedMain {
  friend bool RunSelfTestsOf(const Main& main, bool showsResult) { return (main.*kRoutine)(showsResult); }
};
template struct OpenedMain<&Main::RunSelfTests>;

TEST(MainTest, WhetherAllPassedIsReturnedShownOrNot) {
  for (const bool showsResult : {false, true}) {
    InstalledLibrary library;
    EXPECT_TRUE(RunSelfTestsOf(Main(library.platform), showsResult));
    FakePlatform withoutReferenceFile;
    EXPECT_FALSE(RunSelfTestsOf(Main(withoutReferenceFile.platform), showsResult));
  }
}

/// The report of a library whose platform has a broken service.
ShownMessage ReportOn(Platform& platform, const RecordingDesktop& desktop) {
  Main(platform).Initialise(Arguments({2}));
  EXPECT_EQ(desktop.beeps, 1);
  EXPECT_EQ(desktop.messages.size(), 1u);
  return desktop.messages.empty() ? ShownMessage() : desktop.messages.front();
}

TEST(MainTest, TheReportIsTheOnlyMessageBoxEvenWhereReadingFails) {
  /// Finds files, but cannot read them: a class shows a message box then.
  struct UnreadableFiles : MemoryFiles {
    std::unique_ptr<ByteReader> OpenForReading(TextView) override { throw LibraryError(kDeviceInputOutput); }
  };
  FakePlatform fake;
  UnreadableFiles files;
  files.MakeFolder(u"/library");
  Platform platform = fake.With(files);
  Main(platform).Initialise(Arguments({1}));
  EXPECT_EQ(fake.desktop.beeps, 1);
  EXPECT_TRUE(fake.desktop.messages.empty());
  Main(platform).Initialise(Arguments({2}));
  EXPECT_EQ(fake.desktop.beeps, 2);
  EXPECT_EQ(fake.desktop.messages,
            (std::vector<ShownMessage>{{u"Failed the following tests:\r\rSelfTest_Main\rSelfTest_ReadWrite\r"
                                        u"SelfTest_IsCompatibleVersion\rSelfTest_3dTable\r",
                                        48, u"Self Tests in Kestrovan"}}));
}

TEST(MainTest, ReportNamesTheChecksThatABrokenServiceFailsInOrder) {
  constexpr TextView kNeedingFiles =
      u"Failed the following tests:\rListFilesMathchingType\r\rSelfTest_DirMake\rSelfTest_Main\r"
      u"SelfTest_ReadWrite\rSelfTest_IsCompatibleVersion\rSelfTest_3dTable\r";
  const ShownMessage needingFiles{Text(kNeedingFiles), 48, u"Self Tests in Kestrovan"};
  {
    InstalledLibrary library;
    ReadOnlyFiles files;
    Platform platform = library.With(files);
    EXPECT_EQ(ReportOn(platform, library.desktop), needingFiles);
  }
  {
    InstalledLibrary library;
    library.process.libraryFolder = u"/nowhere";
    EXPECT_EQ(ReportOn(library.platform, library.desktop), needingFiles);
  }
  {
    /// Loses every letter.
    struct LossyLocale : ChosenLocale {
      void AppendToCodePage(TextView text, std::string& bytes) const override {
        for (const char16_t unit : text) bytes += unit < u'A' ? static_cast<char>(unit) : '?';
      }
    };
    InstalledLibrary library;
    LossyLocale locale;
    Platform platform = library.With(locale);
    EXPECT_EQ(ReportOn(platform, library.desktop),
              (ShownMessage{u"Failed the following tests:\r\rSelfTest_Main\rSelfTest_ReadWrite\r"
                            u"SelfTest_IsCompatibleVersion\rSelfTest_3dTable\r",
                            48, u"Self Tests in Kestrovan"}));
  }
}

TEST(MainTest, EveryFaultEndsInOneReportOrInTheErrorOfTheLogsFile) {
  int raised = 0;
  const int faults = ForEachFault(kDeviceInputOutput, [&](FaultPlan& plan) {
    InstalledLibrary library;
    FaultyPlatform faulty(library.platform, plan);
    const Main main(faulty.platform);
    const std::int32_t number = RaisedNumber([&] { main.Initialise(Arguments({2})); });
    if (number != 0) {
      EXPECT_EQ(number, kDeviceInputOutput);
      EXPECT_TRUE(library.desktop.messages.empty());
      ++raised;
      return;
    }
    ASSERT_EQ(library.desktop.messages.size(), 1u);
    const ShownMessage& report = library.desktop.messages.front();
    const bool passed = report == ShownMessage{u"All self tests passed", 64, u"Vorquill21"};
    EXPECT_TRUE(passed ||
                (report.text.starts_with(u"Failed the following tests:\r") && report.text.ends_with(u"\r") &&
                 report.style == 48 && report.title == u"Self Tests in Kestrovan"));
    EXPECT_EQ(library.desktop.beeps, passed ? 0 : 1);
  });
  EXPECT_GT(faults, 40);
  EXPECT_EQ(raised, 1);
}

}  // namespace
}  // namespace vorquill21::test
