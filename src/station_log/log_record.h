#pragma once

#include <array>
#include <string>
#include <string_view>

namespace kelvane {

/// The fields of a log record, in the order of the file and of the grid.
enum LogField : int {
  LogFrequency,  ///< Hz, decimal
  LogMode,
  LogFilter,  ///< as the receiver names it, a number
  LogAgc,
  LogDate,  ///< of the computer's own time, YYYY-MM-DD; other forms in files of older programs
  LogTime,  ///< hh:mm:ss
  LogType,
  LogComments,
  LogReceiver,
};
inline constexpr int kLogFields = 9;

/// A record's fields as texts; in UTF-8, but inside the table and the file in the code page.
using LogRecord = std::array<std::string, kLogFields>;

/// The captions of the grid's columns.
inline constexpr std::array<std::string_view, kLogFields> kLogCaptions{
    "Frequency ", "Mode", "Filter", "AGC", "Date", "Time", "Type", "Comments", "Receiver"};

}  // namespace kelvane
