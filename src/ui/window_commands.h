#pragma once

#include <cstdint>

namespace kelvane {

/// The few things a unit asks of its window that are no values. Controls are named by
/// ui/control_ids.h, an array's element by the array's id plus its index.
class WindowCommands {
 public:
  virtual ~WindowCommands() = default;

  /// Moves the keyboard focus; where the control is hidden or disabled nothing happens.
  virtual void focus(int control) = 0;
  /// The window is the one that the operator works in: keys come here.
  virtual bool active() const = 0;
  virtual void beep() = 0;
  /// Lets waiting window messages and component events run once; does nothing inside itself.
  virtual void runPending() = 0;
  virtual void close() = 0;
  /// A dialog or message box is open above the window.
  virtual bool modalOpen() const = 0;
  /// The window's handle, for components whose windows open above it.
  virtual std::int32_t handle() const = 0;
};

}  // namespace kelvane
