#include <gtest/gtest.h>

#include <algorithm>

#include "tests/automation/members.hpp"

namespace vorquill21::test {
namespace {

template <typename Interface>
ULONG ReferencesTo(Interface* object) {
  object->AddRef();
  return object->Release();
}

TEST(LifetimeTest, MainHandsOutTheSameObjectEachTime) {
  const auto main = VORQUILL21_MAKE(Main);
  Reference<_CLog> log;
  Reference<_CLog> again;
  EXPECT_EQ(S_OK, main->LibLog(log.Receive()));
  EXPECT_EQ(S_OK, main->LibLog(again.Receive()));
  EXPECT_EQ(log.Get(), again.Get());
  const auto other = VORQUILL21_MAKE(CLog);
  EXPECT_NE(log.Get(), other.Get());
}

TEST(LifetimeTest, ObjectsOutliveMain) {
  Reference<_CImportColumnData> import = VORQUILL21_MAKE(CImportColumnData);
  Reference<_CFileStream> stream;
  {
    const auto main = VORQUILL21_MAKE(Main);
    ASSERT_EQ(S_OK, main->LibFilestream(stream.Receive()));
    EXPECT_EQ(2u, ReferencesTo(stream.Get()));
  }
  EXPECT_EQ(1u, ReferencesTo(stream.Get()));
  EXPECT_EQ(S_OK, stream->SetContents(TextArgument(L"[X]\t1\r\n")));
  VARIANT_BOOL exists = VARIANT_FALSE;
  EXPECT_EQ(S_OK, stream->FieldExists(TextArgument(L"X"), &exists));
  EXPECT_EQ(VARIANT_TRUE, exists);
}

TEST(LifetimeTest, HasTheInterfacesOfAnAutomationObject) {
  const auto log = VORQUILL21_MAKE(CLog);
  Reference<IUnknown> identity;
  ASSERT_EQ(S_OK, log->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identity.Receive())));
  for (const IID* id : {&IID_IDispatch, &IID__CLog, &IID_ISupportErrorInfo, &IID_IProvideClassInfo,
                        &IID_IProvideClassInfo2, &IID_IConnectionPointContainer}) {
    Reference<IUnknown> other;
    ASSERT_EQ(S_OK, log->QueryInterface(*id, reinterpret_cast<void**>(other.Receive())));
    Reference<IUnknown> identityOfOther;
    ASSERT_EQ(S_OK, other->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identityOfOther.Receive())));
    EXPECT_EQ(identity.Get(), identityOfOther.Get());
  }
  Reference<IUnknown> missing;
  EXPECT_EQ(E_NOINTERFACE, log->QueryInterface(IID__CFile, reinterpret_cast<void**>(missing.Receive())));
  EXPECT_EQ(E_POINTER, log->QueryInterface(IID_IUnknown, nullptr));
  const auto file = VORQUILL21_MAKE(CFile);
  EXPECT_EQ(E_NOINTERFACE,
            file->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(missing.Receive())));
}

TEST(LifetimeTest, TellsItsClassItsEventsAndThatItTellsErrors) {
  const auto log = VORQUILL21_MAKE(CLog);
  Reference<IProvideClassInfo2> information;
  ASSERT_EQ(S_OK,
            log->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(information.Receive())));
  Reference<ITypeInfo> type;
  ASSERT_EQ(S_OK, information->GetClassInfo(type.Receive()));
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(S_OK, type->GetTypeAttr(&attributes));
  EXPECT_EQ(CLSID_CLog, attributes->guid);
  type->ReleaseTypeAttr(attributes);
  GUID events;
  EXPECT_EQ(S_OK, information->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events));
  EXPECT_EQ(DIID___CLog, events);
  EXPECT_EQ(E_INVALIDARG, information->GetGUID(99, &events));

  Reference<ISupportErrorInfo> support;
  ASSERT_EQ(S_OK, log->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(support.Receive())));
  EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(IID__CLog));
  EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(IID__CFile));
}

/// Once for each class.
std::vector<Member> OneOfEachClass() {
  std::vector<Member> members = AllMembers(Component::Default());
  const auto isOfOneClass = [](const Member& a, const Member& b) { return a.classId == b.classId; };
  members.erase(std::unique(members.begin(), members.end(), isOfOneClass), members.end());
  return members;
}

TEST(LifetimeTest, EveryClassTellsItsNameItsEventsAndThatItTellsErrors) {
  const std::vector<Member> classes = OneOfEachClass();
  EXPECT_EQ(12u, classes.size());
  for (const Member& each : classes) {
    SCOPED_TRACE(each.name);
    const auto object = Component::Default().Make<IUnknown>(each.classId, each.interfaceId);
    Reference<IProvideClassInfo2> information;
    ASSERT_EQ(S_OK, object->QueryInterface(IID_IProvideClassInfo2,
                                           reinterpret_cast<void**>(information.Receive())));
    Reference<ITypeInfo> type;
    ASSERT_EQ(S_OK, information->GetClassInfo(type.Receive()));
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(S_OK, type->GetTypeAttr(&attributes));
    EXPECT_EQ(each.classId, attributes->guid);
    type->ReleaseTypeAttr(attributes);
    GUID events;
    const bool hasEvents = each.classId == CLSID_CLog;
    EXPECT_EQ(hasEvents ? S_OK : E_UNEXPECTED,
              information->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events));
    EXPECT_EQ(hasEvents ? DIID___CLog : GUID_NULL, events);
    Reference<ISupportErrorInfo> support;
    ASSERT_EQ(S_OK,
              object->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(support.Receive())));
    EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(each.interfaceId));
    EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(IID_IClassFactory));
  }
}

TEST(LifetimeTest, MakesNoObjectInsideAnother) {
  Reference<IClassFactory> factory;
  ASSERT_EQ(S_OK, Component::Default().GetClassObject(CLSID_CFile, IID_IClassFactory,
                                                      reinterpret_cast<void**>(factory.Receive())));
  void* made = factory.Get();
  EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(factory.Get(), IID_IUnknown, &made));
  EXPECT_EQ(nullptr, made);
  EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, IID__CLog, &made));
  EXPECT_EQ(nullptr, made);
  EXPECT_EQ(E_POINTER, factory->CreateInstance(nullptr, IID__CFile, nullptr));
  EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE,
            Component::Default().GetClassObject(IID_IUnknown, IID_IClassFactory, &made));
}

TEST(LifetimeTest, StaysLoadedAsLongAsAnythingIsReferredTo) {
  const Component& component = Component::Default();
  ASSERT_EQ(S_OK, component.CanUnloadNow());
  {
    const auto main = VORQUILL21_MAKE(Main);
    EXPECT_EQ(S_FALSE, component.CanUnloadNow());
    Reference<_CString> strings;
    EXPECT_EQ(S_OK, main->LibString(strings.Receive()));
    EXPECT_EQ(L"abc", Call(strings.Get(), L"ReplaceMulti", {L"abc", L"x", L"y"}).value.Text());
  }
  EXPECT_EQ(S_OK, component.CanUnloadNow());

  Reference<IClassFactory> factory;
  ASSERT_EQ(S_OK, component.GetClassObject(CLSID_CFile, IID_IClassFactory,
                                           reinterpret_cast<void**>(factory.Receive())));
  EXPECT_EQ(S_FALSE, component.CanUnloadNow());
  EXPECT_EQ(S_OK, factory->LockServer(TRUE));
  IClassFactory* const raw = factory.Get();
  raw->AddRef();
  factory = nullptr;
  EXPECT_EQ(S_FALSE, component.CanUnloadNow());
  EXPECT_EQ(S_OK, raw->LockServer(FALSE));
  raw->Release();
  EXPECT_EQ(S_OK, component.CanUnloadNow());
}

TEST(LifetimeTest, CanBeLoadedAndUnloadedAgainAndAgain) {
  for (int i = 0; i < 3; ++i) {
    const Component component(L"" VORQUILL21_FAILING_SERVER);
    {
      const auto main = component.Make<_Main>(CLSID_Main, IID__Main);
      EXPECT_EQ(S_OK, Call(main.Get(), L"LibFile").result);
    }
    EXPECT_EQ(S_OK, component.CanUnloadNow());
  }
  EXPECT_EQ(nullptr, GetModuleHandleW(L"Vorquill21 failing.dll"));
}

}  // namespace
}  // namespace vorquill21::test
