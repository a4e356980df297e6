#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "tests/automation/component.hpp"

namespace vorquill21::test {
namespace {

using Lines = std::vector<std::string>;

// --- What docs/interface.md says
// -----------------------------------------------------------------------------

std::string Trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

Lines Split(const std::string& text, const std::string& separator) {
  Lines parts;
  std::size_t from = 0;
  for (std::size_t at; (at = text.find(separator, from)) != std::string::npos; from = at + separator.size()) {
    parts.push_back(text.substr(from, at - from));
  }
  parts.push_back(text.substr(from));
  return parts;
}

/// "`a`, `b` double, out" as "a double, by reference; b double, by reference": type libraries do not tell
/// what is written.
std::string EachParameter(const std::string& cell) {
  static const std::regex kGroup("(`\\w+`(?:, `\\w+`)*) (.*)");
  static const std::regex kName("`(\\w+)`");
  std::string each;
  for (const std::string& group : Split(Trimmed(cell), "; ")) {
    std::smatch parts;
    if (!std::regex_match(group, parts, kGroup)) continue;
    const std::string names = parts[1];
    for (std::sregex_iterator name(names.begin(), names.end(), kName), end; name != end; ++name) {
      each += (each.empty() ? "" : "; ") + name->str(1) + " " + parts[2].str();
    }
  }
  each = std::regex_replace(each, std::regex("matrix of double"), "array of double");
  return std::regex_replace(each, std::regex(", out"), ", by reference");
}

struct Page {
  std::map<std::string, Lines> members;       // of each class, in order
  std::map<std::string, Lines> enumerations;  // of each one, in order
};

void ReadRow(const std::string& section, const std::string& row, Page& page) {
  static const std::regex kMember(
      R"(\| `(\w+)` \| (method|property get|property let|event|object variable) \|(.*)\| (.+) \|)");
  static const std::regex kEnumerator(R"(\| `(\w+)` \| `(\w+)` \| (-?\d+) \|)");
  std::smatch cells;
  if (std::regex_match(row, cells, kMember)) {
    page.members[section].push_back(cells.str(2) + " " + cells.str(1) + "(" + EachParameter(cells[3]) + ") " +
                                    cells.str(4));
  } else if (std::regex_match(row, cells, kEnumerator)) {
    page.enumerations[cells[1]].push_back(cells.str(2) + " = " + cells.str(3));
  }
}

Page ReadPage() {
  std::ifstream file(VORQUILL21_INTERFACE_PAGE);
  EXPECT_TRUE(file) << VORQUILL21_INTERFACE_PAGE;
  Page page;
  std::string section;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("## ")) section = line.substr(3);
    ReadRow(section, line, page);
  }
  for (const char* ofCppOnly : {"MessageStyle", "CompareMethod"}) page.enumerations.erase(ofCppOnly);
  return page;
}

// --- What the type library says
// ------------------------------------------------------------------------------

std::string Narrow(BSTR text) {
  return {text, text + SysStringLen(text)};
}

struct Documentation {
  std::string name;
  std::string help;
};

Documentation DocumentationOf(ITypeInfo& type, MEMBERID member = MEMBERID_NIL) {
  TextArgument name;
  TextArgument help;
  type.GetDocumentation(member, &name, &help, nullptr, nullptr);
  return {Narrow(name), Narrow(help)};
}

/// The attributes of a type as long as it lives.
class Attributes {
 public:
  explicit Attributes(ITypeInfo& type) : type_(type) { type.GetTypeAttr(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  ~Attributes() { type_.ReleaseTypeAttr(attributes_); }
  const TYPEATTR* operator->() const { return attributes_; }

 private:
  ITypeInfo& type_;
  TYPEATTR* attributes_ = nullptr;
};

Reference<ITypeInfo> TypeOfReference(ITypeInfo& type, HREFTYPE reference) {
  Reference<ITypeInfo> referenced;
  EXPECT_EQ(S_OK, type.GetRefTypeInfo(reference, referenced.Receive()));
  return referenced;
}

/// In the page's words; pointers are not looked at.
std::string WordsOf(ITypeInfo& type, const TYPEDESC& description) {
  switch (description.vt) {
    case VT_PTR:
      return WordsOf(type, *description.lptdesc);
    case VT_SAFEARRAY:
      return "array of " + WordsOf(type, *description.lptdesc);
    case VT_BSTR:
      return "text";
    case VT_I4:
      return "32-bit integer";
    case VT_R8:
      return "double";
    case VT_BOOL:
      return "boolean";
    case VT_VARIANT:
      return "variant";
    case VT_DISPATCH:
      return "collection of text";
    case VT_VOID:
    case VT_HRESULT:
      return "none";
    case VT_USERDEFINED:
      break;
    default:
      return "type " + std::to_string(description.vt);
  }
  const Reference<ITypeInfo> referenced = TypeOfReference(type, description.hreftype);
  const std::string name = DocumentationOf(*referenced).name;
  if (name == "IDispatch") return "collection of text";
  if (Attributes(*referenced)->typekind == TKIND_ENUM) return "enumeration `" + name + "`";
  return "object `" + name.substr(1) + "`";
}

/// How many pointers lead to a value of the type.
int DepthOf(const TYPEDESC& description) {
  return description.vt == VT_PTR ? 1 + DepthOf(*description.lptdesc) : 0;
}

std::string DefaultWords(const VARIANT& value) {
  switch (value.vt) {
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE ? "True" : "False";
    case VT_I4:
      return std::to_string(value.lVal);
    case VT_BSTR:
      return "`\"" + Narrow(value.bstrVal) + "\"`";
    default:
      return "kind " + std::to_string(value.vt);
  }
}

std::string ParameterWords(ITypeInfo& type, const ELEMDESC& element, const std::string& name) {
  const PARAMDESC& description = element.paramdesc;
  std::string words = name + " " + WordsOf(type, element.tdesc);
  const bool isObject = words.find("object `") != std::string::npos;
  if (DepthOf(element.tdesc) > (isObject ? 1 : 0)) {
    words += ", by reference";
    EXPECT_EQ(PARAMFLAG_FIN | PARAMFLAG_FOUT, description.wParamFlags & (PARAMFLAG_FIN | PARAMFLAG_FOUT))
        << name;
  }
  const bool isOptional = (description.wParamFlags & PARAMFLAG_FOPT) != 0;
  const bool hasDefault = (description.wParamFlags & PARAMFLAG_FHASDEFAULT) != 0;
  const std::string value = hasDefault ? DefaultWords(description.pparamdescex->varDefaultValue) : "";
  EXPECT_TRUE(isOptional || !hasDefault) << name;
  if (isOptional) words += hasDefault && value != "`\"\"`" ? ", = " + value : ", optional";
  return words;
}

std::string KindWords(INVOKEKIND kind, bool isEvent) {
  if (isEvent) return "event";
  switch (kind) {
    case INVOKE_PROPERTYGET:
      return "property get";
    case INVOKE_PROPERTYPUT:
      return "property let";
    case INVOKE_PROPERTYPUTREF:
      return "property set";
    default:
      return "method";
  }
}

/// A member in the page's words.
std::string FunctionWords(ITypeInfo& type, const FUNCDESC& function, bool isEvent) {
  BSTR names[20];
  UINT count = 0;
  EXPECT_EQ(S_OK, type.GetNames(function.memid, names, 20, &count));
  const bool isWriting = (function.invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
  std::string parameters;
  std::string result = WordsOf(type, function.elemdescFunc.tdesc);
  for (int i = 0; i < function.cParams; ++i) {
    const ELEMDESC& element = function.lprgelemdescParam[i];
    if ((element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) {
      result = WordsOf(type, element.tdesc);
    } else {
      const bool isNamed = static_cast<UINT>(i) + 1 < count && !isWriting;
      const std::string name = isNamed ? Narrow(names[i + 1]) : "value";
      parameters += (parameters.empty() ? "" : "; ") + ParameterWords(type, element, name);
    }
  }
  const std::string words =
      KindWords(function.invkind, isEvent) + " " + Narrow(names[0]) + "(" + parameters + ") " + result;
  for (UINT i = 0; i < count; ++i) SysFreeString(names[i]);
  return words;
}

/// What a property is set to has no name in a type library.
std::string WithoutLetNames(const std::string& member) {
  return std::regex_replace(member, std::regex(R"((property let \w+\()\w+ )"), "$1value ");
}

/// The table half of a dual interface; events have none.
Reference<ITypeInfo> TableHalf(ITypeInfo& type) {
  HREFTYPE half = 0;
  if (FAILED(type.GetRefTypeOfImplType(static_cast<UINT>(-1), &half))) return Reference<ITypeInfo>(&type);
  return TypeOfReference(type, half);
}

class TypeLibraryTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(S_OK, LoadTypeLibEx(Component::Default().Path().c_str(), REGKIND_NONE, library_.Receive()));
  }

  template <typename Visit>
  void ForEachType(Visit visit) {
    for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
      Reference<ITypeInfo> type;
      ASSERT_EQ(S_OK, library_->GetTypeInfo(i, type.Receive()));
      visit(*type, Attributes(*type));
    }
  }

  /// Calls `visit` with each member of an interface in order.
  template <typename Visit>
  static void ForEachFunction(ITypeInfo& type, Visit visit) {
    FUNCDESC* function = nullptr;
    for (UINT i = 0; SUCCEEDED(type.GetFuncDesc(i, &function)); ++i) {
      visit(*function);
      type.ReleaseFuncDesc(function);
    }
  }

  Reference<ITypeLib> library_;
};

TEST_F(TypeLibraryTest, HasTheMembersOfTheInterfacePageInItsOrder) {
  const Page page = ReadPage();
  std::map<std::string, Lines> members;
  ForEachType([&](ITypeInfo& type, const Attributes& attributes) {
    if (attributes->typekind != TKIND_DISPATCH) return;
    const std::string name = DocumentationOf(type).name;
    const bool isEvents = name.starts_with("__");
    const Reference<ITypeInfo> table = TableHalf(type);
    ForEachFunction(*table, [&](const FUNCDESC& function) {
      members[name.substr(isEvents ? 2 : 1)].push_back(FunctionWords(*table, function, isEvents));
    });
  });
  ASSERT_EQ(12u, page.members.size());
  for (auto& [name, expected] : page.members) {
    Lines described;
    for (const std::string& member : expected) {
      if (member.starts_with("object variable moUtils")) {
        described.push_back("property get moUtils() object `CMathUtils`");
        described.push_back("property set moUtils(value object `CMathUtils`) none");
      } else {
        described.push_back(WithoutLetNames(member));
      }
    }
    Lines& found = members[name];
    std::stable_partition(found.begin(), found.end(),
                          [](const std::string& m) { return m.starts_with("event"); });
    EXPECT_EQ(described, found) << name;
  }
  EXPECT_EQ(page.members.size(), members.size());
}

TEST_F(TypeLibraryTest, PlacesTheMembersInTheTableInTheirOrder) {
  ForEachType([&](ITypeInfo& type, const Attributes& attributes) {
    if (attributes->typekind != TKIND_DISPATCH || (attributes->wTypeFlags & TYPEFLAG_FDUAL) == 0) return;
    SHORT place = 7;  // behind those of IDispatch
    ForEachFunction(*TableHalf(type), [&](const FUNCDESC& function) {
      EXPECT_EQ(place * static_cast<SHORT>(sizeof(void*)), function.oVft)
          << DocumentationOf(type, function.memid).name;
      ++place;
    });
  });
}

TEST_F(TypeLibraryTest, HasTheEnumerationsOfTheInterfacePage) {
  const Page page = ReadPage();
  std::map<std::string, Lines> enumerations;
  ForEachType([&](ITypeInfo& type, const Attributes& attributes) {
    if (attributes->typekind != TKIND_ENUM) return;
    for (UINT i = 0; i < attributes->cVars; ++i) {
      VARDESC* variable = nullptr;
      ASSERT_EQ(S_OK, type.GetVarDesc(i, &variable));
      enumerations[DocumentationOf(type).name].push_back(DocumentationOf(type, variable->memid).name + " = " +
                                                         std::to_string(variable->lpvarValue->lVal));
      type.ReleaseVarDesc(variable);
    }
  });
  EXPECT_EQ(6u, page.enumerations.size());
  EXPECT_EQ(page.enumerations, enumerations);
}

TEST_F(TypeLibraryTest, HelpsWithEveryTypeAndMember) {
  ForEachType([&](ITypeInfo& type, const Attributes&) {
    const Documentation ofType = DocumentationOf(type);
    EXPECT_NE("", ofType.help) << ofType.name;
    ForEachFunction(type, [&](const FUNCDESC& function) {
      if (function.memid >= 0x60000000) return;  // those of IDispatch
      const Documentation ofMember = DocumentationOf(type, function.memid);
      EXPECT_NE("", ofMember.help) << ofType.name << "." << ofMember.name;
    });
  });
}

TEST_F(TypeLibraryTest, DescribesTwelveClassesOfWhichTheLogHasEvents) {
  std::map<std::string, std::string> classes;
  ForEachType([&](ITypeInfo& type, const Attributes& attributes) {
    if (attributes->typekind != TKIND_COCLASS) return;
    std::string& interfaces = classes[DocumentationOf(type).name];
    for (UINT i = 0; i < attributes->cImplTypes; ++i) {
      HREFTYPE reference = 0;
      INT flags = 0;
      type.GetRefTypeOfImplType(i, &reference);
      type.GetImplTypeFlags(i, &flags);
      EXPECT_NE(0, flags & IMPLTYPEFLAG_FDEFAULT);
      interfaces += ((flags & IMPLTYPEFLAG_FSOURCE) != 0 ? " source " : "") +
                    DocumentationOf(*TypeOfReference(type, reference)).name;
    }
  });
  EXPECT_EQ(12u, classes.size());
  for (const auto& [name, interfaces] : classes) {
    EXPECT_EQ(name == "CLog" ? "_CLog source __CLog" : "_" + name, interfaces);
  }
}

TEST_F(TypeLibraryTest, TakesAllArgumentsOfInitialiseAsOneArray) {
  Reference<ITypeInfo> type;
  ASSERT_EQ(S_OK, library_->GetTypeInfoOfGuid(IID__Main, type.Receive()));
  int variadic = 0;
  ForEachFunction(*TableHalf(*type), [&](const FUNCDESC& function) {
    if (function.cParamsOpt == -1) ++variadic;
    EXPECT_EQ(function.cParamsOpt == -1, DocumentationOf(*type, function.memid).name == "Initialise");
  });
  EXPECT_EQ(1, variadic);
}

}  // namespace
}  // namespace vorquill21::test
