#pragma once

#include "ui/calendar.h"
#include "ui/control.h"

namespace kelvane {

/// The time by which stations keep their schedules (`UtcTime`): hours and minutes, the date in its
/// tool tip.
class UtcClock {
 public:
  UtcClock(Control& UtcTime, const Calendar& calendar);

  /// At least once a second.
  void tick();

 private:
  Control& UtcTime_;
  const Calendar& calendar_;
};

}  // namespace kelvane
