#include <optional>
#include <random>

#include "tests/filestream/file_stream_fixture.hpp"
#include "tests/filestream/literal_document.hpp"
#include "tests/filestream/literal_table.hpp"

namespace vorquill21 {
namespace {

using test::LiteralDocument;
using test::LiteralNumber;
using test::LiteralSplit;

class CFileStreamRandomTest : public test::WithEachSeparator {
 protected:
  template <typename T, std::size_t N>
  T Pick(const T (&choices)[N]) {
    return choices[random_() % N];
  }

  Text RandomText(TextView alphabet, std::size_t length) {
    Text text;
    while (text.size() < length) text += alphabet[random_() % alphabet.size()];
    return text;
  }

  std::size_t Below(std::size_t count) { return random_() % count; }

  std::mt19937 random_{31};
};
VORQUILL21_WITH_EACH_SEPARATOR(CFileStreamRandomTest);

// --- Values and defaults ---------------------------------------------------------------------------------

/// A field's text without the TABs before it and the white space behind it; nothing without the field.
std::optional<Text> LiteralValue(const LiteralDocument& document, TextView name) {
  std::optional<Text> text = document.TextOf(name);
  if (!text) return std::nullopt;
  while (text->starts_with(u'\t')) text->erase(0, 1);
  while (!text->empty() && TextView(u"\r\n\t ").find(text->back()) != TextView::npos) text->pop_back();
  return text;
}

/// What GetFieldString promises, one part after the other; nothing where it fails.
std::optional<Variant> LiteralValues(const std::optional<Text>& value, const Variant& byDefault) {
  std::vector<Text> parts = LiteralSplit(value.value_or(Text()), u'\t');
  if (parts.empty()) return byDefault.IsMissing() ? Variant(Text()) : byDefault;
  if (parts.size() == 1) return Variant(parts.front());
  const auto* defaults = byDefault.If<BoundedArray<Variant>>();
  const auto wanted = defaults == nullptr ? 0 : std::max(defaults->UpperBound() + 1, 0);
  if (parts.size() < static_cast<std::size_t>(wanted)) parts.resize(static_cast<std::size_t>(wanted));
  std::vector<Variant> values;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const auto index = static_cast<std::int32_t>(i);
    const bool isGap = parts[i].empty() && defaults != nullptr;
    if (isGap && (index < defaults->LowerBound() || index > defaults->UpperBound())) return std::nullopt;
    values.push_back(isGap ? (*defaults)(index) : Variant(parts[i]));
  }
  return Variant(BoundedArray<Variant>(std::move(values)));
}

Variant LiteralNumbers(const Variant& values, const Text& written, char16_t users) {
  const auto number = [&](const Variant& value) {
    return Variant(LiteralNumber(ToText(value, users), written, users));
  };
  const auto* array = values.If<BoundedArray<Variant>>();
  if (array == nullptr) return number(values);
  BoundedArray<Variant> numbers = *array;
  for (Variant& element : numbers.Elements()) element = number(element);
  return numbers;
}

TEST_P(CFileStreamRandomTest, ValuesAndDefaultsCombineAsTheirStepsSay) {
  const Variant elements[] = {Variant(), u"", u"d", 1, 2.5, true, Text(u"7" + Separator() + u"5")};
  int failures = 0;
  for (int round = 0; round < 20'000; ++round) {
    const Text written = Pick({Text(u"."), Text(u","), Text(u";"), Text(u"1")});
    const Text before = RandomText(u"[A]\t\t\t\t12.,;x \r\n", Below(30));
    const Text values = RandomText(u"\t\t\t12.,;E- ", Below(12));
    const LiteralDocument literal{u"[DEC SEP]\t" + written + u"\r\n[X]" + before + u"[A]\t" + values +
                                  u"\r\n"};
    Variant byDefault = Missing{};
    if (Below(4) == 0) byDefault = Pick(elements);
    if (Below(4) > 0) {
      std::vector<Variant> list(Below(6));
      for (Variant& element : list) element = Pick(elements);
      byDefault = test::ArrayOf(std::move(list), static_cast<std::int32_t>(Below(3)) - 1);
    }

    CFileStream fresh(fake.platform);
    fresh.SetContents(literal.text);
    const std::optional<Variant> expected = LiteralValues(LiteralValue(literal, u"A"), byDefault);
    ASSERT_EQ(fresh.GetFieldString(u"A", byDefault), expected.value_or(Variant())) << ToUtf8(literal.text);
    ASSERT_EQ(fresh.GetFieldNumber(u"A", byDefault),
              expected ? LiteralNumbers(*expected, written, GetParam()) : Variant())
        << ToUtf8(literal.text);
    ASSERT_EQ(fake.desktop.messages.size(), expected ? 0u : 2u);
    failures += expected ? 0 : 1;
    fake.desktop.messages.clear();
  }
  EXPECT_GT(failures, 500);
  EXPECT_LT(failures, 10'000);
}

// --- Versions --------------------------------------------------------------------------------------------

Text LiteralTrimmed(Text text) {
  while (text.starts_with(u' ')) text.erase(0, 1);
  while (text.ends_with(u' ')) text.pop_back();
  return text;
}

/// What IsCompatibleVersion puts into its status, empty when it accepts.
Text LiteralRefusal(const Text& actual, const Text& current, const Text& compatible) {
  const Text required = u"Wrong file version\r\n\r\nFile version required = " +
                        UpperCase(compatible + u" " + current) + u"\r\n";
  if (UpperCase(compatible + current).find(UpperCase(actual)) == Text::npos) {
    return required + u"File version available = " + UpperCase(actual);
  }
  return actual == u" " ? required + u"No file version available" : Text();
}

TEST_P(CFileStreamRandomTest, VersionsAreComparedAsTheirStepsSay) {
  const auto version = [&] { return RandomText(u"vV1.  ", Below(5)); };
  int accepted = 0;
  for (int round = 0; round < 20'000; ++round) {
    const Text current = version();
    std::vector<Variant> list;
    Text compatible;
    for (std::size_t i = Below(3); i > 0; --i) {
      const Text other = version();
      list.emplace_back(other);
      compatible += other + u' ';
    }
    const Text stored = version();
    const Text older = version();
    CFileStream fresh(fake.platform);
    fresh.Initialise(current, test::ArrayOf(std::move(list)));
    fresh.AddField(u"FILEVERSION", stored);
    fresh.AddField(u"FILE VERSION", older);

    Text status = u"before";
    const Text found = LiteralTrimmed(stored).empty() ? older : stored;
    const Text refusal =
        LiteralRefusal(LiteralTrimmed(found) + u' ', LiteralTrimmed(current) + u' ', compatible);
    ASSERT_EQ(fresh.IsCompatibleVersion(true, Missing{}, Missing{}, Missing{}, &status), refusal.empty());
    ASSERT_EQ(status, refusal);

    const Text passed[] = {version(), version(), version()};
    const Text passedRefusal = LiteralRefusal(
        LiteralTrimmed(passed[0]) + u' ', LiteralTrimmed(passed[1]) + u' ', LiteralTrimmed(passed[2]) + u' ');
    ASSERT_EQ(fresh.IsCompatibleVersion(true, passed[0], passed[1], passed[2], &status),
              passedRefusal.empty());
    ASSERT_EQ(status, passedRefusal);
    accepted += refusal.empty() + passedRefusal.empty();
  }
  EXPECT_GT(accepted, 5'000);
  EXPECT_LT(accepted, 35'000);
  ExpectMessages({});
}

// --- Whole lives -----------------------------------------------------------------------------------------

/// What an object promises of its document, written for clarity alone.
struct LiteralStream {
  Text ValueOf(TextView name) const { return LiteralValue(document, name).value_or(Text()); }

  void Add(TextView name, const Text& tabsAndValues) {
    document.Remove(name);
    document.Append(Text(u"[").append(name).append(u"]").append(tabsAndValues).append(u"\r\n"));
  }

  void Complete() {
    if (ValueOf(u"FILEVERSION").empty()) Add(u"FILEVERSION", u"\t" + LiteralTrimmed(version));
    if (ValueOf(u"DEC SEP").empty()) Add(u"DEC SEP", u"\t" + separator);
  }

  void SetContents(const Text& text) {
    document.text = text;
    if (!ValueOf(u"FILEVERSION").empty()) version = ValueOf(u"FILEVERSION");
  }

  void Initialise(TextView newVersion) {
    version = newVersion;
    document.text.clear();
    Add(u"DEC SEP", u"\t" + separator);
    Add(u"FILEVERSION", u"\t" + version);
  }

  LiteralDocument document;
  Text version;
  Text separator;
  Text file;
};

/// Objects that live beside what they promise.
class CFileStreamLivesTest : public CFileStreamRandomTest {
 protected:
  static constexpr TextView kPath = u"/library/data.txt";
  static constexpr TextView kNames[] = {u"A",  u"A", u"B",  u"B",    u"AB",      u"DEC SEP", u"FILEVERSION",
                                        u"A]", u"",  u"[B", u"\r\n", u"\"A\" 1", u"A]\r\n[B"};
  static constexpr TextView kValues[] = {u"",    u"1",   u"1", u"x y",   u" ",
                                         u"\t2", u"[A]", u"]", u"v\r\n", u"\"q\""};
  static constexpr TextView kHeads[] = {u"", u"[FILEVERSION]\t W 2 \t\r\n",
                                        u"[DEC SEP] \r\n[FILEVERSION]\r\n"};

  /// One thing that happens to both.
  void DoSomething(CFileStream& lived, LiteralStream& literal) {
    const TextView name = Pick(kNames);
    const Text value(Pick(kValues));
    const Text second(Pick(kValues));
    const Text contents = value + Text(Pick(kHeads)) + u"[B]\t1\n[A]" + second + u"\r\n";
    switch (Below(12)) {
      case 0:
        lived.SetContents(contents);
        literal.SetContents(contents);
        break;
      case 1:
        lived.Initialise(u"V 1", test::NoVersions());
        literal.Initialise(u"V 1");
        break;
      case 2:
        EXPECT_TRUE(lived.FileWrite(kPath));
        literal.Complete();
        literal.file = literal.document.text + u"\r\n";
        EXPECT_EQ(fake.files.Content(kPath), ToUtf8(literal.file));
        break;
      case 3:
        lived.FileRead(kPath);
        literal.document.text = literal.file.substr(0, literal.file.size() - 1);
        break;
      case 4:
        EXPECT_EQ(lived.RemoveField(name), literal.document.Remove(name));
        break;
      case 5:
        EXPECT_TRUE(lived.AddTable2d(name, test::TableOf<Variant>({{1, u"2"}, {u"3", Variant()}})));
        literal.Add(name, u"\t\r\n1\t2\r\n3\t0");
        break;
      case 6:
        lived.AddField(name, test::ArrayOf({value, second}));
        literal.Add(name, u"\t" + value + u"\t" + second);
        break;
      case 7:
        literal.Complete();
        EXPECT_EQ(lived.GetContents(), literal.document.text);
        break;
      default:
        lived.AddField(name, value);
        literal.Add(name, u"\t" + value);
    }
  }

  void ExpectSame(CFileStream& lived, const LiteralStream& literal) {
    for (const TextView name : kNames) {
      const auto value = LiteralValue(literal.document, name);
      EXPECT_EQ(lived.FieldExists(name), value.has_value()) << ToUtf8(name);
      EXPECT_EQ(lived.GetFieldString(name), *LiteralValues(value, Missing{})) << ToUtf8(name);
    }
  }
};
VORQUILL21_WITH_EACH_SEPARATOR(CFileStreamLivesTest);

TEST_P(CFileStreamLivesTest, EveryLifeIsThatOfATextWhichIsSearchedAndCut) {
  for (int life = 0; life < 400; ++life) {
    SCOPED_TRACE(life);
    CFileStream lived(fake.platform);
    LiteralStream literal;
    literal.separator = Separator();
    literal.file = u"[A]\t0\r\n.";
    fake.files.Replace(kPath, ToUtf8(literal.file));
    for (int step = 0; step < 60; ++step) {
      DoSomething(lived, literal);
      ExpectSame(lived, literal);
      ASSERT_FALSE(HasFailure()) << ToUtf8(literal.document.text);
    }
  }
  // Only a file with several values in its "DEC SEP" is reported; the document is that of the file then.
  for (const test::ShownMessage& message : fake.desktop.messages) {
    EXPECT_EQ(message, test::ErrorMessage(u"An error occurred while reading file: /library/data.txt"));
  }
}

}  // namespace
}  // namespace vorquill21
