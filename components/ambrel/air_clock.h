#pragma once

#include <vector>

#include "components/ambrel/record.h"
#include "components/ambrel/station_table.h"
#include "components/ambrel/utc.h"

namespace kelvane::ambrel {

/// Tells at one minute of any record of a table whether it is on the air.
class AirTime {
 public:
  AirTime(const StationTable& table, UtcMinute minute);

  UtcMinute minute() const { return minute_; }

  bool onAir(const Record& record) const {
    const std::size_t list = table_->sets()[record.set].list;
    return moments_[list].onAir(record, table_->lists()[list].rules);
  }

  /// How the record is to be read now: whether its season has it, and with what shift of the hour.
  const AirMoment& momentOf(const Record& record) const {
    return moments_[table_->sets()[record.set].list];
  }

 private:
  const StationTable* table_;
  UtcMinute minute_;
  std::vector<AirMoment> moments_;  ///< one for each list
};

/// Reads the clock for a table, and works the minute out anew only when it has passed.
class AirClock {
 public:
  explicit AirClock(UtcClock utcNow) : utcNow_(std::move(utcNow)) {}

  /// The present minute for the table's records; good until the next call.
  const AirTime& now(const StationTable& table);

  /// The table that was asked about is gone.
  void forget() { time_.reset(); }

 private:
  UtcClock utcNow_;
  std::optional<AirTime> time_;
  std::chrono::system_clock::time_point start_, end_;  ///< of the minute that `time_` tells about
};

}  // namespace kelvane::ambrel
