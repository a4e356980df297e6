#include "tests/automation/members.hpp"

#include <gtest/gtest.h>

namespace vorquill21::test {
namespace {

VARTYPE KindOf(ITypeInfo& type, const TYPEDESC& description) {
  switch (description.vt) {
    case VT_SAFEARRAY:
      return VT_ARRAY;
    case VT_PTR: {
      const VARTYPE pointed = KindOf(type, *description.lptdesc);
      const bool isObject = pointed == VT_UNKNOWN;  // the pointer to an interface
      return isObject ? static_cast<VARTYPE>(VT_DISPATCH) : static_cast<VARTYPE>(VT_BYREF | pointed);
    }
    case VT_USERDEFINED:
      break;
    default:
      return description.vt;
  }
  Reference<ITypeInfo> declared;
  EXPECT_EQ(S_OK, type.GetRefTypeInfo(description.hreftype, declared.Receive()));
  TYPEATTR* attributes = nullptr;
  EXPECT_EQ(S_OK, declared->GetTypeAttr(&attributes));
  const VARTYPE kind = attributes->typekind == TKIND_ENUM ? VT_I4 : VT_UNKNOWN;
  declared->ReleaseTypeAttr(attributes);
  return kind;
}

bool IsArrayOfDoubles(const TYPEDESC& description) {
  if (description.vt != VT_PTR || description.lptdesc->vt != VT_SAFEARRAY) return false;
  return description.lptdesc->lptdesc->vt == VT_R8;
}

std::string NameOf(ITypeInfo& type, MEMBERID member) {
  TextArgument name;
  type.GetDocumentation(member, &name, nullptr, nullptr, nullptr);
  const std::wstring wide = name.Content();
  return {wide.begin(), wide.end()};
}

void AddMembers(ITypeInfo& table, Member member, std::vector<Member>& members) {
  const std::string className = member.name;
  FUNCDESC* function = nullptr;
  for (UINT i = 0; SUCCEEDED(table.GetFuncDesc(i, &function)); ++i) {
    member.name = className + "." + NameOf(table, function->memid);
    member.id = function->memid;
    member.kind = static_cast<WORD>(function->invkind);
    member.tableOffset = static_cast<ULONG_PTR>(function->oVft);
    member.isVariadic = function->cParamsOpt == -1;
    member.parameters.clear();
    member.takesDoubles = false;
    member.result = VT_EMPTY;
    for (int p = 0; p < function->cParams; ++p) {
      const ELEMDESC& element = function->lprgelemdescParam[p];
      const VARTYPE kind = KindOf(table, element.tdesc);
      if (IsArrayOfDoubles(element.tdesc)) member.takesDoubles = true;
      const bool isResult = (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0;
      if (isResult) {
        member.result = kind;
      } else {
        member.parameters.push_back(kind);
      }
    }
    table.ReleaseFuncDesc(function);
    members.push_back(member);
  }
}

LRESULT CALLBACK RefuseDialogs(int code, WPARAM window, LPARAM data) {
  constexpr LRESULT kRefused = 1;
  wchar_t name[32] = L"";
  if (code == HCBT_CREATEWND && GetClassNameW(reinterpret_cast<HWND>(window), name, 32) > 0 &&
      std::wstring(name) == L"#32770") {
    return kRefused;
  }
  return CallNextHookEx(nullptr, code, window, data);
}

}  // namespace

std::vector<Member> AllMembers(const Component& component) {
  Reference<ITypeLib> library;
  EXPECT_EQ(S_OK, LoadTypeLibEx(component.Path().c_str(), REGKIND_NONE, library.Receive()));
  std::vector<Member> members;
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    Reference<ITypeInfo> type;
    library->GetTypeInfo(i, type.Receive());
    TYPEATTR* attributes = nullptr;
    type->GetTypeAttr(&attributes);
    const CLSID classId = attributes->guid;
    const bool isClass = attributes->typekind == TKIND_COCLASS;
    type->ReleaseTypeAttr(attributes);
    if (!isClass) continue;
    HREFTYPE reference = 0;
    Reference<ITypeInfo> named;
    Reference<ITypeInfo> table;
    EXPECT_EQ(S_OK, type->GetRefTypeOfImplType(0, &reference));
    EXPECT_EQ(S_OK, type->GetRefTypeInfo(reference, named.Receive()));
    EXPECT_EQ(S_OK, named->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    EXPECT_EQ(S_OK, named->GetRefTypeInfo(reference, table.Receive()));
    named->GetTypeAttr(&attributes);
    const IID interfaceId = attributes->guid;
    named->ReleaseTypeAttr(attributes);
    AddMembers(*table,
               {classId, interfaceId, NameOf(*type, MEMBERID_NIL), 0, 0, 0, false, false, {}, VT_EMPTY},
               members);
  }
  return members;
}

HRESULT CallEarly(IUnknown& object, const Member& member, const std::vector<VARIANT*>& arguments) {
  std::vector<VARIANT*> passed = arguments;
  std::vector<VARTYPE> types;
  for (const VARIANT* argument : arguments) types.push_back(argument->vt);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (member.parameters[i] == VT_VARIANT) types[i] = VT_VARIANT;
  }
  Value result;
  VARIANT place{};
  if (member.result != VT_EMPTY) {
    const bool isVariant = member.result == (VT_BYREF | VT_VARIANT);
    result.llVal = 0;
    place.vt = member.result;
    place.byref = isVariant ? static_cast<void*>(&result) : &result.byref;
    passed.push_back(&place);
    types.push_back(place.vt);
  }
  VARIANT returned{};
  EXPECT_EQ(S_OK, DispCallFunc(&object, member.tableOffset, CC_STDCALL, VT_I4,
                               static_cast<UINT>(passed.size()), types.data(), passed.data(), &returned));
  if (member.result != VT_EMPTY && member.result != (VT_BYREF | VT_VARIANT)) {
    result.vt = static_cast<VARTYPE>(member.result & ~VT_BYREF);
  }
  return returned.lVal;
}

HarmlessArgument::HarmlessArgument(VARTYPE type) {
  switch (type & ~VT_BYREF) {
    case VT_I4:
      variable_ = 1;
      break;
    case VT_R8:
      variable_ = 1.0;
      break;
    case VT_BOOL:
      variable_ = true;
      break;
    case VT_BSTR:
      variable_ = L"abc";
      break;
    case VT_VARIANT:
      variable_ = 1;
      break;
    case VT_ARRAY:
      variable_ = Value::Adopt(VT_R8, NewDoubles(1, {1, 2, 3}));
      break;
    default:
      variable_ = static_cast<IDispatch*>(nullptr);
      break;
  }
  early_.vt = type;
  if (type == VT_VARIANT) {
    early_ = variable_;
  } else if (type == (VT_BYREF | VT_VARIANT)) {
    early_.pvarVal = &variable_;
  } else if ((type & VT_BYREF) != 0) {
    early_.byref = &variable_.byref;
  } else {
    early_ = variable_;
  }
}

HarmlessArgument::~HarmlessArgument() {
  if ((variable_.vt & VT_ARRAY) != 0 && variable_.parray != nullptr) {
    EXPECT_EQ(0u, variable_.parray->cLocks) << "a lock was left";
  }
}

DialogRefuser::DialogRefuser()
    : hook_(SetWindowsHookExW(WH_CBT, RefuseDialogs, nullptr, GetCurrentThreadId())) {
  EXPECT_NE(nullptr, hook_);
}

}  // namespace vorquill21::test
