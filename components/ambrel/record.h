#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "components/ambrel/day_rule.h"
#include "components/ambrel/season.h"
#include "components/ambrel/utc.h"
#include "contract/types.h"

namespace kelvane::ambrel {

/// One line of a list of stations, as the lookup needs it; the words stay in the list's text until
/// they are asked for. Small on purpose: there may be a million.
struct Record {
  static constexpr std::uint8_t kAlways = 7;  ///< in the place of a persistence code

  Hz frequency = 0;
  std::uint32_t line = 0;        ///< offset of the line in the list's text
  std::uint16_t start = 0;       ///< minute of the day, 0 to 1439
  std::uint16_t minutes = 1440;  ///< how long it lasts; may run past midnight
  std::uint32_t rule = 0;        ///< place in the list's further rules; 0 for none
  std::uint16_t set = 0;
  std::uint8_t weekdays = DayRule::kAllWeekdays;
  std::uint8_t persistence = kAlways;
  bool irregular = false;
};

/// Days of a year between which something is valid, the last one included.
struct DateWindow {
  Day from = INT32_MIN;
  Day to = INT32_MAX;
  /// Where it comes back every year: month times 100 plus day, perhaps over the turn of the year.
  bool yearly = false;

  bool holds(Day day) const;
};

/// What few records need beyond weekdays and times.
struct FurtherRule {
  DayRule days;
  DateWindow dates;

  bool allows(Day day) const { return dates.holds(day) && days.allows(day); }
};

/// Tells of a list's records whether they are on the air at one minute. A list is written for one
/// season; in another its lines mean what their persistence codes say.
class AirMoment {
 public:
  /// For a list without seasons.
  explicit AirMoment(UtcMinute minute) : AirMoment(minute, std::nullopt) {}
  AirMoment(UtcMinute minute, std::optional<Season> listSeason);

  bool onAir(const Record& record, const std::vector<FurtherRule>& rules) const {
    const std::int8_t reading = readings_[record.persistence & 7];
    if (reading < 0) return false;
    const Clock& clock = clocks_[static_cast<std::size_t>(reading)];
    const std::int32_t since = clock.minute - record.start;
    const bool sinceYesterday = since < 0;
    if (since + (sinceYesterday ? kMinutesOfDay : 0) >= record.minutes) return false;
    if ((record.weekdays & (sinceYesterday ? clock.yesterday : clock.today)) == 0) return false;
    if (record.rule == 0) return true;
    return rules[record.rule].allows(sinceYesterday ? clock.day - 1 : clock.day);
  }

  /// Whether the present season has records of that persistence code at all.
  bool inSeason(const Record& record) const { return readings_[record.persistence & 7] >= 0; }

  /// Minute of the day at which the record begins in the present season.
  std::int32_t startOf(const Record& record) const;

  /// Minutes from now to the next time of the day at which the record begins.
  std::int32_t untilStart(const Record& record) const;

 private:
  /// The present time as lines with a shift of one hour earlier, none, one hour later read it.
  struct Clock {
    std::int32_t minute = 0;
    Day day = 0;
    std::uint8_t today = 0;
    std::uint8_t yesterday = 0;
  };

  static Clock clockAt(UtcMinute minute);

  std::array<Clock, 3> clocks_;
  std::array<std::int8_t, 8> readings_;  ///< which clock each persistence code reads; -1: silent
};

}  // namespace kelvane::ambrel
