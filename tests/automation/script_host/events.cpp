#include "tests/automation/script_host/events.hpp"

#include <algorithm>
#include <atomic>

namespace script_host {
namespace {

/// What an object connects to: turns its events into calls of procedures by name.
class Sink final : public IDispatch {
 public:
  Sink(IDispatch& script, ITypeInfo& source, const IID& sourceId, std::wstring prefix)
      : script_(Ask<IDispatch>(&script)),
        source_(Ask<ITypeInfo>(&source)),
        sourceId_(sourceId),
        prefix_(std::move(prefix)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    const bool isKnown = id == IID_IUnknown || id == IID_IDispatch || id == sourceId_;
    *result = isKnown ? this : nullptr;
    if (isKnown) AddRef();
    return isKnown ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID locale, WORD, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* error, UINT* wrongArgument) override {
    BSTR name = nullptr;
    UINT names = 0;
    if (FAILED(source_->GetNames(event, &name, 1, &names)) || names == 0) return DISP_E_MEMBERNOTFOUND;
    std::wstring procedure = prefix_ + TextOf(name);
    SysFreeString(name);
    wchar_t* procedureName = procedure.data();
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(script_->GetIDsOfNames(IID_NULL, &procedureName, 1, locale, &id))) return S_OK;
    return script_->Invoke(id, IID_NULL, locale, DISPATCH_METHOD, arguments, result, error, wrongArgument);
  }

 private:
  std::atomic<ULONG> references_ = 1;
  Owned<IDispatch> script_;
  Owned<ITypeInfo> source_;
  IID sourceId_;
  std::wstring prefix_;
};

/// The default source of events in the description of a class.
Owned<ITypeInfo> DefaultSource(IDispatch& object) {
  const auto described = Ask<IProvideClassInfo>(&object);
  ITypeInfo* classInfo = nullptr;
  if (!described || FAILED(described->GetClassInfo(&classInfo)))
    throw HostError{E_NOINTERFACE, L"the class is not described"};
  const Owned<ITypeInfo> owned(classInfo);
  constexpr int kWanted = IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE;
  int flags = 0;
  for (UINT index = 0; SUCCEEDED(classInfo->GetImplTypeFlags(index, &flags)); ++index) {
    HREFTYPE reference = 0;
    ITypeInfo* source = nullptr;
    if ((flags & kWanted) == kWanted && SUCCEEDED(classInfo->GetRefTypeOfImplType(index, &reference)) &&
        SUCCEEDED(classInfo->GetRefTypeInfo(reference, &source)))
      return Owned<ITypeInfo>(source);
  }
  throw HostError{E_NOINTERFACE, L"the class has no events"};
}

IID IdOf(ITypeInfo& info) {
  TYPEATTR* attributes = nullptr;
  if (FAILED(info.GetTypeAttr(&attributes))) return IID_NULL;
  const IID id = attributes->guid;
  info.ReleaseTypeAttr(attributes);
  return id;
}

}  // namespace

Events::~Events() {
  for (Connection& each : connections_) each.point->Unadvise(each.cookie);
}

void Events::Connect(IDispatch& script, IDispatch& object, const std::wstring& prefix) {
  const Owned<ITypeInfo> source = DefaultSource(object);
  const IID sourceId = IdOf(*source);
  const auto container = Ask<IConnectionPointContainer>(&object);
  IConnectionPoint* point = nullptr;
  if (!container || FAILED(container->FindConnectionPoint(sourceId, &point)))
    throw HostError{E_NOINTERFACE, L"the object has no connection point for its events"};
  Connection connection{Ask<IUnknown>(&object), Owned<IConnectionPoint>(point), 0};
  const Owned<Sink> sink(new Sink(script, *source, sourceId, prefix));
  if (FAILED(point->Advise(sink.get(), &connection.cookie)))
    throw HostError{E_FAIL, L"the object refused the connection"};
  connections_.push_back(std::move(connection));
}

void Events::Disconnect(IDispatch& object) {
  const auto identity = Ask<IUnknown>(&object);
  const auto removed = std::erase_if(connections_, [&](Connection& each) {
    const bool isOfObject = each.identity.get() == identity.get();
    if (isOfObject) each.point->Unadvise(each.cookie);
    return isOfObject;
  });
  if (removed == 0) throw HostError{E_INVALIDARG, L"the object is not connected"};
}

}  // namespace script_host
