#include <new>

#include "automation/classes.hpp"
#include "automation/counted.hpp"
#include "automation/failure.hpp"
#include "automation/object.hpp"
#include "automation/registration.hpp"
#include "automation/type_library.hpp"

namespace vorquill21::automation {
namespace {

/// Makes objects of one class.
class ClassFactory final : public CountedOne<IClassFactory, IID_IClassFactory> {
 public:
  explicit ClassFactory(const ClassEntry& entry) : class_(entry) {}

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID interfaceId, void** result) noexcept override {
    if (result == nullptr) return E_POINTER;
    *result = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    Reference<Object> object;
    const HRESULT made = Guarded(class_.interfaceId, [&] { object = class_.make(); });
    return FAILED(made) ? made : object->QueryInterface(interfaceId, result);
  }
  STDMETHODIMP LockServer(BOOL isLocked) noexcept override {
    ModuleUse::Lock(isLocked != FALSE);
    return S_OK;
  }

 private:
  const ClassEntry& class_;
};

}  // namespace
}  // namespace vorquill21::automation

using namespace vorquill21::automation;

/// `isProcessEnding` is null when the library alone is unloaded.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* isProcessEnding) {
  if (reason == DLL_PROCESS_DETACH && isProcessEnding == nullptr) ForgetTypeLibrary();
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  const ClassEntry* const entry = FindClass(classId);
  if (entry == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
  const auto factory = Reference<ClassFactory>::Adopt(new (std::nothrow) ClassFactory(*entry));
  return factory ? factory->QueryInterface(interfaceId, result) : E_OUTOFMEMORY;
}

STDAPI DllCanUnloadNow() {
  return ModuleUse::IsInUse() ? S_FALSE : S_OK;
}

STDAPI DllRegisterServer() {
  return Register(Scope::kMachine);
}

STDAPI DllUnregisterServer() {
  return Unregister(Scope::kMachine);
}

/// With the command line "user" for the current user, otherwise for the machine.
STDAPI DllInstall(BOOL isInstalling, PCWSTR commandLine) {
  const bool isForUser = commandLine != nullptr && lstrcmpiW(commandLine, L"user") == 0;
  const Scope scope = isForUser ? Scope::kUser : Scope::kMachine;
  return isInstalling != FALSE ? Register(scope) : Unregister(scope);
}
