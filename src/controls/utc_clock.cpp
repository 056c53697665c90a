#include "controls/utc_clock.h"

namespace kelvane {

UtcClock::UtcClock(Control& UtcTime, const Calendar& calendar)
    : UtcTime_(UtcTime), calendar_(calendar) {
  UtcTime_.back = kBlack;
  UtcTime_.fore = Colour::rgb(192, 196, 200);
  tick();
}

void UtcClock::tick() {
  const DateTime now = calendar_.utc(calendar_.now());
  UtcTime_.text = timeText(now).substr(0, 5) + " UTC";
  UtcTime_.tip = dateText(now) + ", Universal Time";
}

}  // namespace kelvane
