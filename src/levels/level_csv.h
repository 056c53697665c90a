#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "levels/level_history.h"

namespace kelvane {

/// Levels as lines of a text: UTC with milliseconds, receiver, Hz and dBm, by commas. A frequency
/// that is not known is left empty.
inline constexpr std::string_view kLevelCsvHead = "UTC,Receiver,Hz,dBm\r\n";

/// A receiver's name as it stands between commas.
std::string csvName(std::string_view name);
/// Appends one line; `name` is a csvName, the level in tenths of a dB.
void appendLevelLine(std::string& text, WallTime utc, std::string_view name, Hz frequency,
                     int tenths);
/// The day of a moment, YYYY-MM-DD.
std::string utcDay(WallTime utc);
/// The time of day, hh:mm:ss; with milliseconds where they are asked for.
enum class Precision { Minutes, Seconds, Milliseconds };
std::string utcTime(WallTime utc, Precision precision);

/// What is written for a moment of one receiver.
struct LevelLine {
  WallTime utc;
  Hz frequency;
  std::int16_t tenths;
  std::int16_t receiver;  ///< number of its name
};

/// What a history holds of a span of time: each reading as far as they are kept, before that the
/// mean of each second at its beginning.
void collectLines(const LevelHistory& history, const LevelClock& clock, LevelTime from,
                  LevelTime to, int receiver, std::vector<LevelLine>& lines);
/// The lines in the order of time, below the head.
std::string levelCsv(std::vector<LevelLine> lines, const std::vector<std::string>& names);

}  // namespace kelvane
