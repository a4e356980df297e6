#include "vorquill21/platform/file_system_object_windows.hpp"

#include <windows.h>

#include <memory>

#include "vorquill21/platform/com_apartment_windows.hpp"
#include "vorquill21/platform/wide_windows.hpp"

namespace vorquill21 {
namespace {

struct ComRelease {
  void operator()(IUnknown* object) const { object->Release(); }
};
using DispatchPointer = std::unique_ptr<IDispatch, ComRelease>;

/// A variant of the system, cleared with its owner.
class SystemVariant {
 public:
  SystemVariant() { VariantInit(&variant_); }
  explicit SystemVariant(TextView text) : SystemVariant() {
    const std::wstring wide = ToWide(text);
    variant_.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (variant_.bstrVal != nullptr) variant_.vt = VT_BSTR;
  }
  SystemVariant(const SystemVariant&) = delete;
  SystemVariant& operator=(const SystemVariant&) = delete;
  ~SystemVariant() { VariantClear(&variant_); }

  VARIANT* Get() { return &variant_; }
  bool IsTrue() const { return variant_.vt == VT_BOOL && variant_.boolVal != VARIANT_FALSE; }

 private:
  VARIANT variant_;
};

DispatchPointer CreateByName(const wchar_t* name) {
  CLSID identifier;
  void* object = nullptr;
  if (FAILED(CLSIDFromProgID(name, &identifier))) return nullptr;
  const HRESULT made = CoCreateInstance(identifier, nullptr, CLSCTX_SERVER, IID_IDispatch, &object);
  return DispatchPointer(SUCCEEDED(made) ? static_cast<IDispatch*>(object) : nullptr);
}

}  // namespace

bool FileSystemObjectFolderExists(TextView path) {
  if (path.find(u'\0') != TextView::npos) return false;
  const ComApartment apartment;
  const DispatchPointer object = CreateByName(L"Scripting.FileSystemObject");
  if (!object) return false;
  std::wstring method = L"FolderExists";
  LPOLESTR methodName = method.data();
  DISPID identifier = DISPID_UNKNOWN;
  if (FAILED(object->GetIDsOfNames(IID_NULL, &methodName, 1, LOCALE_INVARIANT, &identifier))) return false;
  SystemVariant argument(path);
  SystemVariant answer;
  DISPPARAMS arguments{argument.Get(), nullptr, 1, 0};
  const HRESULT called = object->Invoke(identifier, IID_NULL, LOCALE_INVARIANT, DISPATCH_METHOD, &arguments,
                                        answer.Get(), nullptr, nullptr);
  return SUCCEEDED(called) && answer.IsTrue();
}

}  // namespace vorquill21
