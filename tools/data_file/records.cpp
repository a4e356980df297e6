#include "data_file/records.hpp"

#include <algorithm>

namespace vorquill21::tool {
namespace {

constexpr TextView kLineEnds = u"\r\n";

/// Counts lines as far as it is asked to, once over the text.
class LineCounter {
 public:
  explicit LineCounter(TextView text) : text_(text) {}

  std::int64_t LineAt(std::size_t position) {
    for (; position_ < position; ++position_) {
      const bool isPair = text_[position_] == u'\r' && text_.substr(position_ + 1).starts_with(u'\n');
      if (kLineEnds.find(text_[position_]) != TextView::npos && !isPair) ++line_;
    }
    return line_;
  }

 private:
  TextView text_;
  std::size_t position_ = 0;
  std::int64_t line_ = 1;
};

/// A bracket directly behind the name does not end the value.
std::size_t ValueEnd(TextView document, std::size_t valueBegin) {
  return std::min(document.find(u'[', std::min(valueBegin + 1, document.size())), document.size());
}

}  // namespace

std::vector<Record> RecordsOf(TextView document) {
  constexpr TextView kNameEnds = u"]\r\n";
  LineCounter lines(document);
  std::vector<Record> records;
  std::size_t begin = document.find(u'[');
  while (begin != TextView::npos) {
    const std::size_t close = document.find_first_of(kNameEnds, begin);
    if (close != TextView::npos && document[close] == u']') {
      const std::size_t name = document.rfind(u'[', close);
      records.push_back({Text(document.substr(name + 1, close - name - 1)), name, close + 1,
                         ValueEnd(document, close + 1), lines.LineAt(name),
                         name == 0 || kLineEnds.find(document[name - 1]) != TextView::npos});
    }
    if (close == TextView::npos) break;
    begin = document.find(u'[', close);
  }
  return records;
}

TextView ValueOf(const Record& record, TextView document) {
  return document.substr(record.valueBegin, record.valueEnd - record.valueBegin);
}

bool IsTable(const Record& record, TextView document) {
  const TextView value = ValueOf(record, document);
  const std::size_t begin = value.find_first_not_of(u'\t');
  if (begin == TextView::npos || kLineEnds.find(value[begin]) == TextView::npos) return false;
  return value.find_first_not_of(u"\r\n\t ", begin) != TextView::npos;
}

std::vector<TextView> SplitAt(TextView text, char16_t separator) {
  std::vector<TextView> parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == TextView::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

}  // namespace vorquill21::tool
