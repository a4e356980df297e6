#include "vorquill21/platform/locale_posix.hpp"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <clocale>
#include <cstring>
#include <filesystem>
#include <string>

#include "tests/platform/system_posix.hpp"
#include "tests/support/temporary_folder.hpp"
#include "vorquill21/platform/program_posix.hpp"

namespace vorquill21 {
namespace {

using test::ScopedVariable;

TEST(WithoutSecondsTest, TheSecondsGoWithWhatBelongsToThem) {
  struct Case {
    const char* format;
    const char* halfDayFormat;
    const char* expected;
  };
  const Case cases[] = {
      {"%H:%M:%S", "", "%H:%M"},
      {"%T", "", "%H:%M"},
      {"%R", "", "%R"},
      {"%r", "%I:%M:%S %p", "%I:%M %p"},
      {"%r", "", "%I:%M %p"},
      {"%H.%M.%S", "", "%H.%M"},
      {"%OH:%OM:%OS", "", "%OH:%OM"},
      {"%p%I:%M:%S", "", "%p%I:%M"},
      {"%H h %M min %S s", "", "%H h %M min"},
      {"%H\xE6\x99\x82%M\xE5\x88\x86%S\xE7\xA7\x92", "", "%H\xE6\x99\x82%M\xE5\x88\x86"},
      {"%H:%M:%S %Z", "", "%H:%M %Z"},
      {"%S", "", ""},
      {"", "", ""},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(WithoutSeconds(each.format, each.halfDayFormat), each.expected) << each.format;
  }
}

/// The settings of a locale as its source gives them.
struct LocaleSource {
  std::string name;
  std::string decimalPoint;
  std::string dateFormat;
  std::string timeFormat;
  std::string halfDayFormat;
};

/// Locales made for the test, which the system need not have.
class PosixLocaleTest : public ::testing::Test {
 protected:
  /// False when the system cannot make locales.
  bool Make(const LocaleSource& locale, const std::string& characters = "UTF-8") {
    std::string source;
    for (const std::string category : {"LC_CTYPE", "LC_COLLATE", "LC_MONETARY", "LC_MESSAGES"}) {
      source += category + "\ncopy \"POSIX\"\nEND " + category + '\n';
    }
    source += "LC_NUMERIC\ndecimal_point \"" + locale.decimalPoint +
              "\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\nLC_TIME\n" +
              "abday \"1\";\"2\";\"3\";\"4\";\"5\";\"6\";\"7\"\n" +
              "day \"1\";\"2\";\"3\";\"4\";\"5\";\"6\";\"7\"\n" +
              "abmon \"1\";\"2\";\"3\";\"4\";\"5\";\"6\";\"7\";\"8\";\"9\";\"10\";\"11\";\"12\"\n" +
              "mon \"1\";\"2\";\"3\";\"4\";\"5\";\"6\";\"7\";\"8\";\"9\";\"10\";\"11\";\"12\"\n" +
              "d_t_fmt \"%c\"\nd_fmt \"" + locale.dateFormat + "\"\nt_fmt \"" + locale.timeFormat +
              "\"\nam_pm \"AM\";\"PM\"\nt_fmt_ampm \"" + locale.halfDayFormat + "\"\nEND LC_TIME\n";
    const std::string sourcePath = folder_.Path().string() + "/source";
    const std::string path = folder_.Path().string() + '/' + locale.name + '.' + characters;
    test::WriteContent(sourcePath, source);
    RunProgram({"sh", "-c", "localedef -c --no-archive -i \"$1\" -f \"$2\" \"$3\" 2>/dev/null", "sh",
                sourcePath, characters, path});
    return std::filesystem::exists(path + "/LC_TIME");
  }

  static Text Now(const char* format) {
    const time_t now = ::time(nullptr);
    struct tm local {};
    ::localtime_r(&now, &local);
    char buffer[100];
    return FromUtf8({buffer, std::strftime(buffer, sizeof buffer, format, &local)});
  }

  /// The text that `actual` gives now is the one by `format` before or after it.
  template <typename Actual>
  static void ExpectNow(Actual actual, const char* format) {
    const Text before = Now(format);
    const Text text = actual();
    EXPECT_TRUE(text == before || text == Now(format)) << ToUtf8(text) << " by " << format;
  }

  static void ExpectC(const PosixLocale& locale) {
    EXPECT_EQ(locale.DecimalSeparator(), u'.');
    ExpectNow([&] { return locale.ShortTime(); }, "%H:%M");
    ExpectNow([&] { return locale.ShortDate(); }, "%m/%d/%y");
  }

  test::TemporaryFolder folder_;
  ScopedVariable localePath_{"LOCPATH", folder_.Path().c_str()};
  ScopedVariable all_{"LC_ALL", nullptr};
  ScopedVariable numeric_{"LC_NUMERIC", nullptr};
  ScopedVariable time_{"LC_TIME", nullptr};
  ScopedVariable language_{"LANG", nullptr};
};

TEST_F(PosixLocaleTest, WithoutASettingItIsTheCLocale) {
  ExpectC(PosixLocale());
}

TEST_F(PosixLocaleTest, ALocaleThatTheSystemDoesNotHaveIsTheCLocale) {
  const ScopedVariable all("LC_ALL", "xx_YY.UTF-8");
  ExpectC(PosixLocale());
}

TEST_F(PosixLocaleTest, NumbersTimesAndDatesFollowTheEnvironmentOfTheRealSystem) {
  if (!Make({"de_DE", ",", "%d.%m.%Y", "%T", ""}) || !Make({"en_US", ".", "%m/%d/%Y", "%r", "%I:%M:%S %p"})) {
    GTEST_SKIP() << "the system cannot make locales (localedef)";
  }
  {
    const ScopedVariable language("LANG", "de_DE.UTF-8");
    const PosixLocale locale;
    EXPECT_EQ(locale.DecimalSeparator(), u',');
    ExpectNow([&] { return locale.ShortTime(); }, "%H:%M");
    ExpectNow([&] { return locale.ShortDate(); }, "%d.%m.%Y");
  }
  {
    const ScopedVariable language("LANG", "de_DE.UTF-8");
    const ScopedVariable time("LC_TIME", "en_US.UTF-8");
    const PosixLocale locale;
    EXPECT_EQ(locale.DecimalSeparator(), u',');
    ExpectNow([&] { return locale.ShortTime(); }, "%I:%M %p");
    ExpectNow([&] { return locale.ShortDate(); }, "%m/%d/%Y");
  }
  {
    const ScopedVariable numeric("LC_NUMERIC", "de_DE.UTF-8");
    const ScopedVariable time("LC_TIME", "xx_YY.UTF-8");
    const PosixLocale locale;
    EXPECT_EQ(locale.DecimalSeparator(), u',');
    ExpectNow([&] { return locale.ShortDate(); }, "%m/%d/%y");
  }
  {
    const ScopedVariable numeric("LC_NUMERIC", "de_DE.UTF-8");
    const ScopedVariable all("LC_ALL", "C");
    ExpectC(PosixLocale());
  }
}

TEST_F(PosixLocaleTest, CharactersBeyondAsciiAreKeptOnTheRealSystem) {
  if (!Make({"ps_AF", "<U066B>", "%Y<U5E74>%m<U6708>%d<U65E5>", "%H<U6642>%M<U5206>%S<U79D2>", ""})) {
    GTEST_SKIP() << "the system cannot make locales (localedef)";
  }
  const ScopedVariable all("LC_ALL", "ps_AF.UTF-8");
  const PosixLocale locale;
  EXPECT_EQ(locale.DecimalSeparator(), u'\u066B');
  ExpectNow([&] { return locale.ShortDate(); }, "%Y\xE5\xB9\xB4%m\xE6\x9C\x88%d\xE6\x97\xA5");
  ExpectNow([&] { return locale.ShortTime(); }, "%H\xE6\x99\x82%M\xE5\x88\x86");
}

TEST_F(PosixLocaleTest, ASeparatorThatIsNoSingleUnitIsAPointOnTheRealSystem) {
  if (!Make({"xx_XX", "<U0001D7D8>", "%x", "%T", ""}) ||
      !Make({"xx_XX", "<U00B7>", "%x", "%T", ""}, "ISO-8859-1")) {
    GTEST_SKIP() << "the system cannot make locales (localedef)";
  }
  for (const char* name : {"xx_XX.UTF-8", "xx_XX.ISO-8859-1"}) {
    const ScopedVariable numeric("LC_NUMERIC", name);
    EXPECT_EQ(PosixLocale().DecimalSeparator(), u'.') << name;
  }
}

TEST_F(PosixLocaleTest, TheLocaleOfTheProcessPlaysNoPart) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const PosixLocale locale;
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
  ExpectC(locale);
}

}  // namespace
}  // namespace vorquill21
