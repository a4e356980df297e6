#pragma once

#include <windows.h>

#include <deque>
#include <string>

namespace script_host {

/// What a message box showed.
struct Box {
  int style = 0;  // the style that gives its icon: 16, 32, 48, 64; 0 without one
  std::wstring title;
  std::wstring text;
};

/// Answers the dialogs that this thread shows, and remembers them. Without it a dialog would wait for ever.
/// There may be one at a time.
class Dialogs {
 public:
  Dialogs();
  Dialogs(const Dialogs&) = delete;
  Dialogs& operator=(const Dialogs&) = delete;
  ~Dialogs();

  /// The button that answers the next dialog, IDOK or IDCANCEL; later ones are answered with IDOK again.
  void AnswerNext(WORD button) { button_ = button; }

  /// The oldest box that was not taken yet.
  bool Take(Box& box);

 private:
  static LRESULT CALLBACK OnEvent(int code, WPARAM parameter, LPARAM details);
  static void CALLBACK OnTime(HWND dialog, UINT, UINT_PTR self, DWORD);
  void Answer(HWND dialog);

  static inline thread_local Dialogs* current_ = nullptr;

  HHOOK hook_;
  HWND dialog_ = nullptr;
  WORD button_ = IDOK;
  std::deque<Box> boxes_;
};

}  // namespace script_host
