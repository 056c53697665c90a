#pragma once

#include "ui/control_events.h"

namespace kelvane {

/// A press of the mouse on one control, from button-down to button-up: the control acts when the
/// button is released on it, and shows meanwhile that it is pressed. A button-up whose button-down
/// went elsewhere belongs to somebody else.
class Press {
 public:
  /// A mouse button went down on the control. One that comes while another is held does not count.
  void down(MouseButton button) {
    if (button_ == MouseButton::None) {
      button_ = button;
      isOver_ = true;
    }
  }
  /// The pointer moved while a button is held.
  void moved(bool overControl) { isOver_ = overControl; }
  /// A mouse button came up; answers whether the control is to act.
  bool up(MouseButton button, bool overControl) {
    if (button != button_) return false;
    cancel();
    return overControl;
  }
  /// The press ends without an action.
  void cancel() { button_ = MouseButton::None; }

  bool held() const { return button_ != MouseButton::None; }
  /// To let go now would make the control act.
  bool shown() const { return held() && isOver_; }

 private:
  MouseButton button_ = MouseButton::None;
  bool isOver_ = false;
};

}  // namespace kelvane
