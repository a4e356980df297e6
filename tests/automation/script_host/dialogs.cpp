#include "tests/automation/script_host/dialogs.hpp"

#include <iterator>

namespace script_host {
namespace {

std::wstring TextOf(HWND window) {
  wchar_t text[2048];
  return {text, static_cast<std::size_t>(GetWindowTextW(window, text, static_cast<int>(std::size(text))))};
}

std::wstring ClassOf(HWND window) {
  wchar_t name[32];
  return {name, static_cast<std::size_t>(GetClassNameW(window, name, static_cast<int>(std::size(name))))};
}

int StyleOf(HICON icon) {
  constexpr int kIcons[] = {32513, 32514, 32515, 32516};  // the system's own, in the order of the styles
  for (std::size_t index = 0; index < std::size(kIcons); ++index)
    if (icon == LoadIconW(nullptr, MAKEINTRESOURCEW(kIcons[index]))) return 16 * static_cast<int>(index + 1);
  return 0;
}

/// Icon and text stand in controls of the class "Static".
BOOL CALLBACK ReadControl(HWND control, LPARAM target) {
  if (ClassOf(control) != L"Static") return TRUE;
  auto& box = *reinterpret_cast<Box*>(target);
  const auto icon = reinterpret_cast<HICON>(SendMessageW(control, STM_GETICON, 0, 0));
  if (icon != nullptr) {
    box.style = StyleOf(icon);
  } else {
    box.text += TextOf(control);
  }
  return TRUE;
}

}  // namespace

Dialogs::Dialogs() : hook_(SetWindowsHookExW(WH_CBT, &Dialogs::OnEvent, nullptr, GetCurrentThreadId())) {
  current_ = this;
}

Dialogs::~Dialogs() {
  UnhookWindowsHookEx(hook_);
  current_ = nullptr;
}

bool Dialogs::Take(Box& box) {
  if (boxes_.empty()) return false;
  box = boxes_.front();
  boxes_.pop_front();
  return true;
}

/// The dialog may be activated before it has its controls: it is read from its own message loop.
LRESULT CALLBACK Dialogs::OnEvent(int code, WPARAM parameter, LPARAM details) {
  const auto window = reinterpret_cast<HWND>(parameter);
  if (code == HCBT_ACTIVATE && window != current_->dialog_ && ClassOf(window) == L"#32770") {
    current_->dialog_ = window;
    SetTimer(window, reinterpret_cast<UINT_PTR>(current_), 1, &Dialogs::OnTime);
  }
  if (code == HCBT_DESTROYWND && window == current_->dialog_) current_->dialog_ = nullptr;
  return CallNextHookEx(nullptr, code, parameter, details);
}

void CALLBACK Dialogs::OnTime(HWND dialog, UINT, UINT_PTR self, DWORD) {
  KillTimer(dialog, self);
  current_->Answer(dialog);
}

void Dialogs::Answer(HWND dialog) {
  Box box;
  box.title = TextOf(dialog);
  EnumChildWindows(dialog, &ReadControl, reinterpret_cast<LPARAM>(&box));
  boxes_.push_back(box);
  PostMessageW(dialog, WM_COMMAND, button_, 0);
  button_ = IDOK;
}

}  // namespace script_host
