#include "win32/message_boxes.h"

#include <optional>

#include "win32/modal.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

UINT styleOf(Buttons buttons) {
  if (buttons == Buttons::SaveOrNot) return MB_YESNOCANCEL;
  return buttons == Buttons::OkCancel ? MB_OKCANCEL : MB_OK;
}

/// While it lives, the buttons of a box that asks Yes or No say what they do.
class SaveOrNotWords {
 public:
  SaveOrNotWords() : hook_(SetWindowsHookExW(WH_CBT, name, nullptr, GetCurrentThreadId())) {}
  ~SaveOrNotWords() { UnhookWindowsHookEx(hook_); }
  SaveOrNotWords(const SaveOrNotWords&) = delete;
  SaveOrNotWords& operator=(const SaveOrNotWords&) = delete;

 private:
  static LRESULT CALLBACK name(int code, WPARAM wParam, LPARAM lParam) {
    const HWND box = reinterpret_cast<HWND>(wParam);
    if (code == HCBT_ACTIVATE && GetDlgItem(box, IDYES) && GetDlgItem(box, IDNO)) {
      SetDlgItemTextW(box, IDYES, L"&Save");
      SetDlgItemTextW(box, IDNO, L"Do&n't save");
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }

  HHOOK hook_;
};

}  // namespace

Choice SystemMessageBoxes::show(const std::string& text, const std::string& title,
                                Buttons buttons) {
  const std::wstring caption = title.empty() ? L"Kelvane" : wide(title);
  const Modal modal(owner_);
  std::optional<SaveOrNotWords> words;
  if (buttons == Buttons::SaveOrNot) words.emplace();
  const int answer =
      MessageBoxW(modal.owner(), wide(text).c_str(), caption.c_str(), styleOf(buttons));
  if (answer == IDNO) return Choice::No;
  return answer == IDOK || answer == IDYES ? Choice::Ok : Choice::Cancel;
}

}  // namespace kelvane::win32
