#include "components/ambrel/schedule/season.h"

#include "base/number.h"
#include "base/text.h"

namespace kelvane::ambrel {

namespace {

constexpr UtcMinute kChange = 60;  // minutes into the day

}  // namespace

UtcMinute Season::start() const {
  const Day last = dayOf(Date{year, summer ? 3 : 10, 31});
  const Day sunday = last - (weekdayOf(last) + 1) % 7;
  return UtcMinute{sunday} * kMinutesOfDay + kChange;
}

std::string Season::code() const { return (summer ? "A" : "B") + twoDigits(year % 100); }

std::string Season::name() const {
  if (summer) return code() + ", summer " + std::to_string(year);
  return code() + ", winter " + std::to_string(year) + "/" + twoDigits((year + 1) % 100);
}

Season seasonAt(UtcMinute minute) {
  const int year = dateOf(dayOf(minute)).year;
  const Season summer{year, true};
  if (minute < summer.start()) return {year - 1, false};
  return minute < summer.end() ? summer : summer.next();
}

std::optional<Season> seasonOfFileName(std::string_view name) {
  const std::string text = " " + upper(name) + " ";
  for (std::size_t i = 1; i + 3 < text.size(); ++i) {
    const bool season =
        (text[i] == 'A' || text[i] == 'B') && isDigit(text[i + 1]) && isDigit(text[i + 2]);
    const bool alone = !isCapital(text[i - 1]) && !isDigit(text[i + 3]) && !isCapital(text[i + 3]);
    if (season && alone)
      return Season{2000 + (text[i + 1] - '0') * 10 + (text[i + 2] - '0'), text[i] == 'A'};
  }
  return std::nullopt;
}

}  // namespace kelvane::ambrel
