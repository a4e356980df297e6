#include "terminal_desktop.hpp"

#include "report.hpp"

namespace example {

void TerminalDesktop::ShowMessage(vorquill21::TextView text, vorquill21::MessageStyle style,
                                  vorquill21::TextView title) {
  ++messageCount_;
  lastStyle_ = style;
  Say(vorquill21::Text(style == vorquill21::kExclamation ? u"[!] " : u"[i] ")
          .append(title)
          .append(u": ")
          .append(text));
}

}  // namespace example
