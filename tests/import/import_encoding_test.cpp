#include <gtest/gtest.h>

#include <string>

#include "tests/support/fake_platform.hpp"
#include "vorquill21/import/import_column_data.hpp"
#include "vorquill21/import/line_encoding.hpp"

namespace vorquill21 {
namespace {

constexpr TextView kPath = u"/library/columns.txt";

/// A page with characters of two bytes: a byte from 80 on begins one, whatever the other is. The character
/// has the code 4E00 + the lower seven bits of the first + 80 times the second.
class TwoByteLocale : public test::ChosenLocale {
 public:
  static constexpr char16_t kFirstCode = 0x4E00;

  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override {
    std::size_t at = 0;
    while (at < bytes.size()) {
      const auto lead = static_cast<unsigned char>(bytes[at]);
      if (lead < 0x80) {
        text += lead;
        ++at;
        continue;
      }
      if (at + 1 == bytes.size()) break;
      const auto trail = static_cast<unsigned char>(bytes[at + 1]);
      text += static_cast<char16_t>(kFirstCode + (lead - 0x80) + 0x80 * trail);
      at += 2;
    }
    return at;
  }

  void AppendToCodePage(TextView text, std::string& bytes) const override {
    for (const char16_t unit : text) {
      if (unit < 0x80) {
        bytes += static_cast<char>(unit);
      } else if (unit >= kFirstCode && unit < kFirstCode + 0x8000) {
        bytes += static_cast<char>(0x80 + (unit - kFirstCode) % 0x80);
        bytes += static_cast<char>((unit - kFirstCode) / 0x80);
      } else {
        bytes += '?';
      }
    }
  }
};

struct ImportSetting {
  explicit ImportSetting(Locale& locale)
      : platform(fake.files, fake.desktop, locale, fake.process, fake.settings) {
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
  for (const TextView delimiter : {u"|", u"x", u"@", u"\u4E00", u"€"}) {
    EXPECT_FALSE(CanBeMatchedAsBytes(delimiter, locale)) << ToUtf8(delimiter);
  }
}

TEST(ImportEncodingTest, ADelimiterIsNotFoundInsideACharacterOfSeveralBytes) {
  TwoByteLocale locale;
  ImportSetting setting(locale);
  const char16_t character = TwoByteLocale::kFirstCode + 1 + 0x80 * u'|';
  setting.Run(u"|", "a\x81|b|c\n1\x81|5|2\n");
  EXPECT_EQ(setting.import.ColumnCount(), 2);
  EXPECT_EQ(setting.import.ColumnHeaderData(0), Variant(Text{u'a', character, u'b'}));
  EXPECT_EQ(setting.import.ColumnHeaderData(1), Variant(u"c"));
  EXPECT_EQ(setting.import.ColumnData(0, 0), Variant(1.0));
  EXPECT_EQ(setting.import.ColumnData(1, 0), Variant(2.0));

  setting.Run(Text{character}, "a\x81|b|c\n1\x81|5|2\n");
  EXPECT_EQ(setting.import.ColumnCount(), 2);
  EXPECT_EQ(setting.import.ColumnHeaderData(1), Variant(u"b|c"));
  EXPECT_EQ(setting.import.ColumnData(1, 0), Variant(5.0));
}

}  // namespace
}  // namespace vorquill21
