#pragma once

#include <concepts>
#include <optional>
#include <type_traits>

#include "automation/arrays.hpp"
#include "automation/failure.hpp"
#include "automation/interface.hpp"
#include "automation/reference.hpp"
#include "automation/values.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"

namespace vorquill21::automation {

// How an argument of an interface reaches a parameter of the library. An Argument is made of what the host
// passed; its Value() is what the library is given. After the call, failed or not, Release() ends what it
// holds of the host's, and then Store() gives back what the library wrote.

template <typename Parameter, typename Given>
class Argument;

/// What has nothing to give back.
struct ReadArgument {
  void Release() noexcept {}
  void Store() {}
};

template <typename T>
concept Plain = std::is_arithmetic_v<T> || std::is_enum_v<T>;

/// A number or an enumeration: the same bits.
template <Plain T, Plain Given>
class Argument<T, Given> : public ReadArgument {
 public:
  explicit Argument(Given given) : value_(static_cast<T>(given)) {}
  T Value() const { return value_; }

 private:
  T value_;
};

/// A boolean, which is true unless it is 0.
template <>
class Argument<bool, VARIANT_BOOL> : public ReadArgument {
 public:
  explicit Argument(VARIANT_BOOL given) : value_(given != VARIANT_FALSE) {}
  bool Value() const { return value_; }

 private:
  bool value_;
};

/// What is passed by reference and only read.
template <Plain T, typename Given>
class Argument<T, Given*> : public Argument<T, Given> {
 public:
  explicit Argument(Given* given) : Argument<T, Given>(*Checked(given)) {}
};

/// What is passed by reference and written.
template <Plain T, Plain Given>
class Argument<T&, Given*> {
 public:
  explicit Argument(Given* given) : target_(*Checked(given)), value_(static_cast<T>(target_)) {}
  T& Value() { return value_; }
  void Release() noexcept {}
  void Store() { target_ = value_; }

 private:
  Given& target_;
  T value_;
};

/// What may be left out.
template <typename T, typename Given>
class Argument<T*, Given*> {
 public:
  explicit Argument(Given* given) {
    if (given != nullptr) argument_.emplace(given);
  }
  T* Value() { return argument_ ? &argument_->Value() : nullptr; }
  void Release() noexcept {}
  void Store() {
    if (argument_) argument_->Store();
  }

 private:
  std::optional<Argument<T&, Given*>> argument_;
};

template <>
class Argument<TextView, BSTR> : public ReadArgument {
 public:
  explicit Argument(BSTR given) : value_(ViewOf(given)) {}
  TextView Value() const { return value_; }

 private:
  TextView value_;
};

template <>
class Argument<TextView, BSTR*> : public Argument<TextView, BSTR> {
 public:
  explicit Argument(BSTR* given) : Argument<TextView, BSTR>(*Checked(given)) {}
};

template <>
class Argument<Text&, BSTR*> {
 public:
  explicit Argument(BSTR* given) : target_(*Checked(given)), value_(ViewOf(target_)) {}
  Text& Value() { return value_; }
  void Release() noexcept {}
  void Store() { AssignText(target_, value_); }

 private:
  BSTR& target_;
  Text value_;
};

template <>
class Argument<const Variant&, VARIANT> : public ReadArgument {
 public:
  explicit Argument(const VARIANT& given) : value_(FromHost(given)) {}
  const Variant& Value() const { return value_; }

 private:
  Variant value_;
};

template <>
class Argument<const Variant&, VARIANT*> : public Argument<const Variant&, VARIANT> {
 public:
  explicit Argument(VARIANT* given) : Argument<const Variant&, VARIANT>(*Checked(given)) {}
};

template <>
class Argument<ArrayView<const double>, SAFEARRAY**> {
 public:
  explicit Argument(SAFEARRAY** given) : numbers_(*Checked(given)) {}
  ArrayView<const double> Value() const { return numbers_.View(); }
  void Release() noexcept { numbers_.Release(); }
  void Store() {}

 private:
  NumbersRead numbers_;
};

/// Matrices keep their dimensions; lists of variants have one.
template <typename T>
class Argument<const BoundedArray<T>&, SAFEARRAY**> : public ReadArgument {
 public:
  explicit Argument(SAFEARRAY** given) : value_(LoadArray<T>(*Checked(given), kShape)) {}
  const BoundedArray<T>& Value() const { return value_; }

 private:
  static constexpr Shape kShape = std::same_as<T, Variant> ? Shape::kOneDimension : Shape::kAny;

  BoundedArray<T> value_;
};

template <typename T>
class Argument<BoundedArray<T>&, SAFEARRAY**> {
 public:
  explicit Argument(SAFEARRAY** given)
      : target_(*Checked(given)), before_(LoadArray<T>(target_)), value_(before_) {}
  BoundedArray<T>& Value() { return value_; }
  void Release() noexcept {}
  void Store() {
    if (value_ != before_) StoreArray(target_, value_, std::same_as<T, double> ? VT_R8 : VT_BSTR);
  }

 private:
  SAFEARRAY*& target_;
  BoundedArray<T> before_;
  BoundedArray<T> value_;
};

/// Adds `name` to a collection of the host.
void AddToCollection(IDispatch* collection, TextView name);

template <>
class Argument<FailedTests&, IDispatch**> {
 public:
  explicit Argument(IDispatch** given) : collection_(*Checked(given)) {}
  FailedTests& Value() { return names_; }
  void Release() noexcept {}
  void Store() {
    for (const Text& name : names_) AddToCollection(collection_.Get(), name);
  }

 private:
  Reference<IDispatch> collection_;
  FailedTests names_;
};

/// An object of the host.
template <typename Interface>
class Argument<Interface*, Interface*> : public ReadArgument {
 public:
  explicit Argument(Interface* given) : value_(given) {}
  Interface* Value() const { return value_; }

 private:
  Interface* value_;
};

// --- Results
// ---------------------------------------------------------------------------------------------------

template <Plain T, Plain Result>
void Deliver(T* target, Result result) {
  *target = static_cast<T>(result);
}
inline void Deliver(VARIANT_BOOL* target, bool result) {
  *target = result ? VARIANT_TRUE : VARIANT_FALSE;
}
template <typename Interface>
void Deliver(Interface** target, Reference<IDispatch> result) {
  *target = reinterpret_cast<Interface*>(result.Detach());
}
inline void Deliver(BSTR* target, const Text& result) {
  *target = NewText(result);
}
inline void Deliver(VARIANT* target, const Variant& result) {
  *target = ToHost(result);
}

}  // namespace vorquill21::automation
