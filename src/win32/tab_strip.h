#pragma once

#include <windows.h>

#include <string>

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
  /// Selects this tab: the control selects by itself what is clicked.
  void select(int tab);
  /// A notice of the control's or its tool tips'; answers whether it was asked for a tip.
  bool explains(const NMHDR& notice);
  /// Tells screen readers its name.
  void speak() const;

 private:
  void rebuild();

  HWND window_;
  TabRow shown_;
  std::wstring tip_;  ///< for as long as the system reads it
};

}  // namespace kelvane::win32
