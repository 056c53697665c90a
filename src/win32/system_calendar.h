#pragma once

#include "ui/calendar.h"

namespace kelvane::win32 {

/// Windows' clock and time zones.
class SystemCalendar : public Calendar {
 public:
  DateTime now() const override;
  DateTime utc(const DateTime& local) const override;
};

}  // namespace kelvane::win32
