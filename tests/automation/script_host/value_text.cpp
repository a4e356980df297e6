#include "tests/automation/script_host/value_text.hpp"

#include <ocidl.h>

#include <charconv>
#include <iterator>

#include "tests/automation/script_host/arrays.hpp"

namespace script_host {
namespace {

template <class Number>
std::wstring NumberText(Number number) {
  char digits[64];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
  return std::wstring(digits, end);
}

std::wstring Quoted(const std::wstring& text) {
  constexpr wchar_t kHexadecimal[] = L"0123456789ABCDEF";
  std::wstring quoted = L"'";
  for (const wchar_t unit : text) {
    if (unit == L'\r') {
      quoted += L"<CR>";
    } else if (unit == L'\n') {
      quoted += L"<LF>";
    } else if (unit == L'\t') {
      quoted += L"<TAB>";
    } else if (unit < L' ') {
      quoted += {L'<', kHexadecimal[unit >> 4], kHexadecimal[unit & 15], L'>'};
    } else {
      quoted += unit;
    }
  }
  return quoted + L"'";
}

std::wstring ClassOf(IDispatch* object) {
  const auto described = Ask<IProvideClassInfo>(object);
  ITypeInfo* info = nullptr;
  if (!described || FAILED(described->GetClassInfo(&info))) return L"of no named class";
  const Owned<ITypeInfo> owned(info);
  BSTR name = nullptr;
  info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
  std::wstring text = TextOf(name);
  SysFreeString(name);
  return text;
}

std::wstring ErrorText(SCODE code) {
  if (code == DISP_E_PARAMNOTFOUND) return L"Missing";
  wchar_t text[32];
  swprintf(text, std::size(text), L"Error %08lX", static_cast<unsigned long>(code));
  return text;
}

/// The value without its type.
std::wstring Plain(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_BOOL:
      return V_BOOL(&value) != VARIANT_FALSE ? L"True" : L"False";
    case VT_I1:
      return NumberText(static_cast<int>(V_I1(&value)));
    case VT_UI1:
      return NumberText(static_cast<int>(V_UI1(&value)));
    case VT_I2:
      return NumberText(V_I2(&value));
    case VT_UI2:
      return NumberText(V_UI2(&value));
    case VT_I4:
      return NumberText(V_I4(&value));
    case VT_UI4:
      return NumberText(V_UI4(&value));
    case VT_R4:
      return NumberText(V_R4(&value));
    case VT_R8:
      return NumberText(V_R8(&value));
    case VT_BSTR:
      return Quoted(TextOf(V_BSTR(&value)));
    default:
      return AsText(value);
  }
}

std::wstring ArrayText(const VARIANT& value) {
  const SAFEARRAY* array = ArrayIn(value);
  const VARTYPE type = V_VT(&value) & VT_TYPEMASK;
  std::wstring text = NameOf(type) + L"(" + BoundsText(array) + L")";
  const wchar_t* separator = L" ";
  ForEachElement(array, type, [&](const VARIANT& element) {
    text += separator + (type == VT_VARIANT ? Shown(element) : Plain(element));
    separator = L", ";
  });
  return text;
}

}  // namespace

std::wstring Shown(const VARIANT& passed) {
  const VARIANT& value = Meant(passed);
  if (V_ISARRAY(&value)) return ArrayText(value);
  Value plain;
  if (V_ISBYREF(&value)) {
    VariantCopyInd(&plain, const_cast<VARIANT*>(&value));
    return Shown(plain);
  }
  switch (V_VT(&value)) {
    case VT_EMPTY:
      return L"Empty";
    case VT_NULL:
      return L"Null";
    case VT_ERROR:
      return ErrorText(V_ERROR(&value));
    case VT_DISPATCH:
      return L"Object " + (V_DISPATCH(&value) == nullptr ? L"Nothing" : ClassOf(V_DISPATCH(&value)));
    default:
      return NameOf(V_VT(&value)) + L" " + Plain(value);
  }
}

}  // namespace script_host
