#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "components/ambrel/schedule/day_rule.h"
#include "components/ambrel/schedule/season.h"
#include "components/ambrel/utc.h"
#include "contract/types.h"

namespace kelvane::ambrel {

/// When one line of a list of stations is on the air, as the lookup needs it. Small on purpose:
/// there may be a million, and the lookup waits for memory more than for anything else.
struct Record {
  static constexpr unsigned kAlways = 7;  ///< in the place of a persistence code

  std::uint16_t start : 11 = 0;  ///< minute of the day, 0 to 1439
  std::uint16_t persistence : 3 = kAlways;
  std::uint16_t irregular : 1 = false;
  std::uint16_t hasRule : 1 = false;  ///< its list has a further rule for it
  std::uint16_t minutes = 1440;       ///< how long it lasts; may run past midnight
  std::uint16_t set = 0;
  std::uint8_t weekdays = DayRule::kAllWeekdays;

  // What the operator's own list says besides.
  static constexpr std::uint8_t kOwn = 1, kFavourite = 2, kSkip = 4;
  static constexpr std::uint8_t kTimed = 8;  ///< it has times or days of its own
  std::uint8_t marks = 0;
};
static_assert(sizeof(Record) == 8);

/// Where the rest of a record is.
struct RecordSource {
  std::uint32_t line = 0;  ///< offset of the line in the list's text
  std::uint32_t rule = 0;  ///< place in the list's further rules, where it has one
};

/// A record and where it is heard, as a list has them one after the other.
struct ListedRecord {
  Hz frequency = 0;
  Record record;
  RecordSource source;
};

/// Days of a year between which something is valid, the last one included.
struct DateWindow {
  Day from = INT32_MIN;
  Day to = INT32_MAX;
  /// Where it comes back every year: month times 100 plus day, perhaps over the turn of the year.
  bool yearly = false;

  bool holds(const DayFacts& day) const {
    if (!yearly) return day.day >= from && day.day <= to;
    return from <= to ? day.date >= from && day.date <= to : day.date >= from || day.date <= to;
  }
};

/// What few records need beyond weekdays and times.
struct FurtherRule {
  DayRule days;
  DateWindow dates;

  bool allows(const DayFacts& day) const { return dates.holds(day) && days.allows(day); }
};

/// Tells of a list's records whether they are on the air at one minute. A list is written for one
/// season; in another its lines mean what their persistence codes say.
class AirMoment {
 public:
  /// For a list without seasons.
  explicit AirMoment(UtcMinute minute) : AirMoment(minute, std::nullopt) {}
  AirMoment(UtcMinute minute, std::optional<Season> listSeason);

  /// The day on which the broadcast began that is on the air now, as far as times and weekdays
  /// tell; nullptr where none is. A further rule of the record has to allow that day.
  const DayFacts* beganOn(const Record& record) const {
    const std::int8_t reading = readings_[record.persistence];
    if (reading < 0) return nullptr;
    const Clock& clock = clocks_[static_cast<std::size_t>(reading)];
    const std::int32_t since = clock.minute - record.start;
    const bool sinceYesterday = since < 0;
    const DayFacts& day = clock.days[sinceYesterday ? 0 : 1];
    // Both are looked at, as nothing foretells the outcome of either.
    const bool then = (since + (sinceYesterday ? kMinutesOfDay : 0) < record.minutes) &
                      ((record.weekdays & day.weekday) != 0);
    return then ? &day : nullptr;
  }

  /// Minute of the day at which the record begins in the present season.
  std::int32_t startOf(const Record& record) const;

  /// Minutes from now to the next time of the day at which the record begins; a whole day where the
  /// present season does not have it.
  std::int32_t untilStart(const Record& record) const;

 private:
  /// The present time as lines with a shift of one hour earlier, none, one hour later read it.
  struct Clock {
    std::int32_t minute;
    std::array<DayFacts, 2> days;  ///< yesterday, today
  };

  static Clock clockAt(UtcMinute minute);

  std::array<Clock, 3> clocks_;
  std::array<std::int8_t, 8> readings_;  ///< which clock each persistence code reads; -1: silent
};

}  // namespace kelvane::ambrel
