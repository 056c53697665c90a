#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "station_log/log_table.h"
#include "ui/calendar.h"

namespace kelvane {

/// What the times of a log of another program mean. ADIF says it; a table mostly does not.
enum class LogTimes { Utc, Local };

/// One report of another program's log, as a record of this one.
struct LogTaken {
  std::size_t place = 0;  ///< line of the file, from 1
  LogRecord record;       ///< UTF-8; date and time are of the computer's zone
  std::string remark;     ///< what of it could not be taken over, in words; mostly empty
};

/// A line that is left out, and why.
struct LogLeftOut {
  std::size_t place = 0;
  std::string reason;
};

/// What was read of a log. Nothing is taken over from a file with a refusal.
struct LogReading {
  std::string form;  ///< "ADIF", "Table" or "Station log"
  std::vector<LogTaken> taken;
  std::vector<LogLeftOut> leftOut;
  std::vector<std::string> unused;  ///< fields or columns that a record has no place for
  std::string refusal;              ///< in words; empty where the log can be read
  LogTimes times = LogTimes::Utc;   ///< as they were read
  bool timesAreKnown = true;        ///< the file itself says what its times mean
};

/// Largest log of another program that is read, bytes.
inline constexpr std::size_t kLargestForeignLog = std::size_t{256} << 20;

/// Reads the log of another program: ADIF, a table with headings in any delimiter, or the station
/// log of another computer, told apart by what stands in it. `times` is for tables that do not say
/// it themselves.
LogReading readForeignLog(std::string_view bytes, const Calendar& calendar, LogTimes times);

/// What an import would do with one line of the file.
struct LogPlanRow {
  std::size_t place = 0;
  const LogTaken* taken = nullptr;  ///< null where it is left out unread
  bool adds = false;
  std::string why;
};

/// What an import would do, in the order of the file.
struct LogPlan {
  std::vector<LogPlanRow> rows;
  std::size_t adds = 0;
};

/// Reports that the log has already (by frequency, mode and minute, each record for one of them)
/// and those that stand in the file twice are left out. The reading outlives the plan.
LogPlan planLogImport(const LogReading& reading, const LogTable& log);

/// A time of UTC in the computer's zone.
DateTime localTime(const DateTime& utc, const Calendar& calendar);

}  // namespace kelvane
