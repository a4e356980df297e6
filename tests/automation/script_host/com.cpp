#include "tests/automation/script_host/com.hpp"

namespace script_host {

const VARIANT& Meant(const VARIANT& value) {
  const VARIANT* meant = &value;
  while (V_VT(meant) == (VT_BYREF | VT_VARIANT)) meant = V_VARIANTREF(meant);
  return *meant;
}

std::vector<const VARIANT*> ArgumentsOf(const DISPPARAMS& call) {
  std::vector<const VARIANT*> arguments;
  for (UINT index = call.cArgs; index > 0; --index) arguments.push_back(&Meant(call.rgvarg[index - 1]));
  return arguments;
}

std::wstring TextOf(const wchar_t* text) {
  return text == nullptr ? std::wstring() : std::wstring(text, SysStringLen(const_cast<BSTR>(text)));
}

std::wstring AsText(const VARIANT& value) {
  Value text;
  if (FAILED(VariantChangeType(&text, const_cast<VARIANT*>(&value), VARIANT_ALPHABOOL, VT_BSTR)))
    throw HostError{DISP_E_TYPEMISMATCH, L"is no text"};
  return TextOf(V_BSTR(&text));
}

LONG AsLong(const VARIANT& value) {
  Value number;
  if (FAILED(VariantChangeType(&number, const_cast<VARIANT*>(&value), 0, VT_I4)))
    throw HostError{DISP_E_TYPEMISMATCH, L"is no number"};
  return V_I4(&number);
}

IDispatch* ObjectIn(const VARIANT& value) {
  if (V_VT(&value) == VT_DISPATCH) return V_DISPATCH(&value);
  return V_VT(&value) == (VT_DISPATCH | VT_BYREF) ? *V_DISPATCHREF(&value) : nullptr;
}

void Put(VARIANT& result, const std::wstring& text) {
  V_VT(&result) = VT_BSTR;
  V_BSTR(&result) = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

void Call(IDispatch& object, const wchar_t* name, WORD kind, DISPPARAMS& arguments, VARIANT* result) {
  auto* nameToAsk = const_cast<wchar_t*>(name);
  DISPID member = DISPID_UNKNOWN;
  HRESULT code = object.GetIDsOfNames(IID_NULL, &nameToAsk, 1, LOCALE_USER_DEFAULT, &member);
  if (SUCCEEDED(code))
    code = object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, kind, &arguments, result, nullptr, nullptr);
  if (FAILED(code)) throw HostError{code, std::wstring(name) + L" could not be called"};
}

std::wstring FromUtf8(std::string_view text) {
  const int bytes = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  wide.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), static_cast<int>(wide.size()))));
  return wide;
}

std::string ToUtf8(std::wstring_view text) {
  const int units = static_cast<int>(text.size());
  std::string bytes(3 * text.size(), '\0');
  bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(
      CP_UTF8, 0, text.data(), units, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

}  // namespace script_host
