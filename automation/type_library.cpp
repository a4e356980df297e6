#include "automation/type_library.hpp"

#include <cstring>
#include <map>
#include <memory>
#include <mutex>

#include "automation/failure.hpp"

namespace vorquill21::automation {
namespace {

void Require(HRESULT result) {
  if (FAILED(result)) throw SystemFailure(result);
}

struct GuidLess {
  bool operator()(const GUID& left, const GUID& right) const {
    return std::memcmp(&left, &right, sizeof(GUID)) < 0;
  }
};

/// What is read once and kept. It does not end by itself: at the end of a process the system's libraries may
/// be gone.
struct Cache {
  std::mutex mutex;
  Reference<ITypeLib> library;
  std::map<GUID, std::unique_ptr<InterfaceInfo>, GuidLess> interfaces;
};

Cache& TheCache() {
  static Cache* const cache = new Cache;
  return *cache;
}

ITypeLib& LoadedLibrary(Cache& cache) {
  if (!cache.library) Require(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, cache.library.Receive()));
  return *cache.library;
}

/// The kind of values that a type declared elsewhere stands for.
VARTYPE KindOfDeclared(ITypeInfo& declaring, HREFTYPE reference) {
  Reference<ITypeInfo> declared;
  Require(declaring.GetRefTypeInfo(reference, declared.Receive()));
  TYPEATTR* attributes = nullptr;
  Require(declared->GetTypeAttr(&attributes));
  const bool isEnumeration = attributes->typekind == TKIND_ENUM;
  declared->ReleaseTypeAttr(attributes);
  return isEnumeration ? VT_I4 : VT_DISPATCH;
}

void ReadType(ITypeInfo& declaring, const TYPEDESC& type, Parameter& parameter) {
  switch (type.vt) {
    case VT_PTR:
      if (type.lptdesc->vt == VT_USERDEFINED &&
          KindOfDeclared(declaring, type.lptdesc->hreftype) == VT_DISPATCH) {
        parameter.type = VT_DISPATCH;  // an object is a pointer already
      } else {
        ReadType(declaring, *type.lptdesc, parameter);
        parameter.isReference = true;
      }
      return;
    case VT_SAFEARRAY:
      parameter.type = VT_ARRAY;
      parameter.elementType = type.lptdesc->vt;
      return;
    case VT_USERDEFINED:
      parameter.type = KindOfDeclared(declaring, type.hreftype);
      return;
    default:
      parameter.type = type.vt;
  }
}

Parameter ReadParameter(ITypeInfo& declaring, const ELEMDESC& element) {
  const PARAMDESC& description = element.paramdesc;
  Parameter parameter;
  ReadType(declaring, element.tdesc, parameter);
  parameter.isOptional = (description.wParamFlags & PARAMFLAG_FOPT) != 0;
  if ((description.wParamFlags & PARAMFLAG_FHASDEFAULT) != 0) {
    parameter.defaultValue = &description.pparamdescex->varDefaultValue;
  }
  return parameter;
}

Function ReadFunction(ITypeInfo& declaring, const FUNCDESC& description) {
  Function function;
  function.id = description.memid;
  function.kind = description.invkind;
  function.tableOffset = static_cast<ULONG_PTR>(description.oVft);
  function.isVariadic = description.cParamsOpt == -1;
  for (SHORT i = 0; i < description.cParams; ++i) {
    const ELEMDESC& element = description.lprgelemdescParam[i];
    const Parameter parameter = ReadParameter(declaring, element);
    if ((element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) {
      function.result = parameter;
    } else {
      function.parameters.push_back(parameter);
    }
  }
  return function;
}

}  // namespace

InterfaceInfo::InterfaceInfo(REFIID id, ITypeLib& library) {
  Require(library.GetTypeInfoOfGuid(id, named_.Receive()));
  HREFTYPE tableHalf = 0;
  Require(named_->GetRefTypeOfImplType(static_cast<UINT>(-1), &tableHalf));
  Require(named_->GetRefTypeInfo(tableHalf, table_.Receive()));
  FUNCDESC* description = nullptr;
  for (UINT i = 0; SUCCEEDED(table_->GetFuncDesc(i, &description)); ++i) {
    descriptions_.push_back(description);
    functions_.push_back(ReadFunction(*table_, *description));
  }
}

InterfaceInfo::~InterfaceInfo() {
  for (FUNCDESC* description : descriptions_) table_->ReleaseFuncDesc(description);
}

const Function* InterfaceInfo::Find(DISPID id, WORD kind) const noexcept {
  constexpr WORD kReading = DISPATCH_METHOD | DISPATCH_PROPERTYGET;  // hosts do not tell one from the other
  constexpr WORD kWriting = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  const int kinds = ((kind & kReading) != 0 ? kReading : 0) | ((kind & kWriting) != 0 ? kWriting : 0);
  for (const Function& function : functions_) {
    if (function.id == id && (function.kind & kinds) != 0) return &function;
  }
  return nullptr;
}

std::wstring ModulePath() {
  static const char kInside = 0;
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&kInside), &module);
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return path.substr(0, length);
    path.resize(path.size() * 2);
  }
}

ITypeLib& OwnTypeLibrary() {
  Cache& cache = TheCache();
  const std::lock_guard lock(cache.mutex);
  return LoadedLibrary(cache);
}

const InterfaceInfo& InfoOf(REFIID id) {
  Cache& cache = TheCache();
  const std::lock_guard lock(cache.mutex);
  auto& info = cache.interfaces[id];
  if (info == nullptr) info = std::make_unique<InterfaceInfo>(id, LoadedLibrary(cache));
  return *info;
}

void ForgetTypeLibrary() noexcept {
  TheCache().interfaces.clear();
  TheCache().library = nullptr;
}

}  // namespace vorquill21::automation
