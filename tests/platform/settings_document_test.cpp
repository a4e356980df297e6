#include "vorquill21/platform/settings_document.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace vorquill21 {
namespace {

TEST(SettingsDocumentTest, IsTextThatPeopleCanRead) {
  SettingsDocument document;
  document.Put(u"Import Settings", u"HeaderRow", u"1");
  document.Put(u"Import Settings", u"Delimiter", u"\t");
  document.Put(u"Other", u"Name", u" \u00E4 \\ \r\n=");
  EXPECT_EQ(document.ToBytes(),
            "[Import Settings]\n"
            "HeaderRow=1\n"
            "Delimiter=\\t\n"
            "[Other]\n"
            "Name=\\u0020\xC3\xA4 \\\\ \\r\\n=\n");
}

TEST(SettingsDocumentTest, WhatPeopleWriteIsReadInAnyLayout) {
  const SettingsDocument document(
      "ignored=1\r\n"
      "\r\n"
      "  [ Import Settings ]  \r\n"
      "# HeaderRow=7\r\n"
      "; HeaderRow=8\n"
      "\t HeaderRow \t=  2 \r\n"
      "headerrow=3\n"
      "Path=C:\\data\\new \\u00e4\\u12 \\x \\\n"
      "Empty=\n"
      "[Other]\n"
      "HeaderRow=4\n"
      "[IMPORT SETTINGS]\n"
      "Late=5");
  EXPECT_EQ(document.Find(u"Import Settings", u"HeaderRow"), u"2");
  EXPECT_EQ(document.Find(u"import settings", u"Path"), u"C:\\data\new \u00E4\\u12 \\x \\");
  EXPECT_EQ(document.Find(u"Import Settings", u"Empty"), u"");
  EXPECT_EQ(document.Find(u"Other", u"HeaderRow"), u"4");
  EXPECT_EQ(document.Find(u"Import Settings", u"Late"), u"5");
  EXPECT_EQ(document.Find(u"Import Settings", u"ignored"), std::nullopt);
  EXPECT_EQ(document.Find(u"Import Settings", u"# HeaderRow"), std::nullopt);
  EXPECT_EQ(document.Find(u"Missing", u"HeaderRow"), std::nullopt);
}

TEST(SettingsDocumentTest, ChangingAValueKeepsEveryOtherLine) {
  SettingsDocument document("# mine\r\n\n[A]\nk = 1\n; why\nnonsense\n\n[B]\nk=2\n");
  document.Put(u"a", u"K", u"new");
  document.Put(u"A", u"l", u"added");
  document.Put(u"B", u"m", u"added");
  document.Put(u"C", u"k", u"added");
  EXPECT_EQ(document.ToBytes(),
            "# mine\r\n\n[A]\nK=new\nl=added\n; why\nnonsense\n\n[B]\nk=2\nm=added\n[C]\nk=added\n");
}

TEST(SettingsDocumentTest, EveryUnitSurvivesInNamesAndValues) {
  SettingsDocument document;
  for (unsigned unit = 0; unit < 0x10000;
       unit += unit < 0x300 || (unit >= 0xD7F0 && unit < 0xE010) ? 1 : 97) {
    const Text alone(1, static_cast<char16_t>(unit));
    for (const Text& text : {alone, u"a" + alone, alone + u"a", alone + alone, alone + u'\uE000'}) {
      document = {};
      document.Put(text, text, text);
      const SettingsDocument reread(document.ToBytes());
      ASSERT_EQ(reread.Find(text, text), text) << unit;
    }
  }
}

}  // namespace
}  // namespace vorquill21
