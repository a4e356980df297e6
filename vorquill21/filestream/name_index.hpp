#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// Where each "[name]" of a text stands first, for the names that hold no bracket. The index does not keep
/// the text: each call is handed it as it is at that time.
///
/// Cost: each name takes constant time on average, and memory for about two slots.
class NameIndex {
 public:
  static constexpr std::size_t kNowhere = TextView::npos;

  bool IsBuilt() const noexcept { return isBuilt_; }

  /// Builds the index of a whole text. It gives memory back that is left from a text of many more names.
  /// Error 7 when memory runs out; then it is not built.
  void Build(TextView text);

  /// Adds the names in what was appended to the text at `from`. Error 7 when memory runs out; then the index
  /// is not built any more.
  void Add(TextView text, std::size_t from);

  /// Forgets the first place `at` of a name, just before it vanishes from the text; a later place takes over.
  /// Cost: where a name was added more than once, the length of the text to its next place.
  void RemoveFirst(TextView text, TextView name, std::size_t at) noexcept;

  /// The index is not built any more; its memory is kept for the next time.
  void Clear() noexcept { isBuilt_ = false; }

  /// Position of the "[" of the first "[name]", or kNowhere.
  std::size_t Find(TextView text, TextView name) noexcept;

 private:
  struct Slot {
    std::size_t at = kNowhere;
    std::uint32_t hash = 0;
    bool mayComeAgain = false;

    bool IsFree() const noexcept { return at == kNowhere; }
  };

  void AddName(TextView text, std::size_t at, TextView name);
  std::size_t FindSlot(TextView text, TextView name, std::uint32_t hash) const noexcept;
  void FreeSlot(std::size_t slot) noexcept;
  void Grow();
  std::size_t Mask() const noexcept { return slots_.size() - 1; }

  std::vector<Slot> slots_;  // a power of two, open addressing with linear probing
  std::size_t usedSlots_ = 0;
  std::size_t slotFoundLast_ = 0;
  bool isBuilt_ = false;
};

}  // namespace vorquill21
