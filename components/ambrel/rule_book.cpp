#include "components/ambrel/rule_book.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "base/text.h"
#include "components/ambrel/two_numbers.h"

namespace kelvane::ambrel {

namespace {

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

/// Reads DDMM, [MMYY] or both; the brackets tell when it was last heard and bind nothing.
bool readYearDay(std::string_view text, YearDay& date) {
  text = trimmed(text.substr(0, text.find('[')));
  if (text.empty()) return true;
  return twoNumbers(text, date.day, date.month) && date.day >= 1 && date.day <= 31 &&
         date.month >= 1 && date.month <= 12;
}

/// Puts a text's bytes into a word; false where they do not fit.
template <class Word>
bool pack(std::string_view text, Word& word) {
  if (text.size() > sizeof word) return false;
  if (!text.empty()) std::memcpy(&word, text.data(), text.size());
  return true;
}

}  // namespace

std::size_t RuleBook::Hash::operator()(const Columns& columns) const {
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
  std::uint64_t hash = columns.days * kOdd;
  hash = (hash ^ (hash >> 32) ^ columns.start) * kOdd;
  hash = (hash ^ (hash >> 32) ^ columns.stop ^ columns.persistence << 32) * kOdd;
  return static_cast<std::size_t>(hash ^ (hash >> 32));
}

RuleBook::Reading RuleBook::read(std::string_view days, std::string_view start,
                                 std::string_view stop, std::uint8_t persistence) {
  Columns columns;
  columns.persistence = persistence;
  const std::string_view bound = stop.substr(0, stop.find('['));
  if (!pack(days, columns.days) || !pack(start, columns.start) || !pack(bound, columns.stop))
    return work(days, start, bound, persistence);
  Recent& recent = recent_[Hash{}(columns) % recent_.size()];
  if (recent.used && recent.columns == columns) return recent.reading;
  auto found = known_.find(columns);
  if (found == known_.end())
    found = known_.emplace(columns, work(days, start, bound, persistence)).first;
  recent = {columns, found->second, true};
  return recent.reading;
}

RuleBook::Reading RuleBook::work(std::string_view days, std::string_view start,
                                 std::string_view stop, std::uint8_t persistence) {
  Reading reading;
  FurtherRule rule;
  YearDay from, to;
  reading.valid = readYearDay(start, from) && readYearDay(stop, to);
  if (!reading.valid) return reading;
  const bool everyYear = persistence >= 1 && persistence <= 5;
  if (from.day || to.day) rule.dates = windowOf(from, to, everyYear, season_);
  const auto [known, isNew] = days_.try_emplace(std::string(days));
  if (isNew) known->second = readDays(days);
  const std::optional<DayRule>& read = known->second;
  reading.daysUnknown = !read;
  rule.days = read.value_or(DayRule{});
  reading.irregular = !read || rule.days.irregular;
  reading.weekdays = rule.days.weekdays;
  rule.days.mode.reset();
  rule.days.irregular = false;
  if (rule.days.onlyWeekdays() && !from.day && !to.day) return reading;
  reading.rule = static_cast<std::uint32_t>(rules_.size());
  rules_.push_back(rule);
  return reading;
}

}  // namespace kelvane::ambrel
