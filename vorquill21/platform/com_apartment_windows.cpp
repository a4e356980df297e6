#include "vorquill21/platform/com_apartment_windows.hpp"

#include <windows.h>

namespace vorquill21 {

ComApartment::ComApartment() {
  APTTYPE type;
  APTTYPEQUALIFIER qualifier;
  if (SUCCEEDED(CoGetApartmentType(&type, &qualifier))) return;
  entered_ = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE));
}

ComApartment::~ComApartment() {
  if (entered_) CoUninitialize();
}

}  // namespace vorquill21
