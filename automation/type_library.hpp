#pragma once

#include <span>
#include <string>
#include <vector>

#include "automation/interface.hpp"
#include "automation/reference.hpp"

namespace vorquill21::automation {

/// A parameter of a member, or its result, as the type library declares it.
struct Parameter {
  VARTYPE type = VT_EMPTY;         // VT_ARRAY for arrays, VT_I4 for enumerations, VT_DISPATCH for objects
  VARTYPE elementType = VT_EMPTY;  // of an array
  bool isReference = false;        // read and perhaps written
  bool isOptional = false;
  const VARIANT* defaultValue = nullptr;  // null without one
};

/// A member of an interface.
struct Function {
  DISPID id = 0;
  INVOKEKIND kind = INVOKE_FUNC;
  ULONG_PTR tableOffset = 0;
  bool isVariadic = false;  // the last parameter is an array of all arguments that are left
  std::vector<Parameter> parameters;
  Parameter result;  // VT_EMPTY without one
};

/// The members of one of our interfaces, read once from the type library.
class InterfaceInfo {
 public:
  InterfaceInfo(REFIID id, ITypeLib& library);
  InterfaceInfo(const InterfaceInfo&) = delete;
  InterfaceInfo& operator=(const InterfaceInfo&) = delete;
  ~InterfaceInfo();

  ITypeInfo& TypeInfo() const noexcept { return *named_; }

  /// The member with this number that can be used in one of the ways of `kind` (DISPATCH_METHOD, ...), or
  /// null.
  const Function* Find(DISPID id, WORD kind) const noexcept;

 private:
  Reference<ITypeInfo> named_;  // the interface as its members are called by name
  Reference<ITypeInfo> table_;  // and as its table has them
  std::vector<Function> functions_;
  std::vector<FUNCDESC*> descriptions_;  // hold the default values
};

/// The path of the file that this code lies in.
std::wstring ModulePath();

/// The type library in our own file; it stays loaded as long as the server. Error when it cannot be read.
ITypeLib& OwnTypeLibrary();

/// What the type library says of one of our interfaces; read at the first call.
const InterfaceInfo& InfoOf(REFIID id);

/// Forgets all that was read; nobody may be using it any more.
void ForgetTypeLibrary() noexcept;

}  // namespace vorquill21::automation
