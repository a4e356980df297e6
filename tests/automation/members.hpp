#pragma once

#include <string>
#include <vector>

#include "tests/automation/component.hpp"

namespace vorquill21::test {

/// A member of one of the component's interfaces, read from its type library.
struct Member {
  CLSID classId;
  IID interfaceId;
  std::string name;  // "CFile.DirMake"
  DISPID id;
  WORD kind;  // DISPATCH_METHOD, ...
  ULONG_PTR tableOffset;
  bool isVariadic;
  bool takesDoubles;                // in an array
  std::vector<VARTYPE> parameters;  // VT_BYREF for pointers, VT_ARRAY | VT_BYREF for arrays
  VARTYPE result;                   // likewise; VT_EMPTY without one
};

/// All of them.
std::vector<Member> AllMembers(const Component& component);

/// Calls a member through its place in the table of `object`. `arguments` are passed as they are, each of the
/// declared type; a result goes into a place that is released again.
HRESULT CallEarly(IUnknown& object, const Member& member, const std::vector<VARIANT*>& arguments);

/// An argument that is all right for a parameter of the type.
class HarmlessArgument {
 public:
  explicit HarmlessArgument(VARTYPE type);
  HarmlessArgument(const HarmlessArgument&) = delete;
  HarmlessArgument& operator=(const HarmlessArgument&) = delete;
  ~HarmlessArgument();

  VARIANT* Early() { return &early_; }

  /// As scripts would pass it.
  VARIANT Late() { return variable_.ByReference(); }

 private:
  Value variable_;
  VARIANT early_{};
};

/// Lets no message box and no dialog of this thread come up as long as it lives; who asked for one goes on at
/// once.
class DialogRefuser {
 public:
  DialogRefuser();
  DialogRefuser(const DialogRefuser&) = delete;
  DialogRefuser& operator=(const DialogRefuser&) = delete;
  ~DialogRefuser() { UnhookWindowsHookEx(hook_); }

 private:
  HHOOK hook_;
};

}  // namespace vorquill21::test
