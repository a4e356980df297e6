#include "vorquill21/files/crc32.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

#include "tests/support/fake_platform.hpp"
#include "vorquill21/files/file.hpp"

namespace vorquill21 {
namespace {

/// The definition: one bit at a time.
std::uint32_t AdvanceBitwise(std::uint32_t crcRegister, std::string_view bytes) {
  for (const char byte : bytes) {
    crcRegister ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      const bool isSet = (crcRegister & 1) != 0;
      crcRegister >>= 1;
      if (isSet) crcRegister ^= 0xEDB88320;
    }
  }
  return crcRegister;
}

std::uint32_t Crc32ByDefinition(std::string_view bytes) {
  return ~AdvanceBitwise(0xFFFFFFFF, bytes);
}

Text Hexadecimal(std::uint32_t number) {
  char digits[9];
  std::snprintf(digits, sizeof digits, "%X", static_cast<unsigned>(number));
  return FromUtf8(digits);
}

class RandomBytes {
 public:
  std::string Next(std::size_t length) {
    std::string bytes(length, '\0');
    for (char& byte : bytes) byte = static_cast<char>(Register());
    return bytes;
  }
  std::uint32_t Register() { return static_cast<std::uint32_t>(engine_()); }

 private:
  std::mt19937 engine_{20261121};
};

using Advance = std::uint32_t (*)(std::uint32_t, std::string_view) noexcept;

void ExpectTheDefinitionForShortPieces(Advance advance) {
  constexpr std::size_t kOffsets = 17;
  constexpr std::size_t kLongest = 300;
  RandomBytes random;
  for (std::size_t length = 0; length <= kLongest; ++length) {
    const std::string bytes = random.Next(kOffsets + kLongest);
    for (std::size_t offset = 0; offset < kOffsets; ++offset) {
      const std::string_view piece = std::string_view(bytes).substr(offset, length);
      for (const std::uint32_t start : {std::uint32_t{0}, std::uint32_t{0xFFFFFFFF}, random.Register()}) {
        ASSERT_EQ(advance(start, piece), AdvanceBitwise(start, piece)) << length << " from " << offset;
      }
    }
  }
}

void ExpectTheDefinitionForLongPieces(Advance advance) {
  RandomBytes random;
  for (int round = 0; round < 100; ++round) {
    const std::string bytes = random.Next(random.Register() % 20000);
    const std::uint32_t start = random.Register();
    ASSERT_EQ(advance(start, bytes), AdvanceBitwise(start, bytes)) << bytes.size();
  }
}

TEST(Crc32Test, SlicingIsTheDefinition) {
  ExpectTheDefinitionForShortPieces(AdvanceCrc32BySlicing);
  ExpectTheDefinitionForLongPieces(AdvanceCrc32BySlicing);
}

TEST(Crc32Test, FoldingIsTheDefinition) {
  if (!CanFoldCrc32()) GTEST_SKIP() << "this processor has no carry-less multiplication";
  ExpectTheDefinitionForShortPieces(AdvanceCrc32ByFolding);
  ExpectTheDefinitionForLongPieces(AdvanceCrc32ByFolding);
}

TEST(Crc32Test, PiecesMayBeCutAnywhere) {
  RandomBytes random;
  const std::string bytes = random.Next(700);
  for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
    Crc32 crc;
    crc.Add(std::string_view(bytes).substr(0, cut));
    crc.Add(std::string_view(bytes).substr(cut));
    ASSERT_EQ(crc.Value(), Crc32ByDefinition(bytes)) << cut;
  }
}

TEST(Crc32Test, NothingAddedIsZero) {
  EXPECT_EQ(Crc32().Value(), 0u);
}

class Crc32MakeTest : public ::testing::Test {
 protected:
  test::FakePlatform fake_;
  CFile file_{fake_.platform};
};

TEST_F(Crc32MakeTest, KnownChecksums) {
  EXPECT_EQ(file_.Crc32Make(u"123456789"), u"CBF43926");
  EXPECT_EQ(file_.Crc32Make(u""), u"0");
  EXPECT_EQ(file_.Crc32Make(u"a"), u"E8B7BE43");
  EXPECT_EQ(file_.Crc32Make(Text(32, u'\0')), u"190A55AD");
}

TEST_F(Crc32MakeTest, DeliberateLeadingZerosAreNotWritten) {
  int shortChecksums = 0;
  for (int number = 0; number < 1000; ++number) {
    const std::string digits = std::to_string(number);
    const Text checksum = file_.Crc32Make(FromUtf8(digits));
    EXPECT_EQ(checksum, Hexadecimal(Crc32ByDefinition(digits))) << number;
    if (checksum.size() < 8) ++shortChecksums;
  }
  EXPECT_GT(shortChecksums, 0);
}

TEST_F(Crc32MakeTest, CountsTheBytesOfTheCodePage) {
  EXPECT_EQ(file_.Crc32Make(u"é€ÿ"), Hexadecimal(Crc32ByDefinition("\xE9\x80\xFF")));
}

TEST_F(Crc32MakeTest, CharactersOutsideTheCodePageCountAsQuestionMarks) {
  EXPECT_EQ(file_.Crc32Make(u"a\u0416b"), file_.Crc32Make(u"a?b"));
}

TEST_F(Crc32MakeTest, TextsLongerThanABlock) {
  RandomBytes random;
  for (const std::size_t length : {2047u, 2048u, 2049u, 40000u, 100003u}) {
    const std::string bytes = random.Next(length);
    EXPECT_EQ(file_.Crc32Make(FromCodePage(fake_.locale, bytes)), Hexadecimal(Crc32ByDefinition(bytes)))
        << length;
  }
}

/// A code page in which a character may take several bytes, and two units of text.
class Utf8Locale : public test::ChosenLocale {
 public:
  void AppendToCodePage(TextView text, std::string& bytes) const override { bytes += ToUtf8(text); }
};

TEST_F(Crc32MakeTest, NoBlockEndsInsideACharacterOfTwoUnits) {
  Utf8Locale locale;
  Platform platform = fake_.With(locale);
  const CFile file(platform);
  for (std::size_t before = 2044; before <= 2052; ++before) {
    const Text text = Text(before, u'x') + u"😀 and more";
    EXPECT_EQ(file.Crc32Make(text), Hexadecimal(Crc32ByDefinition(ToUtf8(text)))) << before;
  }
}

TEST_F(Crc32MakeTest, UnitWithoutItsPartnerAtTheEndIsCounted) {
  const Text lonely{u'a', char16_t{0xD83D}};
  EXPECT_EQ(file_.Crc32Make(lonely), file_.Crc32Make(u"a?"));
}

}  // namespace
}  // namespace vorquill21
