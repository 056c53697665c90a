#pragma once

#include <array>
#include <string>
#include <string_view>

#include "base/field_cutter.h"
#include "station_log/log_record.h"

namespace kelvane {

// One line of the log's file, in the code page and without its end: each field followed by "|".

/// Walks a log line by line. Writers end a line with CR, LF or both.
using LogLines = FieldCutter<'|', LineEnd::FeedOrReturn>;

/// A field of a line, trimmed; empty where the line has fewer.
std::string_view logField(std::string_view line, int field);

/// All fields of a line, trimmed.
std::array<std::string_view, kLogFields> logFields(std::string_view line);

/// Whether a text's numeric value is greater than 0, as base's num() reads it.
bool isPositive(std::string_view text);

/// What a line is as a record.
enum class LogLine {
  InForm,    ///< a record, just as appendLogLine() writes it: most lines of a file are
  Record,    ///< one in another form
  TooLong,   ///< a record, of whose more than nine fields the first nine count
  NoRecord,  ///< too few fields, or a frequency that is no positive number, or such a filter
};
LogLine judgeLogLine(const LogLines& line);
LogLine judgeLogLine(std::string_view line);

/// The text as a field can hold it: trimmed, with "/" for the separator and blanks for line ends
/// and other control characters.
std::string logText(std::string_view text);

/// Behind each record of a file.
inline constexpr std::string_view kLogLineEnd = "\r\n";

/// Adds a record as the file has it, its line end included: the first four fields padded.
void appendLogLine(std::string& file, std::string_view line);
/// The fields as a line, as appendLogLine() writes it.
std::string joinLogLine(const LogRecord& record);

}  // namespace kelvane
