#pragma once

#include <windows.h>

#include "gui/win32/window_base.h"
#include "ui/control_events.h"
#include "ui/main_controls.h"
#include "ui/press.h"
#include "win32/colours.h"
#include "win32/fonts.h"

namespace kelvane::win32 {

/// One control on the screen: a real window of the kind that its row says, showing the values of a
/// `Control`, and telling what the hand does to it.
class PanelControl : private WindowBase<PanelControl> {
 public:
  PanelControl(HWND parent, const ControlRow& row, int element, ControlEvents& events, UINT dpi);
  PanelControl(const PanelControl&) = delete;
  PanelControl& operator=(const PanelControl&) = delete;

  HWND window() const { return window_; }
  const ControlRow& row() const { return row_; }
  int element() const { return element_; }
  int id() const { return row_.id + element_; }
  const Control& shown() const { return shown_; }
  HFONT font() const { return font_; }
  UINT dpi() const { return dpi_; }
  const Palette& palette() const { return *palette_; }

  /// Puts on the screen what differs from what is there.
  void show(const Control& control);
  /// The hand presses it now, and letting go would act.
  bool handPressed() const { return press_.shown(); }
  /// Ends a press without an action: what it was made for is no longer there.
  void dropPress();
  /// Takes its place and font at a resolution, and the colours to paint with.
  void place(UINT dpi, const Fonts& fonts, const Palette& palette);
  /// Tells screen readers its name and role; the window need not wait for that to be seen.
  void speak();

 private:
  friend WindowBase<PanelControl>;
  bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  /// What the mouse does to a control that acts on a click; answers whether that was all.
  bool mouse(UINT message, LPARAM lParam);
  void pressed(MouseButton button);
  void released(MouseButton button, bool over);
  void paint() const;
  void repaint() const;
  void takePlace() const;
  RECT area() const;

  const ControlRow& row_;
  int element_;
  ControlEvents& events_;
  HWND window_;
  Control shown_;
  Press press_;
  HFONT font_ = nullptr;
  UINT dpi_;
  const Palette* palette_ = &paletteFor(ColourChoice::Light, {});
  bool speaks_ = false;
  bool stale_ = false;  ///< it shows something else than it was last said to show
};

/// Registers the window classes that are our own.
void registerPanelControls(HINSTANCE instance);

/// Paints a control of each kind; in panel_control_paint.cpp.
void paintPanelControl(const PanelControl& control);

}  // namespace kelvane::win32
