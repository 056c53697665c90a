#pragma once

#include <windows.h>

#include <vector>

namespace kelvane::win32 {

/// While it lives, the program's other windows take no input besides the one on top: a system
/// dialog disables its owner alone, and the main window must not be closed beneath it.
class Modal {
 public:
  /// Over the window in which it was asked for, where that is one of the program's.
  explicit Modal(HWND owner) : owner_(GetActiveWindow() ? GetActiveWindow() : owner) {
    EnumThreadWindows(GetCurrentThreadId(), disable, reinterpret_cast<LPARAM>(this));
  }
  ~Modal() {
    for (HWND window : disabled_) EnableWindow(window, TRUE);
  }
  Modal(const Modal&) = delete;
  Modal& operator=(const Modal&) = delete;

  /// The window that the dialog lies over.
  HWND owner() const { return owner_; }

 private:
  static BOOL CALLBACK disable(HWND window, LPARAM self) {
    auto& modal = *reinterpret_cast<Modal*>(self);
    if (window == modal.owner_ || !IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
    EnableWindow(window, FALSE);
    modal.disabled_.push_back(window);
    return TRUE;
  }

  HWND owner_;
  std::vector<HWND> disabled_;
};

}  // namespace kelvane::win32
