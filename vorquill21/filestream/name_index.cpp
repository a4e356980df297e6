#include "vorquill21/filestream/name_index.hpp"

#include <algorithm>
#include <cstring>

#include "vorquill21/filestream/bracket_search.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {
namespace {

constexpr std::size_t kFewestSlots = 256;

std::uint64_t FourUnitsAt(const char16_t* units) noexcept {
  std::uint64_t four;
  std::memcpy(&four, units, sizeof four);
  return four;
}

/// A polynomial of the units, taken four at a time, with its upper half folded down.
std::uint32_t HashOf(TextView name) noexcept {
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;  // odd, without a pattern in its bits
  constexpr std::size_t kStep = 4;
  std::uint64_t hash = name.size();
  if (name.size() < kStep) {
    for (const char16_t unit : name) hash = hash * kMultiplier + unit;
  } else {
    const char16_t* const last = name.data() + name.size() - kStep;
    for (const char16_t* at = name.data(); at < last; at += kStep)
      hash = hash * kMultiplier + FourUnitsAt(at);
    hash = hash * kMultiplier + FourUnitsAt(last);
  }
  hash = (hash ^ hash >> 32) * kMultiplier;
  return static_cast<std::uint32_t>(hash >> 32);
}

/// Calls `visit(at, name)` for each "[name]" from position `from` on whose name holds no bracket.
template <typename Visit>
void ForEachName(TextView text, std::size_t from, Visit visit) {
  for (std::size_t at = FindUnit(text, from, u'['); at < text.size();) {
    const std::size_t end = FindBracket(text, at + 1);
    if (end < text.size() && text[end] == u']') visit(at, text.substr(at + 1, end - at - 1));
    at = FindUnit(text, end, u'[');
  }
}

}  // namespace

void NameIndex::Build(TextView text) {
  const bool isTooLarge = slots_.size() > kFewestSlots && slots_.size() / 2 > text.size();
  if (isTooLarge) slots_ = {};
  std::ranges::fill(slots_, Slot());
  usedSlots_ = 0;
  Add(text, 0);
}

void NameIndex::Add(TextView text, std::size_t from) {
  isBuilt_ = false;
  if (slots_.empty()) Grow();
  ForEachName(text, from, [&](std::size_t at, TextView name) { AddName(text, at, name); });
  isBuilt_ = true;
}

void NameIndex::AddName(TextView text, std::size_t at, TextView name) {
  const bool isThreeQuartersFull = usedSlots_ + 1 > slots_.size() / 4 * 3;
  if (isThreeQuartersFull) Grow();
  const std::uint32_t hash = HashOf(name);
  Slot& slot = slots_[FindSlot(text, name, hash)];
  if (slot.IsFree()) {
    slot = {at, hash, false};
    ++usedSlots_;
  } else {
    slot.mayComeAgain = true;
  }
}

void NameIndex::RemoveFirst(TextView text, TextView name, std::size_t at) noexcept {
  const bool isFoundAlready = slotFoundLast_ < slots_.size() && slots_[slotFoundLast_].at == at;
  const std::size_t slot = isFoundAlready ? slotFoundLast_ : FindSlot(text, name, HashOf(name));
  if (slots_[slot].mayComeAgain) {
    const std::size_t next = FindBracketedName(text, name, at + 1);
    if (next < text.size()) {
      slots_[slot].at = next;
      return;
    }
  }
  FreeSlot(slot);
}

std::size_t NameIndex::Find(TextView text, TextView name) noexcept {
  slotFoundLast_ = FindSlot(text, name, HashOf(name));
  return slots_[slotFoundLast_].at;
}

/// The slot of the name, or the free one that it would take.
std::size_t NameIndex::FindSlot(TextView text, TextView name, std::uint32_t hash) const noexcept {
  const auto isSlotOfName = [&](const Slot& slot) {
    return slot.hash == hash && BracketedNameIsAt(text, slot.at, name);
  };
  std::size_t slot = hash & Mask();
  while (!slots_[slot].IsFree() && !isSlotOfName(slots_[slot])) slot = (slot + 1) & Mask();
  return slot;
}

/// Frees a slot and moves those up that would not be found behind the gap.
void NameIndex::FreeSlot(std::size_t slot) noexcept {
  std::size_t gap = slot;
  for (std::size_t next = (gap + 1) & Mask(); !slots_[next].IsFree(); next = (next + 1) & Mask()) {
    const std::size_t wayFromHome = (next - slots_[next].hash) & Mask();
    const std::size_t wayFromGap = (next - gap) & Mask();
    if (wayFromHome < wayFromGap) continue;
    slots_[gap] = slots_[next];
    gap = next;
  }
  slots_[gap] = Slot();
  --usedSlots_;
}

void NameIndex::Grow() {
  const std::size_t count = std::max(kFewestSlots, slots_.size() * 2);
  std::vector<Slot> slots = TranslatingMemoryErrors([count] { return std::vector<Slot>(count); });
  slots.swap(slots_);
  for (const Slot& slot : slots) {
    if (slot.IsFree()) continue;
    std::size_t place = slot.hash & Mask();
    while (!slots_[place].IsFree()) place = (place + 1) & Mask();
    slots_[place] = slot;
  }
}

}  // namespace vorquill21
