#include "automation/failure.hpp"

#include "automation/reference.hpp"

namespace vorquill21::automation {
namespace {

constexpr HRESULT kPositiveNumbers = static_cast<HRESULT>(0x800A0000);
constexpr std::int32_t kGreatestNumber = 0xFFFF;

void SetErrorText(ICreateErrorInfo& errorInfo, const LibraryError& error, REFIID interfaceId) {
  errorInfo.SetGUID(interfaceId);
  errorInfo.SetSource(reinterpret_cast<LPOLESTR>(const_cast<char16_t*>(error.Source().c_str())));
  errorInfo.SetDescription(reinterpret_cast<LPOLESTR>(const_cast<char16_t*>(error.Description().c_str())));
}

}  // namespace

LibraryError NullPointer() {
  return LibraryError(E_POINTER, u"", u"Invalid pointer");
}

LibraryError ArrayLocked() {
  return LibraryError(kArrayLocked, u"", u"This array is fixed or temporarily locked");
}

LibraryError ObjectNotSet() {
  return LibraryError(kObjectNotSet, u"", u"Object variable or With block variable not set");
}

LibraryError SystemFailure(HRESULT result) {
  switch (result) {
    case E_OUTOFMEMORY:
      return LibraryError(kOutOfMemory);
    case DISP_E_TYPEMISMATCH:
      return LibraryError(kTypeMismatch);
    case DISP_E_OVERFLOW:
      return LibraryError(kOverflow);
    case DISP_E_BADINDEX:
      return LibraryError(kSubscriptOutOfRange);
    case DISP_E_ARRAYISLOCKED:
      return ArrayLocked();
    default:
      return LibraryError(result, u"", u"Automation error");
  }
}

HRESULT ResultOf(const LibraryError& error) noexcept {
  if (error.Number() < 0) return error.Number();
  if (error.Number() == 0 || error.Number() > kGreatestNumber) return E_FAIL;
  return kPositiveNumbers + error.Number();
}

std::int32_t NumberOf(HRESULT result) noexcept {
  const std::int32_t number = result - kPositiveNumbers;
  return number > 0 && number <= kGreatestNumber ? number : result;
}

HRESULT Report(const LibraryError& error, REFIID interfaceId) noexcept {
  Reference<ICreateErrorInfo> created;
  Reference<IErrorInfo> errorInfo;
  if (SUCCEEDED(CreateErrorInfo(created.Receive()))) {
    SetErrorText(*created, error, interfaceId);
    created->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(errorInfo.Receive()));
  }
  SetErrorInfo(0, errorInfo.Get());
  return ResultOf(error);
}

HRESULT ReportCurrentException(REFIID interfaceId) noexcept {
  try {
    try {
      return TranslatingMemoryErrors([]() -> HRESULT { throw; });
    } catch (const LibraryError& error) {
      return Report(error, interfaceId);
    } catch (const std::exception& error) {
      return Report(LibraryError(E_UNEXPECTED, u"", FromUtf8(error.what())), interfaceId);
    } catch (...) {
      return Report(LibraryError(E_UNEXPECTED, u"", u"Unexpected failure"), interfaceId);
    }
  } catch (...) {  // no memory for the words
    SetErrorInfo(0, nullptr);
    return kPositiveNumbers + kOutOfMemory;
  }
}

}  // namespace vorquill21::automation
