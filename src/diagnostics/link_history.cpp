#include "diagnostics/link_history.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "contract/link_state.h"

namespace kelvane {

namespace {

std::string_view wordsOf(const LinkEvent& event) {
  if (event.name != std::string_view("RxConnState")) return {};
  return event.code == static_cast<Long>(LinkState::Up) ? "up" : linkFaultWords(event.code);
}

}  // namespace

void LinkHistory::note(const LinkEvent& event) {
  events_[next_] = event;
  next_ = (next_ + 1) % kMost;
  size_ = std::min(size_ + 1, kMost);
}

std::string_view writeEvent(const LinkEvent& event, std::span<char> buffer) {
  using namespace std::chrono;
  const sys_time<milliseconds> when{milliseconds(event.when)};
  const auto day = floor<days>(when);
  const year_month_day date(day);
  const hh_mm_ss time(when - day);
  int length = std::snprintf(
      buffer.data(), buffer.size(), "%04d-%02u-%02u %02d:%02d:%02d.%03d UTC  ",
      static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
      static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
      static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
      static_cast<int>(time.subseconds().count()));
  const std::span<char> rest = buffer.subspan(std::min<std::size_t>(length, buffer.size() - 1));
  const std::string_view words = wordsOf(event);
  // Of all these events one alone concerns no receiver.
  if (event.name == std::string_view("DrvUpdated"))
    length += std::snprintf(rest.data(), rest.size(), "%s: %ld receivers", event.name,
                            static_cast<long>(event.receiver));
  else
    length +=
        std::snprintf(rest.data(), rest.size(), "receiver %ld: %s %ld %.*s",
                      static_cast<long>(event.receiver) + 1, event.name,
                      static_cast<long>(event.code), static_cast<int>(words.size()), words.data());
  return {buffer.data(), std::min<std::size_t>(length, buffer.size() - 1)};
}

}  // namespace kelvane
