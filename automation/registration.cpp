#include "automation/registration.hpp"

#include <olectl.h>

#include <string>
#include <vector>

#include "automation/classes.hpp"
#include "automation/failure.hpp"
#include "automation/reference.hpp"
#include "automation/type_library.hpp"

namespace vorquill21::automation {
namespace {

constexpr bool kIs64Bit = sizeof(void*) == 8;
constexpr REGSAM kOwnView = kIs64Bit ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
constexpr REGSAM kOtherView = kIs64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
constexpr wchar_t kPlatform[] = {L'w', L'i', L'n', kIs64Bit ? L'6' : L'3', kIs64Bit ? L'4' : L'2', 0};
constexpr wchar_t kClasses[] = L"Software\\Classes\\";
constexpr wchar_t kLibraryVersion[] = L"1.0";
constexpr wchar_t kDispatchProxy[] = L"{00020420-0000-0000-C000-000000000046}";  // marshals calls by name
constexpr wchar_t kLibraryProxy[] =
    L"{00020424-0000-0000-C000-000000000046}";  // marshals by the type library

std::wstring TextOf(REFGUID id) {
  wchar_t text[39];
  StringFromGUID2(id, text, 39);
  return text;
}

/// Writes and deletes keys below the classes of a scope.
class ClassesKey {
 public:
  explicit ClassesKey(Scope scope)
      : root_(scope == Scope::kMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER) {}

  void Write(const std::wstring& key, const wchar_t* name, const std::wstring& value) const {
    const LSTATUS status = RegSetKeyValueW(root_, (kClasses + key).c_str(), name, REG_SZ, value.c_str(),
                                           static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    if (status != ERROR_SUCCESS) throw SystemFailure(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
  }

  /// A key that is not there is as good as deleted.
  void Delete(const std::wstring& key, REGSAM view = kOwnView) const {
    LSTATUS status = DeleteContent(key, view);
    if (status == ERROR_SUCCESS) status = RegDeleteKeyExW(root_, (kClasses + key).c_str(), view, 0);
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) {
      throw SystemFailure(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
    }
  }

  /// Which keys the servers of the two bitnesses have in common differs from system to system.
  void DeleteInBothViews(const std::wstring& key) const {
    Delete(key, kOwnView);
    Delete(key, kOtherView);
  }

  bool ExistsInOtherView(const std::wstring& key) const {
    HKEY opened = nullptr;
    if (Open(key, kOtherView, opened) != ERROR_SUCCESS) return false;
    RegCloseKey(opened);
    return true;
  }

 private:
  LSTATUS Open(const std::wstring& key, REGSAM access, HKEY& opened) const {
    return RegOpenKeyExW(root_, (kClasses + key).c_str(), 0, KEY_READ | access, &opened);
  }

  LSTATUS DeleteContent(const std::wstring& key, REGSAM view) const {
    HKEY opened = nullptr;
    LSTATUS status = Open(key, DELETE | KEY_SET_VALUE | view, opened);
    if (status != ERROR_SUCCESS) return status;
    status = RegDeleteTreeW(opened, nullptr);
    RegCloseKey(opened);
    return status;
  }

  HKEY root_;
};

std::wstring ClassKey(const ClassEntry& entry) {
  return L"CLSID\\" + TextOf(entry.classId);
}
std::wstring InterfaceKey(REFIID id) {
  return L"Interface\\" + TextOf(id);
}
std::wstring LibraryKey() {
  return L"TypeLib\\" + TextOf(LIBID_Vorquill21);
}
std::wstring LibraryPathKey() {
  return LibraryKey() + L"\\" + kLibraryVersion + L"\\0\\" + kPlatform;
}
std::wstring ProgId(const ClassEntry& entry) {
  return std::wstring(L"Vorquill21.") + entry.name;
}
std::wstring VersionedProgId(const ClassEntry& entry) {
  return ProgId(entry) + L".1";
}

/// What the type library says of a type.
std::wstring Description(const GUID& id) {
  Reference<ITypeInfo> type;
  BSTR text = nullptr;
  if (SUCCEEDED(OwnTypeLibrary().GetTypeInfoOfGuid(id, type.Receive()))) {
    type->GetDocumentation(MEMBERID_NIL, nullptr, &text, nullptr, nullptr);
  }
  const std::wstring description(text, SysStringLen(text));
  SysFreeString(text);
  return description;
}

void WriteClass(const ClassesKey& classes, const ClassEntry& entry, const std::wstring& path) {
  const std::wstring key = ClassKey(entry);
  const std::wstring description = Description(entry.classId);
  classes.Write(key, nullptr, description);
  classes.Write(key + L"\\InprocServer32", nullptr, path);
  classes.Write(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  classes.Write(key + L"\\ProgID", nullptr, VersionedProgId(entry));
  classes.Write(key + L"\\VersionIndependentProgID", nullptr, ProgId(entry));
  classes.Write(key + L"\\TypeLib", nullptr, TextOf(LIBID_Vorquill21));
  classes.Write(key + L"\\Version", nullptr, kLibraryVersion);
  classes.Write(key + L"\\Programmable", nullptr, L"");
  classes.Write(VersionedProgId(entry), nullptr, description);
  classes.Write(VersionedProgId(entry) + L"\\CLSID", nullptr, TextOf(entry.classId));
  classes.Write(ProgId(entry), nullptr, description);
  classes.Write(ProgId(entry) + L"\\CLSID", nullptr, TextOf(entry.classId));
  classes.Write(ProgId(entry) + L"\\CurVer", nullptr, VersionedProgId(entry));
}

void WriteInterface(const ClassesKey& classes, REFIID id, const std::wstring& name, const wchar_t* proxy) {
  const std::wstring key = InterfaceKey(id);
  classes.Write(key, nullptr, name);
  classes.Write(key + L"\\ProxyStubClsid32", nullptr, proxy);
  classes.Write(key + L"\\TypeLib", nullptr, TextOf(LIBID_Vorquill21));
  classes.Write(key + L"\\TypeLib", L"Version", kLibraryVersion);
}

void WriteLibrary(const ClassesKey& classes, const std::wstring& path) {
  const std::wstring key = LibraryKey() + L"\\" + kLibraryVersion;
  classes.Write(key, nullptr, L"Vorquill21 utilities library");
  classes.Write(key + L"\\FLAGS", nullptr, L"0");
  classes.Write(key + L"\\HELPDIR", nullptr, path.substr(0, path.rfind(L'\\')));
  classes.Write(LibraryPathKey(), nullptr, path);
}

void WriteAll(const ClassesKey& classes) {
  const std::wstring path = ModulePath();
  WriteLibrary(classes, path);
  for (const ClassEntry* entry : AllClasses()) {
    WriteClass(classes, *entry, path);
    WriteInterface(classes, entry->interfaceId, std::wstring(L"_") + entry->name, kLibraryProxy);
    if (entry->eventsId != nullptr) {
      WriteInterface(classes, *entry->eventsId, std::wstring(L"__") + entry->name, kDispatchProxy);
    }
  }
}

void DeleteClass(const ClassesKey& classes, const ClassEntry& entry) {
  classes.Delete(ClassKey(entry));
  classes.Delete(InterfaceKey(entry.interfaceId));
  if (entry.eventsId != nullptr) classes.Delete(InterfaceKey(*entry.eventsId));
  if (classes.ExistsInOtherView(ClassKey(entry))) return;
  classes.DeleteInBothViews(VersionedProgId(entry));
  classes.DeleteInBothViews(ProgId(entry));
}

void DeleteAll(const ClassesKey& classes) {
  for (const ClassEntry* entry : AllClasses()) DeleteClass(classes, *entry);
  classes.Delete(LibraryPathKey());
  if (!classes.ExistsInOtherView(ClassKey(*AllClasses().front()))) classes.DeleteInBothViews(LibraryKey());
}

}  // namespace

HRESULT Register(Scope scope) noexcept {
  const ClassesKey classes(scope);
  const HRESULT result = Guarded(IID_NULL, [&] { WriteAll(classes); });
  if (SUCCEEDED(result)) return S_OK;
  Unregister(scope);
  return SELFREG_E_CLASS;
}

HRESULT Unregister(Scope scope) noexcept {
  const ClassesKey classes(scope);
  return SUCCEEDED(Guarded(IID_NULL, [&] { DeleteAll(classes); })) ? S_OK : SELFREG_E_CLASS;
}

}  // namespace vorquill21::automation
