#pragma once

// The component as a host in C++ sees it, for tests: made from the library file itself, without any
// registration.

#include <ole2.h>
#include <olectl.h>
#include <windows.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "automation/reference.hpp"
#include "vorquill21_automation.h"

namespace vorquill21::test {

using automation::Reference;

/// What reserved parameters of calls by name take.
inline constexpr IID kReserved{};

/// The component's functions, from the file that the test was built with or another one.
class Component {
 public:
  explicit Component(const wchar_t* file);
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;
  ~Component();

  /// The one that most tests use; it stays loaded.
  static Component& Default();

  const std::wstring& Path() const { return path_; }

  /// The address of an exported function, which must be there.
  template <typename F>
  F* Exported(const char* name) const {
    return reinterpret_cast<F*>(reinterpret_cast<void*>(Address(name)));
  }

  HRESULT GetClassObject(REFCLSID classId, REFIID interfaceId, void** result) const;
  HRESULT CanUnloadNow() const;

  template <typename Interface>
  Reference<Interface> Make(REFCLSID classId, REFIID interfaceId) const {
    Reference<Interface> made;
    MakeInstance(classId, interfaceId, reinterpret_cast<void**>(made.Receive()));
    return made;
  }

 private:
  FARPROC Address(const char* name) const;
  void MakeInstance(REFCLSID classId, REFIID interfaceId, void** result) const;

  std::wstring path_;
  HMODULE module_;
};

/// An object of a class by its default interface: Make<_CStatistics>(CLSID_CStatistics, IID__CStatistics) in
/// short.
#define VORQUILL21_MAKE(name) Component::Default().Make<_##name>(CLSID_##name, IID__##name)

/// A text for the component, freed in the end; converts to what parameters take.
class TextArgument {
 public:
  TextArgument() = default;
  TextArgument(const wchar_t* text) : text_(SysAllocString(text)) {}
  TextArgument(const TextArgument&) = delete;
  TextArgument& operator=(const TextArgument&) = delete;
  ~TextArgument() { SysFreeString(text_); }

  operator BSTR() const { return text_; }
  BSTR* operator&() { return &text_; }
  std::wstring Content() const { return {text_, SysStringLen(text_)}; }

 private:
  BSTR text_ = nullptr;
};

/// A variant that is cleared in the end.
class Value : public VARIANT {
 public:
  Value() { VariantInit(this); }
  Value(bool value) : Value() { Set(VT_BOOL).boolVal = value ? VARIANT_TRUE : VARIANT_FALSE; }
  Value(int value) : Value() { Set(VT_I4).lVal = value; }
  Value(double value) : Value() { Set(VT_R8).dblVal = value; }
  Value(const wchar_t* value) : Value() { Set(VT_BSTR).bstrVal = SysAllocString(value); }
  Value(IDispatch* value);
  Value(const Value& other) : Value() { VariantCopy(this, const_cast<Value*>(&other)); }
  Value& operator=(const Value& other);
  ~Value() { VariantClear(this); }

  static Value Missing();
  static Value Short(short value);

  /// An array of variants from 0.
  static Value Array(std::initializer_list<Value> elements);

  /// Takes over an array of elements of this kind.
  static Value Adopt(VARTYPE elementType, SAFEARRAY* array);

  /// A reference to this variable, as scripts pass them.
  Value ByReference();

  std::wstring Text() const { return {bstrVal, vt == VT_BSTR ? SysStringLen(bstrVal) : 0}; }

  /// The element of an array of variants of one dimension.
  Value Element(LONG index) const;

 private:
  VARIANT& Set(VARTYPE type) {
    vt = type;
    return *this;
  }
};

/// An array of one dimension, or of rows and columns, both from the same lower bound.
SAFEARRAY* NewDoubles(LONG lower, std::initializer_list<double> values);
SAFEARRAY* NewMatrix(LONG lower, ULONG rows, ULONG columns, std::initializer_list<double> byRows);

/// An array for parameters of one, destroyed in the end.
class Array {
 public:
  Array() = default;
  explicit Array(SAFEARRAY* array) : array_(array) {}
  Array(LONG lower, std::initializer_list<double> values) : array_(NewDoubles(lower, values)) {}
  Array(const Array&) = delete;
  Array& operator=(const Array&) = delete;
  ~Array() { SafeArrayDestroy(array_); }

  SAFEARRAY** operator&() { return &array_; }
  SAFEARRAY* operator->() const { return array_; }
  SAFEARRAY* Get() const { return array_; }

 private:
  SAFEARRAY* array_ = nullptr;
};

/// The elements of an array of doubles as they lie, and the lower bound of its last dimension.
std::vector<double> DoublesOf(SAFEARRAY* array);
LONG LowerBoundOf(SAFEARRAY* array);

/// What the thread's error information says, which is taken away.
struct ErrorWords {
  bool isThere = false;
  std::wstring source;
  std::wstring description;
};
ErrorWords TakeErrorWords();

/// What a call by name came to.
struct Outcome {
  HRESULT result = S_OK;
  Value value;
  HRESULT number = S_OK;  // of the failure
  std::wstring source;
  std::wstring description;
  UINT failedArgument = ~0u;
};

/// Calls a member by name, as scripts do; the first argument first.
Outcome Call(IDispatch* object, const wchar_t* name, std::initializer_list<Value> arguments = {},
             WORD kind = DISPATCH_METHOD | DISPATCH_PROPERTYGET);

/// The same by number with all that IDispatch::Invoke takes.
Outcome Invoke(IDispatch* object, DISPID member, WORD kind, DISPPARAMS arguments);

DISPID MemberNamed(IDispatch* object, const wchar_t* name);

}  // namespace vorquill21::test
