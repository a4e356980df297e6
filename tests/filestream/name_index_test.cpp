#include "vorquill21/filestream/name_index.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/support/replaced_new.hpp"
#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

using test::BytesAskedBy;

/// A text of records with its index, and beside it the places of each name in order.
class IndexedText {
 public:
  void Append(const Text& name) {
    const std::size_t at = text_.size();
    text_ += u"[" + name + u"]\tvalue\r\n";
    places_[name].push_back(at);
    if (index_.IsBuilt()) index_.Add(text_, at);
  }

  void Build() { index_.Build(text_); }

  /// Takes the first record of the name out, which leaves brackets that begin nothing.
  void RemoveFirst(const Text& name) {
    std::vector<std::size_t>& places = places_[name];
    const std::size_t at = places.front();
    index_.RemoveFirst(text_, name, at);
    std::fill_n(text_.begin() + static_cast<std::ptrdiff_t>(at), name.size() + 2, u'[');
    places.erase(places.begin());
  }

  std::size_t Find(const Text& name) { return index_.Find(text_, name); }

  std::size_t Expected(const Text& name) const {
    const auto found = places_.find(name);
    return found == places_.end() || found->second.empty() ? NameIndex::kNowhere : found->second.front();
  }

  void ExpectAllFound() {
    for (const auto& [name, places] : places_) ASSERT_EQ(Find(name), Expected(name)) << ToUtf8(name);
    EXPECT_EQ(Find(u"NO SUCH FIELD"), NameIndex::kNowhere);
  }

 private:
  Text text_;
  NameIndex index_;
  std::map<Text, std::vector<std::size_t>> places_;
};

Text NameOf(std::int32_t number) {
  return u"FIELD " + NumberToText(number);
}

TEST(NameIndexTest, AllOfManyNamesAreFoundWhetherBuiltAtOnceOrAddedOneByOne) {
  constexpr std::int32_t kCount = 5000;
  IndexedText built;
  IndexedText grown;
  grown.Build();
  for (std::int32_t i = 0; i < kCount; ++i) {
    built.Append(NameOf(i));
    grown.Append(NameOf(i));
  }
  built.Build();
  built.ExpectAllFound();
  grown.ExpectAllFound();
  built.Build();
  built.ExpectAllFound();
}

TEST(NameIndexTest, TheFirstOfSeveralPlacesIsFoundUntilItGoesAndThenTheNext) {
  IndexedText text;
  for (const TextView name : {u"A", u"B", u"A", u"", u"A", u"B"}) text.Append(Text(name));
  text.Build();
  text.ExpectAllFound();
  for (const TextView name : {u"A", u"B", u"A", u"A", u"B", u""}) {
    text.RemoveFirst(Text(name));
    text.ExpectAllFound();
  }
}

TEST(NameIndexTest, NamesAreFoundThroughAnyOrderOfAddingAndRemoving) {
  std::mt19937 random(5);
  IndexedText text;
  text.Build();
  for (int step = 0; step < 20000; ++step) {
    const Text name = NameOf(static_cast<std::int32_t>(random() % 700));
    const bool isThere = text.Expected(name) != NameIndex::kNowhere;
    switch (random() % 4) {
      case 0:
        ASSERT_EQ(text.Find(name), text.Expected(name)) << ToUtf8(name);
        break;
      case 1:
        if (isThere) text.RemoveFirst(name);
        break;
      case 2:
        if (isThere && text.Find(name) == text.Expected(name)) text.RemoveFirst(name);
        break;
      default:
        text.Append(name);
    }
  }
  text.ExpectAllFound();
}

TEST(NameIndexTest, NamesThatComeAndGoTakeNoFurtherMemory) {
  const Text text = u"[A][B]";
  NameIndex index;
  index.Build(text);
  const auto removeAndAdd = [&] {
    for (int i = 0; i < 10000; ++i) {
      index.RemoveFirst(text, u"B", 3);
      index.Add(text, 3);
    }
  };
  EXPECT_EQ(BytesAskedBy(removeAndAdd), 0u);
  EXPECT_EQ(index.Find(text, u"A"), 0u);
  EXPECT_EQ(index.Find(text, u"B"), 3u);
}

TEST(NameIndexTest, MemoryIsKeptForATextOfTheSameSizeAndGivenBackForAMuchSmallerOne) {
  Text large;
  for (std::int32_t i = 0; i < 5000; ++i) large += u"[" + NameOf(i) + u"]";
  const Text small = u"[A][B]";
  NameIndex index;
  const auto bytesAskedToBuild = [&](TextView text) { return BytesAskedBy([&] { index.Build(text); }); };
  const std::size_t bytesOfLarge = bytesAskedToBuild(large);
  EXPECT_EQ(bytesAskedToBuild(large), 0u);
  EXPECT_LT(bytesAskedToBuild(small), bytesOfLarge / 10);
  EXPECT_EQ(index.Find(small, u"B"), 3u);
  EXPECT_EQ(bytesAskedToBuild(small), 0u);
  EXPECT_GT(bytesAskedToBuild(large), bytesOfLarge / 2);
  EXPECT_EQ(index.Find(large, NameOf(1)), large.find(u"[FIELD 1]"));
}

}  // namespace
}  // namespace vorquill21
