#include "tests/automation/script_host/host.hpp"

#include <cstdio>
#include <fstream>
#include <iterator>

#include "tests/automation/script_host/arrays.hpp"
#include "tests/automation/script_host/script.hpp"
#include "tests/automation/script_host/value_text.hpp"

namespace script_host {
namespace {

std::wstring BoxText(const std::wstring& style, const std::wstring& title, const std::wstring& text) {
  return L"box " + style + L" \"" + title + L"\": " + text;
}

std::wstring ErrorText(const std::wstring& number, const std::wstring& source,
                       const std::wstring& description) {
  return L"error " + number + L" from \"" + source + L"\": " + description;
}

std::wstring PropertyText(IDispatch& object, const wchar_t* name) {
  DISPPARAMS none{};
  Value value;
  Call(object, name, DISPATCH_PROPERTYGET, none, &value);
  return AsText(value);
}

BSTR NewText(const std::wstring& text) {
  return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

}  // namespace

const Host::Member Host::kMembers[] = {
    {L"Arguments", 1, &Host::ArgumentOfRun},
    {L"ArrayOf", 2, &Host::ArrayOf},
    {L"CancelNextDialog", 0, &Host::CancelNextDialog},
    {L"ConnectObject", 2, &Host::ConnectObject},
    {L"CreateObject", 1, &Host::CreateObject},
    {L"DisconnectObject", 1, &Host::DisconnectObject},
    {L"Echo", 0, &Host::Echo},
    {L"Expect", 3, &Host::Expect},
    {L"ExpectBox", 4, &Host::ExpectBox},
    {L"ExpectError", 5, &Host::ExpectError},
    {L"ExpectHandlerError", 4, &Host::ExpectHandlerError},
    {L"Quit", 0, &Host::Quit},
    {L"ScratchFolder", 0, &Host::ScratchFolder},
    {L"ScriptFullName", 0, &Host::ScriptFullName},
    {L"SetVariable", 2, &Host::SetVariable},
    {L"Shown", 1, &Host::ShownValue},
    {L"WriteFile", 2, &Host::WriteFile},
};

Host::Host(Script& script, std::filesystem::path scriptFile, std::vector<std::wstring> arguments)
    : script_(script), scriptFile_(std::move(scriptFile)), arguments_(std::move(arguments)) {}

bool Host::Finish() {
  Box box;
  while (dialogs_.Take(box))
    Check(L"at the end", BoxText(std::to_wstring(box.style), box.title, box.text), L"no box");
  bool hasErrors = false;
  for (UnhandledError error; script_.TakeError(error); hasErrors = true) {
    std::printf("%s: error %ld from %s: %s\n", error.place.c_str(), error.number,
                ToUtf8(error.source).c_str(), ToUtf8(error.description).c_str());
  }
  std::error_code ignored;
  if (!scratchFolder_.empty()) std::filesystem::remove_all(scratchFolder_, ignored);
  std::printf("%d checks, %d failed\n", checks_, failed_);
  std::fflush(stdout);
  return failed_ == 0 && !hasErrors;
}

HRESULT Host::QueryInterface(REFIID id, void** result) {
  const bool isKnown = id == IID_IUnknown || id == IID_IDispatch;
  *result = isKnown ? this : nullptr;
  return isKnown ? S_OK : E_NOINTERFACE;
}

HRESULT Host::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT Host::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  std::fill_n(ids, count, DISPID_UNKNOWN);
  for (std::size_t index = 0; index < std::size(kMembers); ++index)
    if (lstrcmpiW(names[0], kMembers[index].name) == 0) ids[0] = static_cast<DISPID>(index + 1);
  return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT Host::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* call, VARIANT* result, EXCEPINFO* error,
                     UINT*) try {
  if (id < 1 || id > static_cast<DISPID>(std::size(kMembers))) return DISP_E_MEMBERNOTFOUND;
  const Member& member = kMembers[id - 1];
  const Arguments arguments = ArgumentsOf(*call);
  if (arguments.size() < member.required) return DISP_E_BADPARAMCOUNT;
  Value unwanted;
  (this->*member.call)(arguments, result != nullptr ? *result : unwanted);
  return S_OK;
} catch (const HostError& failure) {
  if (error == nullptr) return failure.code;
  *error = {};
  error->scode = failure.code;
  error->bstrSource = NewText(L"script host");
  error->bstrDescription = NewText(failure.description);
  return DISP_E_EXCEPTION;
}

void Host::Check(const std::wstring& what, const std::wstring& found, const std::wstring& expected) {
  ++checks_;
  if (found == expected) return;
  ++failed_;
  std::printf("%s: %s\n  found    %s\n  expected %s\n", scriptFile_.filename().string().c_str(),
              ToUtf8(what).c_str(), ToUtf8(found).c_str(), ToUtf8(expected).c_str());
}

void Host::ArgumentOfRun(const Arguments& arguments, VARIANT& result) {
  const auto index = static_cast<std::size_t>(AsLong(*arguments[0]));
  if (index >= arguments_.size()) throw HostError{DISP_E_BADINDEX, L"the run has no such argument"};
  Put(result, arguments_[index]);
}

void Host::ArrayOf(const Arguments& arguments, VARIANT& result) {
  MakeArray(AsText(*arguments[0]), *arguments[1], result);
}

void Host::CancelNextDialog(const Arguments&, VARIANT&) {
  dialogs_.AnswerNext(IDCANCEL);
}

void Host::ConnectObject(const Arguments& arguments, VARIANT&) {
  IDispatch* object = ObjectIn(*arguments[0]);
  if (object == nullptr) throw HostError{DISP_E_TYPEMISMATCH, L"is no object"};
  events_.Connect(*script_.Procedures(), *object, AsText(*arguments[1]));
}

void Host::CreateObject(const Arguments& arguments, VARIANT& result) {
  const std::wstring name = AsText(*arguments[0]);
  CLSID id{};
  void* object = nullptr;
  HRESULT code = CLSIDFromProgID(name.c_str(), &id);
  if (SUCCEEDED(code)) code = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &object);
  if (FAILED(code)) throw HostError{code, L"cannot make an object of the class " + name};
  Owned<IDispatch> owned(static_cast<IDispatch*>(object));
  if (arguments.size() > 1) events_.Connect(*script_.Procedures(), *owned, AsText(*arguments[1]));
  V_VT(&result) = VT_DISPATCH;
  V_DISPATCH(&result) = owned.release();
}

void Host::DisconnectObject(const Arguments& arguments, VARIANT&) {
  IDispatch* object = ObjectIn(*arguments[0]);
  if (object == nullptr) throw HostError{DISP_E_TYPEMISMATCH, L"is no object"};
  events_.Disconnect(*object);
}

void Host::Echo(const Arguments& arguments, VARIANT&) {
  const char* separator = "";
  for (const VARIANT* each : arguments) {
    std::printf("%s%s", separator, ToUtf8(AsText(*each)).c_str());
    separator = " ";
  }
  std::printf("\n");
}

void Host::Expect(const Arguments& arguments, VARIANT&) {
  Check(AsText(*arguments[0]), Shown(*arguments[1]), AsText(*arguments[2]));
}

void Host::ExpectBox(const Arguments& arguments, VARIANT&) {
  Box box;
  const std::wstring found =
      dialogs_.Take(box) ? BoxText(std::to_wstring(box.style), box.title, box.text) : L"no box";
  Check(AsText(*arguments[0]), found,
        BoxText(AsText(*arguments[1]), AsText(*arguments[2]), AsText(*arguments[3])));
}

void Host::ExpectError(const Arguments& arguments, VARIANT&) {
  IDispatch* error = ObjectIn(*arguments[1]);
  if (error == nullptr) throw HostError{DISP_E_TYPEMISMATCH, L"is no error object"};
  Check(AsText(*arguments[0]),
        ErrorText(PropertyText(*error, L"Number"), PropertyText(*error, L"Source"),
                  PropertyText(*error, L"Description")),
        ErrorText(AsText(*arguments[2]), AsText(*arguments[3]), AsText(*arguments[4])));
  DISPPARAMS none{};
  Call(*error, L"Clear", DISPATCH_METHOD, none, nullptr);
}

void Host::ExpectHandlerError(const Arguments& arguments, VARIANT&) {
  UnhandledError error;
  const std::wstring found = script_.TakeError(error)
                                 ? ErrorText(std::to_wstring(error.number), error.source, error.description)
                                 : L"no error";
  Check(AsText(*arguments[0]), found,
        ErrorText(AsText(*arguments[1]), AsText(*arguments[2]), AsText(*arguments[3])));
}

void Host::Quit(const Arguments& arguments, VARIANT&) {
  const LONG code = arguments.empty() ? 0 : AsLong(*arguments[0]);
  const bool isWell = Finish();
  ExitProcess(isWell || code != 0 ? static_cast<UINT>(code) : 1);
}

void Host::ScratchFolder(const Arguments&, VARIANT& result) {
  if (scratchFolder_.empty()) {
    const auto name = L"vorquill21-script-" + std::to_wstring(GetCurrentProcessId());
    scratchFolder_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::remove_all(scratchFolder_);
    std::filesystem::create_directory(scratchFolder_);
  }
  Put(result, scratchFolder_.wstring());
}

void Host::ScriptFullName(const Arguments&, VARIANT& result) {
  Put(result, std::filesystem::absolute(scriptFile_).make_preferred().wstring());
}

void Host::SetVariable(const Arguments& arguments, VARIANT&) {
  SetEnvironmentVariableW(AsText(*arguments[0]).c_str(), AsText(*arguments[1]).c_str());
}

void Host::ShownValue(const Arguments& arguments, VARIANT& result) {
  Put(result, Shown(*arguments[0]));
}

void Host::WriteFile(const Arguments& arguments, VARIANT&) {
  std::ofstream file(std::filesystem::path(AsText(*arguments[0])), std::ios::binary);
  file << ToUtf8(AsText(*arguments[1]));
  if (!file.flush()) throw HostError{E_FAIL, L"cannot write " + AsText(*arguments[0])};
}

}  // namespace script_host
