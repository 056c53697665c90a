#include "station_log/log_export.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <unordered_set>
#include <utility>

#include "base/encoding.h"
#include "base/number.h"
#include "base/text.h"
#include "base/transliteration.h"
#include "station_log/call_sign.h"
#include "station_log/log_line.h"
#include "station_log/record_text.h"

namespace kelvane {

namespace {

/// The number of two digits at a place; -1 where they are none.
int twoDigits(std::string_view text, std::size_t at) {
  if (!isDigit(text[at]) || !isDigit(text[at + 1])) return -1;
  return 10 * (text[at] - '0') + (text[at + 1] - '0');
}

struct AdifMode {
  std::string_view name, mode, submode;
};
/// What the format calls the receivers' modes.
constexpr auto kAdifModes = std::to_array<AdifMode>(
    {{"USB", "SSB", "USB"},    {"LSB", "SSB", "LSB"}, {"PKTUSB", "SSB", "USB"},
     {"PKTLSB", "SSB", "LSB"}, {"AM", "AM", ""},      {"SAM", "AM", ""},
     {"SAL", "AM", ""},        {"SAH", "AM", ""},     {"DSB", "AM", ""},
     {"PKTAM", "AM", ""},      {"FM", "FM", ""},      {"FMN", "FM", ""},
     {"NFM", "FM", ""},        {"WFM", "FM", ""},     {"PKTFM", "FM", ""},
     {"CW", "CW", ""},         {"CWR", "CW", ""},     {"RTTY", "RTTY", ""},
     {"RTTYR", "RTTY", ""},    {"FAX", "FAX", ""},    {"DRM", "DIGITALVOICE", ""}});

bool isPrintable(char c) { return c >= ' ' && c < 0x7F; }
bool isQuotedFor(char c) { return c == '"' || c == ',' || c == '\r' || c == '\n'; }

/// Whether any of the characters is such; looks at all of them, which is quicker than to stop.
template <class Such>
bool hasAny(std::string_view text, Such such) {
  bool any = false;
  for (const char c : text) any |= such(c);
  return any;
}

/// `value` is of printable ASCII.
void addPlain(RecordText& file, std::string_view name, std::string_view value) {
  if (value.empty()) return;
  file.add('<').add(name).add(':').addNumber(value.size()).add('>').add(value).add(' ');
}

/// A record, on its way out: its fields in UTF-8, and its moment.
struct Outgoing {
  std::array<std::string_view, kLogFields> fields;
  std::optional<DateTime> utc;
  bool plain = false;   ///< of printable ASCII alone
  bool quoted = false;  ///< some field has to be quoted among comma separated values

  std::string_view operator[](int field) const { return fields[static_cast<std::size_t>(field)]; }
};

void addField(RecordText& file, std::string_view name, const Outgoing& record, int field) {
  if (record.plain) return addPlain(file, name, record[field]);
  std::string value = transliterated(record[field]);
  std::ranges::replace_if(
      value, [](char c) { return !isPrintable(c); }, ' ');
  addPlain(file, name, value);
}

void addDate(RecordText& text, const DateTime& moment, std::string_view between) {
  text.addTwoDigits(moment.year / 100).addTwoDigits(moment.year % 100);
  text.add(between).addTwoDigits(moment.month).add(between).addTwoDigits(moment.day);
}

void addTime(RecordText& text, const DateTime& moment, std::string_view between) {
  text.addTwoDigits(moment.hour).add(between).addTwoDigits(moment.minute);
  text.add(between).addTwoDigits(moment.second);
}

void addMoment(RecordText& file, const std::optional<DateTime>& utc) {
  if (!utc) return;
  addDate(file.add("<QSO_DATE:8>"), *utc, "");
  addTime(file.add(" <TIME_ON:6>"), *utc, "");
  file.add(' ');
}

void addMode(RecordText& file, std::string_view name) {
  const auto known = std::ranges::find_if(
      kAdifModes, [name](const AdifMode& mode) { return equalIgnoringCase(mode.name, name); });
  if (known == kAdifModes.end()) return;
  addPlain(file, "MODE", known->mode);
  addPlain(file, "SUBMODE", known->submode);
}

/// A frequency in MHz, without noughts at its end.
void addMegahertz(RecordText& file, std::string_view hertz) {
  constexpr std::size_t kPlaces = 6;
  if (hertz.size() > 15 || !std::ranges::all_of(hertz, isDigit))
    return addPlain(file, "FREQ", decimalText(num(hertz) / 1e6));
  while (hertz.starts_with('0')) hertz.remove_prefix(1);
  std::string text(hertz.size() > kPlaces ? hertz.substr(0, hertz.size() - kPlaces) : "0");
  const std::size_t point = text.size();
  text.append(".").append(hertz.size() < kPlaces ? kPlaces - hertz.size() : 0, '0');
  text += hertz.substr(hertz.size() > kPlaces ? hertz.size() - kPlaces : 0);
  while (text.ends_with('0') && text.size() > point) text.pop_back();
  if (text.ends_with('.')) text.pop_back();
  addPlain(file, "FREQ", text);
}

Hz frequencyOf(std::string_view field) { return nearestLong(num(field)); }

std::string_view callOf(const Outgoing& record, const StationNames& stations) {
  const std::string_view call = callInComment(record[LogComments]);
  if (!call.empty() || stations.empty()) return call;
  const auto known = stations.find(frequencyOf(record[LogFrequency]));
  return known == stations.end() ? std::string_view() : callInName(known->second);
}

void addAdif(RecordText& file, const Outgoing& record, std::string_view call) {
  addMoment(file, record.utc);
  addPlain(file, "CALL", call);
  addMegahertz(file, record[LogFrequency]);
  addMode(file, record[LogMode]);
  addPlain(file, "SWL", "Y");
  addField(file, "COMMENT", record, LogComments);
  addField(file, "APP_KELVANE_MODE", record, LogMode);
  addField(file, "APP_KELVANE_FILTER", record, LogFilter);
  addField(file, "APP_KELVANE_AGC", record, LogAgc);
  addField(file, "APP_KELVANE_TYPE", record, LogType);
  addField(file, "APP_KELVANE_RECEIVER", record, LogReceiver);
  addField(file, "APP_KELVANE_DATE", record, LogDate);
  addField(file, "APP_KELVANE_TIME", record, LogTime);
  file.add("<EOR>\r\n");
}

void addQuoted(RecordText& file, std::string_view value) {
  if (!hasAny(value, isQuotedFor)) return void(file.add(value));
  file.add('"');
  for (const char c : value) file.add(c == '"' ? "\"\"" : std::string_view(&c, 1));
  file.add('"');
}

void addCsv(RecordText& file, const Outgoing& record) {
  for (const std::string_view field : record.fields) {
    if (record.quoted)
      addQuoted(file, field);
    else
      file.add(field);
    file.add(',');
  }
  if (record.utc) {
    addDate(file, *record.utc, "-");
    addTime(file.add('T'), *record.utc, ":");
    file.add('Z');
  }
  file.add("\r\n");
}

/// Moments in UTC. The calendar, which is slow, is asked for the two ends of each day: on nearly
/// all days they are equally far from UTC, and so is what is between.
class UtcMoments {
 public:
  explicit UtcMoments(const Calendar& calendar) : calendar_(calendar) {}

  DateTime of(const DateTime& local) {
    const int day = (local.year * 100 + local.month) * 100 + local.day;
    const auto [place, isNew] = behind_.try_emplace(day);
    if (isNew) place->second = behindAllDay(local);
    return place->second ? moved(local, *place->second) : calendar_.utc(local);
  }

 private:
  using Seconds = std::chrono::seconds;

  std::optional<Seconds> behindAllDay(DateTime local) const {
    local.hour = local.minute = local.second = 0;
    const Seconds first = pointOf(calendar_.utc(local)) - pointOf(local);
    local.hour = 23;
    local.minute = local.second = 59;
    const Seconds last = pointOf(calendar_.utc(local)) - pointOf(local);
    return first == last ? std::optional(first) : std::nullopt;
  }
  static DateTime moved(const DateTime& local, Seconds by) {
    const int second = 3600 * local.hour + 60 * local.minute + local.second;
    const auto secondThere = second + static_cast<int>(by.count());
    // Mostly the day stays the same one.
    if (secondThere >= 0 && secondThere < 24 * 3600)
      return {local.year,         local.month,           local.day,
              secondThere / 3600, secondThere / 60 % 60, secondThere % 60};
    return dateTimeOf(pointOf(local) + by);
  }

  const Calendar& calendar_;
  std::unordered_map<int, std::optional<Seconds>> behind_;  ///< by day as a number, 20261231
};

/// Every record, in the order of the rows.
template <class Take>
void eachRecord(const LogTable& log, Take take) {
  LogRecord decoded;
  for (GridRow row = 0; row < log.size(); ++row) {
    const std::string_view line = log.line(log.recordAt(row));
    Outgoing record{logFields(line), {}};
    record.plain = !hasAny(line, [](char c) { return !isPrintable(c); });
    record.quoted = hasAny(line, isQuotedFor);
    if (!record.plain && !isAscii(line)) {
      for (std::size_t i = 0; i < decoded.size(); ++i) {
        decoded[i] = log.decoded(record.fields[i]);
        record.fields[i] = decoded[i];
      }
    }
    take(record);
  }
}

/// Every record with its moment in UTC; about how many bytes it takes.
template <class Add>
LogExport exported(std::string head, const LogTable& log, const Calendar& calendar,
                   std::size_t bytesEach, Add add) {
  LogExport result{std::move(head)};
  // Grown by doubling, the content would be copied over and over.
  result.content.reserve(result.content.size() + log.size() * bytesEach);
  UtcMoments utc(calendar);
  RecordText text;
  eachRecord(log, [&](Outgoing& record) {
    const auto moment = recordedAt(record[LogDate], record[LogTime]);
    if (moment) record.utc = utc.of(*moment);
    result.undated += moment ? 0 : 1;
    text.clear();
    add(text, record);
    result.content += text.text();
  });
  return result;
}

}  // namespace

std::optional<DateTime> recordedAt(std::string_view date, std::string_view time) {
  const bool seconds = time.size() == 8 && time[5] == ':';
  if (date.size() != 10 || date[4] != '-' || date[7] != '-') return std::nullopt;
  if ((time.size() != 5 && !seconds) || time[2] != ':') return std::nullopt;
  const int century = twoDigits(date, 0), yearOfIt = twoDigits(date, 2);
  const int month = twoDigits(date, 5), day = twoDigits(date, 8);
  const int hour = twoDigits(time, 0), minute = twoDigits(time, 3);
  const int second = seconds ? twoDigits(time, 6) : 0;
  if (century < 0 || yearOfIt < 0 || month < 1 || day < 1 || hour < 0 || minute < 0 || second < 0)
    return std::nullopt;
  const int year = 100 * century + yearOfIt;
  const std::chrono::year_month_day calendarDay{std::chrono::year(year),
                                                std::chrono::month(static_cast<unsigned>(month)),
                                                std::chrono::day(static_cast<unsigned>(day))};
  if (!calendarDay.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  return DateTime{year, month, day, hour, minute, second};
}

std::vector<Hz> uncalledFrequencies(const LogTable& log) {
  std::unordered_set<Hz> frequencies;
  eachRecord(log, [&](const Outgoing& record) {
    if (callInComment(record[LogComments]).empty())
      frequencies.insert(frequencyOf(record[LogFrequency]));
  });
  return {frequencies.begin(), frequencies.end()};
}

LogExport adifOf(const LogTable& log, const Calendar& calendar, const StationNames& stations) {
  RecordText head;
  head.add("Reports of a listener\r\n");
  addPlain(head, "ADIF_VER", "3.1.4");
  addPlain(head, "PROGRAMID", "Kelvane");
  head.add("<EOH>\r\n");
  std::size_t uncalled = 0;
  const auto add = [&](RecordText& text, const Outgoing& record) {
    const std::string_view call = callOf(record, stations);
    uncalled += call.empty() ? 1 : 0;
    addAdif(text, record, call);
  };
  LogExport result = exported(std::string(head.text()), log, calendar, 480, add);
  result.uncalled = uncalled;
  return result;
}

LogExport csvOf(const LogTable& log, const Calendar& calendar) {
  // The mark tells spreadsheets that the text is UTF-8.
  std::string head(kUtf8Mark);
  for (const std::string_view caption : kLogCaptions) head.append(trimmed(caption)).append(",");
  return exported(head + "UTC\r\n", log, calendar, 120, addCsv);
}

}  // namespace kelvane
