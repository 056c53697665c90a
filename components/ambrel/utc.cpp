#include "components/ambrel/utc.h"

#include <array>

#include "base/number.h"

namespace kelvane::ambrel {

namespace {

namespace chr = std::chrono;

constexpr std::array<const char*, 12> kMonthNames = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

chr::sys_days sysDays(Day day) { return chr::sys_days(chr::days(day)); }

}  // namespace

UtcMinute utcMinute(chr::system_clock::time_point moment) {
  return chr::floor<chr::minutes>(moment).time_since_epoch().count();
}

Day dayOf(UtcMinute minute) {
  return static_cast<Day>(chr::floor<chr::days>(chr::minutes(minute)).count());
}

std::int32_t minuteOfDay(UtcMinute minute) {
  return static_cast<std::int32_t>(minute - UtcMinute{dayOf(minute)} * kMinutesOfDay);
}

Date dateOf(Day day) {
  const chr::year_month_day date(sysDays(day));
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day()))};
}

Day dayOf(Date date) {
  const chr::year_month_day first{chr::year(date.year),
                                  chr::month(static_cast<unsigned>(date.month)), chr::day(1)};
  return static_cast<Day>(chr::sys_days(first).time_since_epoch().count()) + date.day - 1;
}

int daysInMonth(int year, int month) {
  const chr::year_month_day_last last{
      chr::year(year), chr::month_day_last(chr::month(static_cast<unsigned>(month)))};
  return static_cast<int>(static_cast<unsigned>(last.day()));
}

int weekdayOf(Day day) { return static_cast<int>(chr::weekday(sysDays(day)).iso_encoding()) - 1; }

std::string dateText(Day day) {
  const Date date = dateOf(day);
  return std::to_string(date.day) + " " + kMonthNames[static_cast<std::size_t>(date.month - 1)] +
         " " + std::to_string(date.year);
}

std::string timeText(std::int32_t minute) {
  return twoDigits(minute / 60) + twoDigits(minute % 60);
}

Date islamicDateOf(Day day) {
  // 1 Muharram of the year 1 was 16 July 622 of the Julian calendar; in thirty years eleven have
  // a day more than 354.
  constexpr Day kEpoch = -492148;
  const std::int64_t since = std::int64_t{day} - kEpoch;
  const auto year = static_cast<int>((30 * since + 10646) / 10631);
  const std::int64_t newYear = std::int64_t{year - 1} * 354 + (3 + 11 * std::int64_t{year}) / 30;
  const auto inYear = static_cast<int>(since - newYear);
  // Months have 30 and 29 days in turn; a leap year's last month has a day more.
  const auto before = [](int month) { return 29 * (month - 1) + month / 2; };
  int month = 12;
  while (before(month) > inYear) --month;
  return {year, month, inYear - before(month) + 1};
}

}  // namespace kelvane::ambrel
