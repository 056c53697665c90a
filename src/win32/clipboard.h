#pragma once

#include <windows.h>

#include "ui/clipboard.h"

namespace kelvane::win32 {

/// Windows' clipboard, opened for a window.
class SystemClipboard : public Clipboard {
 public:
  explicit SystemClipboard(HWND owner) : owner_(owner) {}

  std::string text() override;
  void setText(const std::string& text) override;

 private:
  HWND owner_;
};

}  // namespace kelvane::win32
