#pragma once

#include <cstdint>
#include <vector>

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {

/// A stretch of a document that reads as a record: a name in brackets and the text that follows it, up to the
/// next bracket that opens.
struct Record {
  Text name;
  std::size_t begin = 0;       ///< of the bracket that opens
  std::size_t valueBegin = 0;  ///< after the bracket that closes
  std::size_t valueEnd = 0;
  std::int64_t line = 0;   ///< counted from 1
  bool startsLine = true;  ///< nothing stands before it on its line
};

/// Every record of a document in order, those within values and those that an earlier one of the same name
/// hides among them. A bracket that opens and has no bracket that closes on its line begins none.
std::vector<Record> RecordsOf(TextView document);

/// The text of a record's value in `document`.
TextView ValueOf(const Record& record, TextView document);

/// True when the value is laid out as a table: it begins on the line after the name.
bool IsTable(const Record& record, TextView document);

/// The parts of `text` between the occurrences of `separator`.
std::vector<TextView> SplitAt(TextView text, char16_t separator);

}  // namespace vorquill21::tool
