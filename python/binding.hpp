#pragma once

/// How a class of the library becomes a class of Python: each member under its own name, with the names of
/// its parameters. By-reference results come back behind the function's own result, in their order; what one
/// holds on entry may be given by its name.

#include <pybind11/pybind11.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "python/conversion.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21::python {

using namespace pybind11::literals;

/// What happens to the interpreter's lock while a member runs.
enum class Calls {
  kQuick,      ///< kept: the member takes next to no time
  kLong,       ///< released
  kExclusive,  ///< released; calls of one object wait for each other, as it has a state
};

/// What an object with a state has in Python besides. It travels with the pointer that Python holds.
struct Companion {
  std::recursive_mutex mutex;  ///< handlers of events may call back
  std::map<std::uint64_t, std::weak_ptr<py::object>> handlers;
};

struct WithCompanion {
  std::shared_ptr<void> object;
  std::shared_ptr<Companion> companion = std::make_shared<Companion>();

  void operator()(void*) { object.reset(); }
};

template <typename C>
std::shared_ptr<C> Accompanied(std::shared_ptr<C> object) {
  C* raw = object.get();
  return {raw, WithCompanion{std::move(object)}};
}

template <typename C>
Companion& CompanionOf(const std::shared_ptr<C>& object) {
  return *std::get_deleter<WithCompanion>(object)->companion;
}

/// Whether nobody but one object of Python's holds `object`, which Accompanied made.
template <typename C>
bool IsHeldByPythonAlone(const std::shared_ptr<C>& object) {
  return object.use_count() == 1 && std::get_deleter<WithCompanion>(object)->object.use_count() == 1;
}

/// Runs `call` in the way that is wanted; for kExclusive `object` comes from Accompanied.
template <Calls kCalls, typename C, typename Call>
decltype(auto) Running(const std::shared_ptr<C>& object, Call&& call) {
  if constexpr (kCalls == Calls::kQuick) {
    return call();
  } else {
    const py::gil_scoped_release released;
    if constexpr (kCalls == Calls::kExclusive) {
      const std::lock_guard guard(CompanionOf(object).mutex);
      return call();
    } else {
      return call();
    }
  }
}

/// An error of the library, and what the by-reference results held when it was raised.
struct FailedCall {
  LibraryError error;
  py::tuple results;
};

// --- Parameters and results of a member ------------------------------------------------------------------

template <typename P>
inline constexpr bool kIsResult = std::is_pointer_v<P> || (std::is_lvalue_reference_v<P> &&
                                                           !std::is_const_v<std::remove_reference_t<P>>);

/// The type that pybind11 is given for a parameter: a result comes as a value.
template <typename P, typename Value = std::remove_pointer_t<std::remove_reference_t<P>>>
using Passed = std::conditional_t<std::is_same_v<Value, std::int32_t>, Integer,
                                  std::conditional_t<kIsResult<P>, Value, P>>;

/// `passed` as the member wants it.
template <typename P>
decltype(auto) Handed(std::remove_reference_t<Passed<P>>& passed) {
  if constexpr (std::is_same_v<Passed<P>, Integer>) {
    if constexpr (std::is_pointer_v<P>) {
      return &passed.value;
    } else {
      return (passed.value);
    }
  } else if constexpr (std::is_pointer_v<P>) {
    return &passed;
  } else {
    return (passed);
  }
}

template <typename Member>
struct Signature;

template <typename C, typename R, typename... P>
struct Signature<R (C::*)(P...)> {
  using Class = C;
  using Result = R;
  template <std::size_t kPlace>
  using Parameter = std::tuple_element_t<kPlace, std::tuple<P...>>;

  static constexpr std::size_t kCount = sizeof...(P);
  static constexpr std::size_t kInputs = (std::size_t{!kIsResult<P>} + ... + 0);

  /// Where Python has each parameter: results stand behind the others.
  static constexpr std::array<std::size_t, kCount> kPlaceInPython = [] {
    std::array<std::size_t, kCount> places{};
    std::size_t input = 0;
    std::size_t result = kInputs;
    std::size_t i = 0;
    ((places[i++] = kIsResult<P> ? result++ : input++), ...);
    return places;
  }();

  /// The place in C++ of each parameter of Python's.
  static constexpr std::array<std::size_t, kCount> kPlaceInCpp = [] {
    std::array<std::size_t, kCount> places{};
    for (std::size_t i = 0; i < kCount; ++i) places[kPlaceInPython[i]] = i;
    return places;
  }();
};
template <typename C, typename R, typename... P>
struct Signature<R (C::*)(P...) const> : Signature<R (C::*)(P...)> {};
template <typename C, typename R, typename... P>
struct Signature<R (C::*)(P...) noexcept> : Signature<R (C::*)(P...)> {};
template <typename C, typename R, typename... P>
struct Signature<R (C::*)(P...) const noexcept> : Signature<R (C::*)(P...)> {};

inline py::object ResultOf(const py::tuple& results) {
  if (results.empty()) return py::none();
  if (results.size() == 1) return results[0];
  return results;
}

/// Calls members of one signature: `arguments` are in Python's order.
template <auto kMember, Calls kCalls, typename S = Signature<decltype(kMember)>>
struct Caller {
  using C = typename S::Class;
  static constexpr std::size_t kResults = S::kCount - S::kInputs;

  template <typename Arguments, std::size_t... kResult>
  static py::tuple ByReference(Arguments& arguments, std::index_sequence<kResult...>) {
    return py::make_tuple(std::move(std::get<S::kInputs + kResult>(arguments))...);
  }

  template <typename Arguments, std::size_t... kParameter>
  static decltype(auto) Run(const std::shared_ptr<C>& object, Arguments& arguments,
                            std::index_sequence<kParameter...>) {
    return Running<kCalls>(object, [&]() -> decltype(auto) {
      return (object.get()->*kMember)(Handed<typename S::template Parameter<kParameter>>(
          std::get<S::kPlaceInPython[kParameter]>(arguments))...);
    });
  }

  template <typename Arguments>
  static py::object Call(const std::shared_ptr<C>& object, Arguments arguments) {
    constexpr auto parameters = std::make_index_sequence<S::kCount>();
    constexpr auto byReference = std::make_index_sequence<kResults>();
    try {
      if constexpr (std::is_void_v<typename S::Result>) {
        Run(object, arguments, parameters);
        return ResultOf(ByReference(arguments, byReference));
      } else {
        py::object result = py::cast(Run(object, arguments, parameters));
        return ResultOf(py::tuple(py::make_tuple(std::move(result)) + ByReference(arguments, byReference)));
      }
    } catch (const LibraryError& error) {
      throw FailedCall{error, ByReference(arguments, byReference)};
    }
  }

  /// The function that Python calls.
  template <std::size_t... kArgument>
  static auto Function(std::index_sequence<kArgument...>) {
    return [](const std::shared_ptr<C>& object,
              Passed<typename S::template Parameter<S::kPlaceInCpp[kArgument]>>... arguments) {
      return Call(object, std::tie(arguments...));
    };
  }
};

// --- Names, defaults, descriptions -----------------------------------------------------------------------

/// A parameter as the head of a description shows it: its name and, when it has one, its default.
std::string Shown(const py::arg& parameter);
std::string Shown(const py::arg_v& parameter);

/// The description of a member, headed so that inspect.signature finds its parameters: `inputs` (as Shown)
/// may be passed by position, `results` by name only; what is returned is said at the end.
std::string Description(const std::string& name, const std::vector<std::string>& inputs,
                        const std::vector<py::arg_v>& results, bool hasOwnResult, const std::string& doc);

/// What a by-reference result holds on entry when nothing is given.
template <typename Value>
py::object Initially() {
  if constexpr (std::is_same_v<Value, double>) {
    return py::float_(0.0);
  } else if constexpr (std::is_same_v<Value, Integer>) {
    return py::int_(0);
  } else if constexpr (std::is_same_v<Value, Text>) {
    return py::str();
  } else {
    return py::tuple();
  }
}

/// The parameter of S that Python has at kPlace, with its default. A boolean is nothing but a boolean.
template <typename S, std::size_t kPlace, typename Name>
auto Argument(Name name) {
  using Parameter = typename S::template Parameter<S::kPlaceInCpp[kPlace]>;
  if constexpr (kPlace < S::kInputs) {
    name.noconvert(std::is_same_v<Parameter, bool>);
    return name;
  } else {
    return py::arg_v(name, Initially<Passed<Parameter>>());
  }
}

/// A class of the library in Python. Its members are added in the order of its interface.
template <typename C, Calls kUsual = Calls::kQuick, typename... Bases>
class Class {
 public:
  template <typename... Extra>
  Class(py::module_& module, const char* name, const char* doc, const Extra&... extra)
      : class_(module, name, doc, extra...) {}

  /// Python makes objects without arguments.
  Class& Constructor() {
    const auto make = [] {
      if constexpr (kUsual == Calls::kExclusive) {
        return Accompanied(std::make_shared<C>());
      } else {
        return std::make_shared<C>();
      }
    };
    class_.def(py::init(make), "__init__(self)\n--\n\n");
    return *this;
  }

  /// A method. `names` name its parameters in the order of its declaration, with the defaults of those that
  /// may be left out: "asText"_a, "aiLimit"_a = -1.
  template <auto kMember, Calls kCalls = kUsual, typename... Names>
  Class& Method(const char* name, const char* doc, const Names&... names) {
    using S = Signature<decltype(kMember)>;
    static_assert(sizeof...(Names) == S::kCount);
    Define<kMember, kCalls>(name, doc, std::tie(names...), std::make_index_sequence<S::kCount>(),
                            std::make_index_sequence<S::kInputs>(),
                            std::make_index_sequence<S::kCount - S::kInputs>());
    return *this;
  }

  /// A property that is read, or read and written.
  template <auto kGet, auto kLet = nullptr>
  Class& Property(const char* name, const char* doc) {
    const py::cpp_function get([](const std::shared_ptr<C>& object) -> py::object {
      return py::cast(Running<kUsual>(object, [&] { return (object.get()->*kGet)(); }));
    });
    if constexpr (std::is_null_pointer_v<decltype(kLet)>) {
      class_.def_property_readonly(name, get, doc);
    } else {
      using Value = typename Signature<decltype(kLet)>::template Parameter<0>;
      const py::cpp_function let([](const std::shared_ptr<C>& object, Passed<Value> value) {
        Running<kUsual>(object, [&] { (object.get()->*kLet)(Handed<Value>(value)); });
      });
      class_.def_property(name, get, let, doc);
    }
    return *this;
  }

  /// For what is bound in its own way.
  auto& OfPybind() { return class_; }

 private:
  template <auto kMember, Calls kCalls, typename Names, std::size_t... kPlace, std::size_t... kInput,
            std::size_t... kResult>
  void Define(const char* name, const char* doc, const Names& names, std::index_sequence<kPlace...> places,
              std::index_sequence<kInput...>, std::index_sequence<kResult...>) {
    using S = Signature<decltype(kMember)>;
    const auto arguments = std::make_tuple(Argument<S, kPlace>(std::get<S::kPlaceInCpp[kPlace]>(names))...);
    const std::string description =
        Description(name, {Shown(std::get<kInput>(arguments))...},
                    {std::get<S::kInputs + kResult>(arguments)...}, !std::is_void_v<typename S::Result>, doc);
    const auto function = Caller<kMember, kCalls>::Function(places);
    if constexpr (sizeof...(kResult) == 0) {
      class_.def(name, function, std::get<kInput>(arguments)..., description.c_str());
    } else {
      class_.def(name, function, std::get<kInput>(arguments)..., py::kw_only(),
                 std::get<S::kInputs + kResult>(arguments)..., description.c_str());
    }
  }

  py::class_<C, Bases..., std::shared_ptr<C>> class_;
};

}  // namespace vorquill21::python
