#pragma once

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include "automation/failure.hpp"
#include "automation/object.hpp"
#include "automation/reference.hpp"

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
class Enumerator final : public Interface {
 public:
  /// Takes over the references of the items.
  explicit Enumerator(std::vector<Item> items) : items_(std::move(items)) {}
  Enumerator(const Enumerator&) = delete;
  Enumerator& operator=(const Enumerator&) = delete;
  virtual ~Enumerator() {
    for (const Item& item : items_) ReleaseItem(item);
  }

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** result) noexcept override {
    if (result == nullptr) return E_POINTER;
    *result = interfaceId == kId || interfaceId == IID_IUnknown ? this : nullptr;
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
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
  ModuleUse use_;
  std::atomic<ULONG> references_{1};
  std::vector<Item> items_;
  std::size_t next_ = 0;
};

}  // namespace vorquill21::automation
