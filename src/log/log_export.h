#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "log/log_table.h"
#include "ui/calendar.h"

namespace kelvane {

/// The log for other programs.
struct LogExport {
  std::string content;
  /// Records whose date or time is not of the fixed form; they are there, but without UTC.
  std::size_t undated = 0;
};

/// An ADIF file of listener's reports, in the order of the rows.
LogExport adifOf(const LogTable& log, const Calendar& calendar);
/// A table of comma separated values in UTF-8, in the order of the rows: the grid's columns, and
/// the time in UTC as the last one.
LogExport csvOf(const LogTable& log, const Calendar& calendar);

/// The moment that a record's two fields name; none unless they are YYYY-MM-DD and hh:mm or
/// hh:mm:ss, and there is such a moment.
std::optional<DateTime> recordedAt(std::string_view date, std::string_view time);

}  // namespace kelvane
