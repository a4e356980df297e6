#pragma once

#include <utility>

namespace vorquill21::automation {

/// Holds one reference to an object that counts its references, or none.
template <typename T>
class Reference {
 public:
  Reference() = default;
  Reference(std::nullptr_t) {}

  /// Adds a reference to `object`.
  explicit Reference(T* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }

  /// Takes over the reference that the caller holds.
  static Reference Adopt(T* object) {
    Reference reference;
    reference.object_ = object;
    return reference;
  }

  Reference(const Reference& other) : Reference(other.object_) {}
  Reference(Reference&& other) noexcept : object_(other.Detach()) {}
  Reference& operator=(Reference other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Reference() {
    if (object_ != nullptr) object_->Release();
  }

  T* Get() const noexcept { return object_; }
  T* operator->() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

  /// Where a function that hands out a reference puts it; the one that was held is released.
  T** Receive() {
    *this = nullptr;
    return &object_;
  }

  /// Gives the reference to the caller.
  [[nodiscard]] T* Detach() noexcept { return std::exchange(object_, nullptr); }

 private:
  T* object_ = nullptr;
};

}  // namespace vorquill21::automation
