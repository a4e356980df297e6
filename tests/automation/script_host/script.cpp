#include "tests/automation/script_host/script.hpp"

#include <fstream>
#include <iterator>
#include <utility>

namespace script_host {
namespace {

constexpr wchar_t kHostName[] = L"WScript";

Owned<IActiveScript> EngineFor(const std::filesystem::path& file) {
  const wchar_t* name = file.extension() == L".js" ? L"JScript" : L"VBScript";
  CLSID id{};
  void* engine = nullptr;
  if (FAILED(CLSIDFromProgID(name, &id)) ||
      FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IActiveScript), &engine)))
    throw HostError{E_FAIL, std::wstring(L"there is no engine ") + name};
  return Owned<IActiveScript>(static_cast<IActiveScript*>(engine));
}

/// The lower half of an error is its number when the upper half says that it came from a script's runtime.
long NumberOf(HRESULT code) {
  const bool isOfRuntime = (static_cast<ULONG>(code) & 0xFFFF0000) == 0x800A0000;
  return isOfRuntime ? code & 0xFFFF : code;
}

/// What the engine asks its host. A site with windows is what the script's own message boxes need.
class Site final : public IActiveScriptSite, public IActiveScriptSiteWindow {
 public:
  Site(std::string file, std::deque<UnhandledError>& errors) : file_(std::move(file)), errors_(errors) {}

  void SetHost(IDispatch& host) { host_ = Ask<IDispatch>(&host); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    *result = nullptr;
    if (id == IID_IUnknown || id == __uuidof(IActiveScriptSite))
      *result = static_cast<IActiveScriptSite*>(this);
    if (id == __uuidof(IActiveScriptSiteWindow)) *result = static_cast<IActiveScriptSiteWindow*>(this);
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetLCID(LCID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD mask, IUnknown** item, ITypeInfo** info) override {
    if ((mask & SCRIPTINFO_ITYPEINFO) != 0) *info = nullptr;
    if ((mask & SCRIPTINFO_IUNKNOWN) == 0) return S_OK;
    host_->AddRef();
    *item = host_.get();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    *window = nullptr;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }

  HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override {
    EXCEPINFO what{};
    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    error->GetExceptionInfo(&what);
    error->GetSourcePosition(&context, &line, &column);
    errors_.push_back({file_ + "(" + std::to_string(line + 1) + ", " + std::to_string(column + 1) + ")",
                       NumberOf(what.scode != 0 ? what.scode : what.wCode), TextOf(what.bstrSource),
                       TextOf(what.bstrDescription)});
    SysFreeString(what.bstrSource);
    SysFreeString(what.bstrDescription);
    SysFreeString(what.bstrHelpFile);
    return S_OK;
  }

 private:
  ULONG references_ = 1;
  std::string file_;
  std::deque<UnhandledError>& errors_;
  Owned<IDispatch> host_;
};

std::wstring ContentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw HostError{E_FAIL, L"cannot read " + file.wstring()};
  return FromUtf8(std::string(std::istreambuf_iterator<char>(stream), {}));
}

void Demand(HRESULT result, const wchar_t* what) {
  if (FAILED(result)) throw HostError{result, std::wstring(L"the engine failed to ") + what};
}

}  // namespace

Script::Script(const std::filesystem::path& file)
    : file_(file), engine_(EngineFor(file)), site_(new Site(file.filename().string(), errors_)) {}

Script::~Script() {
  engine_->Close();
}

void Script::Run(IDispatch& host) {
  const std::wstring content = ContentOf(file_);
  const auto parser = Ask<IActiveScriptParse>(engine_.get());
  static_cast<Site&>(*site_).SetHost(host);
  Demand(parser->InitNew(), L"start");
  Demand(engine_->SetScriptSite(site_.get()), L"accept its site");
  Demand(engine_->AddNamedItem(kHostName, SCRIPTITEM_ISVISIBLE | SCRIPTITEM_GLOBALMEMBERS),
         L"accept the host");
  const HRESULT parsed = parser->ParseScriptText(content.c_str(), nullptr, nullptr, nullptr, 0, 0,
                                                 SCRIPTTEXT_ISVISIBLE, nullptr, nullptr);
  const HRESULT started = SUCCEEDED(parsed) ? engine_->SetScriptState(SCRIPTSTATE_CONNECTED) : parsed;
  if (errors_.empty()) Demand(started, L"run the script");
}

bool Script::TakeError(UnhandledError& error) {
  if (errors_.empty()) return false;
  error = std::move(errors_.front());
  errors_.pop_front();
  return true;
}

Owned<IDispatch> Script::Procedures() const {
  IDispatch* procedures = nullptr;
  Demand(engine_->GetScriptDispatch(nullptr, &procedures), L"show its procedures");
  return Owned<IDispatch>(procedures);
}

}  // namespace script_host
