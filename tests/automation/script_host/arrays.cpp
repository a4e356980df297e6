#include "tests/automation/script_host/arrays.hpp"

#include <iterator>
#include <regex>

namespace script_host {
namespace {

struct TypeName {
  VARTYPE type;
  const wchar_t* name;
};
constexpr TypeName kTypeNames[] = {
    {VT_VARIANT, L"Variant"}, {VT_R8, L"Double"}, {VT_R4, L"Single"},     {VT_I4, L"Long"},
    {VT_I2, L"Integer"},      {VT_UI1, L"Byte"},  {VT_BOOL, L"Boolean"},  {VT_BSTR, L"String"},
    {VT_CY, L"Currency"},     {VT_DATE, L"Date"}, {VT_I1, L"SignedByte"}, {VT_UI2, L"Word"},
    {VT_UI4, L"DoubleWord"},
};

VARTYPE TypeNamed(const std::wstring& name) {
  for (const TypeName& each : kTypeNames)
    if (name == each.name) return each.type;
  throw HostError{E_INVALIDARG, name + L" is no element type"};
}

struct Shape {
  VARTYPE type;
  std::vector<SAFEARRAYBOUND> bounds;
};

Shape ShapeOf(const std::wstring& text) {
  static const std::wregex kWhole(LR"((\w+)\(((?:-?\d+ to -?\d+(?:, )?)*)\))");
  static const std::wregex kBound(LR"((-?\d+) to (-?\d+))");
  std::wsmatch whole;
  if (!std::regex_match(text, whole, kWhole)) throw HostError{E_INVALIDARG, text + L" is no shape"};
  Shape shape{TypeNamed(whole.str(1)), {}};
  const std::wstring bounds = whole.str(2);
  for (std::wsregex_iterator each(bounds.begin(), bounds.end(), kBound); each != std::wsregex_iterator();
       ++each) {
    const long lower = std::stol(each->str(1));
    const long upper = std::stol(each->str(2));
    shape.bounds.push_back({static_cast<ULONG>(upper - lower + 1), lower});
  }
  return shape;
}

LONG Bound(const SAFEARRAY* array, UINT dimension, decltype(SafeArrayGetLBound)* ask) {
  LONG bound = 0;
  ask(const_cast<SAFEARRAY*>(array), dimension, &bound);
  return bound;
}

/// Calls `use` with every set of indices, the last one running fastest.
void ForEachPlace(const SAFEARRAY* array, const std::function<void(LONG*)>& use) {
  const UINT rank = array == nullptr ? 0 : SafeArrayGetDim(const_cast<SAFEARRAY*>(array));
  std::vector<LONG> lower(rank);
  std::vector<LONG> upper(rank);
  for (UINT dimension = 0; dimension < rank; ++dimension) {
    lower[dimension] = Bound(array, dimension + 1, SafeArrayGetLBound);
    upper[dimension] = Bound(array, dimension + 1, SafeArrayGetUBound);
    if (upper[dimension] < lower[dimension]) return;
  }
  std::vector<LONG> place = lower;
  for (UINT carried = 0; carried < rank;) {
    use(place.data());
    for (carried = 0; carried < rank; ++carried) {
      const UINT dimension = rank - 1 - carried;
      if (++place[dimension] <= upper[dimension]) break;
      place[dimension] = lower[dimension];
    }
  }
}

/// Where the value of a variant lies, as the functions for arrays take it.
void* Content(VARIANT& value, VARTYPE type) {
  if (type == VT_VARIANT) return &value;
  return type == VT_BSTR ? static_cast<void*>(V_BSTR(&value)) : &V_UI1(&value);
}

}  // namespace

std::wstring NameOf(VARTYPE type) {
  for (const TypeName& each : kTypeNames)
    if (type == each.type) return each.name;
  return L"Type " + std::to_wstring(type);
}

const SAFEARRAY* ArrayIn(const VARIANT& value) {
  return V_ISBYREF(&value) ? *V_ARRAYREF(&value) : V_ARRAY(&value);
}

std::wstring BoundsText(const SAFEARRAY* array) {
  std::wstring text;
  const UINT rank = array == nullptr ? 0 : SafeArrayGetDim(const_cast<SAFEARRAY*>(array));
  for (UINT dimension = 1; dimension <= rank; ++dimension) {
    if (dimension > 1) text += L", ";
    text += std::to_wstring(Bound(array, dimension, SafeArrayGetLBound)) + L" to " +
            std::to_wstring(Bound(array, dimension, SafeArrayGetUBound));
  }
  return text;
}

void ForEachElement(const SAFEARRAY* array, VARTYPE type, const std::function<void(const VARIANT&)>& use) {
  ForEachPlace(array, [&](LONG* place) {
    Value element;
    void* content = type == VT_VARIANT ? static_cast<void*>(&element) : &V_UI1(&element);
    SafeArrayGetElement(const_cast<SAFEARRAY*>(array), place, content);
    if (type != VT_VARIANT) V_VT(&element) = type;
    use(element);
  });
}

void MakeArray(const std::wstring& shapeText, const VARIANT& values, VARIANT& result) {
  Shape shape = ShapeOf(shapeText);
  if (!V_ISARRAY(&values)) throw HostError{E_INVALIDARG, L"the elements are no array"};
  std::vector<std::unique_ptr<Value>> elements;
  ForEachElement(ArrayIn(values), V_VT(&values) & VT_TYPEMASK, [&](const VARIANT& element) {
    elements.push_back(std::make_unique<Value>());
    if (shape.type == VT_VARIANT)
      VariantCopyInd(elements.back().get(), const_cast<VARIANT*>(&element));
    else if (FAILED(VariantChangeType(elements.back().get(), const_cast<VARIANT*>(&element), 0, shape.type)))
      throw HostError{DISP_E_TYPEMISMATCH, L"an element cannot be converted"};
  });
  V_VT(&result) = static_cast<VARTYPE>(VT_ARRAY | shape.type);
  V_ARRAY(&result) = nullptr;
  std::size_t used = 0;
  if (!shape.bounds.empty()) {
    V_ARRAY(&result) =
        SafeArrayCreate(shape.type, static_cast<UINT>(shape.bounds.size()), shape.bounds.data());
    ForEachPlace(V_ARRAY(&result), [&](LONG* place) {
      if (used < elements.size())
        SafeArrayPutElement(V_ARRAY(&result), place, Content(*elements[used], shape.type));
      ++used;
    });
  }
  if (used != elements.size()) throw HostError{E_INVALIDARG, shapeText + L" has another number of elements"};
}

}  // namespace script_host
