#pragma once

namespace kelvane {

/// Turns of the mouse wheel as tuning steps. A message of a whole notch or more is one step,
/// however far it goes; the small turns of fine wheels and touchpads add up to a notch first.
class WMouse {
 public:
  /// One wheel message; positive away from the user. Answers the step to tune: -1 down (away), 1
  /// up, 0 while a notch is not complete.
  int turned(int delta);

 private:
  static constexpr int kNotch = 120;

  int sinceLastStep_ = 0;
};

}  // namespace kelvane
