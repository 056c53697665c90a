#include "components/ambrel/schedule/day_rule.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <vector>

#include "base/text.h"

namespace kelvane::ambrel {

namespace {

constexpr std::array<std::string_view, 7> kWeekdays = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
constexpr std::array<std::string_view, 12> kMonths = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                      "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
constexpr std::array<std::string_view, 12> kRoman = {"I",   "II",   "III", "IV", "V",  "VI",
                                                     "VII", "VIII", "IX",  "X",  "XI", "XII"};

template <std::size_t N>
std::optional<int> placeIn(const std::array<std::string_view, N>& names, std::string_view name) {
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) return std::nullopt;
  return static_cast<int>(found - names.begin());
}

/// Bits of the weekdays from one to another, over the week's end where need be.
std::uint8_t weekdayRange(int from, int to) {
  std::uint8_t bits = 0;
  for (int day = from;; day = (day + 1) % 7) {
    bits |= static_cast<std::uint8_t>(1u << day);
    if (day == to) return bits;
  }
}

/// "MO", "MOTU", "MO-FR": bits of the weekdays; none when the text is something else.
std::optional<std::uint8_t> weekdayBits(std::string_view text) {
  if (text.size() == 5 && text[2] == '-') {
    const auto from = placeIn(kWeekdays, text.substr(0, 2));
    const auto to = placeIn(kWeekdays, text.substr(3));
    if (!from || !to) return std::nullopt;
    return weekdayRange(*from, *to);
  }
  if (text.empty() || text.size() % 2 != 0) return std::nullopt;
  std::uint8_t bits = 0;
  for (; !text.empty(); text.remove_prefix(2)) {
    const auto day = placeIn(kWeekdays, text.substr(0, 2));
    if (!day) return std::nullopt;
    bits |= static_cast<std::uint8_t>(1u << *day);
  }
  return bits;
}

std::optional<std::uint8_t> digitBits(std::string_view text) {
  std::uint8_t bits = 0;
  for (const char c : text) {
    if (c < '1' || c > '7') return std::nullopt;
    bits |= static_cast<std::uint8_t>(1u << (c - '1'));
  }
  return bits;
}

/// Takes a number from the text's start; 0 where there is none.
int takeNumber(std::string_view& text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc()) return 0;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

/// A list of weekdays, each of them perhaps with a week of the month before it ("1.SA,3.SA").
std::optional<DayRule> weekdayList(std::string_view text) {
  DayRule rule;
  rule.weekdays = 0;
  std::optional<std::uint8_t> weeks;
  for (std::string_view part : split(text, ',')) {
    std::uint8_t week = DayRule::kAllWeeks;
    if (part.size() > 2 && part[1] == '.' && part[0] >= '1' && part[0] <= '5') {
      week = static_cast<std::uint8_t>(1u << (part[0] - '1'));
      part.remove_prefix(2);
    }
    const auto days = weekdayBits(part);
    // One mask of weeks cannot say "the first Saturday and every Sunday".
    const bool sameDays = rule.weekdays == 0 || (days && rule.weekdays == *days);
    if (!days || (weeks && *weeks != week && !sameDays)) return std::nullopt;
    weeks = static_cast<std::uint8_t>(weeks.value_or(0) | week);
    rule.weekdays |= *days;
  }
  rule.weeks = *weeks;
  return rule;
}

/// "24DEC", "1JAN", "25TH", "15.IX", "IX".
std::optional<DayRule> dateRule(std::string_view text) {
  DayRule rule;
  const bool withDay = !text.empty() && text.front() >= '0' && text.front() <= '9';
  if (withDay) {
    const int day = takeNumber(text);
    if (day < 1 || day > 31) return std::nullopt;
    rule.daysOfMonth = 1u << (day - 1);
    if (text == "ST" || text == "ND" || text == "RD" || text == "TH") return rule;
    if (text.starts_with('.')) text.remove_prefix(1);
  }
  auto month = placeIn(kRoman, text);
  if (!month) month = placeIn(kMonths, text);
  if (!month) return std::nullopt;
  rule.months = static_cast<std::uint16_t>(1u << *month);
  return rule;
}

/// Words that say how often rather than on which days.
std::optional<DayRule> wordRule(std::string_view text) {
  DayRule rule;
  if (text == "RAM")
    rule.ramadan = true;
  else if (text == "HAJ")
    rule.haj = true;
  else if (text == "IRR" || text == "ALT" || text == "TESTS" || text == "TEST" || text == "PLANS" ||
           text == "TENT")
    rule.irregular = true;
  else if (text != "HARM" && text != "SPUR")
    return std::nullopt;  // unwanted, but regular
  return rule;
}

/// Whether the day lies between two days of an Islamic month. The reckoned calendar may be a day
/// out either way; better a day too many than one too few.
bool nearIslamic(Day day, int month, int from, int to) {
  for (const Day other : {day - 1, day, day + 1}) {
    const Date islamic = islamicDateOf(other);
    if (islamic.month == month && islamic.day >= from && islamic.day <= to) return true;
  }
  return false;
}

}  // namespace

DayFacts::DayFacts(Day which) : day(which) {
  const Date calendar = dateOf(which);
  date = calendar.month * 100 + calendar.day;
  dayOfMonth = 1u << (calendar.day - 1);
  month = static_cast<std::uint16_t>(1u << (calendar.month - 1));
  weekday = static_cast<std::uint8_t>(1u << weekdayOf(which));
  week = static_cast<std::uint8_t>(1u << ((calendar.day - 1) / 7));
  ramadan = nearIslamic(which, 9, 1, 30);
  haj = nearIslamic(which, 12, 7, 13);
}

bool DayRule::onlyWeekdays() const {
  DayRule plain;
  plain.weekdays = weekdays;
  return *this == plain;
}

std::optional<DayRule> readDays(std::string_view text) {
  const std::string word = upper(trimmed(text));
  if (word.empty()) return DayRule{};
  if (const auto mode = modeNamed(word)) {
    DayRule rule;
    rule.mode = mode;
    return rule;
  }
  if (const auto bits = digitBits(word)) {
    DayRule rule;
    rule.weekdays = *bits;
    return rule;
  }
  if (auto rule = wordRule(word)) return rule;
  if (auto rule = weekdayList(word)) return rule;
  if (auto rule = dateRule(word)) return rule;
  if (word.starts_with("ALT")) {
    auto rule = weekdayList(std::string_view(word).substr(3));
    if (rule) rule->irregular = true;
    return rule;
  }
  return std::nullopt;
}

}  // namespace kelvane::ambrel
