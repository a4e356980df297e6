#include "vorquill21/filestream/document.hpp"

#include <algorithm>
#include <utility>

#include "vorquill21/filestream/bracket_search.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {
namespace {

/// Building the index takes about as long as searching the text so many times.
constexpr std::size_t kSearchesPerIndex = 4;

constexpr bool IsLineEnd(char16_t unit) {
  return unit == u'\r' || unit == u'\n';
}

}  // namespace

std::optional<FieldPosition> Document::Find(TextView name) {
  if (index_.IsBuilt()) {
    const std::size_t bracket = index_.Find(Content(), name);
    if (bracket != NameIndex::kNowhere) return FieldAt(bracket, name.size(), true);
  }
  const bool isPlain = FindBracket(name, 0) == name.size();
  if (isPlain && index_.IsBuilt()) return std::nullopt;
  const std::size_t bracket = isPlain ? SearchPlainName(name) : FindBracketedName(AllText(), name, 0);
  if (bracket >= length_) return std::nullopt;
  return FieldAt(bracket, name.size(), isPlain);
}

/// Searches the text, or, when that was done often enough, makes the index.
std::size_t Document::SearchPlainName(TextView name) {
  if (searchedUnits_ / kSearchesPerIndex > length_) {
    index_.Build(Content());
    return index_.Find(Content(), name);
  }
  const std::size_t bracket = FindBracketedName(Content(), name, 0);
  searchedUnits_ += bracket + 1;
  return bracket;
}

FieldPosition Document::FieldAt(std::size_t bracket, std::size_t nameLength,
                                bool hasPlainName) const noexcept {
  const TextView text = Content();
  FieldPosition field{bracket, bracket + nameLength + 2, text.size(), text.size(), hasPlainName};
  if (field.start == text.size()) return field;
  field.next = FindUnit(text, field.start + 1, u'[');
  field.last = field.next - 1;
  while (field.last > field.start && IsLineEnd(text[field.last])) --field.last;
  return field;
}

TextView Document::TextOf(const FieldPosition& field) const noexcept {
  return Content().substr(field.start, field.last - field.start + 1);
}

void Document::Remove(const FieldPosition& field) {
  if (IsWholeRecord(field)) {
    RemoveRecord(field);
    return;
  }
  // What the removal takes with it can lie behind filled records.
  const std::size_t nameLength = field.start - field.bracket - 2;
  const std::size_t filledBefore = FilledBefore(field.bracket);
  DropFilled();
  Cut(FieldAt(field.bracket - filledBefore, nameLength, field.hasPlainName));
}

/// Two characters after the field go with it, and all line ends after these.
std::size_t Document::EndOfRemoval(const FieldPosition& field) const noexcept {
  std::size_t end = std::min(field.last + 3, length_);
  while (end < length_ && IsLineEnd(store_[end])) ++end;
  return end;
}

bool Document::IsWholeRecord(const FieldPosition& field) const noexcept {
  const TextView text = Content();
  const bool followsBracket = field.bracket > 0 && text[field.bracket - 1] == u']';
  const bool beginsWithBracket = field.start < text.size() && text[field.start] == u'[';
  return field.hasPlainName && EndOfRemoval(field) == field.next && !followsBracket && !beginsWithBracket;
}

void Document::RemoveRecord(const FieldPosition& field) {
  const bool isLast = field.next == store_.size();
  if (!isLast) TranslatingMemoryErrors([&] { filled_.push_back({field.bracket, field.next}); });
  if (index_.IsBuilt()) {
    const TextView text = Content();
    index_.RemoveFirst(text, text.substr(field.bracket + 1, field.start - field.bracket - 2), field.bracket);
  }
  if (isLast) {
    length_ = field.bracket;
    store_.resize(length_);
    return;
  }
  const std::size_t count = field.next - field.bracket;
  std::fill_n(store_.begin() + static_cast<std::ptrdiff_t>(field.bracket), count, u'[');
  filledUnits_ += count;
  if (filledUnits_ > length_ - filledUnits_) DropFilled();
}

void Document::Cut(const FieldPosition& field) noexcept {
  const std::size_t count = EndOfRemoval(field) - field.bracket;
  store_.erase(field.bracket, count);
  length_ -= count;
  ForgetIndex();
}

std::size_t Document::FilledBefore(std::size_t position) const noexcept {
  std::size_t units = 0;
  for (const Range& range : filled_) {
    if (range.from < position) units += range.to - range.from;
  }
  return units;
}

void Document::DropFilled() noexcept {
  if (filled_.empty()) return;
  std::ranges::sort(filled_, {}, &Range::from);
  char16_t* const text = store_.data();
  char16_t* end = text + filled_.front().from;
  for (std::size_t i = 0; i < filled_.size(); ++i) {
    const std::size_t keptTo = i + 1 < filled_.size() ? filled_[i + 1].from : store_.size();
    end = std::copy(text + filled_[i].to, text + keptTo, end);
  }
  store_.resize(static_cast<std::size_t>(end - text));
  length_ -= filledUnits_;
  filled_.clear();
  filledUnits_ = 0;
  ForgetIndex();
}

TextView Document::AllText() noexcept {
  DropFilled();
  return Content();
}

void Document::Assign(Text text) noexcept {
  store_ = std::move(text);
  length_ = store_.size();
  filled_.clear();
  filledUnits_ = 0;
  ForgetIndex();
}

/// The next look-ups search the text: of one that is cut again and again an index would be built for each
/// cut.
void Document::ForgetIndex() noexcept {
  index_.Clear();
  searchedUnits_ = 0;
}

void Document::Draft::Add() {
  const std::size_t recordStart = document_.length_;
  if (document_.index_.IsBuilt()) document_.index_.Add(document_.store_, recordStart);
  document_.length_ = document_.store_.size();
}

}  // namespace vorquill21
