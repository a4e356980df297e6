#pragma once

#include <atomic>

#include "automation/interface.hpp"

namespace vorquill21::automation {

/// Counts what keeps the server loaded: objects, class factories and locks.
class ModuleUse {
 public:
  ModuleUse() noexcept { ++uses_; }
  ModuleUse(const ModuleUse&) = delete;
  ModuleUse& operator=(const ModuleUse&) = delete;
  ~ModuleUse() { --uses_; }

  static bool IsInUse() noexcept { return uses_ != 0; }
  static void Lock(bool isLocked) noexcept { uses_ += isLocked ? 1 : -1; }

 private:
  static inline std::atomic<long> uses_{0};
};

/// Counts the references to an object, one at first, and ends it with the last one. It keeps the server
/// loaded.
template <typename... Interfaces>
class Counted : public Interfaces... {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  virtual ~Counted() = default;

  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 private:
  ModuleUse use_;
  std::atomic<ULONG> references_{1};
};

/// The same of an object that has one interface, whose identifier is kId.
template <typename Interface, const IID& kId>
class CountedOne : public Counted<Interface> {
 public:
  STDMETHODIMP QueryInterface(REFIID interfaceId, void** result) noexcept override {
    if (result == nullptr) return E_POINTER;
    *result = interfaceId == kId || interfaceId == IID_IUnknown ? this : nullptr;
    if (*result == nullptr) return E_NOINTERFACE;
    this->AddRef();
    return S_OK;
  }
};

}  // namespace vorquill21::automation
