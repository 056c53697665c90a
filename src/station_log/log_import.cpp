#include "station_log/log_import.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include "base/encoding.h"
#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/formats/format_parts.h"
#include "components/ambrel/lists/entry_texts.h"
#include "contract/modes.h"
#include "station_log/adif_fields.h"
#include "station_log/log_export.h"
#include "station_log/log_line.h"

namespace kelvane {

namespace {

std::string digitsOf(std::string_view text) {
  std::string digits;
  std::ranges::copy_if(text, std::back_inserter(digits), isDigit);
  return digits;
}

/// The order of day and month in dates with "/".
enum class DateOrder { Unknown, DayFirst, MonthFirst };

/// A date as YYYY-MM-DD; empty where it is none. Knows 20261121, 2026-11-21, 21.11.2026, and with
/// an order 21/11/2026.
std::string readDate(std::string_view text, DateOrder order) {
  std::array<int, 3> parts{};
  std::array<char, 2> between{};
  std::size_t part = 0;
  if (text.size() == 8 && std::ranges::all_of(text, isDigit)) {
    return std::string(text.substr(0, 4)) + "-" + std::string(text.substr(4, 2)) + "-" +
           std::string(text.substr(6));
  }
  for (const char c : text) {
    if (isDigit(c) && parts[part] < 10'000) {
      parts[part] = 10 * parts[part] + (c - '0');
    } else if (part < 2 && (c == '-' || c == '.' || c == '/')) {
      between[part++] = c;
    } else {
      return {};
    }
  }
  if (part != 2) return {};
  if (parts[0] < 1000) {
    if (between[0] == '/' && order == DateOrder::Unknown) return {};
    if (between[0] == '/' && order == DateOrder::MonthFirst) std::swap(parts[0], parts[1]);
    std::swap(parts[0], parts[2]);
    if (parts[0] < 100) parts[0] += parts[0] < 70 ? 2000 : 1900;
  }
  return dateText({parts[0], parts[1], parts[2]});
}

/// A time as hh:mm:ss; empty where it is none. Knows 1234, 123456, 12:34 and 12:34:56, with "Z" or
/// "UTC" behind it.
std::string readTime(std::string_view text) {
  const std::string digits = digitsOf(text);
  const std::string padded = digits.size() == 3 || digits.size() == 5 ? "0" + digits : digits;
  if (padded.size() != 4 && padded.size() != 6) return {};
  return padded.substr(0, 2) + ":" + padded.substr(2, 2) + ":" +
         (padded.size() == 6 ? padded.substr(4) : "00");
}

// Records.

/// The mode of a record by the names of the format.
std::string modeOfAdif(std::string_view mode, std::string_view submode, Hz frequency,
                       std::string& remark) {
  if (modeNamed(submode)) return upper(submode);
  if (equalIgnoringCase(mode, "SSB")) {
    remark = "the sideband is not told; it is the usual one of that frequency";
    return frequency < 10'000'000 ? "LSB" : "USB";
  }
  if (equalIgnoringCase(mode, "DIGITALVOICE")) return frequency < 30'000'000 ? "DRM" : "FM";
  return upper(submode.empty() ? mode : submode);
}

/// Takes date and time into the record; those of UTC as the computer's own.
void takeMoment(LogTaken& taken, const std::string& date, const std::string& time, LogTimes zone,
                const Calendar& calendar) {
  const auto moment = recordedAt(date, time);
  const auto remark = [&taken](const char* words) {
    taken.remark += (taken.remark.empty() ? "" : "; ") + std::string(words);
  };
  if (date.empty()) return remark("the date cannot be read");
  if (time.empty()) remark("the time cannot be read");
  if (!moment && !time.empty()) return remark("there is no such moment");
  const DateTime local =
      moment && zone == LogTimes::Utc ? localTime(*moment, calendar) : moment.value_or(DateTime{});
  taken.record[LogDate] = moment ? dateText(local) : date;
  taken.record[LogTime] = moment ? timeText(local) : "";
}

std::string withCall(std::string_view call, std::string comment) {
  if (call.empty() || upper(comment).find(upper(call)) != std::string::npos) return comment;
  return std::string(call) + (comment.empty() ? "" : " ") + comment;
}

/// What a reading of ADIF takes over; other fields are told as unused.
constexpr auto kUsedFields = std::to_array<std::string_view>({"FREQ",
                                                              "FREQ_RX",
                                                              "MODE",
                                                              "SUBMODE",
                                                              "QSO_DATE",
                                                              "TIME_ON",
                                                              "CALL",
                                                              "COMMENT",
                                                              "NOTES",
                                                              "SWL",
                                                              "MY_RIG",
                                                              "APP_KELVANE_MODE",
                                                              "BAND",
                                                              "APP_KELVANE_FILTER",
                                                              "APP_KELVANE_AGC",
                                                              "BAND_RX",
                                                              "APP_KELVANE_TYPE",
                                                              "APP_KELVANE_RECEIVER",
                                                              "APP_KELVANE_DATE",
                                                              "APP_KELVANE_TIME"});

void takeAdif(const AdifRecords& from, LogTaken& taken, const Calendar& calendar) {
  const auto first = [&from](const char* name, const char* other) {
    return std::string(from.field(name).empty() ? from.field(other) : from.field(name));
  };
  LogRecord& record = taken.record;
  record[LogMode] = from.field("APP_KELVANE_MODE");
  if (record[LogMode].empty())
    record[LogMode] = modeOfAdif(from.field("MODE"), from.field("SUBMODE"),
                                 nearestLong(num(record[LogFrequency])), taken.remark);
  if (const auto filter = wholeNumber(from.field("APP_KELVANE_FILTER")); filter && *filter > 0)
    record[LogFilter] = std::to_string(*filter);
  record[LogAgc] = from.field("APP_KELVANE_AGC");
  record[LogType] = from.field("APP_KELVANE_TYPE");
  record[LogReceiver] = first("APP_KELVANE_RECEIVER", "MY_RIG");
  // A call sign that the export put there from a known station's name is not said once more.
  const std::string comment = first("COMMENT", "NOTES");
  const bool ours = !from.field("APP_KELVANE_MODE").empty();
  record[LogComments] = ours ? comment : withCall(from.field("CALL"), comment);
  if (from.field("QSO_DATE").empty()) {
    record[LogDate] = from.field("APP_KELVANE_DATE");
    record[LogTime] = from.field("APP_KELVANE_TIME");
    return;
  }
  takeMoment(taken, readDate(from.field("QSO_DATE"), DateOrder::Unknown),
             readTime(from.field("TIME_ON")), LogTimes::Utc, calendar);
}

/// Texts as the log's file can hold them; a record without a kind has the usual one.
void settle(LogRecord& record) {
  for (std::string& text : record) text = logText(text);
  if (record[LogType].empty()) record[LogType] = "Unknown";
}

LogReading readAdif(std::string_view bytes, const Calendar& calendar) {
  LogReading reading;
  reading.form = "ADIF";
  std::map<std::string, std::size_t> unused;
  AdifRecords records(bytes);
  while (records.next()) {
    if (records.cut()) {
      reading.leftOut.push_back({records.line(), "the file ends within the record"});
      break;
    }
    LogTaken taken{records.line(), {}, {}};
    const std::string_view mhz =
        records.field("FREQ").empty() ? records.field("FREQ_RX") : records.field("FREQ");
    const auto frequency = lists::readFrequency(mhz, lists::Unit::Mhz);
    if (mhz.empty() || !frequency) {
      reading.leftOut.push_back(
          {taken.place, mhz.empty() ? "there is no frequency" : frequency.reason()});
      continue;
    }
    taken.record[LogFrequency] = std::to_string(*frequency);
    takeAdif(records, taken, calendar);
    for (const auto& [name, value] : records.fields())
      if (std::ranges::find(kUsedFields, name) == kUsedFields.end()) ++unused[name];
    settle(taken.record);
    reading.taken.push_back(std::move(taken));
  }
  for (const auto& [name, times] : unused) reading.unused.push_back(name);
  return reading;
}

// Tables.

enum class LogColumn {
  None,
  Frequency,
  Mode,
  Filter,
  Agc,
  Date,
  Time,
  Both,
  Type,
  Call,
  Comment,
  Receiver
};

struct LogHeading {
  std::string_view word;
  LogColumn column;
};
constexpr auto kLogHeadings = std::to_array<LogHeading>({
    {"FREQUENCY", LogColumn::Frequency},
    {"FREQ", LogColumn::Frequency},
    {"KHZ", LogColumn::Frequency},
    {"MHZ", LogColumn::Frequency},
    {"HZ", LogColumn::Frequency},
    {"QRG", LogColumn::Frequency},
    {"MODE", LogColumn::Mode},
    {"MODULATION", LogColumn::Mode},
    {"FILTER", LogColumn::Filter},
    {"BANDWIDTH", LogColumn::Filter},
    {"AGC", LogColumn::Agc},
    {"DATE", LogColumn::Date},
    {"DATETIME", LogColumn::Both},
    {"TIMESTAMP", LogColumn::Both},
    {"TIME", LogColumn::Time},
    {"UTC", LogColumn::Time},
    {"START", LogColumn::Time},
    {"TYPE", LogColumn::Type},
    {"CALL", LogColumn::Call},
    {"CALLSIGN", LogColumn::Call},
    {"STATION", LogColumn::Call},
    {"NAME", LogColumn::Call},
    {"IDENT", LogColumn::Call},
    {"COMMENT", LogColumn::Comment},
    {"COMMENTS", LogColumn::Comment},
    {"NOTE", LogColumn::Comment},
    {"NOTES", LogColumn::Comment},
    {"REMARKS", LogColumn::Comment},
    {"DETAILS", LogColumn::Comment},
    {"PROGRAM", LogColumn::Comment},
    {"RECEIVER", LogColumn::Receiver},
    {"RADIO", LogColumn::Receiver},
    {"RIG", LogColumn::Receiver},
});

/// The words of a heading in capitals: "Time (UTC)" has TIME and UTC.
std::vector<std::string> headingWords(std::string_view heading) {
  std::vector<std::string> words(1);
  for (const char c : upper(heading)) {
    if (isCapital(c))
      words.back() += c;
    else if (!words.back().empty())
      words.emplace_back();
  }
  return words;
}

bool holdsWord(std::string_view heading, std::initializer_list<std::string_view> wanted) {
  const auto words = headingWords(heading);
  return std::ranges::any_of(words, [&](const std::string& word) {
    return std::ranges::find(wanted, word) != wanted.end();
  });
}

LogColumn columnOf(std::string_view heading) {
  for (const std::string& word : headingWords(heading)) {
    const auto found = std::ranges::find(kLogHeadings, std::string_view(word), &LogHeading::word);
    if (found != kLogHeadings.end()) return found->column;
  }
  return LogColumn::None;
}

/// How a table is read: which column holds what, and what its times mean.
struct LogTableShape {
  std::map<LogColumn, std::size_t> columns;
  std::vector<std::string> unused;
  lists::Unit unit = lists::Unit::Guess;
  bool utc = false;      ///< a heading says that the times are of UTC
  std::size_t ours = 0;  ///< the place of our own export's last column; 0 where it is not ours
  DateOrder order = DateOrder::Unknown;

  std::string_view of(LogColumn column, const formats::TableRows& rows) const {
    const auto found = columns.find(column);
    return found == columns.end() ? std::string_view() : rows.field(found->second);
  }
};

LogTableShape shapeOf(const std::vector<std::string>& headings) {
  LogTableShape shape;
  for (std::size_t place = 0; place < headings.size(); ++place) {
    const std::string_view heading = trimmed(headings[place]);
    const LogColumn column = columnOf(heading);
    shape.utc = shape.utc || holdsWord(heading, {"UTC", "GMT", "QSO"});
    if (column == LogColumn::Frequency && !shape.columns.contains(column)) {
      if (holdsWord(heading, {"MHZ"})) shape.unit = lists::Unit::Mhz;
      if (holdsWord(heading, {"KHZ"})) shape.unit = lists::Unit::Khz;
      if (holdsWord(heading, {"HZ"})) shape.unit = lists::Unit::Hz;
    }
    const bool taken = column != LogColumn::None && shape.columns.try_emplace(column, place).second;
    if (!taken && !heading.empty() && heading != "UTC") shape.unused.emplace_back(heading);
  }
  // Our own: its dates are local, and the last column has the moment in UTC.
  bool ours = headings.size() == kLogFields + 1 && headings.back() == "UTC";
  for (std::size_t i = 0; ours && i < kLogFields; ++i)
    ours = trimmed(headings[i]) == trimmed(kLogCaptions[i]);
  if (ours) {
    shape.ours = kLogFields;
    shape.unit = lists::Unit::Hz;
  }
  return shape;
}

/// Whether dates with "/" begin with the day: one of them that can only be read so says it.
DateOrder orderOfDates(formats::TableRows rows, const LogTableShape& shape) {
  while (rows.next()) {
    std::string_view date = shape.of(LogColumn::Date, rows);
    if (date.empty()) date = shape.of(LogColumn::Both, rows);
    const auto slash = date.find('/');
    if (slash == date.npos || slash > 2) continue;
    if (num(date) > 12) return DateOrder::DayFirst;
    if (num(date.substr(slash + 1)) > 12) return DateOrder::MonthFirst;
  }
  return DateOrder::Unknown;
}

void takeTableMoment(const formats::TableRows& rows, const LogTableShape& shape, LogTimes zone,
                     const Calendar& calendar, LogTaken& taken) {
  std::string_view date = shape.of(LogColumn::Date, rows), time = shape.of(LogColumn::Time, rows);
  if (shape.ours > 0 && !rows.field(shape.ours).empty()) {
    date = rows.field(shape.ours);
    zone = LogTimes::Utc;
  } else if (date.empty()) {
    date = shape.of(LogColumn::Both, rows);
  }
  // "2026-11-21T12:34:56Z" and "2026-11-21 12:34" are both in one.
  if (const auto part = date.find_first_of("T "); part != date.npos) {
    time = date.substr(part + 1);
    date = date.substr(0, part);
  }
  takeMoment(taken, readDate(date, shape.order), readTime(time), zone, calendar);
}

void takeRow(const formats::TableRows& rows, const LogTableShape& shape, LogTaken& taken) {
  const auto of = [&](LogColumn column) { return std::string(shape.of(column, rows)); };
  LogRecord& record = taken.record;
  record[LogMode] = of(LogColumn::Mode);
  if (equalIgnoringCase(record[LogMode], "SSB"))
    record[LogMode] = modeOfAdif("SSB", "", nearestLong(num(record[LogFrequency])), taken.remark);
  if (const double width = num(of(LogColumn::Filter)); width >= 1 && width < 10'000'000)
    record[LogFilter] = std::to_string(nearestLong(width));
  record[LogAgc] = of(LogColumn::Agc);
  record[LogType] = of(LogColumn::Type);
  record[LogReceiver] = of(LogColumn::Receiver);
  record[LogComments] = withCall(of(LogColumn::Call), of(LogColumn::Comment));
}

LogReading readLogTable(const std::string& text, const Calendar& calendar, LogTimes times) {
  LogReading reading;
  reading.form = "Table";
  formats::TableRows rows(text, formats::guessShape(text).delimiter);
  const formats::TableRows all = rows;
  if (!rows.next()) return reading;
  LogTableShape shape = shapeOf(rows.fields());
  if (!shape.columns.contains(LogColumn::Frequency)) {
    reading.refusal =
        "It is neither ADIF nor a table whose first line names the columns, frequency among them.";
    return reading;
  }
  shape.order = orderOfDates(all, shape);
  reading.unused = shape.unused;
  reading.timesAreKnown = shape.utc || shape.ours > 0;
  reading.times = reading.timesAreKnown ? LogTimes::Utc : times;
  while (rows.next()) {
    if (rows.raw().starts_with('#')) continue;
    LogTaken taken{rows.line(), {}, {}};
    const auto frequency = lists::readFrequency(shape.of(LogColumn::Frequency, rows), shape.unit);
    if (!frequency) {
      reading.leftOut.push_back({taken.place, frequency.reason()});
      continue;
    }
    taken.record[LogFrequency] = std::to_string(*frequency);
    takeRow(rows, shape, taken);
    takeTableMoment(rows, shape, shape.ours > 0 ? LogTimes::Local : reading.times, calendar, taken);
    settle(taken.record);
    reading.taken.push_back(std::move(taken));
  }
  return reading;
}

/// The station log of another computer, or an older one of this.
LogReading readStationLog(std::string text) {
  LogReading reading;
  reading.form = "Station log";
  reading.times = LogTimes::Local;
  for (LogLines line(text); line.next();) {
    if (trimmed(line.line()).empty()) continue;
    if (judgeLogLine(line) == LogLine::NoRecord) {
      reading.leftOut.push_back({line.number(), "it is no record"});
      continue;
    }
    LogTaken taken{line.number(), {}, {}};
    std::ranges::copy(logFields(line.line()), taken.record.begin());
    reading.taken.push_back(std::move(taken));
  }
  return reading;
}

bool isStationLog(std::string_view text) {
  LogLines line(text);
  return line.next() && judgeLogLine(line) != LogLine::NoRecord && line.fields() > kLogFields;
}

/// By what a report is known to be there already: its frequency, mode and minute.
std::string keyOf(std::string_view frequency, std::string_view mode, std::string_view date,
                  std::string_view time) {
  std::string key = std::to_string(nearestLong(num(frequency))) + '|' + upper(mode) + '|';
  return key.append(date).append("|").append(time.substr(0, 5)) + '|';
}
std::string keyOf(const LogRecord& record) {
  return keyOf(record[LogFrequency], record[LogMode], record[LogDate], record[LogTime]);
}

/// The log's records of the minutes that a reading is about. Each of them stands for one report: a
/// minute may have several, of different stations on one frequency.
class RecordsThere {
 public:
  RecordsThere(const LogReading& reading, const LogTable& log) {
    for (const LogTaken& taken : reading.taken) minutes_.emplace(keyOf(taken.record), 0);
    for (GridRow record = 0; record < log.size(); ++record) {
      const std::string key = keyOf(log.field(record, LogFrequency), log.field(record, LogMode),
                                    log.field(record, LogDate), log.field(record, LogTime));
      const auto minute = minutes_.find(key);
      if (minute == minutes_.end()) continue;
      ++minute->second;
      ++commented_[key + log.text(record, LogComments)];
    }
  }
  /// Takes the record with the same comments.
  bool takeSame(const LogRecord& record) {
    const auto same = commented_.find(keyOf(record) + record[LogComments]);
    if (same == commented_.end() || same->second == 0) return false;
    --same->second;
    return takeAny(record);
  }
  /// Takes one of that minute, whatever the operator wrote beside it since.
  bool takeAny(const LogRecord& record) {
    std::size_t& left = minutes_[keyOf(record)];
    if (left == 0) return false;
    --left;
    return true;
  }

 private:
  std::unordered_map<std::string, std::size_t> minutes_, commented_;
};

}  // namespace

DateTime localTime(const DateTime& utc, const Calendar& calendar) {
  const auto point = pointOf(utc);
  // Near a change of the clocks the difference is another one at the first guess.
  auto local = point;
  for (int round = 0; round < 2; ++round) local += point - pointOf(calendar.utc(dateTimeOf(local)));
  return dateTimeOf(local);
}

LogReading readForeignLog(std::string_view bytes, const Calendar& calendar, LogTimes times) {
  LogReading reading;
  if (AdifRecords::isAdif(bytes)) {
    reading = readAdif(bytes, calendar);
  } else {
    std::string text = formats::asUtf8(bytes);
    if (text.find('\0') != text.npos)
      reading.refusal = "It is no text.";
    else
      reading = isStationLog(text) ? readStationLog(std::move(text))
                                   : readLogTable(text, calendar, times);
  }
  if (!reading.refusal.empty() || !reading.taken.empty()) return reading;
  reading.refusal = "There is no report in it.";
  if (!reading.leftOut.empty())
    reading.refusal = "No report in it can be read. Line " +
                      std::to_string(reading.leftOut.front().place) + ": " +
                      reading.leftOut.front().reason + ".";
  return reading;
}

LogPlan planLogImport(const LogReading& reading, const LogTable& log) {
  RecordsThere there(reading, log);
  std::vector<bool> known(reading.taken.size());
  for (std::size_t i = 0; i < known.size(); ++i) known[i] = there.takeSame(reading.taken[i].record);
  std::set<LogRecord> added;
  LogPlan plan;
  for (std::size_t i = 0; i < known.size(); ++i) {
    const LogTaken& taken = reading.taken[i];
    const char* why = known[i] || there.takeAny(taken.record) ? "it is in the log already"
                      : !added.insert(taken.record).second    ? "it stands in the file twice"
                                                              : nullptr;
    plan.adds += why ? 0 : 1;
    plan.rows.push_back({taken.place, &taken, !why, why ? why : taken.remark});
  }
  for (const LogLeftOut& left : reading.leftOut)
    plan.rows.push_back({left.place, nullptr, false, left.reason});
  std::ranges::stable_sort(plan.rows, {}, &LogPlanRow::place);
  return plan;
}

}  // namespace kelvane
