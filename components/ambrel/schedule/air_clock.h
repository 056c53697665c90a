#pragma once

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

#include "components/ambrel/record.h"
#include "components/ambrel/stations/station_table.h"
#include "components/ambrel/utc.h"

namespace kelvane::ambrel {

/// Tells at one minute of any record of a table whether it is on the air.
class AirTime {
 public:
  /// The table must outlive it.
  /// Records that it is asked about must be the table's own.
  AirTime(const StationTable& table, UtcMinute minute);
  AirTime(const AirTime&) = delete;
  AirTime& operator=(const AirTime&) = delete;

  UtcMinute minute() const { return minute_; }

  bool onAir(const Record& record) const {
    const SetView& view = views_[record.set];
    const DayFacts* const day = view.moment->beganOn(record);
    return day && (!record.hasRule || view.rules[table_->sourceOf(record).rule].allows(*day));
  }

  /// Whether the record has times: those of a schedule have, and some of the operator's own list.
  bool isScheduled(const Record& record) const {
    return views_[record.set].scheduled || (record.marks & Record::kTimed);
  }

  /// How the record is to be read now: whether its season has it, and with what shift of the hour.
  const AirMoment& momentOf(const Record& record) const { return *views_[record.set].moment; }

 private:
  /// What is asked of a record's list, by the record's set.
  struct SetView {
    const AirMoment* moment;
    const FurtherRule* rules;
    bool scheduled;
  };

  const StationTable* table_;
  UtcMinute minute_;
  std::vector<AirMoment> moments_;  ///< one for each list
  std::vector<SetView> views_;
};

/// Reads the clock for a table, and works the minute out anew only when it has passed.
class AirClock {
 public:
  explicit AirClock(UtcClock utcNow) : utcNow_(std::move(utcNow)) {}

  /// The present minute for the table's records; good until the next call.
  const AirTime& now(const StationTable& table);

  /// What `now` answered last.
  const AirTime& last() const { return *time_; }

  /// The table that was asked about is gone.
  void forget() { time_.reset(); }

 private:
  UtcClock utcNow_;
  std::optional<AirTime> time_;
  std::chrono::system_clock::time_point start_, end_;  ///< of the minute that `time_` tells about
};

}  // namespace kelvane::ambrel
