#include "automation/log_events.hpp"

#include <olectl.h>

#include <vector>

#include "automation/enumerator.hpp"
#include "automation/failure.hpp"
#include "automation/values.hpp"

namespace vorquill21::automation {
namespace {

constexpr DISPID kEntryLogged = 1;

using ConnectionPoints = Enumerator<IEnumConnectionPoints, IID_IEnumConnectionPoints, IConnectionPoint*>;
using Connections = Enumerator<IEnumConnections, IID_IEnumConnections, CONNECTDATA>;

/// Calls the sink's handler; whatever comes of it is the host's own affair.
void Notify(IDispatch& sink, TextView message, ELogAction action) {
  OwnedVariant arguments[2];  // the last one stands first
  StoreAs(VT_VARIANT, &arguments[0], Variant(static_cast<std::int32_t>(action)));
  StoreAs(VT_VARIANT, &arguments[1], Variant(message));
  DISPPARAMS parameters{arguments, nullptr, 2, 0};
  sink.Invoke(kEntryLogged, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr,
              nullptr);
}

/// The sink as an object whose members are called by number: by the interface of the events or by the general
/// one.
Reference<IDispatch> DispatchOfSink(IUnknown& sink) {
  Reference<IDispatch> dispatch;
  for (const IID* id : {&DIID___CLog, &IID_IDispatch}) {
    if (SUCCEEDED(sink.QueryInterface(*id, reinterpret_cast<void**>(dispatch.Receive())))) break;
  }
  return dispatch;
}

}  // namespace

LogEvents::~LogEvents() {
  for (const auto& [cookie, sink] : sinks_) log_->EntryLogged.Disconnect(sink.connection);
}

HRESULT LogEvents::QueryInterface(REFIID interfaceId, void** result) noexcept {
  if (result == nullptr) return E_POINTER;
  if (interfaceId != IID_IConnectionPoint) return owner_.QueryInterface(interfaceId, result);
  *result = static_cast<IConnectionPoint*>(this);
  AddRef();
  return S_OK;
}

HRESULT LogEvents::EnumConnectionPoints(IEnumConnectionPoints** result) noexcept {
  return Guarded(IID_IConnectionPointContainer, [&] {
    *Checked(result) = nullptr;
    *result = new ConnectionPoints({this});
    AddRef();
  });
}

HRESULT LogEvents::FindConnectionPoint(REFIID eventsId, IConnectionPoint** result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  if (eventsId != DIID___CLog) return CONNECT_E_NOCONNECTION;
  *result = this;
  AddRef();
  return S_OK;
}

HRESULT LogEvents::GetConnectionInterface(IID* result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = DIID___CLog;
  return S_OK;
}

HRESULT LogEvents::GetConnectionPointContainer(IConnectionPointContainer** result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = this;
  AddRef();
  return S_OK;
}

HRESULT LogEvents::Advise(IUnknown* sink, DWORD* cookie) noexcept {
  if (sink == nullptr || cookie == nullptr) return E_POINTER;
  *cookie = 0;
  const Reference<IDispatch> dispatch = DispatchOfSink(*sink);
  if (!dispatch) return CONNECT_E_CANNOTCONNECT;
  return Guarded(IID_IConnectionPoint, [&] {
    const auto connection = log_->EntryLogged.Connect(
        [dispatch](TextView message, ELogAction action) { Notify(*dispatch, message, action); });
    const auto newCookie = static_cast<DWORD>(connection);
    sinks_[newCookie] = {connection, dispatch};
    *cookie = newCookie;
  });
}

HRESULT LogEvents::Unadvise(DWORD cookie) noexcept {
  const auto found = sinks_.find(cookie);
  if (found == sinks_.end()) return CONNECT_E_NOCONNECTION;
  const Connected disconnected = found->second;  // its release may call back
  sinks_.erase(found);
  log_->EntryLogged.Disconnect(disconnected.connection);
  return S_OK;
}

HRESULT LogEvents::EnumConnections(IEnumConnections** result) noexcept {
  return Guarded(IID_IConnectionPoint, [&] {
    *Checked(result) = nullptr;
    std::vector<CONNECTDATA> connections;
    for (const auto& [cookie, sink] : sinks_) connections.push_back({sink.sink.Get(), cookie});
    *result = new Connections(connections);
    for (const CONNECTDATA& connection : connections) WithReference(connection);
  });
}

}  // namespace vorquill21::automation
