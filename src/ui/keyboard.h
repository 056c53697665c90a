#pragma once

#include "ui/main_view.h"
#include "ui/window_commands.h"

namespace kelvane {

/// Who has the keyboard: each wish of the panel to move it passes here.
///
/// Which window: the one that the operator chose, by a click, by Alt+Tab, or by a command that
/// opens or closes a window. While it is another one than the panel, nothing of the panel's takes
/// it away: no link, no knob, no changed receivers, no timer.
///
/// Which control, while it is the panel: the operator moves it, by a click on a digit, by F6, or by
/// a command or click that returns it to the typed entry. The program moves it in one case: from a
/// control that is about to take no keys, disabled or hidden, to the typed entry. A window that the
/// operator comes back to starts at the typed entry.
class Keyboard : public WindowCommands {
 public:
  Keyboard(MainView& view, WindowCommands& window) : view_(view), window_(window) {}

  /// To a control that takes keys; nothing happens while another window has the keyboard.
  void focus(int control) override;
  /// Whether the values of a control let it take keys.
  bool takesKeys(int control) const;
  /// Changed values are about to be put on the screen: from a control that will take no keys to the
  /// typed entry.
  void settle();
  void gotFocus(int control) { focused_ = control; }
  void lostFocus(int control);

  bool active() const override { return window_.active(); }
  void beep() override { window_.beep(); }
  void runPending() override { window_.runPending(); }
  void close() override { window_.close(); }
  bool modalOpen() const override { return window_.modalOpen(); }
  std::int32_t handle() const override { return window_.handle(); }

 private:
  static constexpr int kNone = 0;

  MainView& view_;
  WindowCommands& window_;
  int focused_ = kNone;
};

}  // namespace kelvane
