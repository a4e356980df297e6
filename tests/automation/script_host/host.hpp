#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/automation/script_host/com.hpp"
#include "tests/automation/script_host/dialogs.hpp"
#include "tests/automation/script_host/events.hpp"

namespace script_host {

class Script;

/// What scripts know as WScript, and whose members they may call without a name in front. Counts their
/// checks.
///
/// As other script hosts have them:
///
///     Echo value, ...                      prints the texts with blanks between them
///     CreateObject(progId [, prefix])      makes an object and connects its events
///     ConnectObject object, prefix         calls the procedure PREFIX + EVENT for each event
///     DisconnectObject object
///     Arguments(index)                     an argument of the command line behind the script's name
///     ScriptFullName
///     Quit [code]                          ends at once, with the closing line; never well after a failed
///     check
///
/// For tests:
///
///     Expect what, value, shown            the value is shown so, see value_text.hpp
///     ExpectError what, Err, number, source, description
///                                          the error object holds this error, and is cleared
///     ExpectHandlerError what, number, source, description
///                                          the oldest error of an event's procedure that was not yet asked
///                                          for was this one
///     ExpectBox what, style, title, text   the oldest message box that was not yet asked for was this one
///     CancelNextDialog                     the next dialog is answered with Cancel instead of OK
///     Shown(value)
///     ArrayOf(shape, values)               see arrays.hpp
///     ScratchFolder                        a folder that is removed in the end
///     SetVariable name, value              sets a variable of the process's environment
///     WriteFile path, text                 makes the text, in UTF-8, the content of a file
class Host final : public IDispatch {
 public:
  Host(Script& script, std::filesystem::path scriptFile, std::vector<std::wstring> arguments);

  /// Ends the run: boxes that no check asked for count as failed checks; errors that no check asked for are
  /// printed with file, line, column, number, source and description; the closing line "N checks, M failed"
  /// is printed. False when a check failed or such an error was left.
  bool Finish();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives as long as the run
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* call, VARIANT* result,
                                   EXCEPINFO* error, UINT*) override;

 private:
  using Arguments = std::vector<const VARIANT*>;
  struct Member {
    const wchar_t* name;
    std::size_t required;
    void (Host::*call)(const Arguments&, VARIANT&);
  };
  static const Member kMembers[];

  void Check(const std::wstring& what, const std::wstring& found, const std::wstring& expected);

  void ArgumentOfRun(const Arguments&, VARIANT& result);
  void ArrayOf(const Arguments&, VARIANT& result);
  void CancelNextDialog(const Arguments&, VARIANT&);
  void ConnectObject(const Arguments&, VARIANT&);
  void CreateObject(const Arguments&, VARIANT& result);
  void DisconnectObject(const Arguments&, VARIANT&);
  void Echo(const Arguments&, VARIANT&);
  void Expect(const Arguments&, VARIANT&);
  void ExpectBox(const Arguments&, VARIANT&);
  void ExpectError(const Arguments&, VARIANT&);
  void ExpectHandlerError(const Arguments&, VARIANT&);
  void Quit(const Arguments&, VARIANT&);
  void ScratchFolder(const Arguments&, VARIANT& result);
  void ScriptFullName(const Arguments&, VARIANT& result);
  void SetVariable(const Arguments&, VARIANT&);
  void ShownValue(const Arguments&, VARIANT& result);
  void WriteFile(const Arguments&, VARIANT&);

  Script& script_;
  std::filesystem::path scriptFile_;
  std::vector<std::wstring> arguments_;
  std::filesystem::path scratchFolder_;
  Dialogs dialogs_;
  Events events_;
  int checks_ = 0;
  int failed_ = 0;
};

}  // namespace script_host
