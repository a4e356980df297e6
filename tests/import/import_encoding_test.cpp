#include <gtest/gtest.h>

#include <string>

#include "tests/support/locales.hpp"
#include "vorquill21/import/import_column_data.hpp"
#include "vorquill21/import/line_encoding.hpp"

namespace vorquill21 {
namespace {

using test::TwoByteLocale;

constexpr TextView kPath = u"/library/columns.txt";

struct ImportSetting {
  explicit ImportSetting(Locale& locale) : platform(fake.With(locale)) {
    import.Filepath(kPath);
    import.HeaderRow(1);
    import.FirstValueRow(2);
  }

  void Run(TextView delimiter, std::string_view content) {
    fake.files.Replace(kPath, content);
    import.Delimiter(delimiter);
    EXPECT_TRUE(import.Import());
  }

  test::FakePlatform fake;
  Platform platform;
  CImportColumnData import{platform};
};

TEST(ImportEncodingTest, HeadersAreDecodedFromTheCodePage) {
  test::ChosenLocale locale;
  ImportSetting setting(locale);
  setting.Run(u"\t", "\x80\xB5m\t\xFC\x81\n1\t2\n");
  EXPECT_EQ(setting.import.ColumnHeaderData(0), Variant(u"€µm"));
  EXPECT_EQ(setting.import.ColumnHeaderData(1), Variant(Text{u'ü', char16_t{0x81}}));
}

TEST(ImportEncodingTest, ADelimiterBeyondAsciiIsMatched) {
  test::ChosenLocale locale;
  ImportSetting setting(locale);
  setting.Run(u"€",
              "a\x80"
              "b\n1\x80"
              "2\n");
  EXPECT_EQ(setting.import.ColumnCount(), 2);
  EXPECT_EQ(setting.import.ColumnData(1, 0), Variant(2.0));
}

TEST(ImportEncodingTest, ADelimiterThatTheCodePageCannotHoldIsNeverFound) {
  test::ChosenLocale locale;
  ImportSetting setting(locale);
  for (const TextView delimiter : {TextView(u"Ω"), TextView(u"x→"), TextView(u"\xD800")}) {
    setting.Run(delimiter, "a?b x?\n1?2 x?\n12:30\n");
    EXPECT_EQ(setting.import.ColumnCount(), 1);
    EXPECT_EQ(setting.import.ColumnHeaderData(0), Variant(u"a?b x?"));
    EXPECT_EQ(setting.import.DataRowCount(), 2);
    EXPECT_EQ(setting.import.ColumnData(0, 0), Variant(1.0));
    EXPECT_EQ(setting.import.ColumnData(0, 1), Variant(12.3));
  }
}

TEST(ImportEncodingTest, DelimitersAreMatchedAsBytesOnPagesOfSingleBytes) {
  const test::ChosenLocale locale;
  for (const TextView delimiter : {u"\t", u",", u"; ", u"|", u"x", u"€", u"\x81"}) {
    EXPECT_TRUE(CanBeMatchedAsBytes(delimiter, locale)) << ToUtf8(delimiter);
  }
  EXPECT_FALSE(CanBeMatchedAsBytes(u"Ω", locale));
}

/// A page of single bytes, one of which stands for two units.
class LigatureLocale : public test::ChosenLocale {
 public:
  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override {
    for (const char byte : bytes) text += byte == '\x9C' ? Text(u"oe") : FromCodePage(page_, {&byte, 1});
    return bytes.size();
  }

 private:
  test::ChosenLocale page_;
};

TEST(ImportEncodingTest, LettersAreMatchedAsTextWhereABytePassesForTwo) {
  const LigatureLocale locale;
  EXPECT_TRUE(CanBeMatchedAsBytes(u";", locale));
  EXPECT_FALSE(CanBeMatchedAsBytes(u"x", locale));
}

TEST(ImportEncodingTest, LettersAreMatchedAsTextWhereCharactersHaveSeveralBytes) {
  const TwoByteLocale locale;
  for (const TextView delimiter : {u"\t", u",", u"; ", u" ", u"?"}) {
    EXPECT_TRUE(CanBeMatchedAsBytes(delimiter, locale)) << ToUtf8(delimiter);
  }
  for (const TextView delimiter : {u"|", u"x", u"@", u"\u8000", u"€"}) {
    EXPECT_FALSE(CanBeMatchedAsBytes(delimiter, locale)) << ToUtf8(delimiter);
  }
}

TEST(ImportEncodingTest, ADelimiterIsNotFoundInsideACharacterOfSeveralBytes) {
  TwoByteLocale locale;
  ImportSetting setting(locale);
  constexpr char16_t kCharacter = 0x8100 + u'|';
  setting.Run(u"|", "a\x81|b|c\n1\x81|5|2\n");
  EXPECT_EQ(setting.import.ColumnCount(), 2);
  EXPECT_EQ(setting.import.ColumnHeaderData(0), Variant(Text{u'a', kCharacter, u'b'}));
  EXPECT_EQ(setting.import.ColumnHeaderData(1), Variant(u"c"));
  EXPECT_EQ(setting.import.ColumnData(0, 0), Variant(1.0));
  EXPECT_EQ(setting.import.ColumnData(1, 0), Variant(2.0));

  setting.Run(Text{kCharacter}, "a\x81|b|c\n1\x81|5|2\n");
  EXPECT_EQ(setting.import.ColumnCount(), 2);
  EXPECT_EQ(setting.import.ColumnHeaderData(1), Variant(u"b|c"));
  EXPECT_EQ(setting.import.ColumnData(1, 0), Variant(5.0));
}

}  // namespace
}  // namespace vorquill21
