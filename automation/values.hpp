#pragma once

#include "automation/interface.hpp"
#include "automation/reference.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"

namespace vorquill21::automation {

// Texts, numbers and variants on their way between host and library. Every conversion is the library's own,
// in the notation of the user.

/// The units of `text`, which stays the caller's; none for a null one.
TextView ViewOf(BSTR text) noexcept;

/// A copy of `text` for the host.
BSTR NewText(TextView text);

/// Replaces the text of a variable, unless it holds `text` already.
void AssignText(BSTR& variable, TextView text);

/// A variant that is cleared at its end.
class OwnedVariant : public VARIANT {
 public:
  OwnedVariant() noexcept { VariantInit(this); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() { Clear(); }

  void Clear() noexcept { VariantClear(this); }

  /// Gives the value to the caller and is empty.
  VARIANT Detach() noexcept;
};

/// The variant that `variant` stands for: itself, or what a reference to a variant leads to in the end.
/// References that lead on and on are error 13.
VARIANT& Resolved(VARIANT& variant);

/// True for an argument that the caller left out.
bool IsLeftOut(const VARIANT& variant) noexcept;

/// The library's variant of a host's: references are followed, integers beyond 32 bits, dates, currencies and
/// decimals become doubles, arrays of doubles and texts stay such and all others become arrays of variants.
/// Null, records, error values, and what is nested more than a few levels deep are error 13.
Variant FromHost(const VARIANT& variant, int depth = 0);

/// The same of a value of the kind `type` at `place`.
Variant FromPlace(VARTYPE type, const void* place, int depth = 0);

/// The host's variant of the library's, which the caller clears.
VARIANT ToHost(const Variant& value);

/// `value` as a T, which is double, std::int32_t, bool, Text or Variant. A boolean is true unless its number
/// is 0; the texts "True" and "False" are the booleans that they name, whatever the case of their letters.
template <typename T>
T ConvertedTo(const Variant& value);

/// Stores `value` in a place for values of the kind `type`, converted to it; what was there is released.
/// Error 13 for kinds that cannot hold it, error 6 out of range; the place is then as it was.
void StoreAs(VARTYPE type, void* place, const Variant& value);

/// What the object `unknown` is for the library.
ObjectReference ReferenceTo(IUnknown* unknown);

/// The object, asked for its members by name; null for no object. Error 13 when it cannot be.
Reference<IDispatch> DispatchOf(const ObjectReference& object);

}  // namespace vorquill21::automation
