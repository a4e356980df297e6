#include "report.hpp"

#include <iostream>

namespace example {

using vorquill21::NumberToText;
using vorquill21::Text;
using vorquill21::TextView;
using vorquill21::ToUtf8;

void SayTitle(TextView title) {
  std::cout << '\n' << ToUtf8(title) << '\n';
}

void Say(TextView text) {
  std::cout << "  ";
  for (const char byte : ToUtf8(text)) {
    if (byte == '\r') continue;
    std::cout << byte;
    if (byte == '\n') std::cout << "      ";
  }
  std::cout << '\n';
}

Text Shown(double number) {
  return NumberToText(number, u'.');
}

Text Shown(std::int32_t number) {
  return NumberToText(number);
}

void Expectations::Expect(bool holds, TextView what) {
  if (holds) return;
  allHold_ = false;
  Say(Text(u"MUST HOLD, BUT DOES NOT: ").append(what));
}

}  // namespace example
