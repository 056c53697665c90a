#include "components/ambrel/air_clock.h"

namespace kelvane::ambrel {

AirTime::AirTime(const StationTable& table, UtcMinute minute) : table_(&table), minute_(minute) {
  for (const StationList& list : table.lists()) moments_.emplace_back(minute, list.season);
}

const AirTime& AirClock::now(const StationTable& table) {
  const auto moment = utcNow_();
  if (!time_ || moment < start_ || moment >= end_) {
    start_ = std::chrono::floor<std::chrono::minutes>(moment);
    end_ = start_ + std::chrono::minutes(1);
    time_.emplace(table, utcMinute(moment));
  }
  return *time_;
}

}  // namespace kelvane::ambrel
