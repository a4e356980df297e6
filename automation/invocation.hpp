#pragma once

#include "automation/interface.hpp"

namespace vorquill21::automation {

/// A call by name, as IDispatch::Invoke passes it.
struct Request {
  DISPID member;
  WORD kind;
  const DISPPARAMS& arguments;
  VARIANT* result;       // may be null
  EXCEPINFO* failure;    // may be null
  UINT* failedArgument;  // may be null
};

/// Calls a member of `object`, whose interface is one of ours, with whatever arguments a host can pass: each
/// is brought to the declared type by the library's own conversions, whether it comes as a value, as a
/// reference to one, or as a variable that holds one; what was left out takes its default. An array is passed
/// as it is, or as one that was never dimensioned for a variable that holds nothing. What the member writes
/// by reference goes back into the variable: converted where that has a type of its own, otherwise as it is,
/// with arrays of variants, since scripts can read no other.
///
/// A failure of the member, or of a conversion, is DISP_E_EXCEPTION with its number, source and description
/// in `failure`; without a place for them, the number is the result and the words are the thread's error
/// information. Unknown members and wrong numbers of arguments are the usual DISP_E_... codes.
HRESULT InvokeByName(IDispatch& object, REFIID interfaceId, const Request& request) noexcept;

}  // namespace vorquill21::automation
