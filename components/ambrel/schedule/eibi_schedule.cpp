#include "components/ambrel/schedule/eibi_schedule.h"

#include <algorithm>
#include <future>
#include <utility>

#include "base/encoding.h"
#include "base/text.h"
#include "components/ambrel/kilohertz.h"
#include "components/ambrel/rule_book.h"
#include "components/ambrel/schedule/eibi_line.h"
#include "components/ambrel/text_table.h"
#include "components/ambrel/two_numbers.h"

namespace kelvane::ambrel {

namespace {

// Room is made for a real list at once; a larger one grows into it.
constexpr std::size_t kBytesOfLine = 48, kUsualLines = 1 << 15;
/// Texts of so many bytes are read by two threads, half by half.
constexpr std::size_t kWorthTwoThreads = 200'000;

/// Collects a schedule's records line by line.
class Reader {
 public:
  Reader(Season season, ScheduleReading& reading) : reading_(reading), book_(season) {}

  std::vector<FurtherRule> takeRules() { return book_.takeRules(); }

  /// Takes one line; answers what is wrong with it, nullptr for nothing.
  const char* take(const LineCutter& line) {
    // Filled in place: to build a record elsewhere and copy it costs as much as reading it.
    ListedRecord& listed = reading_.records.emplace_back();
    bool inactive = false;
    const char* const problem = read(line, listed, inactive);
    if (problem || inactive) reading_.records.pop_back();
    if (inactive) ++reading_.inactive;
    return problem;
  }

 private:
  static constexpr std::uint8_t kInactive = 8;

  const char* read(const LineCutter& line, ListedRecord& listed, bool& inactive) {
    if (!hasEibiFields(line)) return "the number of fields is wrong";
    if (!readKilohertz(field(line, EibiColumn::Frequency), listed.frequency))
      return "the frequency cannot be read";
    if (!readTimes(field(line, EibiColumn::Times), listed.record))
      return "the times cannot be read";
    std::uint8_t persistence = 0;
    if (!readPersistence(field(line, EibiColumn::Persistence), persistence))
      return "the persistence code is unknown";
    inactive = persistence == kInactive;
    if (inactive) return nullptr;
    listed.record.persistence = persistence & 7;
    listed.source.line = static_cast<std::uint32_t>(line.offset());
    return readDaysAndDates(line, listed) ? nullptr : "the dates cannot be read";
  }

  static bool readPersistence(std::string_view text, std::uint8_t& code) {
    code = 0;
    if (text.empty()) return true;
    if (text.size() != 1 || text[0] < '0' || text[0] > '8' || text[0] == '7') return false;
    code = static_cast<std::uint8_t>(text[0] - '0');
    return true;
  }

  bool readDaysAndDates(const LineCutter& line, ListedRecord& listed) {
    const std::string_view days = field(line, EibiColumn::Days),
                           start = field(line, EibiColumn::Start),
                           stop = field(line, EibiColumn::Stop);
    if (days.empty() && start.empty() && (stop.empty() || stop.front() == '[')) return true;
    const RuleBook::Reading read =
        book_.read(days, start, stop, static_cast<std::uint8_t>(listed.record.persistence));
    if (read.daysUnknown) ++reading_.unknownDays;
    listed.source.rule = read.rule;
    listed.record.hasRule = read.rule != 0;
    listed.record.weekdays = read.weekdays;
    listed.record.irregular = read.irregular;
    return read.valid;
  }

  ScheduleReading& reading_;
  RuleBook book_;
};

bool isHeading(std::string_view line) {
  return line.starts_with('#') || line.starts_with("kHz") || trimmed(line).empty();
}

/// What was read of some lines on end, and how many they are.
struct Part {
  ScheduleReading reading;
  std::size_t lines = 0;
};

Part readLines(std::string_view text, Season season) {
  Part part;
  ScheduleReading& reading = part.reading;
  reading.records.reserve(std::min(text.size() / kBytesOfLine, kUsualLines));
  Reader reader(season, reading);
  LineCutter line(text);
  while (line.next()) {
    const char first = line.line().empty() ? '#' : line.line().front();
    if ((first < '0' || first > '9') && isHeading(line.line())) continue;
    if (const char* problem = reader.take(line)) reading.problems.add(line.number(), problem);
  }
  reading.rules = reader.takeRules();
  part.lines = line.number();
  return part;
}

/// Joins what was read of the lines that begin at `offset`, behind those of `part`.
void append(Part& part, std::size_t offset, ScheduleReading more) {
  ScheduleReading& all = part.reading;
  // Either has a first rule that is never referred to.
  const auto rules = static_cast<std::uint32_t>(all.rules.size() - 1);
  for (ListedRecord& listed : more.records) {
    listed.source.line += static_cast<std::uint32_t>(offset);
    if (listed.record.hasRule) listed.source.rule += rules;
  }
  all.records.insert(all.records.end(), more.records.begin(), more.records.end());
  all.rules.insert(all.rules.end(), more.rules.begin() + 1, more.rules.end());
  all.inactive += more.inactive;
  all.unknownDays += more.unknownDays;
  all.problems.append(part.lines, more.problems);
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
  reading.refusal = checkText(text).reason();
  if (!reading.refusal.empty()) return reading;
  const std::size_t middle =
      text.size() < kWorthTwoThreads ? text.npos : text.find('\n', text.size() / 2);
  if (middle == text.npos) {
    reading = readLines(text, season).reading;
  } else {
    auto second = std::async(std::launch::async, readLines, text.substr(middle + 1), season);
    Part first = readLines(text.substr(0, middle + 1), season);
    append(first, middle + 1, second.get().reading);
    reading = std::move(first.reading);
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
