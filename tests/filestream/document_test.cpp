#include "vorquill21/filestream/document.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/filestream/literal_document.hpp"
#include "tests/support/replaced_new.hpp"

namespace vorquill21 {
namespace {

using test::BytesAskedBy;
using test::LiteralDocument;

/// A document and the literal one beside it, which must always agree.
class Pair {
 public:
  explicit Pair(const Text& text = Text()) { Assign(text); }

  void Assign(const Text& text) {
    document_.Assign(text);
    literal_.text = text;
  }

  void Append(const Text& record) {
    Document::Draft draft(document_);
    draft.Target() += record;
    draft.Add();
    literal_.Append(record);
  }

  void AbandonDraft(const Text& record) {
    Document::Draft draft(document_);
    draft.Target() += record;
  }

  /// Writes the record first and takes the old one out while it is not yet added.
  void Replace(const Text& name, const Text& record) {
    Document::Draft draft(document_);
    draft.Target() += record;
    if (const auto field = document_.Find(name)) document_.Remove(*field);
    draft.Add();
    literal_.Remove(name);
    literal_.Append(record);
  }

  void Remove(const Text& name) {
    const auto field = document_.Find(name);
    if (field) document_.Remove(*field);
    EXPECT_EQ(field.has_value(), literal_.Remove(name)) << ToUtf8(name);
  }

  void ExpectSame(const Text& name) {
    const auto field = document_.Find(name);
    const auto expected = literal_.TextOf(name);
    ASSERT_EQ(field.has_value(), expected.has_value()) << ToUtf8(name) << " in " << ToUtf8(literal_.text);
    if (field) {
      EXPECT_EQ(document_.TextOf(*field), *expected) << ToUtf8(name);
    }
  }

  void ExpectSameText() { EXPECT_EQ(document_.AllText(), literal_.text); }

  const Text& LiteralText() const { return literal_.text; }

 private:
  Document document_;
  LiteralDocument literal_;
};

const std::vector<Text> kNames = {u"A",    u"B",  u"AB",  u"LONG NAME 1", u"LONG NAME 2", u"",      u"A[B]",
                                  u"[A",   u"A]", u"][",  u"[",           u"]",           u"x",     u"A\tB",
                                  u"\r\n", u" A", u"A\r", u"B]\tA",       Text(1, u'\0'), u"\xD83D"};

const Text kAlphabet = Text(u"[]AB\t\r\n x\xD83D") + u'\0';

Text RandomText(std::mt19937& random, std::size_t length, TextView alphabet) {
  Text text;
  while (text.size() < length) text += alphabet[random() % alphabet.size()];
  return text;
}

Text RandomRecord(std::mt19937& random, const Text& name) {
  const Text values[] = {u"",         u"\t",   u"\t1", u"\t1.5\t\t2", u"\t\r\n1\t2\r\n3\t4",
                         u"\t[A] \t", u"\tx]", u"\t[", u"\t\r\n"};
  const Text ends[] = {u"\r\n", u"\r\n", u"\r\n", u"\r\n", u"\n", u"", u"\r\n\r\n", u"\r"};
  return Text(u"[") + name + u"]" + values[random() % std::size(values)] + ends[random() % std::size(ends)];
}

/// One thing that happens to a document, most often what a program does.
void DoSomething(std::mt19937& random, Pair& pair, const std::vector<Text>& names) {
  const Text& name = names[random() % names.size()];
  switch (random() % 32) {
    case 0:
      pair.Assign(RandomText(random, random() % 40, kAlphabet));
      break;
    case 1:
      pair.AbandonDraft(RandomRecord(random, name));
      break;
    case 2:
    case 3:
      pair.Replace(name, RandomRecord(random, name));
      break;
    case 4:
    case 5:
    case 6:
      pair.Remove(name);
      break;
    case 7:
    case 8:
    case 9:
      pair.Remove(name);
      break;
    case 10:
      pair.ExpectSameText();
      break;
    case 11:
    case 12:
    case 13:
    case 14:
    case 15:
    case 16:
    case 17:
      pair.ExpectSame(name);
      break;
    default:
      pair.Append(RandomRecord(random, name));
  }
}

void CompareInRandomLives(const std::vector<Text>& names) {
  for (unsigned seed = 0; seed < 2000; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    Pair pair(RandomText(random, random() % 60, kAlphabet));
    for (int step = 0; step < 150; ++step) DoSomething(random, pair, names);
    for (const Text& name : names) pair.ExpectSame(name);
    pair.ExpectSameText();
    for (const Text& name : names) pair.ExpectSame(name);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(DocumentTest, AlwaysReadsAsTheLiteralText) {
  CompareInRandomLives(kNames);
}

TEST(DocumentTest, AlwaysReadsAsTheLiteralTextWithPlainNames) {
  CompareInRandomLives({u"A", u"B", u"AB", u"LONG NAME 1", u"LONG NAME 2", u"C", u"D", u"E"});
}

TEST(DocumentTest, ReadsAsTheLiteralTextWithManyTidyRecords) {
  std::vector<Text> names;
  for (int i = 0; i < 150; ++i) names.push_back(FromUtf8("FIELD " + std::to_string(i)));
  for (unsigned seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    Pair pair;
    for (int step = 0; step < 3000; ++step) {
      const Text& name = names[random() % names.size()];
      const Text record =
          u"[" + name + u"]\t" + RandomText(random, random() % 30, u"0123456789.\t") + u"\r\n";
      switch (random() % 8) {
        case 0:
          pair.Append(record);
          break;
        case 1:
          pair.Remove(name);
          break;
        case 2:
        case 3:
        case 4:
          pair.Replace(name, record);
          break;
        default:
          pair.ExpectSame(name);
      }
    }
    for (const Text& name : names) pair.ExpectSame(name);
    pair.ExpectSameText();
    if (HasFailure()) return;
  }
}

TEST(DocumentTest, FindsEveryOddBracketOfHandWrittenTexts) {
  const Text texts[] = {u"",
                        u"[",
                        u"]",
                        u"[]",
                        u"[[]]",
                        u"[A",
                        u"[A]",
                        u"[A][B]",
                        u"[A][B]\t1",
                        u"[A[B]\t1",
                        u"[A]B]\t1",
                        u"text [A]\t1\r\n",
                        u"[A]\t[B]\t1",
                        u"[A]\n[B]\n",
                        u"[A]\r\n[B]",
                        u"[A]\t1[B]\t2[A]\t3",
                        u"\r\n\r\n[A]\r\n\r\n[B]\r\n\r\n",
                        u"[A]\t1\r\n\r",
                        u"[AB]\t1\r\n[A]\t2\r\n",
                        u"[a]\t1\r\n[A]\t2\r\n"};
  for (const Text& text : texts) {
    for (const Text& removed : kNames) {
      SCOPED_TRACE(ToUtf8(text) + " without " + ToUtf8(removed));
      Pair pair(text);
      for (int round = 0; round < 20; ++round) {  // enough look-ups for an index
        for (const Text& name : kNames) pair.ExpectSame(name);
      }
      pair.Remove(removed);
      for (const Text& name : kNames) pair.ExpectSame(name);
      pair.ExpectSameText();
    }
  }
}

TEST(DocumentTest, FieldThatBeginsWithTheNextRecordFollowsItsRemoval) {
  Pair pair(u"[A][B]\t1\r\n[AB]\t2\r\n[x]\t3\r\n");
  pair.Remove(u"B");
  pair.ExpectSame(u"A");
  pair.Remove(u"A");
  pair.ExpectSame(u"AB");
  pair.ExpectSameText();
}

TEST(DocumentTest, DraftThatIsNotAddedLeavesNoTrace) {
  Pair pair(u"[A]\t1\r\n");
  pair.AbandonDraft(u"[B]\t2\r\n[A]\t3");
  pair.ExpectSame(u"B");
  pair.ExpectSameText();
}

TEST(DocumentTest, RecordsThatWereReplacedDoNotPileUp) {
  Document document;
  const Text record = Text(u"[A]\t") + Text(1000, u'x') + u"\r\n";
  std::size_t longest = 0;
  for (int i = 0; i < 1000; ++i) {
    Document::Draft draft(document);
    draft.Target() += record;
    if (const auto field = document.Find(u"A")) document.Remove(*field);
    draft.Add();
    longest = std::max(longest, draft.Target().size());
  }
  EXPECT_LE(longest, 4 * record.size());
  EXPECT_EQ(document.AllText(), record);
}

TEST(DocumentTest, NoIndexIsMadeOfATextThatIsCutAgainAndAgain) {
  Text text;
  for (int i = 0; i < 1000; ++i) text += u"[A]\t1\n";
  Document document;
  document.Assign(text);
  int removals = 0;
  const auto removeAll = [&] {
    while (const auto field = document.Find(u"A")) {
      document.Remove(*field);
      ++removals;
    }
  };
  EXPECT_EQ(BytesAskedBy(removeAll), 0u);
  EXPECT_EQ(removals, 500) << "each takes the bracket of the next record";
}

}  // namespace
}  // namespace vorquill21
