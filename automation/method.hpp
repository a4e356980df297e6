#pragma once

#include <functional>
#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>

#include "automation/arguments.hpp"
#include "automation/classes.hpp"
#include "automation/object.hpp"

namespace vorquill21::automation {

/// The result and the parameters of a member of the library, or of a function that takes the core first.
template <typename Member>
struct Signature;
template <typename R, typename C, typename... P>
struct Signature<R (*)(C&, P...)> {
  using Result = R;
  using Parameters = std::tuple<P...>*;
};
template <typename R, typename C, typename... P>
struct Signature<R (C::*)(P...)> : Signature<R (*)(C&, P...)> {};
template <typename R, typename C, typename... P>
struct Signature<R (C::*)(P...) const> : Signature<R (*)(C&, P...)> {};
template <typename R, typename C, typename... P>
struct Signature<R (C::*)(P...) noexcept> : Signature<R (*)(C&, P...)> {};
template <typename R, typename C, typename... P>
struct Signature<R (C::*)(P...) const noexcept> : Signature<R (*)(C&, P...)> {};

/// Calls kMember of `core` with what the host gave: its arguments and, unless there is none, the place for
/// the result.
template <auto kMember, typename Core, typename... Parameters, typename... Given, std::size_t... I>
void CallMember(Core& core, std::tuple<Parameters...>*, const std::tuple<Given...>& given,
                std::index_sequence<I...>) {
  using Result = typename Signature<decltype(kMember)>::Result;
  constexpr bool kHasResult = !std::is_void_v<Result>;
  static_assert(sizeof...(Given) == sizeof...(Parameters) + (kHasResult ? 1 : 0));
  if constexpr (kHasResult) Checked(std::get<sizeof...(Parameters)>(given));

  std::tuple<Argument<Parameters, std::tuple_element_t<I, std::tuple<Given...>>>...> arguments{
      std::get<I>(given)...};
  const auto giveBack = [&arguments] {
    (std::get<I>(arguments).Release(), ...);
    (std::get<I>(arguments).Store(), ...);
  };
  std::optional<std::conditional_t<kHasResult, Result, bool>> result;
  try {
    const auto call = [&]() -> Result {
      return std::invoke(kMember, core, std::get<I>(arguments).Value()...);
    };
    if constexpr (kHasResult) {
      result.emplace(call());
    } else {
      call();
    }
  } catch (...) {
    giveBack();
    throw;
  }
  giveBack();
  if constexpr (kHasResult) Deliver(std::get<sizeof...(Parameters)>(given), *std::move(result));
}

/// Becomes, in the table of an interface, a function with the signature of its place there, which calls
/// kMember of the object's core. How each argument travels follows from its type on both sides.
template <auto kMember>
struct MethodEntry {
  template <typename Interface, typename... Given>
  using Function = HRESULT(STDMETHODCALLTYPE*)(Interface*, Given...);

  template <typename Interface, typename... Given>
  constexpr operator Function<Interface, Given...>() const {
    return &Run<Interface, Given...>;
  }

 private:
  template <typename Interface, typename... Given>
  static HRESULT STDMETHODCALLTYPE Run(Interface* self, Given... given) noexcept {
    using Parameters = typename Signature<decltype(kMember)>::Parameters;
    auto& object = ServedObject<Interface>::Of(self);
    const Reference<Object> kept(&object);  // handlers of events may release the last reference of the host
    return Guarded(Served<Interface>::kEntry.interfaceId, [&] {
      constexpr std::size_t kCount = std::tuple_size_v<std::remove_pointer_t<Parameters>>;
      CallMember<kMember>(*object.SharedCore(), Parameters{}, std::tuple<Given...>(given...),
                          std::make_index_sequence<kCount>{});
    });
  }
};

template <auto kMember>
inline constexpr MethodEntry<kMember> Method{};

/// Becomes a function that calls kMember of the object itself.
template <auto kMember>
struct ObjectEntry {
  template <typename Result, typename Interface, typename... Given>
  using Function = Result(STDMETHODCALLTYPE*)(Interface*, Given...);

  template <typename Result, typename Interface, typename... Given>
  constexpr operator Function<Result, Interface, Given...>() const {
    return &Run<Result, Interface, Given...>;
  }

 private:
  template <typename Result, typename Interface, typename... Given>
  static Result STDMETHODCALLTYPE Run(Interface* self, Given... given) noexcept {
    return (static_cast<Object&>(ServedObject<Interface>::Of(self)).*kMember)(given...);
  }
};

template <auto kMember>
inline constexpr ObjectEntry<kMember> OfObject{};

/// Among the overloads of a property, the one that reads it and the one that writes it.
template <typename R, typename C>
constexpr auto Reading(R (C::*member)() const) {
  return member;
}
template <typename C, typename P>
constexpr auto Writing(void (C::*member)(P)) {
  return member;
}

}  // namespace vorquill21::automation
