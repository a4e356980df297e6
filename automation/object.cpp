#include "automation/object.hpp"

#include "automation/classes.hpp"
#include "automation/invocation.hpp"
#include "automation/type_library.hpp"

namespace vorquill21::automation {
namespace {

/// Asked of an object to learn whether it is one of this server's.
constexpr IID kOwnObject = {0x7D3E8A52, 0x1C64, 0x4B0F, {0x9A, 0xE1, 0x53, 0xC8, 0x2F, 0x60, 0xB7, 0x4D}};

}  // namespace

HRESULT Object::QueryInterface(REFIID interfaceId, void** result) noexcept {
  if (result == nullptr) return E_POINTER;
  if (interfaceId == class_.interfaceId || interfaceId == IID_IDispatch || interfaceId == IID_IUnknown) {
    *result = dispatch_;
  } else if (interfaceId == IID_ISupportErrorInfo) {
    *result = static_cast<ISupportErrorInfo*>(this);
  } else if (interfaceId == IID_IProvideClassInfo || interfaceId == IID_IProvideClassInfo2) {
    *result = static_cast<IProvideClassInfo2*>(this);
  } else if (interfaceId == kOwnObject) {
    *result = this;
  } else {
    *result = OwnInterface(interfaceId);
  }
  if (*result == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT Object::InterfaceSupportsErrorInfo(REFIID interfaceId) noexcept {
  return interfaceId == class_.interfaceId || interfaceId == IID_IDispatch ? S_OK : S_FALSE;
}

HRESULT Object::GetClassInfo(ITypeInfo** result) noexcept {
  return Guarded(IID_IProvideClassInfo, [&] {
    *Checked(result) = nullptr;
    const HRESULT found = OwnTypeLibrary().GetTypeInfoOfGuid(class_.classId, result);
    if (FAILED(found)) throw SystemFailure(found);
  });
}

HRESULT Object::GetGUID(DWORD kind, GUID* result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = GUID_NULL;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  if (class_.eventsId == nullptr) return E_UNEXPECTED;
  *result = *class_.eventsId;
  return S_OK;
}

HRESULT Object::GetTypeInfoCount(UINT* result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = 1;
  return S_OK;
}

HRESULT Object::GetTypeInfo(UINT index, LCID, ITypeInfo** result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return Guarded(class_.interfaceId,
                 [&] { *result = Reference<ITypeInfo>(&InfoOf(class_.interfaceId).TypeInfo()).Detach(); });
}

HRESULT Object::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* result) noexcept {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || result == nullptr) return E_POINTER;
  HRESULT found = S_OK;
  const HRESULT guarded = Guarded(class_.interfaceId, [&] {
    found = InfoOf(class_.interfaceId).TypeInfo().GetIDsOfNames(names, count, result);
  });
  return FAILED(guarded) ? guarded : found;
}

HRESULT Object::Invoke(DISPID member, REFIID reserved, LCID, WORD kind, DISPPARAMS* arguments,
                       VARIANT* result, EXCEPINFO* failure, UINT* failedArgument) noexcept {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (arguments == nullptr) return E_POINTER;
  const Reference<Object> kept(this);
  const Request request{member, kind, *arguments, result, failure, failedArgument};
  return InvokeByName(*Dispatch(), class_.interfaceId, request);
}

Reference<Object> OwnObject(IUnknown* unknown) {
  Reference<Object> object;
  if (unknown != nullptr) unknown->QueryInterface(kOwnObject, reinterpret_cast<void**>(object.Receive()));
  return object;
}

}  // namespace vorquill21::automation
