#include <gtest/gtest.h>

#include <map>

#include "tests/automation/component.hpp"

namespace vorquill21::test {
namespace {

using Keys = std::map<std::wstring, std::wstring>;  // "KEY" or "KEY@NAME" and its value

const wchar_t* const kClassNames[] = {L"CFile",        L"CFileStream", L"CGeometry",     L"CImportColumnData",
                                      L"CInterpolate", L"CLog",        L"CMathUtils",    L"COSUtils",
                                      L"CStatistics",  L"CString",     L"CTrigonometry", L"Main"};

/// Puts a key of this test in the place of one of the roots of the registry, for this process.
class RedirectedRoot {
 public:
  explicit RedirectedRoot(HKEY root) : root_(root) {
    name_ = L"Software\\Vorquill21 test " + std::to_wstring(GetCurrentProcessId()) +
            std::to_wstring(reinterpret_cast<ULONG_PTR>(root));
    EXPECT_EQ(ERROR_SUCCESS, RegCreateKeyW(HKEY_CURRENT_USER, name_.c_str(), &key_));
    EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(root, key_));
  }
  RedirectedRoot(const RedirectedRoot&) = delete;
  RedirectedRoot& operator=(const RedirectedRoot&) = delete;
  ~RedirectedRoot() {
    RegOverridePredefKey(root_, nullptr);
    RegCloseKey(key_);
    RegDeleteTreeW(HKEY_CURRENT_USER, name_.c_str());
  }

  Keys Content() const {
    Keys keys;
    Read(key_, L"", keys);
    return keys;
  }

 private:
  static void Read(HKEY key, const std::wstring& path, Keys& keys) {
    wchar_t name[256];
    wchar_t value[1024];
    for (DWORD i = 0;; ++i) {
      DWORD nameLength = 256;
      DWORD valueLength = sizeof(value);
      if (RegEnumValueW(key, i, name, &nameLength, nullptr, nullptr, reinterpret_cast<BYTE*>(value),
                        &valueLength) != ERROR_SUCCESS) {
        break;
      }
      keys[path + (nameLength == 0 ? L"" : L"@") + name] = value;
    }
    for (DWORD i = 0; RegEnumKeyW(key, i, name, 256) == ERROR_SUCCESS; ++i) {
      HKEY below = nullptr;
      RegOpenKeyExW(key, name, 0, KEY_READ, &below);
      Read(below, path + (path.empty() ? L"" : L"\\") + name, keys);
      RegCloseKey(below);
    }
  }

  HKEY root_;
  HKEY key_ = nullptr;
  std::wstring name_;
};

std::wstring TextOf(REFGUID id) {
  wchar_t text[39];
  StringFromGUID2(id, text, 39);
  return text;
}

/// What hosts follow from a class's name to the component's file.
void ExpectClass(const Keys& keys, const std::wstring& name) {
  const std::wstring classes = L"Software\\Classes\\";
  const std::wstring progId = L"Vorquill21." + name;
  const auto at = [&](const std::wstring& key) {
    const auto found = keys.find(classes + key);
    EXPECT_NE(keys.end(), found) << "missing: " << std::string(key.begin(), key.end());
    return found == keys.end() ? std::wstring() : found->second;
  };
  EXPECT_EQ(progId + L".1", at(progId + L"\\CurVer"));
  const std::wstring classId = at(progId + L"\\CLSID");
  EXPECT_EQ(classId, at(progId + L".1\\CLSID"));
  EXPECT_NE(L"", at(progId));
  EXPECT_EQ(at(progId), at(L"CLSID\\" + classId));
  EXPECT_EQ(progId + L".1", at(L"CLSID\\" + classId + L"\\ProgID"));
  EXPECT_EQ(progId, at(L"CLSID\\" + classId + L"\\VersionIndependentProgID"));
  EXPECT_EQ(Component::Default().Path(), at(L"CLSID\\" + classId + L"\\InprocServer32"));
  EXPECT_EQ(L"Apartment", at(L"CLSID\\" + classId + L"\\InprocServer32@ThreadingModel"));
  EXPECT_EQ(TextOf(LIBID_Vorquill21), at(L"CLSID\\" + classId + L"\\TypeLib"));
  EXPECT_EQ(L"1.0", at(L"CLSID\\" + classId + L"\\Version"));
}

void ExpectAll(const Keys& keys) {
  for (const wchar_t* name : kClassNames) ExpectClass(keys, name);
  const std::wstring library = L"Software\\Classes\\TypeLib\\" + TextOf(LIBID_Vorquill21) + L"\\1.0";
  const wchar_t* const platform = sizeof(void*) == 8 ? L"\\0\\win64" : L"\\0\\win32";
  ASSERT_TRUE(keys.contains(library + platform));
  EXPECT_EQ(Component::Default().Path(), keys.at(library + platform));
  EXPECT_EQ(L"0", keys.at(library + L"\\FLAGS"));
  const std::wstring logInterface = L"Software\\Classes\\Interface\\" + TextOf(IID__CLog);
  EXPECT_EQ(L"_CLog", keys.at(logInterface));
  EXPECT_EQ(L"1.0", keys.at(logInterface + L"\\TypeLib@Version"));
  EXPECT_EQ(L"__CLog", keys.at(L"Software\\Classes\\Interface\\" + TextOf(DIID___CLog)));
}

TEST(RegistrationTest, RegistersForTheMachineAndTakesItBack) {
  const RedirectedRoot machine(HKEY_LOCAL_MACHINE);
  const RedirectedRoot user(HKEY_CURRENT_USER);
  const Component& component = Component::Default();
  EXPECT_EQ(S_OK, component.Exported<HRESULT STDMETHODCALLTYPE()>("DllRegisterServer")());
  ExpectAll(machine.Content());
  EXPECT_EQ(Keys{}, user.Content());
  EXPECT_EQ(S_OK, component.Exported<HRESULT STDMETHODCALLTYPE()>("DllRegisterServer")());
  EXPECT_EQ(S_OK, component.Exported<HRESULT STDMETHODCALLTYPE()>("DllUnregisterServer")());
  EXPECT_EQ(Keys{}, machine.Content());
  EXPECT_EQ(S_OK, component.Exported<HRESULT STDMETHODCALLTYPE()>("DllUnregisterServer")());
}

TEST(RegistrationTest, RegistersForTheCurrentUserAlone) {
  const RedirectedRoot machine(HKEY_LOCAL_MACHINE);
  const RedirectedRoot user(HKEY_CURRENT_USER);
  const auto install = Component::Default().Exported<HRESULT STDMETHODCALLTYPE(BOOL, PCWSTR)>("DllInstall");
  EXPECT_EQ(S_OK, install(TRUE, L"user"));
  ExpectAll(user.Content());
  EXPECT_EQ(Keys{}, machine.Content());
  EXPECT_EQ(S_OK, install(FALSE, L"USER"));
  EXPECT_EQ(Keys{}, user.Content());
}

TEST(RegistrationTest, LeavesWhatItDidNotWrite) {
  const RedirectedRoot machine(HKEY_LOCAL_MACHINE);
  RegSetKeyValueW(HKEY_LOCAL_MACHINE, L"Software\\Classes\\Vorquill21.Other", nullptr, REG_SZ, L"x", 4);
  const Keys before = machine.Content();
  const Component& component = Component::Default();
  EXPECT_EQ(S_OK, component.Exported<HRESULT STDMETHODCALLTYPE()>("DllRegisterServer")());
  EXPECT_EQ(S_OK, component.Exported<HRESULT STDMETHODCALLTYPE()>("DllUnregisterServer")());
  EXPECT_EQ(before, machine.Content());
}

TEST(ManifestTest, LetsHostsMakeEveryClassWithoutRegistration) {
  std::wstring path = Component::Default().Path();
  path.replace(path.rfind(L'\\') + 1, std::wstring::npos, L"Vorquill21.Automation.manifest");
  ACTCTXW description{};
  description.cbSize = sizeof(description);
  description.lpSource = path.c_str();
  const HANDLE context = CreateActCtxW(&description);
  ASSERT_NE(INVALID_HANDLE_VALUE, context) << GetLastError();
  ULONG_PTR cookie = 0;
  ASSERT_TRUE(ActivateActCtx(context, &cookie));
  for (const wchar_t* name : kClassNames) {
    CLSID classId{};
    EXPECT_EQ(S_OK, CLSIDFromProgID((std::wstring(L"Vorquill21.") + name).c_str(), &classId));
    Reference<IProvideClassInfo> made;
    EXPECT_EQ(S_OK, CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IProvideClassInfo,
                                     reinterpret_cast<void**>(made.Receive())));
    if (!made) continue;
    Reference<ITypeInfo> type;
    ASSERT_EQ(S_OK, made->GetClassInfo(type.Receive()));
    TextArgument found;
    type->GetDocumentation(MEMBERID_NIL, &found, nullptr, nullptr, nullptr);
    EXPECT_EQ(name, found.Content());
  }
  DeactivateActCtx(0, cookie);
  ReleaseActCtx(context);
}

/// The version resource of the component as 16-bit units.
std::wstring VersionResource() {
  const HMODULE module = GetModuleHandleW(Component::Default().Path().c_str());
  const HRSRC version = FindResourceW(module, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(16));
  EXPECT_NE(nullptr, version);
  if (version == nullptr) return {};
  const auto* const units = static_cast<const wchar_t*>(LockResource(LoadResource(module, version)));
  return {units, SizeofResource(module, version) / sizeof(wchar_t)};
}

/// The text that the resource holds under a name, which a 1 announces.
std::wstring TextUnder(const std::wstring& resource, const std::wstring& name) {
  const std::size_t at = resource.find(L'\1' + name + L'\0');
  EXPECT_NE(std::wstring::npos, at) << std::string(name.begin(), name.end());
  if (at == std::wstring::npos) return {};
  const std::size_t first =
      resource.find_first_not_of(L'\0', at + 1 + name.size());  // it stands at a whole 32 bits
  return resource.substr(first, resource.find(L'\0', first) - first);
}

TEST(VersionTest, TellsItsVersion) {
  const std::wstring resource = VersionResource();
  ASSERT_GT(resource.size(), 20 + sizeof(VS_FIXEDFILEINFO) / sizeof(wchar_t));
  const auto* const fixed = reinterpret_cast<const VS_FIXEDFILEINFO*>(resource.data() + 20);
  EXPECT_EQ(0xFEEF04BDu, fixed->dwSignature);
  EXPECT_EQ(static_cast<DWORD>(VORQUILL21_VERSION_MAJOR) << 16 | VORQUILL21_VERSION_MINOR,
            fixed->dwFileVersionMS);
  EXPECT_EQ(fixed->dwFileVersionMS, fixed->dwProductVersionMS);
  EXPECT_EQ(static_cast<DWORD>(VFT_DLL), fixed->dwFileType);
}

TEST(VersionTest, TellsWhatItIs) {
  const std::wstring resource = VersionResource();
  const std::wstring version =
      std::to_wstring(VORQUILL21_VERSION_MAJOR) + L'.' + std::to_wstring(VORQUILL21_VERSION_MINOR) + L'.';
  EXPECT_EQ(0u, TextUnder(resource, L"FileVersion").find(version));
  EXPECT_EQ(0u, TextUnder(resource, L"ProductVersion").find(version));
  EXPECT_EQ(L"Vorquill21", TextUnder(resource, L"ProductName"));
  EXPECT_EQ(L"Vorquill21.dll", TextUnder(resource, L"OriginalFilename"));
  EXPECT_EQ(L"Vorquill21 automation component", TextUnder(resource, L"FileDescription"));
  EXPECT_NE(std::wstring::npos, resource.find(L"OLESelfRegister"));
}

}  // namespace
}  // namespace vorquill21::test
