#include "log/log_export.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "base/code_page.h"
#include "base/number.h"
#include "base/text.h"
#include "base/utf8.h"

namespace kelvane {

namespace {

/// The number that exactly these digits make; none for anything else.
std::optional<int> digits(std::string_view text, std::size_t count) {
  if (text.size() != count || !std::all_of(text.begin(), text.end(), isDigit)) return std::nullopt;
  return static_cast<int>(num(text));
}

/// Three numbers of two digits, the first of `first`, between separators; a missing third is 0.
std::optional<std::array<int, 3>> three(std::string_view text, char separator, std::size_t first) {
  const auto parts = split(text, separator);
  if (parts.size() != 3 && !(parts.size() == 2 && first == 2)) return std::nullopt;
  std::array<int, 3> numbers{};
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const auto number = digits(parts[i], i == 0 ? first : 2);
    if (!number) return std::nullopt;
    numbers[i] = *number;
  }
  return numbers;
}

struct AdifMode {
  std::string_view name, mode, submode;
};
/// What the format has a name for; of others it gets the receiver's own name alone.
constexpr auto kAdifModes = std::to_array<AdifMode>({{"USB", "SSB", "USB"},
                                                     {"LSB", "SSB", "LSB"},
                                                     {"AM", "AM", ""},
                                                     {"FM", "FM", ""},
                                                     {"NFM", "FM", ""},
                                                     {"WFM", "FM", ""},
                                                     {"CW", "CW", ""},
                                                     {"CWR", "CW", ""},
                                                     {"RTTY", "RTTY", ""},
                                                     {"FAX", "FAX", ""}});

/// The format knows ASCII alone.
std::string ascii(std::string_view utf8) {
  std::string text;
  for (const char32_t character : characters(utf8))
    text += character >= ' ' && character < 0x7F ? static_cast<char>(character) : '?';
  return text;
}

void addField(std::string& file, std::string_view name, std::string_view utf8) {
  if (utf8.empty()) return;
  const std::string value = ascii(utf8);
  file.append("<").append(name).append(":").append(std::to_string(value.size()));
  file.append(">").append(value).append(" ");
}

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }

/// Whether a word has the form of an amateur's call sign: one to three letters and digits, a digit,
/// one to four letters.
bool isCall(std::string_view word) {
  const std::size_t last = word.find_last_of("0123456789");
  if (last == std::string_view::npos || last < 1 || last > 3 || word.size() < last + 2 ||
      word.size() > last + 5)
    return false;
  const std::string_view prefix = word.substr(0, last), suffix = word.substr(last + 1);
  return std::all_of(suffix.begin(), suffix.end(), isUpper) &&
         std::any_of(prefix.begin(), prefix.end(), isUpper) &&
         std::all_of(prefix.begin(), prefix.end(), [](char c) { return isUpper(c) || isDigit(c); });
}

/// The station heard, where the comment names one by its call sign.
std::string_view callIn(std::string_view comment) {
  for (const std::string_view word : split(comment, ' ')) {
    const std::size_t end = word.find_last_not_of(".,:;") + 1;
    if (isCall(word.substr(0, end))) return word.substr(0, end);
  }
  return {};
}

void addMoment(std::string& file, const std::optional<DateTime>& utc) {
  if (!utc) return;
  std::string date = dateText(*utc), time = timeText(*utc);
  std::erase(date, '-');
  std::erase(time, ':');
  addField(file, "QSO_DATE", date);
  addField(file, "TIME_ON", time);
}

void addMode(std::string& file, const std::string& name) {
  const auto known = std::ranges::find(kAdifModes, upper(name), &AdifMode::name);
  if (known == kAdifModes.end()) return;
  addField(file, "MODE", known->mode);
  addField(file, "SUBMODE", known->submode);
}

void addAdif(std::string& file, const LogRecord& record, const std::optional<DateTime>& utc) {
  addMoment(file, utc);
  addField(file, "CALL", callIn(record[LogComments]));
  addField(file, "FREQ", decimalText(num(record[LogFrequency]) / 1e6));
  addMode(file, record[LogMode]);
  addField(file, "SWL", "Y");
  addField(file, "COMMENT", record[LogComments]);
  addField(file, "APP_KELVANE_MODE", record[LogMode]);
  addField(file, "APP_KELVANE_FILTER", record[LogFilter]);
  addField(file, "APP_KELVANE_AGC", record[LogAgc]);
  addField(file, "APP_KELVANE_TYPE", record[LogType]);
  addField(file, "APP_KELVANE_RECEIVER", record[LogReceiver]);
  addField(file, "APP_KELVANE_DATE", record[LogDate]);
  addField(file, "APP_KELVANE_TIME", record[LogTime]);
  file += "<EOR>\r\n";
}

std::string inQuotes(std::string_view value) {
  if (value.find_first_of("\",\r\n") == std::string_view::npos) return std::string(value);
  std::string text = "\"";
  for (const char c : value) text.append(c == '"' ? 2 : 1, c);
  return text + '"';
}

void addCsv(std::string& file, const LogRecord& record, const std::optional<DateTime>& utc) {
  for (const std::string& field : record) file.append(inQuotes(field)).append(",");
  if (utc) file.append(dateText(*utc)).append("T").append(timeText(*utc)).append("Z");
  file += "\r\n";
}

/// Every record, with its moment in UTC, to one of the above.
template <class Add>
LogExport exported(std::string head, const LogTable& log, const Calendar& calendar, Add add) {
  LogExport result{std::move(head)};
  for (GridRow row = 0; row < log.size(); ++row) {
    LogRecord record;
    for (int field = 0; field < kLogFields; ++field)
      record[static_cast<std::size_t>(field)] = log.text(log.recordAt(row), field);
    auto moment = recordedAt(record[LogDate], record[LogTime]);
    if (moment) moment = calendar.utc(*moment);
    result.undated += moment ? 0 : 1;
    add(result.content, record, moment);
  }
  return result;
}

}  // namespace

std::optional<DateTime> recordedAt(std::string_view date, std::string_view time) {
  const auto day = three(date, '-', 4);
  const auto moment = three(time, ':', 2);
  if (!day || !moment) return std::nullopt;
  const auto [year, month, dayOfMonth] = *day;
  const auto [hour, minute, second] = *moment;
  const std::chrono::year_month_day there{std::chrono::year(year),
                                          std::chrono::month(static_cast<unsigned>(month)),
                                          std::chrono::day(static_cast<unsigned>(dayOfMonth))};
  if (!there.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  return DateTime{year, month, dayOfMonth, hour, minute, second};
}

LogExport adifOf(const LogTable& log, const Calendar& calendar) {
  std::string head = "Reports of a listener\r\n";
  addField(head, "ADIF_VER", "3.1.4");
  addField(head, "PROGRAMID", "Kelvane");
  return exported(head + "<EOH>\r\n", log, calendar, addAdif);
}

LogExport csvOf(const LogTable& log, const Calendar& calendar) {
  // The mark tells spreadsheets that the text is UTF-8.
  std::string head = "\xEF\xBB\xBF";
  for (const std::string_view caption : kLogCaptions) head.append(trimmed(caption)).append(",");
  return exported(head + "UTC\r\n", log, calendar, addCsv);
}

}  // namespace kelvane
