#include "automation/invocation.hpp"

#include <array>
#include <utility>

#include "automation/arrays.hpp"
#include "automation/failure.hpp"
#include "automation/passed_argument.hpp"
#include "automation/type_library.hpp"

namespace vorquill21::automation {
namespace {

constexpr std::size_t kMostParameters = 16;

using GivenArguments = std::array<VARIANT*, kMostParameters>;

/// Finds the parameter of each argument: those without a name stand in reverse order behind those with one.
HRESULT PlaceArguments(const Function& function, const DISPPARAMS& arguments, GivenArguments& given) {
  const std::size_t count = function.parameters.size();
  if (arguments.cNamedArgs > arguments.cArgs) return DISP_E_BADPARAMCOUNT;
  const std::size_t positional = arguments.cArgs - arguments.cNamedArgs;
  if (positional > count || arguments.cArgs > count) return DISP_E_BADPARAMCOUNT;
  for (std::size_t i = 0; i < positional; ++i) given[i] = &arguments.rgvarg[arguments.cArgs - 1 - i];
  for (std::size_t i = 0; i < arguments.cNamedArgs; ++i) {
    const DISPID name = arguments.rgdispidNamedArgs[i];
    const auto index = name == DISPID_PROPERTYPUT ? count - 1 : static_cast<std::size_t>(name);
    if (index >= count || given[index] != nullptr) return DISP_E_PARAMNOTFOUND;
    given[index] = &arguments.rgvarg[i];
  }
  for (std::size_t i = 0; i < count; ++i) {
    const Parameter& parameter = function.parameters[i];
    if (given[i] == nullptr && !parameter.isOptional) return DISP_E_PARAMNOTOPTIONAL;
  }
  return S_OK;
}

/// Replaces an array of doubles or texts by one of variants.
void MakeReadable(VARIANT& result) {
  if ((result.vt & VT_ARRAY) == 0 || result.vt == (VT_ARRAY | VT_VARIANT)) return;
  StoreAs(VT_VARIANT, &result, LoadArray<Variant>(result.parray));
}

/// A call of one member.
class Invocation {
 public:
  explicit Invocation(const Function& function) : function_(function) {}

  /// Error 13 and the like when an argument cannot be brought to its type; `failed` is then its place.
  void Take(const DISPPARAMS& arguments, const GivenArguments& given, UINT& failed) {
    if (function_.isVariadic) return arguments_[count_++].TakeAll({arguments.rgvarg, arguments.cArgs});
    for (const Parameter& parameter : function_.parameters) {
      VARIANT* const argument = given[count_];
      PassedArgument& passed = arguments_[count_++];
      if (argument == nullptr) {
        passed.TakeDefault(parameter);
      } else {
        failed = static_cast<UINT>(argument - arguments.rgvarg);
        passed.Take(parameter, *argument);
      }
    }
  }

  /// What the member returns.
  HRESULT Call(IDispatch& object, VARIANT* result) {
    std::array<VARTYPE, kMostParameters + 1> types{};
    std::array<VARIANT*, kMostParameters + 1> values{};
    for (std::size_t i = 0; i < count_; ++i) {
      types[i] = arguments_[i].PassedType();
      values[i] = arguments_[i].Passed();
    }
    OwnedVariant received;
    VARIANT place{};
    std::size_t passedCount = count_;
    if (function_.result.type != VT_EMPTY) {
      place.vt = types[passedCount] = static_cast<VARTYPE>(VT_BYREF | function_.result.type);
      place.byref = ResultPlace(received);
      values[passedCount++] = &place;
    }
    VARIANT returned{};
    const HRESULT called =
        DispCallFunc(&object, function_.tableOffset, CC_STDCALL, VT_I4, static_cast<UINT>(passedCount),
                     types.data(), values.data(), &returned);
    if (FAILED(called)) return called;
    for (std::size_t i = 0; i < count_; ++i) arguments_[i].GiveBack();
    if (SUCCEEDED(returned.lVal)) DeliverResult(received, result);
    return returned.lVal;
  }

 private:
  void* ResultPlace(VARIANT& received) const {
    if (function_.result.type == VT_VARIANT) return &received;
    received.llVal = 0;
    return &received.byref;
  }

  void DeliverResult(OwnedVariant& received, VARIANT* result) const {
    if (function_.result.type != VT_VARIANT) received.vt = function_.result.type;
    MakeReadable(received);
    if (result != nullptr) *result = received.Detach();
  }

  const Function& function_;
  std::array<PassedArgument, kMostParameters> arguments_;
  std::size_t count_ = 0;
};

/// Moves the thread's error information into `failure`.
HRESULT Describe(HRESULT result, EXCEPINFO* failure) noexcept {
  Reference<IErrorInfo> errorInfo;
  if (failure == nullptr) return result;
  *failure = {};
  failure->scode = result;
  if (GetErrorInfo(0, errorInfo.Receive()) == S_OK) {
    errorInfo->GetSource(&failure->bstrSource);
    errorInfo->GetDescription(&failure->bstrDescription);
  }
  return DISP_E_EXCEPTION;
}

}  // namespace

HRESULT InvokeByName(IDispatch& object, REFIID interfaceId, const Request& request) noexcept {
  HRESULT refused = S_OK;
  HRESULT returned = S_OK;
  const HRESULT guarded = Guarded(interfaceId, [&] {
    const Function* const function = InfoOf(interfaceId).Find(request.member, request.kind);
    GivenArguments given{};
    refused = function == nullptr    ? DISP_E_MEMBERNOTFOUND
              : function->isVariadic ? (request.arguments.cNamedArgs == 0 ? S_OK : DISP_E_NONAMEDARGS)
                                     : PlaceArguments(*function, request.arguments, given);
    if (FAILED(refused)) return;
    UINT unused = 0;
    Invocation invocation(*function);
    invocation.Take(request.arguments, given,
                    request.failedArgument != nullptr ? *request.failedArgument : unused);
    returned = invocation.Call(object, request.result);
  });
  if (FAILED(refused)) return refused;
  if (FAILED(guarded)) return Describe(guarded, request.failure);
  return FAILED(returned) ? Describe(returned, request.failure) : returned;
}

}  // namespace vorquill21::automation
