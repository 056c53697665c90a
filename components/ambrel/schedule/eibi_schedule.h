#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/ambrel/line_problems.h"
#include "components/ambrel/record.h"

namespace kelvane::ambrel {

/// What was read from a broadcast schedule. The records' `line` are offsets into the text read.
struct ScheduleReading {
  std::vector<ListedRecord> records;  ///< in the text's order
  std::vector<FurtherRule> rules;     ///< records refer to them from 1; the first is never used
  std::size_t inactive = 0;           ///< lines marked as not transmitting; they are left out
  std::size_t unknownDays = 0;        ///< lines whose days were not understood, taken as irregular
  LineProblems problems;
  /// Why the text is no such schedule, in words; empty when it is one.
  std::string refusal;
};

/// Largest schedule that is read, bytes.
inline constexpr std::size_t kLargestSchedule = std::size_t{256} << 20;

/// Reads a schedule in EiBi's CSV form that was made for the given season. Lines that begin with
/// "#" and the headings are passed over. Lines that cannot be read are counted and told; where they
/// are more than those that can, the text is refused.
ScheduleReading readEibiSchedule(std::string_view text, Season season);

/// The season of the newest "last heard" mark in such a text; none where there is no mark. A mark
/// of the month in which seasons change speaks for the season that begins in it.
std::optional<Season> seasonOfLastHeard(std::string_view text);

/// The words of one line of such a schedule, as UTF-8.
struct ScheduleLine {
  std::string days;
  std::string country;
  std::string station;
  std::string language;
  std::string target;
  std::string site;
  std::string persistence;
  std::string start;
  std::string stop;
};

/// The line at an offset that the reading told.
ScheduleLine scheduleLineAt(std::string_view text, std::size_t offset);

}  // namespace kelvane::ambrel
