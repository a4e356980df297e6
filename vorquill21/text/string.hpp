#pragma once

#include <cstdint>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

/// How texts are compared where a method leaves the choice.
enum CompareMethod : std::int32_t {
  kCompareExact = 0,         ///< unit by unit
  kCompareIgnoringCase = 1,  ///< by capital forms, see UpperCase
};

/// Taking texts apart. An object holds no state but its platform; arrays that it returns have the lower bound
/// 0. Texts are compared exactly unless a method says otherwise.
///
/// Where a cost is linear it is so as long as few places of a text begin and end like what is sought there
/// and are something else; at most it is the product of both lengths.
class VORQUILL21_API CString {
 public:
  explicit CString(Platform& platform = Platform::Native());

  /// The index of the first element of an argument list that equals `asArgName` as a whole, ignoring letter
  /// case; 0 when there is none. In a list made by CommandLineArgumentsParse 0 means absent, as its element 0
  /// is no argument; the empty name gives 0 there, too.
  ///
  /// Any one-dimensional array will do, whatever its bounds; elements are compared by their texts. A value
  /// that is no array, or an element looked at that is missing, an object or an array, is error 13; an array
  /// that was never dimensioned, or has more dimensions, is error 9. Cost: linear, up to the first match.
  std::int32_t CommandLineArgumentIndex(const Variant& avCommandArgs, TextView asArgName) const;

  /// Takes a command line apart: `asTestCommandLine` with `abIsTestMode`, otherwise that of the process
  /// without the program's own name. Returns an array of variants, bounds 0 to the number of arguments:
  /// element 0 is always empty, then come the arguments in order.
  ///
  /// Blanks (U+0020 alone) separate arguments, any number of them. A double quote that begins an argument
  /// makes it last to the next double quote, or to the end of the line, blanks included; right behind that
  /// quote another argument may begin. Within an argument that began without one, double quotes are left out
  /// and mean nothing: `ab"c d"` is "abc" and "d". Argument "" is an empty variant, all others are texts.
  ///
  /// Raises what asking for the process's command line raises, and error 7 when memory runs out. Cost:
  /// linear.
  Variant CommandLineArgumentsParse(bool abIsTestMode = false, TextView asTestCommandLine = {}) const;

  /// The text between two brackets of one character: from the unit after the first unit of the first
  /// `asOpenBracket` (the start of the text when there is none) up to the next `asCloseBracket`. The empty
  /// text when there is no closing bracket behind it.
  ///
  /// Of a longer opening bracket all units but the first are part of the result. An empty opening bracket is
  /// found at the first unit, an empty closing one directly behind the opening one. Raises nothing: running
  /// out of memory is the empty text, too. Cost: linear for brackets of one unit.
  Text MidBracketed(TextView asText, TextView asOpenBracket, TextView asCloseBracket) const;

  /// Replaces every run of consecutive occurrences of `asFind` by one `asReplaceWith`: as long as there is
  /// one, every doubled `asFind` is replaced by a single one, from left to right; then every `asFind` by
  /// `asReplaceWith`. An empty `asFind` replaces nothing.
  ///
  /// Cost: linear (for the length of a text that ends as it begins, such as "aba", too); error 7 when memory
  /// runs out.
  Text ReplaceMulti(TextView asOriginal, TextView asFind, TextView asReplaceWith) const;

  /// Removes characters from the end of the text as long as it ends in one that equals an entry of
  /// `avTrimChar`. Texts equal by their units; an empty entry equals the empty text; numbers and booleans
  /// equal no text.
  ///
  /// The last character is looked at once in each pass over the entries: when two of them equal it, two
  /// characters go, whatever the second one is. Removing a character from the empty text, which an empty
  /// entry (or the empty text as one) can come to, is error 5; entries that were never dimensioned are error
  /// 9; an entry that is missing, an object or an array is error 13.
  /// Cost: the number of entries for each character removed.
  Text RTrimMulti(TextView asOriginal, const BoundedArray<Variant>& avTrimChar) const;

  /// Splits a text at a delimiter into an array of texts.
  ///
  /// The empty text gives one empty element. Otherwise elements are taken from the left until the text is
  /// used up or `aiLimit` of them were taken (a negative limit is none); what is left then is dropped. A
  /// delimiter at the start gives an empty first element, one at the end no empty last one. With
  /// `abTreatMultipleDelimitersAsOne` empty elements are left out and not counted. `aeCompareMethod` is a
  /// CompareMethod.
  ///
  /// An empty delimiter gives as many empty elements as the limit says. Error 5: an empty delimiter without a
  /// limit or with empty elements left out, another `aeCompareMethod`. Error 9: no element at all, because
  /// the limit is 0 or all were left out. Error 7: memory ran out. The empty text meets none of these.
  /// Cost: linear.
  Variant Split5(TextView asText, TextView asDelimiter = u" ", std::int32_t aiLimit = -1,
                 std::int32_t aeCompareMethod = kCompareExact,
                 bool abTreatMultipleDelimitersAsOne = false) const;

  /// Splits a text at every occurrence of a delimiter. An empty delimiter splits nothing.
  ///
  /// Normally an array of texts, with an empty element between adjacent delimiters and before or after one at
  /// the start or the end; the array without elements (bounds 0 to -1) for the empty text. With
  /// `abTreatMultipleDelimitersAsOne` an array of variants that holds the elements that are not empty, in
  /// order; when there is none, 101 empty variants. Error 7 when memory runs out. Cost: linear.
  Variant SplitMulti(TextView asText, TextView asDelimiter = u" ",
                     bool abTreatMultipleDelimitersAsOne = false) const;

  /// Runs the built-in checks of this class and appends the names of those that fail to `aoFailedTests`
  /// (the check of MidBracketed goes by the name "SelfTest_CommandLineArgumentsParse"). Returns empty.
  Variant SelfTest_Main(FailedTests& aoFailedTests) const;

 private:
  Platform& platform_;
};

}  // namespace vorquill21
