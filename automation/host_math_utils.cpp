#include "automation/host_math_utils.hpp"

#include "automation/arrays.hpp"
#include "automation/failure.hpp"
#include "automation/values.hpp"

namespace vorquill21::automation {
namespace {

struct KeepHostObject {
  HostObject host;
  void operator()(CMathUtils*) noexcept { host = {}; }
};

DISPID MemberNamed(IDispatch& host, const wchar_t* name) {
  auto* asked = const_cast<LPOLESTR>(name);
  DISPID member = 0;
  const HRESULT result = host.GetIDsOfNames(IID_NULL, &asked, 1, LOCALE_USER_DEFAULT, &member);
  if (FAILED(result)) throw SystemFailure(result);
  return member;
}

/// The host's own error, with its number and words.
LibraryError FailureOf(HRESULT result, EXCEPINFO& failure) {
  OwnedVariant source;
  OwnedVariant description;
  OwnedVariant help;
  source.vt = description.vt = help.vt = VT_BSTR;
  source.bstrVal = failure.bstrSource;
  description.bstrVal = failure.bstrDescription;
  help.bstrVal = failure.bstrHelpFile;
  if (result != DISP_E_EXCEPTION) return SystemFailure(result);
  const std::int32_t number = failure.wCode != 0 ? failure.wCode : NumberOf(failure.scode);
  return LibraryError(number, Text(ViewOf(source.bstrVal)), Text(ViewOf(description.bstrVal)));
}

}  // namespace

bool HostMathUtils::ArrayLocate(ArrayView<const double> arXVals, double arX, std::int32_t& anIndex) const {
  OwnedVariant values;
  values.parray = NewArray(VT_R8, BoundedArray<double>({arXVals.Elements().begin(), arXVals.Elements().end()},
                                                       arXVals.LowerBound()));
  values.vt = VT_ARRAY | VT_R8;
  OwnedVariant index;
  StoreAs(VT_VARIANT, static_cast<VARIANT*>(&index), Variant(anIndex));

  VARIANT arguments[3]{};  // the last one stands first
  arguments[0].vt = VT_BYREF | VT_VARIANT;
  arguments[0].pvarVal = &index;
  arguments[1].vt = VT_R8;
  arguments[1].dblVal = arX;
  arguments[2].vt = VT_BYREF | VT_VARIANT;
  arguments[2].pvarVal = &values;
  DISPPARAMS parameters{arguments, nullptr, 3, 0};

  OwnedVariant isInside;
  EXCEPINFO failure{};
  const HRESULT result = host_->Invoke(MemberNamed(*host_, L"ArrayLocate"), IID_NULL, LOCALE_USER_DEFAULT,
                                       DISPATCH_METHOD, &parameters, &isInside, &failure, nullptr);
  if (FAILED(result)) throw FailureOf(result, failure);
  anIndex = ConvertedTo<std::int32_t>(FromHost(index));
  return ConvertedTo<bool>(FromHost(isInside));
}

std::shared_ptr<CMathUtils> WithHostObject(HostObject host) {
  CMathUtils* const core = host.core.get();
  return {core, KeepHostObject{std::move(host)}};
}

const HostObject* HostObjectOf(const std::shared_ptr<CMathUtils>& utils) noexcept {
  const auto* const kept = std::get_deleter<KeepHostObject>(utils);
  return kept == nullptr ? nullptr : &kept->host;
}

}  // namespace vorquill21::automation
