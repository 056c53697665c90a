#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "components/ambrel/utc.h"
#include "contract/modes.h"

namespace kelvane::ambrel {

/// What rules ask of a day, worked out once for all of them.
struct DayFacts {
  explicit DayFacts(Day day);

  Day day;
  std::int32_t date;         ///< month times 100 plus day
  std::uint32_t dayOfMonth;  ///< one bit, as in the masks of a rule; so are the next three
  std::uint16_t month;
  std::uint8_t weekday;
  std::uint8_t week;
  bool ramadan;
  bool haj;
};

/// On which days something is on the air: the days that all of its masks allow. A broadcast that
/// runs past midnight belongs to the day on which it began.
struct DayRule {
  static constexpr std::uint8_t kAllWeekdays = 0x7F;
  static constexpr std::uint8_t kAllWeeks = 0x1F;
  static constexpr std::uint32_t kAllDays = 0x7FFFFFFF;
  static constexpr std::uint16_t kAllMonths = 0x0FFF;

  std::uint8_t weekdays = kAllWeekdays;  ///< bit 0 Monday to bit 6 Sunday
  std::uint8_t weeks = kAllWeeks;        ///< bit 0: the weekday's first in its month, and so on
  std::uint32_t daysOfMonth = kAllDays;  ///< bit 0: the first
  std::uint16_t months = kAllMonths;     ///< bit 0 January
  bool ramadan = false;                  ///< only in Ramadan
  bool haj = false;                      ///< only in the days of the pilgrimage
  bool irregular = false;                ///< not on every such day: now and then, on test, planned
  std::optional<Mode> mode;              ///< some lists give the mode in the place of the days

  bool operator==(const DayRule&) const = default;

  /// Whether weekdays are all that the rule asks about.
  bool onlyWeekdays() const;
  bool allows(const DayFacts& day) const {
    return (weekdays & day.weekday) && (daysOfMonth & day.dayOfMonth) && (months & day.month) &&
           (weeks & day.week) && (!ramadan || day.ramadan) && (!haj || day.haj);
  }
};

/// The rule that a schedule's column of days states: empty for daily; names of weekdays one after
/// the other, parted by "," and as ranges ("Mo-Fr", "We-Mo", "SaSu"); digits with 1 for Monday;
/// "1.Sa" for the month's first Saturday; "24Dec", "25th", a month in Roman digits, "15.IX"; "irr",
/// "alt", "altSa", "Tests", "Ram", "Haj"; the name of a mode. None when it states nothing known.
std::optional<DayRule> readDays(std::string_view text);

}  // namespace kelvane::ambrel
