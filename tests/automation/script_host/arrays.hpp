/// Arrays as hosts other than the script engine pass them: of any element type, with any bounds, which
/// scripts can neither make nor look into themselves.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "tests/automation/script_host/com.hpp"

namespace script_host {

/// The name of an element type, "Double"; for types without one its number.
std::wstring NameOf(VARTYPE type);

/// The array of a variant, also of one that refers to it; null when it was never dimensioned.
const SAFEARRAY* ArrayIn(const VARIANT& value);

/// "1 to 3, 0 to 1"; nothing for null.
std::wstring BoundsText(const SAFEARRAY* array);

/// Hands on each element, the last index running fastest; none for null.
void ForEachElement(const SAFEARRAY* array, VARTYPE type, const std::function<void(const VARIANT&)>& use);

/// Makes an array as `shape` says, "Double(1 to 3)" or "Variant(1 to 1, 0 to 2)", filled from the elements of
/// `values` in the order of ForEachElement. "Double()" is never dimensioned. Raises HostError for a shape
/// that is not understood, for elements that cannot be converted, and for too many or too few.
void MakeArray(const std::wstring& shape, const VARIANT& values, VARIANT& result);

}  // namespace script_host
