#include "components/ambrel/record.h"

namespace kelvane::ambrel {

namespace {

constexpr std::int8_t kHourEarlier = 0, kAsListed = 1, kHourLater = 2, kSilent = -1;

}  // namespace

AirMoment::AirMoment(UtcMinute minute, std::optional<Season> listSeason)
    : clocks_{clockAt(minute - 60), clockAt(minute), clockAt(minute + 60)} {
  readings_.fill(kAsListed);
  if (!listSeason) return;
  const Season now = seasonAt(minute);
  if (now != *listSeason) readings_[0] = kSilent;
  // Where the summer list says 1800 for a programme at a fixed northern local time, winter has it
  // at 1900: the list is read with a clock that is an hour behind. The south turns the other way.
  if (now.summer != listSeason->summer) {
    readings_[2] = now.summer ? kHourLater : kHourEarlier;
    readings_[3] = now.summer ? kHourEarlier : kHourLater;
  }
  readings_[4] = now.summer ? kSilent : kAsListed;
  readings_[5] = now.summer ? kAsListed : kSilent;
}

std::int32_t AirMoment::startOf(const Record& record) const {
  const std::int8_t reading = readings_[record.persistence];
  if (reading < 0) return record.start;
  // A clock that is an hour behind is met an hour later.
  return (record.start + (kAsListed - reading) * 60 + kMinutesOfDay) % kMinutesOfDay;
}

std::int32_t AirMoment::untilStart(const Record& record) const {
  const std::int8_t reading = readings_[record.persistence];
  if (reading < 0) return kMinutesOfDay;
  const std::int32_t wait = record.start - clocks_[static_cast<std::size_t>(reading)].minute;
  return wait < 0 ? wait + kMinutesOfDay : wait;
}

AirMoment::Clock AirMoment::clockAt(UtcMinute minute) {
  const Day day = dayOf(minute);
  return {minuteOfDay(minute), {DayFacts(day - 1), DayFacts(day)}};
}

}  // namespace kelvane::ambrel
