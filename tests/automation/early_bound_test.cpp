#include <gtest/gtest.h>

#include <cmath>

#include "tests/automation/component.hpp"
#include "tests/automation/host_object.hpp"

namespace vorquill21::test {
namespace {

constexpr HRESULT kRuntimeError = static_cast<HRESULT>(0x800A0000);

double ElementOf(SAFEARRAY* matrix, LONG row, LONG column) {
  LONG indices[2] = {row, column};
  double element = NAN;
  EXPECT_EQ(S_OK, SafeArrayGetElement(matrix, indices, &element));
  return element;
}

void ExpectFailure(HRESULT result, HRESULT number, const wchar_t* source, const wchar_t* description) {
  EXPECT_EQ(number, result) << std::hex << result;
  const ErrorWords words = TakeErrorWords();
  EXPECT_TRUE(words.isThere);
  EXPECT_EQ(source, words.source);
  EXPECT_EQ(description, words.description);
}

TEST(EarlyBoundTest, ReadsArraysOfDoublesWithTheirOwnBounds) {
  const auto statistics = VORQUILL21_MAKE(CStatistics);
  Array values(-7, {1.5, 4.25, -2.0});
  double result = 0;
  LONG index = 0;
  EXPECT_EQ(S_OK, statistics->ArithmeticMean(&values, &result));
  EXPECT_EQ(0x1.4p+0, result);
  EXPECT_EQ(S_OK, statistics->Maximum(&values, &index, &result));
  EXPECT_EQ(4.25, result);
  EXPECT_EQ(-6, index);
  EXPECT_EQ(S_OK, statistics->Minimum(&values, &index, &result));
  EXPECT_EQ(-2.0, result);
  EXPECT_EQ(-5, index);
  EXPECT_EQ(0u, values->cLocks);
}

TEST(EarlyBoundTest, LeavesOutAnOptionalResultByANullPointer) {
  const auto statistics = VORQUILL21_MAKE(CStatistics);
  Array values(1, {1.0, 2.0});
  double result = 0;
  EXPECT_EQ(S_OK, statistics->Maximum(&values, nullptr, &result));
  EXPECT_EQ(2.0, result);
}

TEST(EarlyBoundTest, GivesResultArraysTheirBounds) {
  const auto interpolate = VORQUILL21_MAKE(CInterpolate);
  Array x(5, {1, 2, 3, 4});
  Array y(5, {1, 4, 9, 16});
  Array coefficients;
  double deviation = -1;
  ASSERT_EQ(S_OK, interpolate->OneDPolynomialFit(&x, &y, 2, &coefficients, &deviation));
  EXPECT_EQ(1, LowerBoundOf(coefficients.Get()));
  const auto found = DoublesOf(coefficients.Get());
  ASSERT_EQ(4u, found.size());  // as many as points
  EXPECT_NEAR(1.0, found[2], 1e-12);
  EXPECT_NEAR(0.0, deviation, 1e-12);

  double value = 0;
  ASSERT_EQ(S_OK, interpolate->OneDPolynomialInterpolate(5, &coefficients, &value));
  EXPECT_NEAR(25.0, value, 1e-12);
}

TEST(EarlyBoundTest, KeepsRowsAndColumnsOfMatricesApart) {
  const auto geometry = VORQUILL21_MAKE(CGeometry);
  Array a(NewMatrix(1, 3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
  Array b(NewMatrix(1, 3, 2, {1, 2, 3, 4, 5, 6}));
  Array product;
  ASSERT_EQ(S_OK, geometry->MatrixMultiply(&a, &b, &product));
  EXPECT_EQ(3u, product->rgsabound[1].cElements);
  EXPECT_EQ(2u, product->rgsabound[0].cElements);
  EXPECT_EQ(22, ElementOf(product.Get(), 1, 1));
  EXPECT_EQ(28, ElementOf(product.Get(), 1, 2));
  EXPECT_EQ(49, ElementOf(product.Get(), 2, 1));
  EXPECT_EQ(100, ElementOf(product.Get(), 3, 2));
}

TEST(EarlyBoundTest, WritesAResultOverOneOfItsSources) {
  const auto geometry = VORQUILL21_MAKE(CGeometry);
  Array a(NewMatrix(1, 2, 2, {1, 2, 3, 4}));
  ASSERT_EQ(S_OK, geometry->MatrixMultiply(&a, &a, &a));
  EXPECT_EQ(7, ElementOf(a.Get(), 1, 1));
  EXPECT_EQ(10, ElementOf(a.Get(), 1, 2));
  EXPECT_EQ(15, ElementOf(a.Get(), 2, 1));
}

TEST(EarlyBoundTest, WritesIntoAnArrayOfTheSameBoundsWhereItLies) {
  const auto utilities = VORQUILL21_MAKE(CMathUtils);
  Array target(0, {0, 0, 0});
  const SAFEARRAY* const before = target.Get();
  Value source = Value::Array({1, 2.5, L"3"});
  ASSERT_EQ(S_OK, utilities->CopyArray1D(&target, &source));
  EXPECT_EQ(before, target.Get());
  EXPECT_EQ((std::vector<double>{1, 2.5, 3}), DoublesOf(target.Get()));
}

TEST(EarlyBoundTest, KeepsTheKindOfElementsOfAResultArray) {
  const auto utilities = VORQUILL21_MAKE(CMathUtils);
  Array target(SafeArrayCreateVector(VT_R4, 0, 1));
  Value source = Value::Array({1, 2.5});
  ASSERT_EQ(S_OK, utilities->CopyArray1D(&target, &source));
  VARTYPE kind = VT_EMPTY;
  EXPECT_EQ(S_OK, SafeArrayGetVartype(target.Get(), &kind));
  EXPECT_EQ(VT_R4, kind);
  EXPECT_EQ(2.5f, static_cast<float*>(target->pvData)[1]);
}

TEST(EarlyBoundTest, RefusesToResizeAnArrayThatIsLockedOrFixed) {
  const auto utilities = VORQUILL21_MAKE(CMathUtils);
  Value source = Value::Array({1, 2});
  Array locked(0, {7});
  SafeArrayLock(locked.Get());
  ExpectFailure(utilities->CopyArray1D(&locked, &source), kRuntimeError + 10, L"",
                L"This array is fixed or temporarily locked");
  SafeArrayUnlock(locked.Get());
  EXPECT_EQ(std::vector<double>{7}, DoublesOf(locked.Get()));

  Array fixed(0, {7});
  fixed->fFeatures |= FADF_FIXEDSIZE;
  EXPECT_EQ(kRuntimeError + 10, utilities->CopyArray1D(&fixed, &source));
  EXPECT_EQ(std::vector<double>{7}, DoublesOf(fixed.Get()));
}

TEST(EarlyBoundTest, TakesOneRowOrOneColumnWhereOneDimensionIsMeant) {
  const auto statistics = VORQUILL21_MAKE(CStatistics);
  Array row(NewMatrix(1, 1, 3, {1, 2, 6}));
  Array column(NewMatrix(1, 3, 1, {1, 2, 6}));
  Array square(NewMatrix(1, 2, 2, {1, 2, 3, 4}));
  double result = 0;
  LONG index = 0;
  EXPECT_EQ(S_OK, statistics->Maximum(&row, &index, &result));
  EXPECT_EQ(3, index);
  EXPECT_EQ(S_OK, statistics->ArithmeticMean(&column, &result));
  EXPECT_EQ(3.0, result);
  ExpectFailure(statistics->ArithmeticMean(&square, &result), kRuntimeError + 9, L"",
                L"Subscript out of range");
}

TEST(EarlyBoundTest, TellsErrorsAsTheyAreRaised) {
  const auto log = VORQUILL21_MAKE(CLog);
  ExpectFailure(log->AddEntry(TextArgument(L"entry"), logNormal), kRuntimeError + 1000, L"CLog.AddEntry",
                L"Log not initialised");

  const auto utilities = VORQUILL21_MAKE(CMathUtils);
  Array negative(-1, {1, 2, 3});
  LONG index = 77;
  VARIANT_BOOL isInside = VARIANT_FALSE;
  ExpectFailure(utilities->ArrayLocate(&negative, 2, &index, &isInside), -2147220991,
                L"Vorquill21MathUtils.ArrayLocate", L"One or more array bounds are below 0");
  EXPECT_EQ(77, index);

  const auto interpolate = VORQUILL21_MAKE(CInterpolate);
  double result = 0;
  ExpectFailure(interpolate->OneDLinearInterpolateFromPoints(1, 1, 2, 3, 4, &result), kRuntimeError + 380,
                L"Vorquill21.CMathUtils.OneDLinearInterpolateFromPoints", L"X values are coincident");

  Array none;
  ExpectFailure(VORQUILL21_MAKE(CStatistics)->ArithmeticMean(&none, &result), kRuntimeError + 9, L"",
                L"Subscript out of range");

  VARIANT_BOOL areEqual = VARIANT_FALSE;
  ExpectFailure(utilities->NumbersAreEqual(Value(L"one"), Value(1), 2, &areEqual), kRuntimeError + 13, L"",
                L"Type mismatch");
  ExpectFailure(utilities->NumbersAreEqual(Value(1), Value(1), -400, &areEqual), kRuntimeError + 11, L"",
                L"Division by zero");
  LONG word = 0;
  ExpectFailure(utilities->DWordMake(70000, 0, &word), kRuntimeError + 6, L"", L"Overflow");
}

TEST(EarlyBoundTest, RefusesNullPointers) {
  const auto statistics = VORQUILL21_MAKE(CStatistics);
  const auto trigonometry = VORQUILL21_MAKE(CTrigonometry);
  const auto files = VORQUILL21_MAKE(CFile);
  double x = 5;
  ExpectFailure(statistics->ArithmeticMean(nullptr, &x), E_POINTER, L"", L"Invalid pointer");
  Array values(0, {1});
  EXPECT_EQ(E_POINTER, statistics->ArithmeticMean(&values, nullptr));
  EXPECT_EQ(0u, values->cLocks);
  EXPECT_EQ(E_POINTER, trigonometry->PolarToXY(0, 1, &x, nullptr));
  EXPECT_EQ(5, x);
  VARIANT_BOOL result = VARIANT_FALSE;
  EXPECT_EQ(E_POINTER, files->FileReadAsString(TextArgument(L"x"), nullptr, VARIANT_TRUE, &result));
}

TEST(EarlyBoundTest, CountsANullTextAsTheEmptyOne) {
  const auto files = VORQUILL21_MAKE(CFile);
  TextArgument checksum;
  EXPECT_EQ(S_OK, files->Crc32Make(nullptr, &checksum));
  EXPECT_EQ(L"0", checksum.Content());
}

TEST(EarlyBoundTest, KeepsNulInsideTexts) {
  const auto strings = VORQUILL21_MAKE(CString);
  BSTR text = SysAllocStringLen(L"a<\0b>", 5);
  TextArgument inside;
  EXPECT_EQ(S_OK, strings->MidBracketed(text, TextArgument(L"<"), TextArgument(L">"), &inside));
  EXPECT_EQ(std::wstring(L"\0b", 2), inside.Content());
  SysFreeString(text);
}

TEST(EarlyBoundTest, LeavesAPropertyAsTheHostSetIt) {
  const auto import = VORQUILL21_MAKE(CImportColumnData);
  EXPECT_EQ(S_OK, import->put_Delimiter(TextArgument(L";")));
  EXPECT_EQ(S_OK, import->put_HeaderRow(-3));
  TextArgument delimiter;
  LONG row = 0;
  EXPECT_EQ(S_OK, import->get_Delimiter(&delimiter));
  EXPECT_EQ(S_OK, import->get_HeaderRow(&row));
  EXPECT_EQ(L";", delimiter.Content());
  EXPECT_EQ(-3, row);
}

TEST(EarlyBoundTest, GivesListsOfTextsAsSuch) {
  const auto strings = VORQUILL21_MAKE(CString);
  Value parts;
  VARIANT_BOOL asOne = VARIANT_FALSE;
  ASSERT_EQ(S_OK, strings->SplitMulti(TextArgument(L"a,b"), TextArgument(L","), &asOne, &parts));
  EXPECT_EQ(VT_ARRAY | VT_BSTR, parts.vt);
  EXPECT_STREQ(L"b", static_cast<BSTR*>(parts.parray->pvData)[1]);
}

/// Array utilities of the host, for hosts that bind early: those of the component but for ArrayLocate.
class FixedLocation final : public HostObject<_CMathUtils> {
 public:
  FixedLocation() : HostObject(IID__CMathUtils) {}

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* member) override {
    *member = 42;
    return std::wstring(names[0]) == L"ArrayLocate" ? S_OK : DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result,
                      EXCEPINFO* failure, UINT*) override {
    EXPECT_EQ(42, member);
    EXPECT_EQ(3u, arguments->cArgs);
    if (fails_) {
      failure->scode = kRuntimeError + 17;
      failure->bstrDescription = SysAllocString(L"cannot");
      return DISP_E_EXCEPTION;
    }
    lower_ = arguments->rgvarg[2].pvarVal->parray->rgsabound[0].lLbound;
    *arguments->rgvarg[0].pvarVal = Value(1);
    *result = Value(true);
    return S_OK;
  }
  STDMETHODIMP ArrayLocate(SAFEARRAY**, double, LONG*, VARIANT_BOOL*) override { return E_NOTIMPL; }
  STDMETHODIMP CopyArray1D(SAFEARRAY**, VARIANT*) override { return E_NOTIMPL; }
  STDMETHODIMP CopyArray2D(SAFEARRAY**, VARIANT*) override { return E_NOTIMPL; }
  STDMETHODIMP CopyArray3D(SAFEARRAY**, VARIANT*) override { return E_NOTIMPL; }
  STDMETHODIMP DWordGetHighWord(LONG, LONG*) override { return E_NOTIMPL; }
  STDMETHODIMP DWordGetLowWord(LONG, LONG*) override { return E_NOTIMPL; }
  STDMETHODIMP DWordMake(LONG, LONG, LONG*) override { return E_NOTIMPL; }
  STDMETHODIMP NumbersAreEqual(VARIANT, VARIANT, LONG, VARIANT_BOOL*) override { return E_NOTIMPL; }
  STDMETHODIMP ArraysAreEqual(VARIANT*, VARIANT*, LONG, LONG*, VARIANT_BOOL*) override { return E_NOTIMPL; }
  STDMETHODIMP ArrayIsMonotonic1D(VARIANT*, EMonotonicScale, BSTR, BSTR*, VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP IsInBounds(VARIANT, BSTR, BSTR*, EBoundsChecks, VARIANT, VARIANT, VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }

  bool fails_ = false;
  LONG lower_ = 0;
};

TEST(EarlyBoundTest, InterpolatesWithTheArrayUtilitiesOfTheHost) {
  const auto interpolate = VORQUILL21_MAKE(CInterpolate);
  FixedLocation location;
  EXPECT_EQ(S_OK, interpolate->putref_moUtils(&location));
  Array x(1, {1, 2, 3, 4});
  Array y(1, {10, 20, 40, 80});
  double result = 0;
  EXPECT_EQ(S_OK, interpolate->OneDLinearInterpolate(eInterpClip, &x, &y, 3.5, &result));
  EXPECT_EQ(35, result);  // on the first line, where the host located it
  EXPECT_EQ(1, location.lower_);

  Reference<_CMathUtils> utilities;
  EXPECT_EQ(S_OK, interpolate->get_moUtils(utilities.Receive()));
  EXPECT_EQ(&location, utilities.Get());

  location.fails_ = true;
  ExpectFailure(interpolate->OneDLinearInterpolate(eInterpClip, &x, &y, 3.5, &result), kRuntimeError + 17,
                L"", L"cannot");
  utilities = nullptr;
  EXPECT_EQ(S_OK, interpolate->putref_moUtils(nullptr));
  EXPECT_EQ(0u, location.References());
  ExpectFailure(interpolate->OneDLinearInterpolate(eInterpClip, &x, &y, 3.5, &result), kRuntimeError + 5, L"",
                L"Invalid procedure call or argument");
}

TEST(EarlyBoundTest, SharesArrayUtilitiesWithMain) {
  const auto main = VORQUILL21_MAKE(Main);
  Reference<_CInterpolate> interpolate;
  Reference<_CMathUtils> ofMain;
  Reference<_CMathUtils> ofInterpolate;
  EXPECT_EQ(S_OK, main->LibInterpolate(interpolate.Receive()));
  EXPECT_EQ(S_OK, main->LibMathUtils(ofMain.Receive()));
  EXPECT_EQ(S_OK, interpolate->get_moUtils(ofInterpolate.Receive()));
  EXPECT_NE(ofMain.Get(), ofInterpolate.Get());
  Reference<_CMathUtils> again;
  EXPECT_EQ(S_OK, interpolate->get_moUtils(again.Receive()));
  EXPECT_EQ(ofInterpolate.Get(), again.Get());

  EXPECT_EQ(S_OK, interpolate->putref_moUtils(ofMain.Get()));
  EXPECT_EQ(S_OK, interpolate->get_moUtils(ofInterpolate.Receive()));
  EXPECT_EQ(ofMain.Get(), ofInterpolate.Get());
}

}  // namespace
}  // namespace vorquill21::test
