#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "contract/types.h"
#include "station_log/log_table.h"
#include "ui/calendar.h"

namespace kelvane {

/// The log for other programs.
struct LogExport {
  std::string content;
  /// Records whose date or time is not of the fixed form; they are there, but without UTC.
  std::size_t undated = 0;
  /// Records without a call sign, which many programs want; they are there all the same.
  std::size_t uncalled = 0;
};

/// Names of known stations by their frequencies.
using StationNames = std::unordered_map<Hz, std::string>;

/// The frequencies of records whose comments name no call sign, each once.
std::vector<Hz> uncalledFrequencies(const LogTable& log);

/// An ADIF file of listener's reports, in the order of the rows. The format has ASCII alone: other
/// letters are spelled in it. The call sign is that in the comment, else that in the name of the
/// station known there.
LogExport adifOf(const LogTable& log, const Calendar& calendar, const StationNames& stations = {});
/// A table of comma separated values in UTF-8, in the order of the rows: the grid's columns, and
/// the time in UTC as the last one.
LogExport csvOf(const LogTable& log, const Calendar& calendar);

/// The moment that a record's two fields name; none unless they are YYYY-MM-DD and hh:mm or
/// hh:mm:ss, and there is such a moment.
std::optional<DateTime> recordedAt(std::string_view date, std::string_view time);

}  // namespace kelvane
