#pragma once

#include <memory>
#include <utility>

#include "automation/counted.hpp"
#include "automation/failure.hpp"
#include "automation/interface.hpp"
#include "automation/reference.hpp"

namespace vorquill21::automation {

struct ClassEntry;

/// What all objects that the server hands out have in common: counted references, the interfaces beside their
/// own, and calls by name.
class Object : public Counted<ISupportErrorInfo, IProvideClassInfo2> {
 public:
  /// An object of this class with one reference; `dispatch` is the interface of its own.
  Object(const ClassEntry& entry, void* dispatch) : class_(entry), dispatch_(dispatch) {}

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** result) noexcept override;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID interfaceId) noexcept override;

  STDMETHODIMP GetClassInfo(ITypeInfo** result) noexcept override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* result) noexcept override;

  // The part of its own interface that asks for members by name.
  HRESULT GetTypeInfoCount(UINT* result) noexcept;
  HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** result) noexcept;
  HRESULT GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* result) noexcept;
  HRESULT Invoke(DISPID member, REFIID reserved, LCID locale, WORD kind, DISPPARAMS* arguments,
                 VARIANT* result, EXCEPINFO* failure, UINT* failedArgument) noexcept;

  const ClassEntry& Class() const noexcept { return class_; }
  IDispatch* Dispatch() const noexcept { return static_cast<IDispatch*>(dispatch_); }

 protected:
  /// An interface that only this class has, or null; no reference is added.
  virtual void* OwnInterface(REFIID) noexcept { return nullptr; }

 private:
  const ClassEntry& class_;
  void* dispatch_;
};

/// The object behind `unknown` when it is one of this server's, otherwise null.
Reference<Object> OwnObject(IUnknown* unknown);

/// What the server knows of the class whose default interface is Interface: see classes.hpp.
template <typename Interface>
struct Served;

/// An object that serves an object of the library, its core.
template <typename Interface>
class ServedObject : public Object, public Interface {
 public:
  using Core = typename Served<Interface>::Core;

  explicit ServedObject(std::shared_ptr<Core> core)
      : Object(Served<Interface>::kEntry, static_cast<Interface*>(this)), core_(std::move(core)) {
    this->lpVtbl = &Served<Interface>::kTable;
  }

  static ServedObject& Of(Interface* self) { return *static_cast<ServedObject*>(self); }

  const std::shared_ptr<Core>& SharedCore() const noexcept { return core_; }

 private:
  std::shared_ptr<Core> core_;
};

}  // namespace vorquill21::automation
