#include "win32/meter_strip.h"

#include <oleacc.h>

#include <utility>

#include "gui/win32/window_barrier.h"
#include "ui/control_ids.h"
#include "win32/accessible.h"
#include "win32/colours.h"
#include "win32/meter_paint.h"
#include "win32/paint.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr Place kStrip{24, 117, 484, 26};
constexpr int kBarHeight = 14, kScaleTop = 14;

}  // namespace

MeterStrip::MeterStrip(HWND parent)
    : window_(CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, parent,
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(id::Meter)),
                              GetModuleHandleW(nullptr), nullptr)) {
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  original_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

void MeterStrip::show(const MeterBar& bar, bool visible) {
  const MeterBar before = std::exchange(shown_, bar);
  if (std::exchange(visible_, visible) != visible)
    ShowWindow(window_, visible ? SW_SHOWNA : SW_HIDE);
  if (!visible || bar == before) return;
  const RECT area = barArea();
  InvalidateRect(window_, bar.decibels == before.decibels ? &area : nullptr, FALSE);
}

void MeterStrip::speak() const {
  giveRole(window_, ROLE_SYSTEM_INDICATOR);
  speakAs(window_, spokenBar(shown_));
}

void MeterStrip::place(UINT dpi, const Fonts& fonts, const Palette& palette) {
  dpi_ = dpi;
  font_ = fonts[Font::Scale];
  palette_ = &palette;
  SetWindowPos(window_, nullptr, scaled(kStrip.left, dpi), scaled(kStrip.top, dpi),
               scaled(kStrip.width, dpi), scaled(kStrip.height, dpi),
               SWP_NOZORDER | SWP_NOACTIVATE);
  InvalidateRect(window_, nullptr, FALSE);
}

RECT MeterStrip::barArea() const {
  return {0, 0, scaled(kStrip.width, dpi_), scaled(kBarHeight, dpi_)};
}

void MeterStrip::paint() const {
  const Painting on(window_);
  const Colours& colours = palette_->panel;
  on.fill(on.dirty(), resolved(colours.window));
  const RECT bar = barArea();
  if (on.dirty().top < bar.bottom) paintMeterBar(on.dc(), bar, shown_, colours, dpi_);
  if (on.dirty().bottom <= bar.bottom) return;
  const RECT scale{bar.left, scaled(kScaleTop, dpi_), bar.right, on.area().bottom};
  paintMeterScale(on.dc(), scale, shown_.decibels, font_, colours);
}

LRESULT CALLBACK MeterStrip::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto* strip = reinterpret_cast<MeterStrip*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  bool handled = message == WM_ERASEBKGND;
  const bool whole = windowBarrier(window, message, [&] {
    // Said when somebody asks, and not twenty times a second.
    if (message == WM_GETOBJECT) speakAs(window, spokenBar(strip->shown_));
    if (message != WM_PAINT || !strip->palette_) return;
    strip->paint();
    handled = true;
  });
  if (!whole) return 0;
  if (handled) return message == WM_ERASEBKGND;
  return CallWindowProcW(strip->original_, window, message, wParam, lParam);
}

}  // namespace kelvane::win32
