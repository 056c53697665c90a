#pragma once

#include <windows.h>

#include <string>

#include "ui/control.h"
#include "win32/colours.h"
#include "win32/fonts.h"

namespace kelvane::win32 {

/// The receivers' tabs: Windows' tab control, showing the values of a `TabRow`, painted by us. Each
/// has a disc where its receiver is under remote control, else a ring, and a line for its level.
class TabStrip {
 public:
  explicit TabStrip(HWND parent);
  TabStrip(const TabStrip&) = delete;
  TabStrip& operator=(const TabStrip&) = delete;

  HWND window() const { return window_; }
  void show(const TabRow& row);
  /// Tabs are one ninth of the window's width each.
  void place(UINT dpi, const Fonts& fonts, const Palette& palette);
  int selected() const;
  /// Selects this tab: the control selects by itself what is clicked.
  void select(int tab);
  /// A notice of the control's or its tool tips'; answers whether it was asked for a tip.
  bool explains(const NMHDR& notice);
  /// Tells screen readers its name.
  void speak() const;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR, DWORD_PTR self);
  void rebuild();
  void paint() const;
  void paintTab(const class Painting& on, int tab) const;
  RECT areaOf(int tab) const;
  RECT levelArea(const RECT& tab) const;

  HWND window_;
  TabRow shown_;
  int marked_ = -1;  ///< the tab that was last shown as the selected one
  UINT dpi_ = 96;
  HFONT font_ = nullptr;
  const Palette* palette_ = &paletteFor(ColourChoice::Light, {});
  std::wstring tip_;  ///< for as long as the system reads it
};

}  // namespace kelvane::win32
