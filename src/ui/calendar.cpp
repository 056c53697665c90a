#include "ui/calendar.h"

namespace kelvane {

std::chrono::sys_seconds pointOf(const DateTime& time) {
  using namespace std::chrono;
  return sys_days(year(time.year) / time.month / 1) + days(time.day - 1) + hours(time.hour) +
         minutes(time.minute) + seconds(time.second);
}

DateTime dateTimeOf(std::chrono::sys_seconds point) {
  const auto day = std::chrono::floor<std::chrono::days>(point);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(point - day);
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count())};
}

}  // namespace kelvane
