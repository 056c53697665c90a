#pragma once

#include <windows.h>

#include "ui/message_boxes.h"
#include "win32/modal.h"
#include "win32/text.h"

namespace kelvane::win32 {

/// Windows' own message boxes, above a window; above the active one where none is given.
class SystemMessageBoxes : public MessageBoxes {
 public:
  explicit SystemMessageBoxes(HWND owner) : owner_(owner) {}

  Choice show(const std::string& text, const std::string& title, Buttons buttons) override {
    const UINT style = buttons == Buttons::OkCancel ? MB_OKCANCEL : MB_OK;
    const std::wstring caption = title.empty() ? L"Kelvane" : wide(title);
    const Modal modal(owner_);
    const int answer = MessageBoxW(modal.owner(), wide(text).c_str(), caption.c_str(), style);
    return answer == IDOK || answer == IDYES ? Choice::Ok : Choice::Cancel;
  }

 private:
  HWND owner_;
};

}  // namespace kelvane::win32
