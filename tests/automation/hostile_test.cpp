#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>

#include "tests/automation/host_object.hpp"
#include "tests/automation/members.hpp"
#include "tests/support/temporary_folder.hpp"

namespace vorquill21::test {
namespace {

/// A variant that no host means well with, and all that it refers to.
class HostileVariant {
 public:
  HostileVariant() { VariantInit(&given_); }
  HostileVariant(const HostileVariant&) = delete;
  HostileVariant& operator=(const HostileVariant&) = delete;

  /// Nothing of what the component was given may be held any more: each array has the locks that it came
  /// with, and the object has no references left.
  ~HostileVariant() {
    const bool isReference = (given_.vt & VT_BYREF) != 0;
    const bool isArray = !isReference && (given_.vt & VT_ARRAY) != 0;
    if (isArray && given_.parray != nullptr) ReleaseLocks(*given_.parray);
    if (isArray || (!isReference && given_.vt < VT_RECORD)) {
      EXPECT_EQ(S_OK, VariantClear(&given_));
    }
    inner_.clear();
    EXPECT_EQ(0u, object_.References()) << "a reference was left";
    heldArrays += isArray ? 1 : 0;
    heldObjects += object_.WasReferredTo() ? 1 : 0;
  }

  static inline std::size_t heldArrays = 0;   // that were looked at for locks
  static inline std::size_t heldObjects = 0;  // that were looked at for references

  VARIANT& Given() { return given_; }
  VARIANT& As(VARTYPE type) {
    given_.vt = type;
    return given_;
  }

  /// Its array is given, and holds this number of locks.
  void Give(VARTYPE elementType, SAFEARRAY* array, ULONG locks = 0) {
    ASSERT_NE(nullptr, array);
    array->cLocks = locks;
    array_ = array;
    locks_ = locks;
    As(static_cast<VARTYPE>(VT_ARRAY | elementType)).parray = array;
  }

  Value& Inner(Value value) { return inner_.emplace_back(std::move(value)); }
  HostObject<>& Object() { return object_; }
  double& Number() { return number_; }

 private:
  /// A member may have put another array into the place of one without locks.
  void ReleaseLocks(SAFEARRAY& array) const {
    EXPECT_EQ(&array == array_ ? locks_ : 0, array.cLocks) << "a lock was left, or taken";
    array.cLocks = 0;
    array.fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
  }

  VARIANT given_;
  HostObject<> object_;
  std::deque<Value> inner_;
  SAFEARRAY* array_ = nullptr;
  ULONG locks_ = 0;
  double number_ = 1e300;
};

struct Kind {
  const char* name;
  std::function<void(HostileVariant&)> make;
};

SAFEARRAY* NewArray(VARTYPE type, std::initializer_list<SAFEARRAYBOUND> bounds) {
  std::vector<SAFEARRAYBOUND> all(bounds);
  return SafeArrayCreate(type, static_cast<UINT>(all.size()), all.data());
}

SAFEARRAY* NewArrayOfManyDimensions() {
  std::vector<SAFEARRAYBOUND> bounds(60, {1, 0});
  return SafeArrayCreate(VT_R8, 60, bounds.data());
}

SAFEARRAY* NewNestedArray(HostileVariant& hostile) {
  Value null;
  null.vt = VT_NULL;
  const Value array =
      Value::Array({null, &hostile.Object(), Value::Array({L"x", Value::Array({1})}), Value::Missing()});
  SAFEARRAY* copy = nullptr;
  SafeArrayCopy(array.parray, &copy);
  return copy;
}

void GiveReferenceToItself(HostileVariant& hostile) {
  hostile.As(VT_BYREF | VT_VARIANT).pvarVal = &hostile.Given();
}

const std::vector<Kind>& AllKinds() {
  static const std::vector<Kind> kKinds{
      {"empty", [](HostileVariant&) {}},
      {"null", [](HostileVariant& v) { v.As(VT_NULL); }},
      {"missing", [](HostileVariant& v) { v.As(VT_ERROR).scode = DISP_E_PARAMNOTFOUND; }},
      {"error", [](HostileVariant& v) { v.As(VT_ERROR).scode = E_FAIL; }},
      {"short", [](HostileVariant& v) { v.As(VT_I2).iVal = -1; }},
      {"greatest integer", [](HostileVariant& v) { v.As(VT_I4).lVal = std::numeric_limits<LONG>::max(); }},
      {"not a number", [](HostileVariant& v) { v.As(VT_R8).dblVal = std::nan(""); }},
      {"large number", [](HostileVariant& v) { v.As(VT_R8).dblVal = 1e300; }},
      {"true", [](HostileVariant& v) { v.As(VT_BOOL).boolVal = VARIANT_TRUE; }},
      {"text", [](HostileVariant& v) { v.As(VT_BSTR).bstrVal = SysAllocString(L"abc"); }},
      {"null text", [](HostileVariant& v) { v.As(VT_BSTR).bstrVal = nullptr; }},
      {"long text",
       [](HostileVariant& v) { v.As(VT_BSTR).bstrVal = SysAllocString(std::wstring(9999, L'x').c_str()); }},
      {"odd bytes", [](HostileVariant& v) { v.As(VT_BSTR).bstrVal = SysAllocStringByteLen("abc", 3); }},
      {"currency", [](HostileVariant& v) { v.As(VT_CY).cyVal.int64 = std::numeric_limits<LONGLONG>::min(); }},
      {"date", [](HostileVariant& v) { v.As(VT_DATE).date = -657434.5; }},
      {"decimal",
       [](HostileVariant& v) {
         v.Given().decVal.Hi32 = v.Given().decVal.Lo32 = 0xFFFFFFFF;
         v.Given().decVal.scale = 28;
         v.Given().decVal.sign = DECIMAL_NEG;
         v.As(VT_DECIMAL);
       }},
      {"long integer", [](HostileVariant& v) { v.As(VT_UI8).ullVal = ~0ull; }},
      {"object",
       [](HostileVariant& v) {
         v.As(VT_DISPATCH).pdispVal = &v.Object();
         v.Object().AddRef();
       }},
      {"no object", [](HostileVariant& v) { v.As(VT_DISPATCH).pdispVal = nullptr; }},
      {"unknown",
       [](HostileVariant& v) {
         v.As(VT_UNKNOWN).punkVal = &v.Object();
         v.Object().AddRef();
       }},
      {"doubles below 0",
       [](HostileVariant& v) {
         v.Give(VT_R8, NewDoubles(-5, {1, 2, 3}));
       }},
      {"locked doubles",
       [](HostileVariant& v) {
         v.Give(VT_R8, NewDoubles(0, {1, 2, 3}), 3);
       }},
      {"fixed doubles",
       [](HostileVariant& v) {
         SAFEARRAY* const array = NewDoubles(0, {1, 2, 3});
         array->fFeatures |= FADF_FIXEDSIZE;
         v.Give(VT_R8, array);
       }},
      {"undimensioned array", [](HostileVariant& v) { v.As(VT_ARRAY | VT_R8).parray = nullptr; }},
      {"array of nothing",
       [](HostileVariant& v) {
         v.Give(VT_VARIANT, NewArray(VT_VARIANT, {{0, 7}}));
       }},
      {"60 dimensions", [](HostileVariant& v) { v.Give(VT_R8, NewArrayOfManyDimensions()); }},
      {"greatest bound",
       [](HostileVariant& v) {
         v.Give(VT_R8, NewArray(VT_R8, {{1, 0x7FFFFFFF}}));
       }},
      {"bound beyond 32 bits",
       [](HostileVariant& v) {
         v.Give(VT_R8, NewArray(VT_R8, {{3, 0x7FFFFFFE}}));
       }},
      {"matrix",
       [](HostileVariant& v) {
         v.Give(VT_R8, NewArray(VT_R8, {{3, 1}, {3, 1}}));
       }},
      {"nested arrays", [](HostileVariant& v) { v.Give(VT_VARIANT, NewNestedArray(v)); }},
      {"array of objects",
       [](HostileVariant& v) {
         v.Give(VT_DISPATCH, NewArray(VT_DISPATCH, {{2, 0}}));
       }},
      {"array of texts",
       [](HostileVariant& v) {
         v.Give(VT_BSTR, NewArray(VT_BSTR, {{2, 0}}));
       }},
      {"reference to a number", [](HostileVariant& v) { v.As(VT_BYREF | VT_R8).pdblVal = &v.Number(); }},
      {"null reference", [](HostileVariant& v) { v.As(VT_BYREF | VT_R8).pdblVal = nullptr; }},
      {"null reference to an array",
       [](HostileVariant& v) { v.As(VT_BYREF | VT_ARRAY | VT_R8).pparray = nullptr; }},
      {"reference to itself", GiveReferenceToItself},
      {"no such kind", [](HostileVariant& v) { v.As(0x0FFF); }},
  };
  return kKinds;
}

/// What a host in C++ makes of a hostile variant for a parameter of this type: the variant itself where one
/// is passed, an array where it holds one, otherwise extreme values and null pointers, by turns.
class EarlyArgument {
 public:
  EarlyArgument(VARTYPE type, VARIANT& hostile, std::size_t turn) {
    static constexpr LONG kIntegers[] = {0, -1, 0x7FFFFFFF, static_cast<LONG>(0x80000000)};
    static constexpr double kNumbers[] = {0.0, 1e308, -INFINITY, NAN};
    passed_.vt = type;
    const bool holdsArray = (hostile.vt & VT_ARRAY) != 0 && (hostile.vt & VT_BYREF) == 0;
    if (type == VT_VARIANT) {
      passed_ = hostile;
    } else if (type == (VT_BYREF | VT_VARIANT)) {
      passed_.pvarVal = turn % 4 == 3 ? nullptr : &hostile;
    } else if (type == (VT_BYREF | VT_ARRAY)) {
      passed_.pparray = holdsArray ? &hostile.parray : turn % 2 == 0 ? &noArray_ : nullptr;
    } else if (type == VT_BSTR) {
      passed_.bstrVal = hostile.vt == VT_BSTR ? hostile.bstrVal : nullptr;
    } else if (type == VT_R8) {
      passed_.dblVal = kNumbers[turn % 4];
    } else if (type == VT_I4 || type == VT_BOOL) {
      passed_.lVal = kIntegers[turn % 4];
    } else if (type == VT_DISPATCH) {
      passed_.pdispVal = hostile.vt == VT_DISPATCH ? hostile.pdispVal : nullptr;
    } else if (type == (VT_BYREF | VT_BSTR) && hostile.vt == VT_BSTR) {
      passed_.pbstrVal = &hostile.bstrVal;
    } else if (type == (VT_BYREF | VT_DISPATCH) && hostile.vt == VT_DISPATCH) {
      passed_.ppdispVal = &hostile.pdispVal;
    } else {
      passed_.byref = nullptr;
    }
  }
  EarlyArgument(const EarlyArgument&) = delete;
  EarlyArgument& operator=(const EarlyArgument&) = delete;
  ~EarlyArgument() { SafeArrayDestroy(noArray_); }

  VARIANT* Passed() { return &passed_; }

 private:
  VARIANT passed_{};
  SAFEARRAY* noArray_ = nullptr;
};

class HostileTest : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::current_path(folder_.Path());
    HostileVariant::heldArrays = HostileVariant::heldObjects = 0;
  }
  void TearDown() override { std::filesystem::current_path(before_); }

  Reference<IDispatch> NewObject(const Member& member) {
    return Component::Default().Make<IDispatch>(member.classId, member.interfaceId);
  }

  /// Calls `call` with each member, each of its places, and each kind of hostile variant.
  template <typename Call>
  void ForEachPlaceAndKind(Call call) {
    for (const Member& member : AllMembers(Component::Default())) {
      for (std::size_t place = 0; place < member.parameters.size(); ++place) {
        for (std::size_t kind = 0; kind < AllKinds().size(); ++kind) {
          SCOPED_TRACE(member.name + ", argument " + std::to_string(place) + ": " + AllKinds()[kind].name);
          call(member, place, kind);
          ++calls_;
          ASSERT_EQ(S_OK, Component::Default().CanUnloadNow()) << "a reference to the component was left";
        }
      }
    }
    std::cout << calls_ << " calls; " << HostileVariant::heldArrays << " arrays kept their locks, "
              << HostileVariant::heldObjects << " objects lost all references\n";
    EXPECT_GT(calls_, 8000u);
    EXPECT_GT(HostileVariant::heldArrays, calls_ / 4);
    EXPECT_GT(HostileVariant::heldObjects, calls_ / 20);
  }

  TemporaryFolder folder_;
  std::filesystem::path before_ = std::filesystem::current_path();
  DialogRefuser refuser_;
  std::size_t calls_ = 0;
};

bool IsRefusal(HRESULT result) {
  return result == DISP_E_BADPARAMCOUNT || result == DISP_E_PARAMNOTOPTIONAL ||
         result == DISP_E_PARAMNOTFOUND;
}

TEST_F(HostileTest, EveryArgumentOfACallByNameComesToAnEnd) {
  ForEachPlaceAndKind([this](const Member& member, std::size_t place, std::size_t kind) {
    HostileVariant hostile;
    const Reference<IDispatch> object = NewObject(member);
    AllKinds()[kind].make(hostile);
    std::deque<HarmlessArgument> others;
    std::vector<VARIANT> arguments;
    for (const VARTYPE type : member.parameters) arguments.push_back(others.emplace_back(type).Late());
    VARIANT variable{};
    variable.vt = VT_BYREF | VT_VARIANT;
    variable.pvarVal = &hostile.Given();
    arguments[place] = kind % 2 == 0 ? variable : hostile.Given();
    std::reverse(arguments.begin(), arguments.end());
    const Outcome outcome = Invoke(object.Get(), member.id, member.kind,
                                   {arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0});
    if (outcome.result == DISP_E_EXCEPTION) {
      EXPECT_LT(outcome.number, 0);
      EXPECT_NE(L"", outcome.description);
    } else {
      EXPECT_TRUE(outcome.result == S_OK || IsRefusal(outcome.result)) << std::hex << outcome.result;
    }
  });
}

TEST_F(HostileTest, EveryArgumentOfACallThroughTheTableComesToAnEnd) {
  ForEachPlaceAndKind([this](const Member& member, std::size_t place, std::size_t kind) {
    HostileVariant hostile;
    const Reference<IDispatch> object = NewObject(member);
    AllKinds()[kind].make(hostile);
    std::deque<HarmlessArgument> others;
    std::vector<VARIANT*> arguments;
    for (const VARTYPE type : member.parameters) arguments.push_back(others.emplace_back(type).Early());
    EarlyArgument argument(member.parameters[place], hostile.Given(), kind);
    arguments[place] = argument.Passed();
    TakeErrorWords();
    const HRESULT result = CallEarly(*object, member, arguments);
    const ErrorWords words = TakeErrorWords();
    if (FAILED(result)) {
      EXPECT_TRUE(words.isThere) << std::hex << result;
      EXPECT_NE(L"", words.description);
    } else {
      EXPECT_EQ(S_OK, result);
    }
  });
}

/// The server whose members fail at their start.
TEST(FailingMembersTest, EveryMemberTellsWhateverIsThrownInIt) {
  const Component component(L"" VORQUILL21_FAILING_SERVER);
  const auto setFailure = component.Exported<void(int)>("SetFailure");
  const struct {
    int failure;
    HRESULT result;
    const wchar_t* description;
  } rows[] = {{1, static_cast<HRESULT>(0x800A03E8), L"Description"},
              {2, static_cast<HRESULT>(0x800A0007), L"Out of memory"},
              {3, static_cast<HRESULT>(0x800A0007), L"Out of memory"},
              {4, E_UNEXPECTED, L"other"},
              {5, E_UNEXPECTED, L"Unexpected failure"}};
  for (const Member& member : AllMembers(component)) {
    const auto object = component.Make<IDispatch>(member.classId, member.interfaceId);
    std::deque<HarmlessArgument> all;
    std::vector<VARIANT*> early;
    std::vector<VARIANT> late;
    for (const VARTYPE type : member.parameters) {
      early.push_back(all.emplace_back(type).Early());
      late.insert(late.begin(), all.back().Late());
    }
    for (const auto& row : rows) {
      SCOPED_TRACE(member.name + " " + std::to_string(row.failure));
      setFailure(row.failure);
      EXPECT_EQ(row.result, CallEarly(*object, member, early));
      EXPECT_EQ(row.description, TakeErrorWords().description);
      const Outcome outcome = Invoke(object.Get(), member.id, member.kind,
                                     {late.data(), nullptr, static_cast<UINT>(late.size()), 0});
      setFailure(0);
      EXPECT_EQ(DISP_E_EXCEPTION, outcome.result);
      EXPECT_EQ(row.result, outcome.number);
      EXPECT_EQ(row.description, outcome.description);
    }
  }
  EXPECT_EQ(S_OK, component.CanUnloadNow());
}

TEST(FailingMembersTest, MakingAnObjectTellsWhateverIsThrown) {
  const Component component(L"" VORQUILL21_FAILING_SERVER);
  const auto setFailure = component.Exported<void(int)>("SetFailure");
  Reference<IClassFactory> factory;
  ASSERT_EQ(S_OK, component.GetClassObject(CLSID_Main, IID_IClassFactory,
                                           reinterpret_cast<void**>(factory.Receive())));
  setFailure(2);
  void* made = nullptr;
  EXPECT_EQ(static_cast<HRESULT>(0x800A0007), factory->CreateInstance(nullptr, IID__Main, &made));
  setFailure(0);
  EXPECT_EQ(nullptr, made);
}

}  // namespace
}  // namespace vorquill21::test
