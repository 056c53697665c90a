#pragma once

namespace kelvane {

enum class MouseButton { None, Left, Right, Middle };

/// What a window's controls tell about the operator's hand. Controls are named by
/// ui/control_ids.h, an array's element by the array's id plus its index.
class ControlEvents {
 public:
  virtual ~ControlEvents() = default;

  virtual void gotFocus(int control) = 0;
  virtual void lostFocus(int control) = 0;
  /// A key went down; shift is the sum of Shift 1, Ctrl 2, Alt 4.
  virtual void keyDown(int control, int keyCode, int shift) = 0;
  /// A character was typed.
  virtual void keyPress(int control, int character) = 0;
  /// A mouse button was released on the control that it was pressed on.
  virtual void clicked(int control, MouseButton button) = 0;
};

}  // namespace kelvane
