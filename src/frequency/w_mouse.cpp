#include "frequency/w_mouse.h"

#include <cmath>
#include <cstdlib>

namespace kelvane {

int WMouse::turned(int delta) {
  // Turning back starts anew: what was gathered the other way no longer counts.
  if ((delta > 0) != (sinceLastStep_ > 0)) sinceLastStep_ = 0;
  sinceLastStep_ += delta;
  if (std::abs(sinceLastStep_) < kNotch) return 0;
  const int step = sinceLastStep_ > 0 ? -1 : 1;
  // What goes beyond the notch is dropped: one message never tunes twice.
  sinceLastStep_ = 0;
  return step;
}

}  // namespace kelvane
