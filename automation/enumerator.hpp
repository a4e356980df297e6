#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "automation/counted.hpp"
#include "automation/failure.hpp"

namespace vorquill21::automation {

/// A copy of `item` with a reference of its own.
inline IConnectionPoint* WithReference(IConnectionPoint* item) noexcept {
  item->AddRef();
  return item;
}
inline CONNECTDATA WithReference(CONNECTDATA item) noexcept {
  item.pUnk->AddRef();
  return item;
}
inline void ReleaseItem(IConnectionPoint* item) noexcept {
  item->Release();
}
inline void ReleaseItem(CONNECTDATA item) noexcept {
  item.pUnk->Release();
}

/// Hands out items one after the other; Interface is one of the system's enumerators, kId its identifier.
template <typename Interface, const IID& kId, typename Item>
class Enumerator final : public CountedOne<Interface, kId> {
 public:
  /// Takes over the references of the items.
  explicit Enumerator(std::vector<Item> items) : items_(std::move(items)) {}
  ~Enumerator() override {
    for (const Item& item : items_) ReleaseItem(item);
  }

  STDMETHODIMP Next(ULONG count, Item* items, ULONG* fetched) noexcept override {
    if (items == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
    const std::size_t given = std::min<std::size_t>(count, items_.size() - next_);
    for (std::size_t i = 0; i < given; ++i) items[i] = WithReference(items_[next_++]);
    if (fetched != nullptr) *fetched = static_cast<ULONG>(given);
    return given == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG count) noexcept override {
    const std::size_t skipped = std::min<std::size_t>(count, items_.size() - next_);
    next_ += skipped;
    return skipped == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Reset() noexcept override {
    next_ = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(Interface** result) noexcept override {
    return Guarded(kId, [&] {
      *Checked(result) = nullptr;
      std::vector<Item> copies = items_;
      auto* const clone = new Enumerator(std::move(copies));
      for (const Item& item : items_) WithReference(item);
      clone->next_ = next_;
      *result = clone;
    });
  }

 private:
  std::vector<Item> items_;
  std::size_t next_ = 0;
};

}  // namespace vorquill21::automation
