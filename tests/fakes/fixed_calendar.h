#pragma once

#include <algorithm>

#include "ui/calendar.h"

namespace kelvane::fakes {

/// A clock that stands until a test moves it, in a zone some whole hours ahead of UTC; days end at
/// midnight, months do not.
class FixedCalendar : public Calendar {
 public:
  DateTime now() const override { return time; }
  DateTime utc(const DateTime& local) const override {
    DateTime result = local;
    result.hour -= ahead;
    if (result.hour < 0) {
      result.hour += 24;
      --result.day;
    }
    return result;
  }

  DateTime time{2026, 3, 15, 18, 5, 9};
  int ahead = 2;
};

}  // namespace kelvane::fakes
