#pragma once

#include <windows.h>

#include "ui/message_boxes.h"

namespace kelvane::win32 {

/// Windows' own message boxes, above a window; above the active one where none is given.
class SystemMessageBoxes : public MessageBoxes {
 public:
  explicit SystemMessageBoxes(HWND owner) : owner_(owner) {}

  Choice show(const std::string& text, const std::string& title, Buttons buttons) override;

 private:
  HWND owner_;
};

}  // namespace kelvane::win32
