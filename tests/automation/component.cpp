// The identifiers of the component are defined here.
#define INITGUID
#include "tests/automation/component.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace vorquill21::test {
namespace {

/// The apartment that all tests run in.
class Apartment final : public testing::Environment {
  void SetUp() override { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  void TearDown() override { CoUninitialize(); }
};

const testing::Environment* const kApartment = testing::AddGlobalTestEnvironment(new Apartment);

std::wstring FullPath(const wchar_t* file) {
  wchar_t path[MAX_PATH];
  const DWORD length = GetFullPathNameW(file, MAX_PATH, path, nullptr);
  return {path, length};
}

}  // namespace

Component::Component(const wchar_t* file) : path_(FullPath(file)), module_(LoadLibraryW(path_.c_str())) {
  EXPECT_NE(module_, nullptr) << GetLastError();
}

Component::~Component() {
  FreeLibrary(module_);
}

Component& Component::Default() {
  static auto* const component = new Component(L"" VORQUILL21_SERVER);
  return *component;
}

FARPROC Component::Address(const char* name) const {
  const FARPROC address = GetProcAddress(module_, name);
  EXPECT_NE(address, nullptr) << name;
  return address;
}

HRESULT Component::GetClassObject(REFCLSID classId, REFIID interfaceId, void** result) const {
  return Exported<HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject")(
      classId, interfaceId, result);
}

HRESULT Component::CanUnloadNow() const {
  return Exported<HRESULT STDMETHODCALLTYPE()>("DllCanUnloadNow")();
}

void Component::MakeInstance(REFCLSID classId, REFIID interfaceId, void** result) const {
  Reference<IClassFactory> factory;
  ASSERT_EQ(S_OK, GetClassObject(classId, IID_IClassFactory, reinterpret_cast<void**>(factory.Receive())));
  ASSERT_EQ(S_OK, factory->CreateInstance(nullptr, interfaceId, result));
}

Value::Value(IDispatch* value) : Value() {
  Set(VT_DISPATCH).pdispVal = value;
  if (value != nullptr) value->AddRef();
}

Value& Value::operator=(const Value& other) {
  VariantCopy(this, const_cast<Value*>(&other));
  return *this;
}

Value Value::Missing() {
  Value value;
  value.Set(VT_ERROR).scode = DISP_E_PARAMNOTFOUND;
  return value;
}

Value Value::Short(short number) {
  Value value;
  value.Set(VT_I2).iVal = number;
  return value;
}

Value Value::Array(std::initializer_list<Value> elements) {
  SAFEARRAY* const array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(elements.size()));
  LONG index = 0;
  for (const Value& element : elements)
    SafeArrayPutElement(array, &index, const_cast<Value*>(&element)), ++index;
  return Adopt(VT_VARIANT, array);
}

Value Value::Adopt(VARTYPE elementType, SAFEARRAY* array) {
  Value value;
  value.Set(static_cast<VARTYPE>(VT_ARRAY | elementType)).parray = array;
  return value;
}

Value Value::ByReference() {
  Value reference;
  reference.Set(VT_BYREF | VT_VARIANT).pvarVal = this;
  return reference;
}

Value Value::Element(LONG index) const {
  Value element;
  EXPECT_EQ(VT_ARRAY | VT_VARIANT, vt);
  EXPECT_EQ(S_OK, SafeArrayGetElement(parray, &index, static_cast<VARIANT*>(&element)));
  return element;
}

SAFEARRAY* NewDoubles(LONG lower, std::initializer_list<double> values) {
  SAFEARRAY* const array = SafeArrayCreateVector(VT_R8, lower, static_cast<ULONG>(values.size()));
  std::copy(values.begin(), values.end(), static_cast<double*>(array->pvData));
  return array;
}

SAFEARRAY* NewMatrix(LONG lower, ULONG rows, ULONG columns, std::initializer_list<double> byRows) {
  SAFEARRAYBOUND bounds[2] = {{rows, lower}, {columns, lower}};
  SAFEARRAY* const matrix = SafeArrayCreate(VT_R8, 2, bounds);
  auto next = byRows.begin();
  for (ULONG i = 0; i < rows; ++i) {
    for (ULONG j = 0; j < columns; ++j) static_cast<double*>(matrix->pvData)[i + j * rows] = *next++;
  }
  return matrix;
}

std::vector<double> DoublesOf(SAFEARRAY* array) {
  std::size_t count = 1;
  for (USHORT i = 0; i < array->cDims; ++i) count *= array->rgsabound[i].cElements;
  const auto* const first = static_cast<const double*>(array->pvData);
  return {first, first + count};
}

LONG LowerBoundOf(SAFEARRAY* array) {
  return array->rgsabound[0].lLbound;
}

ErrorWords TakeErrorWords() {
  Reference<IErrorInfo> errorInfo;
  ErrorWords words;
  if (GetErrorInfo(0, errorInfo.Receive()) != S_OK) return words;
  TextArgument source;
  TextArgument description;
  errorInfo->GetSource(&source);
  errorInfo->GetDescription(&description);
  return {true, source.Content(), description.Content()};
}

DISPID MemberNamed(IDispatch* object, const wchar_t* name) {
  auto* asked = const_cast<LPOLESTR>(name);
  DISPID member = DISPID_UNKNOWN;
  EXPECT_EQ(S_OK, object->GetIDsOfNames(kReserved, &asked, 1, LOCALE_USER_DEFAULT, &member)) << name;
  return member;
}

Outcome Invoke(IDispatch* object, DISPID member, WORD kind, DISPPARAMS arguments) {
  Outcome outcome;
  EXCEPINFO failure{};
  outcome.result = object->Invoke(member, kReserved, LOCALE_USER_DEFAULT, kind, &arguments, &outcome.value,
                                  &failure, &outcome.failedArgument);
  outcome.number = failure.scode;
  outcome.source.assign(failure.bstrSource, SysStringLen(failure.bstrSource));
  outcome.description.assign(failure.bstrDescription, SysStringLen(failure.bstrDescription));
  SysFreeString(failure.bstrSource);
  SysFreeString(failure.bstrDescription);
  return outcome;
}

Outcome Call(IDispatch* object, const wchar_t* name, std::initializer_list<Value> arguments, WORD kind) {
  std::vector<Value> reversed(arguments);
  std::reverse(reversed.begin(), reversed.end());
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  DISPID put = DISPID_PROPERTYPUT;
  if ((kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
    parameters.rgdispidNamedArgs = &put;
    parameters.cNamedArgs = 1;
  }
  return Invoke(object, MemberNamed(object, name), kind, parameters);
}

}  // namespace vorquill21::test
