#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace kelvane::ambrel {

/// The present moment in UTC, asked anew whenever a rule needs it.
using UtcClock = std::function<std::chrono::system_clock::time_point()>;

/// A day in UTC, counted from 1 January 1970.
using Day = std::int32_t;

inline constexpr std::int32_t kMinutesOfDay = 1440;

/// A minute in UTC, counted from 1 January 1970, 0000.
using UtcMinute = std::int64_t;

UtcMinute utcMinute(std::chrono::system_clock::time_point moment);
Day dayOf(UtcMinute minute);
/// 0 to 1439.
std::int32_t minuteOfDay(UtcMinute minute);

/// A date of the Gregorian calendar; month and day count from 1.
struct Date {
  int year = 1970;
  int month = 1;
  int day = 1;

  bool operator==(const Date&) const = default;
};

Date dateOf(Day day);
/// The day of that date; a day beyond the month's end runs on into the next month.
Day dayOf(Date date);
int daysInMonth(int year, int month);

/// 0 is Monday, 6 Sunday.
int weekdayOf(Day day);

/// "30 Oct 2022".
std::string dateText(Day day);
/// "2330"; 1440 is "2400".
std::string timeText(std::int32_t minuteOfDay);

/// The month of the Islamic civil calendar, from 1, that the day lies in, and the day in it. The
/// calendar is reckoned in advance; where months begin by sight of the moon it may be a day out.
Date islamicDateOf(Day day);

}  // namespace kelvane::ambrel
