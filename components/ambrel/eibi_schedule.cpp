#include "components/ambrel/eibi_schedule.h"

#include <algorithm>
#include <cstdlib>
#include <unordered_map>

#include "base/encoding.h"
#include "base/text.h"
#include "components/ambrel/eibi_line.h"
#include "components/ambrel/kilohertz.h"
#include "components/ambrel/text_table.h"

namespace kelvane::ambrel {

namespace {

constexpr std::size_t kBytesOfLine = 48;  // a little under what real lists have

/// Day and month of a Start or Stop column.
struct YearDay {
  int day = 0;  ///< 0: none
  int month = 0;
};

/// The date in that year that lies nearest to a day.
Day nearest(YearDay date, Day day) {
  const int year = dateOf(day).year;
  Day best = dayOf(Date{year, date.month, date.day});
  for (const int other : {year - 1, year + 1}) {
    const Day candidate = dayOf(Date{other, date.month, date.day});
    if (std::abs(candidate - day) < std::abs(best - day)) best = candidate;
  }
  return best;
}

/// Lines that last beyond their season come back in the same weeks of every year; the others mean
/// the dates that lie nearest to the season.
DateWindow windowOf(YearDay start, YearDay stop, bool everyYear, Season season) {
  if (start.day && stop.day && everyYear)
    return {start.month * 100 + start.day, stop.month * 100 + stop.day, true};
  const Day middle = dayOf((season.start() + season.end()) / 2);
  DateWindow window;
  if (start.day) window.from = nearest(start, middle);
  if (stop.day) window.to = nearest(stop, middle);
  if (start.day && stop.day && window.to < window.from)
    window.to = dayOf(Date{dateOf(window.from).year + 1, stop.month, stop.day});
  return window;
}

bool twoNumbers(std::string_view text, int& first, int& second) {
  if (text.size() != 4) return false;
  for (const char c : text) {
    if (c < '0' || c > '9') return false;
  }
  first = (text[0] - '0') * 10 + text[1] - '0';
  second = (text[2] - '0') * 10 + text[3] - '0';
  return true;
}

/// Reads DDMM, [MMYY] or both; the brackets tell when it was last heard and bind nothing.
bool readYearDay(std::string_view text, YearDay& date) {
  text = trimmed(text.substr(0, text.find('[')));
  if (text.empty()) return true;
  return twoNumbers(text, date.day, date.month) && date.day >= 1 && date.day <= 31 &&
         date.month >= 1 && date.month <= 12;
}

/// Collects a schedule's records line by line.
class Reader {
 public:
  Reader(Season season, ScheduleReading& reading) : season_(season), reading_(reading) {
    reading_.rules.emplace_back();
  }

  /// Takes one line; answers what is wrong with it, nullptr for nothing.
  const char* take(const LineCutter& line) {
    if (!hasEibiFields(line)) return "the number of fields is wrong";
    Record record;
    if (!readKilohertz(field(line, EibiColumn::Frequency), record.frequency))
      return "the frequency cannot be read";
    if (!readTimes(field(line, EibiColumn::Times), record)) return "the times cannot be read";
    if (!readPersistence(field(line, EibiColumn::Persistence), record.persistence))
      return "the persistence code is unknown";
    if (record.persistence == kInactive) {
      ++reading_.inactive;
      return nullptr;
    }
    if (!readDaysAndDates(line, record)) return "the dates cannot be read";
    record.line = static_cast<std::uint32_t>(line.offset());
    reading_.records.push_back(record);
    return nullptr;
  }

 private:
  static constexpr std::uint8_t kInactive = 8;

  static bool readPersistence(std::string_view text, std::uint8_t& code) {
    code = 0;
    if (text.empty()) return true;
    if (text.size() != 1 || text[0] < '0' || text[0] > '8' || text[0] == '7') return false;
    code = static_cast<std::uint8_t>(text[0] - '0');
    return true;
  }

  bool readDaysAndDates(const LineCutter& line, Record& record) {
    const std::string_view days = field(line, EibiColumn::Days),
                           start = field(line, EibiColumn::Start),
                           stop = field(line, EibiColumn::Stop);
    if (days.empty() && start.empty() && (stop.empty() || stop.front() == '[')) return true;
    const Known& known = knownRule(days, start, stop, record.persistence);
    if (!known.valid) return false;
    if (known.unknownDays) ++reading_.unknownDays;
    record.rule = known.rule;
    record.weekdays = known.weekdays;
    record.irregular = known.irregular;
    return true;
  }

  /// What days and dates come to; the same few are met again and again.
  struct Known {
    bool valid = false;
    bool unknownDays = false;
    bool irregular = false;
    std::uint8_t weekdays = DayRule::kAllWeekdays;
    std::uint32_t rule = 0;
  };

  const Known& knownRule(std::string_view days, std::string_view start, std::string_view stop,
                         std::uint8_t persistence) {
    key_.assign(days).append(1, ';').append(start).append(1, ';');
    key_.append(stop.substr(0, stop.find('['))).append(1, static_cast<char>('0' + persistence));
    const auto found = known_.find(key_);
    if (found != known_.end()) return found->second;
    return known_.emplace(key_, work(days, start, stop, persistence)).first->second;
  }

  Known work(std::string_view days, std::string_view start, std::string_view stop,
             std::uint8_t persistence) {
    Known known;
    FurtherRule rule;
    YearDay from, to;
    known.valid = readYearDay(start, from) && readYearDay(stop, to);
    if (!known.valid) return known;
    const bool everyYear = persistence >= 1 && persistence <= 5;
    if (from.day || to.day) rule.dates = windowOf(from, to, everyYear, season_);
    const auto read = readDays(days);
    known.unknownDays = !read;
    rule.days = read.value_or(DayRule{});
    known.irregular = !read || rule.days.irregular;
    known.weekdays = rule.days.weekdays;
    rule.days.mode.reset();
    rule.days.irregular = false;
    if (rule.days.onlyWeekdays() && !from.day && !to.day) return known;
    known.rule = static_cast<std::uint32_t>(reading_.rules.size());
    reading_.rules.push_back(rule);
    return known;
  }

  Season season_;
  ScheduleReading& reading_;
  std::string key_;
  std::unordered_map<std::string, Known> known_;
};

bool isHeading(std::string_view line) {
  return line.starts_with('#') || line.starts_with("kHz") || trimmed(line).empty();
}

std::string refusalOf(const ScheduleReading& reading) {
  const std::size_t good = reading.records.size() + reading.inactive;
  if (good > reading.problems.count) return {};
  if (good + reading.problems.count == 0) return "There is no line of a schedule in it.";
  return "This is no EiBi schedule: " + reading.problems.text();
}

}  // namespace

ScheduleReading readEibiSchedule(std::string_view text, Season season) {
  ScheduleReading reading;
  reading.refusal = whyNoText(text);
  if (!reading.refusal.empty()) return reading;
  reading.records.reserve(text.size() / kBytesOfLine);
  Reader reader(season, reading);
  LineCutter line(text);
  while (line.next()) {
    const char first = line.line().empty() ? '#' : line.line().front();
    if ((first < '0' || first > '9') && isHeading(line.line())) continue;
    if (const char* problem = reader.take(line)) reading.problems.add(line.number(), problem);
  }
  reading.refusal = refusalOf(reading);
  return reading;
}

std::optional<Season> seasonOfLastHeard(std::string_view text) {
  int newest = 0;
  for (auto mark = text.find('['); mark != text.npos; mark = text.find('[', mark + 1)) {
    int month = 0, year = 0;
    if (mark + 5 >= text.size() || text[mark + 5] != ']') continue;
    if (!twoNumbers(text.substr(mark + 1, 4), month, year) || month < 1 || month > 12) continue;
    newest = std::max(newest, year * 12 + month - 1);
  }
  if (newest == 0) return std::nullopt;
  const Date date{2000 + newest / 12, newest % 12 + 1, 31};
  return seasonAt(UtcMinute{dayOf(date)} * kMinutesOfDay - kMinutesOfDay / 2);
}

ScheduleLine scheduleLineAt(std::string_view text, std::size_t offset) {
  LineCutter line(text.substr(offset));
  line.next();
  const auto words = [&line](EibiColumn column) {
    const std::string_view bytes = trimmed(field(line, column));
    return isUtf8(bytes) ? std::string(bytes) : utf8FromLatin1(bytes);
  };
  return {words(EibiColumn::Days),        words(EibiColumn::Country), words(EibiColumn::Station),
          words(EibiColumn::Language),    words(EibiColumn::Target),  words(EibiColumn::Site),
          words(EibiColumn::Persistence), words(EibiColumn::Start),   words(EibiColumn::Stop)};
}

}  // namespace kelvane::ambrel
