#include "levels/level_csv.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace kelvane {

namespace {

template <class... Values>
std::string formatted(const char* form, Values... values) {
  std::array<char, 48> text;
  const int length = std::snprintf(text.data(), text.size(), form, values...);
  return {text.data(), std::min<std::size_t>(static_cast<std::size_t>(length), text.size() - 1)};
}

}  // namespace

std::string csvName(std::string_view name) {
  if (name.find_first_of(",\"\r\n") == name.npos) return std::string(name);
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"') quoted += '"';
    quoted += c == '\r' || c == '\n' ? ' ' : c;
  }
  return quoted + '"';
}

std::string utcDay(WallTime utc) {
  using namespace std::chrono;
  const year_month_day date{floor<days>(sys_time<milliseconds>{milliseconds(utc)})};
  return formatted("%04d-%02u-%02u", static_cast<int>(date.year()),
                   static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
}

std::string utcTime(WallTime utc, Precision precision) {
  constexpr WallTime kDay = 86'400'000;
  const int inDay = static_cast<int>((utc % kDay + kDay) % kDay);
  const int second = inDay / 1000;
  const int hour = second / 3600, minute = second / 60 % 60;
  if (precision == Precision::Minutes) return formatted("%02d:%02d", hour, minute);
  const std::string time = formatted("%02d:%02d:%02d", hour, minute, second % 60);
  return precision == Precision::Seconds ? time : time + formatted(".%03d", inDay % 1000);
}

void appendLevelLine(std::string& text, WallTime utc, std::string_view name, Hz frequency,
                     int tenths) {
  text += utcDay(utc);
  text += 'T';
  text += utcTime(utc, Precision::Milliseconds);
  text += "Z,";
  text += name;
  text += ',';
  if (frequency >= 0) text += std::to_string(frequency);
  if (tenths % 10 == 0) {
    text += formatted(",%d\r\n", tenths / 10);
  } else {
    text += formatted(",%s%d.%d\r\n", tenths < 0 ? "-" : "", std::abs(tenths) / 10,
                      std::abs(tenths) % 10);
  }
}

void collectLines(const LevelHistory& history, const LevelClock& clock, LevelTime from,
                  LevelTime to, int receiver, std::vector<LevelLine>& lines) {
  const auto number = static_cast<std::int16_t>(receiver);
  const auto add = [&](LevelTime when, float level) {
    lines.push_back({clock.utc(when), history.frequencyAt(when),
                     static_cast<std::int16_t>(std::lround(level * 10)), number});
  };
  const LevelTime recent = std::clamp(history.recentSince(), from, to);
  // The second in which the readings begin is told by them.
  for (LevelTime second = (from + 999) / 1000; second < recent / 1000; ++second) {
    const LevelSpan span = history.second(second);
    if (span.readings > 0) add(second * 1000, span.mean);
  }
  for (const LevelReading& reading : history.readings(recent, to))
    add(reading.when, static_cast<float>(reading.level));
}

std::string levelCsv(std::vector<LevelLine> lines, const std::vector<std::string>& names) {
  std::ranges::stable_sort(lines, {}, &LevelLine::utc);
  std::vector<std::string> quoted;
  for (const std::string& name : names) quoted.push_back(csvName(name));
  std::string text(kLevelCsvHead);
  text.reserve(text.size() + lines.size() * 48);
  for (const LevelLine& line : lines)
    appendLevelLine(text, line.utc, quoted[static_cast<std::size_t>(line.receiver)], line.frequency,
                    line.tenths);
  return text;
}

}  // namespace kelvane
