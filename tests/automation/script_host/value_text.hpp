#pragma once

#include <string>

#include "tests/automation/script_host/com.hpp"

namespace script_host {

/// A value with its type, so that two values that are shown alike are alike:
///
///     Empty    Null    Missing    Boolean True    Integer 7    Long 7    Error 80070005
///     Double 0.1                            the shortest number that is read back as the same one
///     String 'a<TAB>b<CR><LF>'              controls by name or, as <00>, by code
///     Object CFile    Object Nothing        the class as the object itself says
///     Variant(0 to 1) Long 1, String 'a'    an array: element type, bounds, each element with its type
///     Double(1 to 2, 0 to 1) 1, 2, 3, 4     rows after each other; elements of one type without it
///     Variant()                             never dimensioned
std::wstring Shown(const VARIANT& value);

}  // namespace script_host
