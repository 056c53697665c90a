#pragma once

#include <windows.h>

#include "ui/colours.h"
#include "ui/meter_bar.h"
#include "win32/fonts.h"

namespace kelvane::win32 {

/// The panel's meter to look at: bar and scale between the digits and the station. It takes neither
/// keys nor clicks.
class MeterStrip {
 public:
  explicit MeterStrip(HWND parent);
  MeterStrip(const MeterStrip&) = delete;
  MeterStrip& operator=(const MeterStrip&) = delete;

  HWND window() const { return window_; }
  void show(const MeterBar& bar, bool visible);
  /// Tells screen readers what it is and shows.
  void speak() const;
  void place(UINT dpi, const Fonts& fonts, const Palette& palette);

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void paint() const;
  RECT barArea() const;

  HWND window_;
  WNDPROC original_ = nullptr;
  MeterBar shown_;
  bool visible_ = true;
  UINT dpi_ = 96;
  HFONT font_ = nullptr;
  const Palette* palette_ = nullptr;
};

}  // namespace kelvane::win32
