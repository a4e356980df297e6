#pragma once

#include "tests/automation/component.hpp"

namespace vorquill21::test {

/// An object of the host that lives as long as its test, which counts what refers to it. It has one interface
/// beside the general ones, and knows no members unless a test gives it some.
template <typename Interface = IDispatch>
class HostObject : public Interface {
 public:
  explicit HostObject(REFIID ownId = IID_IDispatch) : ownId_(ownId) {}
  HostObject(const HostObject&) = delete;
  HostObject& operator=(const HostObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID id, void** result) override {
    *result = id == IID_IUnknown || id == IID_IDispatch || id == ownId_ ? this : nullptr;
    return *result == nullptr ? E_NOINTERFACE : (AddRef(), S_OK);
  }
  STDMETHODIMP_(ULONG) AddRef() override {
    wasReferredTo_ = true;
    return ++references_;
  }
  STDMETHODIMP_(ULONG) Release() override { return --references_; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return DISP_E_MEMBERNOTFOUND;
  }

  /// How many references there are beside the test's own.
  ULONG References() const { return references_ - 1; }

  /// Whether there ever were any.
  bool WasReferredTo() const { return wasReferredTo_; }

 private:
  IID ownId_;
  ULONG references_ = 1;
  bool wasReferredTo_ = false;
};

}  // namespace vorquill21::test
