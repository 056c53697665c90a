#pragma once

#include <array>
#include <chrono>
#include <cstdio>
#include <string>

namespace kelvane {

/// A date and a time of day, of whatever zone its owner says.
struct DateTime {
  int year = 2000, month = 1, day = 1;
  int hour = 0, minute = 0, second = 0;

  bool operator==(const DateTime&) const = default;
};

/// The point in time that it is if it is UTC.
std::chrono::sys_seconds pointOf(const DateTime& time);
/// The point in time as UTC.
DateTime dateTimeOf(std::chrono::sys_seconds point);

/// The computer's clock and its idea of time zones.
class Calendar {
 public:
  virtual ~Calendar() = default;
  /// The present time of the computer's zone.
  virtual DateTime now() const = 0;
  /// A time of the computer's zone as UTC, by the zone's rules of that year.
  virtual DateTime utc(const DateTime& local) const = 0;
};

/// YYYY-MM-DD: the text order of dates is their order in time.
inline std::string dateText(const DateTime& time) {
  std::array<char, 40> text;
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", time.year, time.month, time.day);
  return text.data();
}

/// hh:mm:ss, of 24 hours.
inline std::string timeText(const DateTime& time) {
  std::array<char, 40> text;
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d", time.hour, time.minute, time.second);
  return text.data();
}

}  // namespace kelvane
