#include <gtest/gtest.h>

#include "tests/automation/component.hpp"
#include "tests/automation/host_object.hpp"

namespace vorquill21::test {
namespace {

constexpr HRESULT kRuntimeError = static_cast<HRESULT>(0x800A0000);

class LateBoundTest : public testing::Test {
 protected:
  Reference<_Main> main_ = VORQUILL21_MAKE(Main);

  /// An object that Main hands out, by name.
  Value Lib(const wchar_t* accessor) {
    Outcome outcome = Call(main_.Get(), accessor);
    EXPECT_EQ(S_OK, outcome.result);
    EXPECT_EQ(VT_DISPATCH, outcome.value.vt);
    return outcome.value;
  }
};

void ExpectFailure(const Outcome& outcome, HRESULT number, const wchar_t* source,
                   const wchar_t* description) {
  EXPECT_EQ(DISP_E_EXCEPTION, outcome.result);
  EXPECT_EQ(number, outcome.number);
  EXPECT_EQ(source, outcome.source);
  EXPECT_EQ(description, outcome.description);
}

TEST_F(LateBoundTest, TakesLiteralsOfAnyNumericKind) {
  const Value files = Lib(L"LibMathUtils");
  EXPECT_EQ(0x10002, Call(files.pdispVal, L"DWordMake", {Value::Short(1), 2.0}).value.lVal);
  EXPECT_EQ(0x10002, Call(files.pdispVal, L"DWordMake", {L"1", 2}).value.lVal);
  EXPECT_EQ(-65534, Call(files.pdispVal, L"DWordMake", {true, 2}).value.lVal);
}

TEST_F(LateBoundTest, TakesBooleansByNameAndByNumber) {
  const Value strings = Lib(L"LibString");
  const struct {
    Value given;
    ULONG parts;  // 2 when runs of blanks count as one
  } rows[] = {{true, 2},    {false, 3}, {L"True", 2}, {L"fALSE", 3}, {L"TRUE", 2},
              {L"-1.0", 2}, {L"0", 3},  {0.25, 2},    {0, 3},        {Value::Short(7), 2}};
  for (const auto& row : rows) {
    const Outcome outcome = Call(strings.pdispVal, L"SplitMulti", {L"a  b", L" ", row.given});
    ASSERT_EQ(S_OK, outcome.result) << row.given.vt;
    EXPECT_EQ(row.parts, outcome.value.parray->rgsabound[0].cElements) << row.given.vt;
  }
  ExpectFailure(Call(strings.pdispVal, L"SplitMulti", {L"a  b", L" ", L"yes"}), kRuntimeError + 13, L"",
                L"Type mismatch");
}

TEST_F(LateBoundTest, PutsResultsIntoVariables) {
  const Value trigonometry = Lib(L"LibTrigonometry");
  Value x;
  Value y = Value::Short(3);
  EXPECT_EQ(S_OK, Call(trigonometry.pdispVal, L"PolarToXY", {0, 2, x.ByReference(), y.ByReference()}).result);
  EXPECT_EQ(VT_R8, x.vt);
  EXPECT_EQ(2.0, x.dblVal);
  EXPECT_EQ(VT_R8, y.vt);
  EXPECT_EQ(0.0, y.dblVal);
}

TEST_F(LateBoundTest, PutsResultsIntoTypedVariablesInTheirOwnType) {
  const Value trigonometry = Lib(L"LibTrigonometry");
  short x = 7;
  double y = 7;
  VARIANT arguments[4]{};
  arguments[0].vt = VT_BYREF | VT_R8;
  arguments[0].pdblVal = &y;
  arguments[1].vt = VT_BYREF | VT_I2;
  arguments[1].piVal = &x;
  arguments[2].vt = VT_I4;
  arguments[2].lVal = 40000;
  arguments[3].vt = VT_I4;
  const DISPID member = MemberNamed(trigonometry.pdispVal, L"PolarToXY");
  Outcome outcome = Invoke(trigonometry.pdispVal, member, DISPATCH_METHOD, {arguments, nullptr, 4, 0});
  ExpectFailure(outcome, kRuntimeError + 6, L"", L"Overflow");  // 40000 is no short integer
  EXPECT_EQ(7, x);

  arguments[2].lVal = 2;
  outcome = Invoke(trigonometry.pdispVal, member, DISPATCH_METHOD, {arguments, nullptr, 4, 0});
  EXPECT_EQ(S_OK, outcome.result);
  EXPECT_EQ(2, x);
  EXPECT_EQ(0.0, y);
}

TEST_F(LateBoundTest, LeavesVariablesThatDidNotChangeAsTheyWere) {
  const Value utilities = Lib(L"LibMathUtils");
  Value message = 5;
  Value index = L"12";
  EXPECT_EQ(S_OK, Call(utilities.pdispVal, L"IsInBounds", {1, L"x", message.ByReference(), 1, 0}).result);
  EXPECT_EQ(VT_I4, message.vt);
  Value negative = Value::Adopt(VT_R8, NewDoubles(-1, {1, 2}));
  const Outcome outcome =
      Call(utilities.pdispVal, L"ArrayLocate", {negative.ByReference(), 1, index.ByReference()});
  ExpectFailure(outcome, -2147220991, L"Vorquill21MathUtils.ArrayLocate",
                L"One or more array bounds are below 0");
  EXPECT_EQ(VT_BSTR, index.vt);
}

TEST_F(LateBoundTest, FillsInWhatIsLeftOut) {
  const Value strings = Lib(L"LibString");
  const Outcome parts = Call(strings.pdispVal, L"Split5", {L"a b  c"});
  ASSERT_EQ(VT_ARRAY | VT_VARIANT, parts.value.vt);
  EXPECT_EQ(L"", parts.value.Element(2).Text());
  const Outcome limited = Call(strings.pdispVal, L"Split5", {L"a b c", Value::Missing(), 2});
  EXPECT_EQ(2u, limited.value.parray->rgsabound[0].cElements);
  const Value utilities = Lib(L"LibMathUtils");
  EXPECT_EQ(
      VARIANT_TRUE,
      Call(utilities.pdispVal, L"ArraysAreEqual", {Value::Array({1}), Value::Array({1.5}), 1}).value.boolVal);
}

TEST_F(LateBoundTest, RefusesWrongNumbersOfArguments) {
  const Value files = Lib(L"LibFile");
  EXPECT_EQ(DISP_E_PARAMNOTOPTIONAL, Call(files.pdispVal, L"CompareFiles", {L"a"}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(files.pdispVal, L"CompareFiles", {L"a", L"b", L"c"}).result);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(files.pdispVal, 999, DISPATCH_METHOD, {}).result);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(files.pdispVal, 1, DISPATCH_PROPERTYPUT, {}).result);
}

TEST_F(LateBoundTest, FindsMembersWhateverTheCaseOfTheirLetters) {
  const Value files = Lib(L"LibFile");
  EXPECT_EQ(MemberNamed(files.pdispVal, L"Crc32Make"), MemberNamed(files.pdispVal, L"CRC32MAKE"));
}

TEST_F(LateBoundTest, TakesArgumentsByName) {
  const Value strings = Lib(L"LibString");
  LPOLESTR names[3] = {const_cast<LPOLESTR>(L"Split5"), const_cast<LPOLESTR>(L"aiLimit"),
                       const_cast<LPOLESTR>(L"asDelimiter")};
  DISPID ids[3];
  ASSERT_EQ(S_OK, strings.pdispVal->GetIDsOfNames(kReserved, names, 3, LOCALE_USER_DEFAULT, ids));
  Value arguments[3] = {2, L",", L"a,b,c"};
  const Outcome outcome = Invoke(strings.pdispVal, ids[0], DISPATCH_METHOD, {arguments, ids + 1, 3, 2});
  ASSERT_EQ(S_OK, outcome.result);
  EXPECT_EQ(2u, outcome.value.parray->rgsabound[0].cElements);
  EXPECT_EQ(L"b", outcome.value.Element(1).Text());
  ids[1] = 77;
  EXPECT_EQ(DISP_E_PARAMNOTFOUND,
            Invoke(strings.pdispVal, ids[0], DISPATCH_METHOD, {arguments, ids + 1, 3, 2}).result);
}

TEST_F(LateBoundTest, TakesArraysOfAnyElements) {
  const Value statistics = Lib(L"LibStatistics");
  EXPECT_EQ(2.5, Call(statistics.pdispVal, L"ArithmeticMean", {Value::Array({1, L"2", 4.5})}).value.dblVal);
  for (const VARTYPE kind : {VT_I2, VT_I4, VT_R4, VT_R8, VT_UI1, VT_I8, VT_CY, VT_VARIANT}) {
    SAFEARRAY* const array = SafeArrayCreateVector(kind, 3, 2);
    const Value values = Value::Adopt(kind, array);
    EXPECT_EQ(0, Call(statistics.pdispVal, L"ArithmeticMean", {values}).value.dblVal) << kind;
  }
  SAFEARRAY* const texts = SafeArrayCreateVector(VT_BSTR, 0, 1);
  LONG index = 0;
  SafeArrayPutElement(texts, &index, TextArgument(L"2"));
  EXPECT_EQ(2.0, Call(statistics.pdispVal, L"ArithmeticMean", {Value::Adopt(VT_BSTR, texts)}).value.dblVal);
}

TEST_F(LateBoundTest, TakesAnArrayVariableOfVariantsByReference) {
  const Value statistics = Lib(L"LibStatistics");
  Value array = Value::Array({3, 9, 1});
  VARIANT typed{};
  typed.vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
  typed.pparray = &array.parray;
  VARIANT variable{};
  variable.vt = VT_BYREF | VT_VARIANT;
  variable.pvarVal = &typed;
  Value index;
  VARIANT arguments[2] = {index.ByReference(), variable};
  const Outcome outcome = Invoke(statistics.pdispVal, MemberNamed(statistics.pdispVal, L"Maximum"),
                                 DISPATCH_METHOD, {arguments, nullptr, 2, 0});
  EXPECT_EQ(9.0, outcome.value.dblVal);
  EXPECT_EQ(1, index.lVal);
  EXPECT_EQ(0u, array.parray->cLocks);
}

TEST_F(LateBoundTest, RefusesWhatIsNoArray) {
  const Value statistics = Lib(L"LibStatistics");
  const Outcome outcome = Call(statistics.pdispVal, L"Maximum", {5, Value::Missing()});
  ExpectFailure(outcome, kRuntimeError + 13, L"", L"Type mismatch");
  EXPECT_EQ(1u, outcome.failedArgument);  // the last one stands first
  ExpectFailure(Call(statistics.pdispVal, L"Maximum", {Value::Array({L"x"})}), kRuntimeError + 13, L"",
                L"Type mismatch");
}

TEST_F(LateBoundTest, CountsAnUndimensionedArrayAsSuch) {
  const Value statistics = Lib(L"LibStatistics");
  const Value undimensioned = Value::Adopt(VT_VARIANT, nullptr);
  ExpectFailure(Call(statistics.pdispVal, L"ArithmeticMean", {undimensioned}), kRuntimeError + 9, L"",
                L"Subscript out of range");
}

TEST_F(LateBoundTest, MakesAnArrayOfVariantsInAVariableThatHoldsNothing) {
  const Value interpolate = Lib(L"LibInterpolate");
  Value coefficients;
  const Outcome outcome = Call(interpolate.pdispVal, L"OneDPolynomialFit",
                               {Value::Array({1, 2}), Value::Array({3, 5}), 1, coefficients.ByReference()});
  ASSERT_EQ(S_OK, outcome.result);
  ASSERT_EQ(VT_ARRAY | VT_VARIANT, coefficients.vt);
  EXPECT_NEAR(2.0, coefficients.Element(2).dblVal, 1e-12);
}

TEST_F(LateBoundTest, KeepsTheKindOfElementsOfAnArrayVariable) {
  const Value utilities = Lib(L"LibMathUtils");
  for (const VARTYPE kind : {VT_I4, VT_R4, VT_R8, VT_VARIANT}) {
    Value target = Value::Adopt(kind, SafeArrayCreateVector(kind, 0, 1));
    EXPECT_EQ(
        S_OK,
        Call(utilities.pdispVal, L"CopyArray1D", {target.ByReference(), Value::Array({1, 2, 3})}).result);
    VARTYPE found = VT_EMPTY;
    SafeArrayGetVartype(target.parray, &found);
    EXPECT_EQ(kind, found);
    EXPECT_EQ(3u, target.parray->rgsabound[0].cElements);
  }
}

TEST_F(LateBoundTest, DimensionsAnArrayVariableThatNeverWasInItsOwnType) {
  const Value utilities = Lib(L"LibMathUtils");
  SAFEARRAY* array = nullptr;
  VARIANT arguments[2]{};
  const Value source = Value::Array({1, 2});
  arguments[0] = source;
  arguments[1].vt = VT_BYREF | VT_ARRAY | VT_I2;
  arguments[1].pparray = &array;
  EXPECT_EQ(S_OK, Invoke(utilities.pdispVal, MemberNamed(utilities.pdispVal, L"CopyArray1D"), DISPATCH_METHOD,
                         {arguments, nullptr, 2, 0})
                      .result);
  VARTYPE found = VT_EMPTY;
  SafeArrayGetVartype(array, &found);
  EXPECT_EQ(VT_I2, found);
  EXPECT_EQ(2, static_cast<short*>(array->pvData)[1]);
  SafeArrayDestroy(array);
}

TEST_F(LateBoundTest, LeavesAnArrayThatIsNoVariableAlone) {
  const Value utilities = Lib(L"LibMathUtils");
  Value target = Value::Array({7});
  VARIANT arguments[2]{};
  const Value source = Value::Array({1, 2});
  arguments[0] = source;
  arguments[1] = target;
  EXPECT_EQ(S_OK, Invoke(utilities.pdispVal, MemberNamed(utilities.pdispVal, L"CopyArray1D"), DISPATCH_METHOD,
                         {arguments, nullptr, 2, 0})
                      .result);
  EXPECT_EQ(7, target.Element(0).lVal);
}

TEST_F(LateBoundTest, ReadsAndWritesProperties) {
  const auto import = VORQUILL21_MAKE(CImportColumnData);
  EXPECT_EQ(S_OK, Call(import.Get(), L"HeaderRow", {L"9"}, DISPATCH_PROPERTYPUT).result);
  EXPECT_EQ(9, Call(import.Get(), L"HeaderRow", {}, DISPATCH_PROPERTYGET).value.lVal);
  ExpectFailure(Call(import.Get(), L"HeaderRow", {L"nine"}, DISPATCH_PROPERTYPUT), kRuntimeError + 13, L"",
                L"Type mismatch");
  ExpectFailure(Call(import.Get(), L"HeaderRow", {3e9}, DISPATCH_PROPERTYPUT), kRuntimeError + 6, L"",
                L"Overflow");
}

TEST_F(LateBoundTest, TakesObjectsOfScripts) {
  const Value interpolate = Lib(L"LibInterpolate");
  const Value utilities = Lib(L"LibMathUtils");
  for (const WORD kind : std::initializer_list<WORD>{DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYPUT}) {
    EXPECT_EQ(S_OK, Call(interpolate.pdispVal, L"moUtils", {utilities}, kind).result);
    EXPECT_EQ(utilities.pdispVal, Call(interpolate.pdispVal, L"moUtils").value.pdispVal);
  }
  ExpectFailure(Call(interpolate.pdispVal, L"moUtils", {5}, DISPATCH_PROPERTYPUTREF), kRuntimeError + 13, L"",
                L"Type mismatch");
}

TEST_F(LateBoundTest, PacksAllArgumentsOfInitialise) {
  EXPECT_EQ(S_OK, Call(main_.Get(), L"Initialise").result);
  EXPECT_EQ(S_OK, Call(main_.Get(), L"Initialise", {0, L"more", Value::Missing()}).result);
  EXPECT_EQ(S_OK, Call(main_.Get(), L"Initialise", {Value::Missing()}).result);
  ExpectFailure(Call(main_.Get(), L"Initialise", {L"x"}), kRuntimeError + 13, L"", L"Type mismatch");
  ExpectFailure(Call(main_.Get(), L"Initialise", {Value::Array({1})}), kRuntimeError + 13, L"",
                L"Type mismatch");
}

TEST_F(LateBoundTest, TellsErrorsAsTheyAreRaised) {
  const Value log = Lib(L"LibLog");
  ExpectFailure(Call(log.pdispVal, L"AddEntry", {L"x", 1}), kRuntimeError + 1000, L"CLog.AddEntry",
                L"Log not initialised");
}

TEST_F(LateBoundTest, TellsTheNumberWhereThereIsNoPlaceForTheWords) {
  const Value log = Lib(L"LibLog");
  DISPPARAMS none{};
  const DISPID member = MemberNamed(log.pdispVal, L"StartLogging");
  EXPECT_EQ(kRuntimeError + 1000, log.pdispVal->Invoke(member, kReserved, LOCALE_USER_DEFAULT,
                                                       DISPATCH_METHOD, &none, nullptr, nullptr, nullptr));
  const ErrorWords words = TakeErrorWords();
  EXPECT_EQ(L"CLog.StartLogging", words.source);
  EXPECT_EQ(L"Log not initialised", words.description);
}

TEST_F(LateBoundTest, ConvertsNumbersByItsOwnRules) {
  const Value utilities = Lib(L"LibMathUtils");
  VARIANT decimal{};
  decimal.decVal.Lo64 = 15;
  decimal.decVal.scale = 1;
  decimal.decVal.sign = DECIMAL_NEG;
  decimal.vt = VT_DECIMAL;
  VARIANT currency{};
  currency.vt = VT_CY;
  currency.cyVal.int64 = -15000;
  VARIANT large{};
  large.vt = VT_UI4;
  large.ulVal = 4000000000u;
  VARIANT null{};
  null.vt = VT_NULL;
  const DISPID member = MemberNamed(utilities.pdispVal, L"NumbersAreEqual");
  struct {
    VARIANT given;
    Value expected;
  } const rows[] = {{decimal, -1.5}, {currency, -1.5}, {large, 4e9}};
  for (const auto& row : rows) {
    VARIANT arguments[3] = {Value(9), row.expected, row.given};
    EXPECT_EQ(VARIANT_TRUE,
              Invoke(utilities.pdispVal, member, DISPATCH_METHOD, {arguments, nullptr, 3, 0}).value.boolVal)
        << row.given.vt;
  }
  VARIANT arguments[3] = {Value(9), Value(0), null};
  ExpectFailure(Invoke(utilities.pdispVal, member, DISPATCH_METHOD, {arguments, nullptr, 3, 0}),
                kRuntimeError + 13, L"", L"Type mismatch");
}

/// A collection of the host that counts what is added.
class Collection final : public HostObject<> {
 public:
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* member) override {
    *member = 1;
    return std::wstring(names[0]) == L"Add" ? S_OK : DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    ++added_;
    return S_OK;
  }

  int added_ = 0;
};

TEST_F(LateBoundTest, RunsTheSelfTestsOfTextsForACollectionOfTheHost) {
  const Value strings = Lib(L"LibString");
  Collection collection;
  Value failed(&collection);
  const Outcome outcome = Call(strings.pdispVal, L"SelfTest_Main", {failed.ByReference()});
  EXPECT_EQ(S_OK, outcome.result);
  EXPECT_EQ(VT_EMPTY, outcome.value.vt);
  EXPECT_EQ(0, collection.added_);
  VariantClear(&failed);
  EXPECT_EQ(0u, collection.References());
}

}  // namespace
}  // namespace vorquill21::test
