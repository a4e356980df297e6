/// Small things that every use of COM needs: owned references, owned variants, texts, and the error that a
/// member of the host raises in the script that called it.
#pragma once

#include <oaidl.h>
#include <windows.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace script_host {

struct Releaser {
  void operator()(IUnknown* object) const { object->Release(); }
};

/// An object that is released at the end.
template <class T>
using Owned = std::unique_ptr<T, Releaser>;

/// The interface `T` of an object; null when it has none.
template <class T>
Owned<T> Ask(IUnknown* object) {
  T* found = nullptr;
  if (object != nullptr) object->QueryInterface(__uuidof(T), reinterpret_cast<void**>(&found));
  return Owned<T>(found);
}

/// A variant that is cleared at the end.
struct Value : VARIANT {
  Value() { VariantInit(this); }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  ~Value() { VariantClear(this); }
};

/// What a member of the host cannot do; the script sees it as an error.
struct HostError {
  HRESULT code;
  std::wstring description;
};

/// The variant that is meant: what the variables on the way to it refer to.
const VARIANT& Meant(const VARIANT& value);

/// The arguments of a call in the order in which they were written, each one as it is meant.
std::vector<const VARIANT*> ArgumentsOf(const DISPPARAMS& call);

/// The text of a BSTR; nothing for null.
std::wstring TextOf(const wchar_t* text);

/// The variant as a text or a number, as the system converts it. Raises HostError 13.
std::wstring AsText(const VARIANT& value);
LONG AsLong(const VARIANT& value);

/// The object of a variant; null when it is none.
IDispatch* ObjectIn(const VARIANT& value);

void Put(VARIANT& result, const std::wstring& text);

/// Calls a member by name. Raises HostError when there is none, or when it fails.
void Call(IDispatch& object, const wchar_t* name, WORD kind, DISPPARAMS& arguments, VARIANT* result);

std::wstring FromUtf8(std::string_view text);
std::string ToUtf8(std::wstring_view text);

}  // namespace script_host
