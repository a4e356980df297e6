#pragma once

#include <map>
#include <memory>

#include "automation/interface.hpp"
#include "automation/reference.hpp"
#include "vorquill21/log/log.hpp"

namespace vorquill21::automation {

/// Connects the sinks of hosts to the event of a log. It is part of the object that serves the log, whose
/// references it shares; the sinks are disconnected when that object ends.
class LogEvents final : public IConnectionPointContainer, public IConnectionPoint {
 public:
  LogEvents(IUnknown& owner, std::shared_ptr<CLog> log) : owner_(owner), log_(std::move(log)) {}
  LogEvents(const LogEvents&) = delete;
  LogEvents& operator=(const LogEvents&) = delete;
  virtual ~LogEvents();

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** result) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return owner_.AddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return owner_.Release(); }

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** result) noexcept override;
  STDMETHODIMP FindConnectionPoint(REFIID eventsId, IConnectionPoint** result) noexcept override;

  STDMETHODIMP GetConnectionInterface(IID* result) noexcept override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** result) noexcept override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override;
  STDMETHODIMP Unadvise(DWORD cookie) noexcept override;
  STDMETHODIMP EnumConnections(IEnumConnections** result) noexcept override;

 private:
  struct Connected {
    LogEvent::Connection connection;
    Reference<IDispatch> sink;
  };

  IUnknown& owner_;
  std::shared_ptr<CLog> log_;
  std::map<DWORD, Connected> sinks_;
};

}  // namespace vorquill21::automation
