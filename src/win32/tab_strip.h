#pragma once

#include <windows.h>

#include <vector>

#include "ui/control.h"
#include "win32/fonts.h"

namespace kelvane::win32 {

/// The receivers' tabs: Windows' tab control, showing the values of a `TabRow`.
class TabStrip {
 public:
  explicit TabStrip(HWND parent);

  HWND window() const { return window_; }
  void show(const TabRow& row);
  /// Tabs are one ninth of the window's width each.
  void place(UINT dpi, const Fonts& fonts);
  int selected() const;
  /// Tells screen readers its name.
  void speak() const;

 private:
  void rebuild();

  HWND window_;
  TabRow shown_;
};

}  // namespace kelvane::win32
