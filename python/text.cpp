#include "python/binding.hpp"
#include "python/module.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21::python {

void AddText(py::module_& module) {
  using C = CString;
  Class<C, Calls::kLong>(module, "CString", "Taking texts apart.")
      .Constructor()
      .Method<&C::CommandLineArgumentIndex>(
          "CommandLineArgumentIndex",
          "The index of the argument of that name, ignoring letter case; 0 without.", "avCommandArgs"_a,
          "asArgName"_a)
      .Method<&C::CommandLineArgumentsParse>(
          "CommandLineArgumentsParse",
          "Takes a command line apart: that of the process, or the one passed in\n"
          "test mode. Element 0 is always None.",
          "abIsTestMode"_a = false, "asTestCommandLine"_a = "")
      .Method<&C::MidBracketed>("MidBracketed", "The text between two brackets.", "asText"_a,
                                "asOpenBracket"_a, "asCloseBracket"_a)
      .Method<&C::ReplaceMulti>("ReplaceMulti", "Replaces every run of asFind by one asReplaceWith.",
                                "asOriginal"_a, "asFind"_a, "asReplaceWith"_a)
      .Method<&C::RTrimMulti>("RTrimMulti", "Removes the characters of a list from the end of the text.",
                              "asOriginal"_a, "avTrimChar"_a)
      .Method<&C::Split5>("Split5", "Splits a text at a delimiter, at most into aiLimit elements.",
                          "asText"_a, "asDelimiter"_a = " ", "aiLimit"_a = -1, "aeCompareMethod"_a = 0,
                          "abTreatMultipleDelimitersAsOne"_a = false)
      .Method<&C::SplitMulti>("SplitMulti", "Splits a text at every delimiter.", "asText"_a,
                              "asDelimiter"_a = " ", "abTreatMultipleDelimitersAsOne"_a = false)
      .Method<&C::SelfTest_Main>("SelfTest_Main", "Appends the names of the built-in checks that fail.",
                                 "aoFailedTests"_a);
}

}  // namespace vorquill21::python
