#include "components/ambrel/schedule/air_clock.h"

#include <chrono>

namespace kelvane::ambrel {

AirTime::AirTime(const StationTable& table, UtcMinute minute) : table_(&table), minute_(minute) {
  moments_.reserve(table.lists().size());
  for (const StationList& list : table.lists()) moments_.emplace_back(minute, list.season);
  for (const StationTable::Set& set : table.sets()) {
    const StationList& list = table.lists()[set.list];
    views_.push_back({&moments_[set.list], list.rules.data(), list.isSchedule()});
  }
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
