#include <gtest/gtest.h>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "vorquill21/import/import_column_data.hpp"

namespace vorquill21 {
namespace {

constexpr TextView kApplication = u"Vorquill21";
constexpr TextView kSection = u"Import Settings";

class ImportSettingsTest : public ::testing::Test {
 protected:
  ImportSettingsTest() {
    import.HeaderRow(1);
    import.FirstValueRow(2);
    import.Delimiter(u"before");
  }

  void Store(TextView key, TextView value) { fake.settings.Set(kApplication, kSection, key, value); }

  void ExpectProperties(std::int32_t headerRow, std::int32_t firstValueRow, TextView delimiter) const {
    EXPECT_EQ(import.HeaderRow(), headerRow);
    EXPECT_EQ(import.FirstValueRow(), firstValueRow);
    EXPECT_EQ(import.Delimiter(), delimiter);
  }

  std::int32_t ErrorOfReading() {
    return test::RaisedNumber([&] { import.SettingsReadFromRegistry(); });
  }

  test::FakePlatform fake;
  CImportColumnData import{fake.platform};
};

TEST_F(ImportSettingsTest, WhatIsNotStoredHasDefaults) {
  import.MaxColumns(7);
  import.Filepath(u"path");
  import.SettingsReadFromRegistry();
  ExpectProperties(9, 11, u"\t");
  EXPECT_EQ(import.MaxColumns(), 7);
  EXPECT_EQ(import.Filepath(), u"path");
}

TEST_F(ImportSettingsTest, WhatIsWrittenIsReadBack) {
  for (const TextView delimiter : {TextView(u"\t"), TextView(), TextView(u" \r\n€Ω ")}) {
    import.HeaderRow(-2147483647 - 1);
    import.FirstValueRow(2147483647);
    import.Delimiter(delimiter);
    import.SettingsWriteToRegistry();
    CImportColumnData other(fake.platform);
    other.SettingsReadFromRegistry();
    EXPECT_EQ(other.HeaderRow(), import.HeaderRow());
    EXPECT_EQ(other.FirstValueRow(), import.FirstValueRow());
    EXPECT_EQ(other.Delimiter(), delimiter);
  }
}

TEST_F(ImportSettingsTest, ValuesAreStoredAsDecimalTextUnderTheLibrarysTitle) {
  import.HeaderRow(-12);
  import.FirstValueRow(1000000);
  import.Delimiter(u";");
  import.SettingsWriteToRegistry();
  const auto stored = [&](TextView key) { return fake.settings.Get(kApplication, kSection, key, u"absent"); };
  EXPECT_EQ(stored(u"HeaderRow"), u"-12");
  EXPECT_EQ(stored(u"FirstValueRow"), u"1000000");
  EXPECT_EQ(stored(u"Delimiter"), u";");
  EXPECT_EQ(stored(u"MaxColumns"), u"absent");
  EXPECT_EQ(stored(u"Filepath"), u"absent");
}

TEST_F(ImportSettingsTest, StoredRowsAreConvertedAsTextsAre) {
  const struct {
    TextView text;
    std::int32_t row;
  } kRows[] = {{u"5", 5},   {u" 5 ", 5},     {u"2.5", 2},
               {u"3.5", 4}, {u"-1E2", -100}, {u"2147483647.4", 2147483647}};
  for (const auto& [text, row] : kRows) {
    Store(u"HeaderRow", text);
    EXPECT_EQ(ErrorOfReading(), 0);
    EXPECT_EQ(import.HeaderRow(), row) << ToUtf8(text);
  }
}

TEST_F(ImportSettingsTest, StoredRowsAreInTheUsersNotation) {
  fake.locale.decimalSeparator = u',';
  Store(u"HeaderRow", u"3,5");
  EXPECT_EQ(ErrorOfReading(), 0);
  EXPECT_EQ(import.HeaderRow(), 4);
  Store(u"HeaderRow", u"3.5");
  EXPECT_EQ(ErrorOfReading(), kTypeMismatch);
}

TEST_F(ImportSettingsTest, AHeaderRowThatIsNoNumberLeavesEverythingAlone) {
  for (const TextView text : {TextView(u"nine"), TextView(u""), TextView(u"9x"), TextView(u"&H9")}) {
    Store(u"HeaderRow", text);
    EXPECT_EQ(ErrorOfReading(), kTypeMismatch) << ToUtf8(text);
    ExpectProperties(1, 2, u"before");
  }
}

TEST_F(ImportSettingsTest, AFirstValueRowThatIsNoNumberComesAfterTheHeaderRow) {
  Store(u"HeaderRow", u"4");
  Store(u"FirstValueRow", u"five");
  Store(u"Delimiter", u";");
  EXPECT_EQ(ErrorOfReading(), kTypeMismatch);
  ExpectProperties(4, 2, u"before");
}

TEST_F(ImportSettingsTest, ARowBeyond32BitsOverflows) {
  for (const TextView text : {u"2147483648", u"-2147483649", u"1E300"}) {
    Store(u"HeaderRow", text);
    EXPECT_EQ(ErrorOfReading(), kOverflow) << ToUtf8(text);
    ExpectProperties(1, 2, u"before");
  }
}

}  // namespace
}  // namespace vorquill21
