#include "automation/arguments.hpp"

namespace vorquill21::automation {

void AddToCollection(IDispatch* collection, TextView name) {
  if (collection == nullptr) throw ObjectNotSet();
  wchar_t addName[] = L"Add";
  LPOLESTR add = addName;
  DISPID member = 0;
  HRESULT result = collection->GetIDsOfNames(IID_NULL, &add, 1, LOCALE_USER_DEFAULT, &member);
  OwnedVariant argument;
  StoreAs(VT_VARIANT, static_cast<VARIANT*>(&argument), Variant(name));
  DISPPARAMS arguments{&argument, nullptr, 1, 0};
  if (SUCCEEDED(result)) {
    result = collection->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments, nullptr,
                                nullptr, nullptr);
  }
  if (FAILED(result)) throw SystemFailure(result);
}

}  // namespace vorquill21::automation
